#ifndef DMCOMMON_CACHE_DMCACHEINTERFACE_H
#define DMCOMMON_CACHE_DMCACHEINTERFACE_H

// The interfaces through which the back end hands records and temporary files
// to the record cache and reads records back. Other components of the back
// end define them; the library declares them here, with the same names and
// the same order of virtual entries, because nothing else in its build
// provides them. The order of the virtual entries is part of the interface:
// do not reorder, insert or remove entries.

#include <cstddef>
#include <cstdint>

#include "dmcommon/dmcommon_export.h"

namespace DMTempFiles {

/// A temporary file of the back end's temporary-file service: a sequence of
/// bytes with one position, read and written from that position. The record
/// cache uses `isValid`, `read`, `write` and `seek`, and frees the file
/// through its virtual destructor.
class DMCOMMON_EXPORT VELA_TempFile {
 public:
  /// Closes and releases the file.
  virtual ~VELA_TempFile();
  /// The file's name in the file system; never null. The cache does not use
  /// it.
  virtual const char* getName() const = 0;
  /// Non-zero when the file can be used; 0 when it could not be created or
  /// opened.
  virtual int isValid() const = 0;
  /// Reads up to `count` bytes at the position into `buffer`, moves the
  /// position past them and returns how many were read: fewer than `count`
  /// at the end of the file or on an error.
  virtual size_t read(void* buffer, size_t count) = 0;
  /// Writes `count` bytes from `buffer` at the position, moves the position
  /// past them and returns how many were written: fewer than `count` on an
  /// error.
  virtual size_t write(const void* buffer, size_t count) = 0;
  /// Moves the position to `offset` bytes from the start (`origin` 0) or
  /// from the end (`origin` 2) of the file. The meaning of the result is the
  /// service's own; the cache does not interpret it.
  virtual int seek(long long offset, int origin) = 0;
};

}  // namespace DMTempFiles

/// A record source positioned on one record, read field by field: the record
/// cache's iterator implements it, and a cache also takes one as the source
/// of a record to append.
class DMCOMMON_EXPORT DMAIterator {
 public:
  /// Destroys the iterator.
  virtual ~DMAIterator();
  /// Moves to the next record. The result codes are the implementation's.
  virtual int NextRecord() = 0;
  /// Points `data` at the value of `field` in the current record and sets
  /// `size` to its byte count; 0 on success (a missing value as a null
  /// `data`), non-zero on failure.
  virtual int GetRecordValue(unsigned long field, void*& data, unsigned long& size) = 0;
  /// Goes back to before the first record. The result codes are the
  /// implementation's.
  virtual int Rewind() = 0;
};

/// A plain record source filled in by the caller (no class, so that it can
/// cross a function-table boundary). The cache calls only `getValue`.
struct DMIterator {
  /// Passed unchanged as the first argument of `getValue`.
  void* context;
  /// Not used by the cache.
  void* reserved;
  /// Sets `*data` to the address and `*size` to the byte count of the value
  /// of field `field` in the current record, `*data` to null when the value
  /// is missing, and returns 0; any other result is a failure. `*flag` is the
  /// source's own; the cache ignores it.
  int32_t (*getValue)(void* context, unsigned long field, const void** data, unsigned long* size,
                      int32_t* flag);
};

/// A cache of records, appended from a record source and read back with an
/// iterator.
class DMCOMMON_EXPORT DMDataCache {
 public:
  /// Destroys the cache and what it owns.
  virtual ~DMDataCache();
  /// Appends the record on which `source` is positioned; 0 on success,
  /// another value on failure.
  virtual unsigned int addRecordFromIterator(DMAIterator* source) = 0;
  /// An iterator over the cached records, owned by the cache; may be null.
  virtual DMAIterator* getIterator() = 0;
};

namespace DmExtension {

/// The same cache as seen by callers that append records from a plain
/// `DMIterator` source.
class DMCOMMON_EXPORT DMCacheInterface {
 public:
  /// Destroys the cache and what it owns.
  virtual ~DMCacheInterface();
  /// Appends the current record of `source`; 0 on success, another value on
  /// failure. The second argument is reserved.
  virtual int addRecord(DMIterator* source, int* reserved) = 0;
  /// An iterator over the cached records, owned by the cache; may be null.
  virtual DMAIterator* getIterator() = 0;
};

}  // namespace DmExtension

#endif  // DMCOMMON_CACHE_DMCACHEINTERFACE_H
