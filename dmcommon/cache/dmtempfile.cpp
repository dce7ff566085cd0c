#include "dmcommon/cache/dmtempfile.h"
