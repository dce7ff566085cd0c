#include "dmcommon/fields/dmgeo.h"
