#ifndef DMCOMMON_CACHE_DMTEMPFILE_H
#define DMCOMMON_CACHE_DMTEMPFILE_H

#include <cstddef>
#include <memory>
#include <string>

#include "dmcommon/cache/dmcacheinterface.h"
#include "dmcommon/dmcommon_export.h"

namespace DMTempFiles {

/// A temporary file in the local file system, for the record cache and
/// other callers that need a `VELA_TempFile`. The file is created with a
/// unique name when the object is constructed and removed when it is
/// destroyed. Reads and writes go through a buffer of the object's own, so
/// that small reads and writes (the cache moves single flag bytes) cost a
/// copy rather than a system call; a seek within the buffered bytes costs
/// nothing. A file that could not be created reports 0 from `isValid` and
/// fails every read, write and seek.
class DMCOMMON_EXPORT LocalTempFile : public VELA_TempFile {
 public:
  /// The size of the object's buffer in bytes. Large enough that storing
  /// the bytes costs about what one large write of them does; at 64 KiB the
  /// system calls alone made appending a sixth slower.
  static constexpr std::size_t kBufferSize = std::size_t{256} * 1024;

  /// Creates an empty file with a unique name in the directory named by the
  /// environment variable TMPDIR when it is set and not empty, else in /tmp.
  LocalTempFile();
  /// Creates an empty file with a unique name in `directory`; the empty text
  /// chooses as the default constructor does. When the directory does not
  /// exist or cannot be written to, no file is created and `isValid` is 0.
  explicit LocalTempFile(const std::string& directory);
  LocalTempFile(const LocalTempFile&) = delete;
  LocalTempFile& operator=(const LocalTempFile&) = delete;
  /// Closes the file and removes it from the file system; buffered bytes not
  /// yet written are dropped with it.
  ~LocalTempFile() override;

  /// The path of the file; the empty text when no file was created. Valid
  /// until the object is destroyed.
  const char* getName() const override;
  /// 1 when the file was created, 0 when it was not.
  int isValid() const override;
  /// Reads up to `count` bytes at the position into `buffer` and moves the
  /// position past them; returns the number read, fewer than `count` at the
  /// end of the file or on an error, 0 when there is no file or `buffer` is
  /// null.
  size_t read(void* buffer, size_t count) override;
  /// Writes `count` bytes from `buffer` at the position and moves the
  /// position past them; returns `count`, or 0 when there is no file,
  /// `buffer` is null, or the bytes already buffered could not be written to
  /// make room. Bytes are stored in the file when the buffer fills, when the
  /// position moves away from them or when the file is read; an error then
  /// shows as a short read later.
  size_t write(const void* buffer, size_t count) override;
  /// Moves the position to `offset` bytes from the start (`origin` 0), from
  /// the position (1) or from the end (2); 0 on success. Returns -1, leaving
  /// the position, when there is no file, `origin` is another value, or the
  /// new position would be negative. A position beyond the end is allowed;
  /// writing there fills the gap with zero bytes.
  int seek(long long offset, int origin) override;

 private:
  class Impl;
  std::unique_ptr<Impl> impl_;
};

}  // namespace DMTempFiles

#endif  // DMCOMMON_CACHE_DMTEMPFILE_H
