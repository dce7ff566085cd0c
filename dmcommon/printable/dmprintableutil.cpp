#include "dmcommon/printable/dmprintableutil.h"
