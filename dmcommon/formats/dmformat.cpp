#include "dmcommon/formats/dmformat.h"

DMFormat::~DMFormat() = default;
