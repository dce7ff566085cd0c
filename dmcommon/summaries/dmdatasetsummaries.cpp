#include "dmcommon/summaries/dmdatasetsummaries.h"
