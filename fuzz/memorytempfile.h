#ifndef DMCOMMON_FUZZ_MEMORYTEMPFILE_H
#define DMCOMMON_FUZZ_MEMORYTEMPFILE_H

#include <algorithm>
#include <cstddef>
#include <cstring>
#include <string>

#include "dmcommon/cache/dmcacheinterface.h"

namespace dmfuzz {

// A temporary file whose bytes live in memory, so that the cache can be
// handed any content without touching the file system.
class MemoryTempFile : public DMTempFiles::VELA_TempFile {
 public:
  explicit MemoryTempFile(std::string bytes) : bytes_(std::move(bytes)) {}

  const char* getName() const override { return "memory"; }
  int isValid() const override { return 1; }

  size_t read(void* buffer, size_t count) override {
    const size_t available = position_ < bytes_.size() ? bytes_.size() - position_ : 0;
    const size_t done = std::min(count, available);
    if (done != 0) std::memcpy(buffer, bytes_.data() + position_, done);
    position_ += done;
    return done;
  }

  size_t write(const void* buffer, size_t count) override {
    if (position_ + count > bytes_.size()) bytes_.resize(position_ + count);
    if (count != 0) std::memcpy(bytes_.data() + position_, buffer, count);
    position_ += count;
    return count;
  }

  // Like the local file: a negative position or another origin is refused.
  int seek(long long offset, int origin) override {
    if (origin != 0 && origin != 2) return -1;
    const long long base = origin == 2 ? static_cast<long long>(bytes_.size()) : 0;
    if (offset < -base) return -1;
    position_ = static_cast<size_t>(base + offset);
    return 0;
  }

  size_t size() const { return bytes_.size(); }

 private:
  std::string bytes_;
  size_t position_ = 0;
};

}  // namespace dmfuzz

#endif  // DMCOMMON_FUZZ_MEMORYTEMPFILE_H
