#include "dmcommon/stats/dmcatstatsimp.h"
