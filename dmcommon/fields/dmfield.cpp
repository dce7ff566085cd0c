#include "dmcommon/fields/dmfield.h"
