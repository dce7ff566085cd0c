#include "dmcommon/printable/dmprintablelist.h"
