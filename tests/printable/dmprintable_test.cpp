#include "dmcommon/printable/dmprintable.h"
