#include "dmcommon/printable/dmprintablevalue.h"
