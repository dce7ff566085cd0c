#include "dmcommon/summaries/dmdistributionsummary.h"
