#include "dmcommon/cache/dmarchivecacheimpl.h"
