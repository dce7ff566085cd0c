#include "dmcommon/stats/dmcontstats.h"
