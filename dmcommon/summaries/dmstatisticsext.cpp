#include "dmcommon/summaries/dmstatisticsext.h"
