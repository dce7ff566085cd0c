#include "dmcommon/printable/dmprintablevlist.h"
