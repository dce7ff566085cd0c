#include "dmcommon/metadata/dmmetadata.h"
