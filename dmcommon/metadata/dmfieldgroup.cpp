#include "dmcommon/metadata/dmfieldgroup.h"
