#include "dmcommon/fields/dmmodelfield.h"
