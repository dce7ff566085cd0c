#include "dmcommon/cache/dmcacheinterface.h"

// The interfaces have no state; their destructors are defined here so that
// each has one home for its virtual table and type information.

DMTempFiles::VELA_TempFile::~VELA_TempFile() = default;

DMAIterator::~DMAIterator() = default;

DMDataCache::~DMDataCache() = default;

DmExtension::DMCacheInterface::~DMCacheInterface() = default;
