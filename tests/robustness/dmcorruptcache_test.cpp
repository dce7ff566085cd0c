// The record cache reading a corrupted file: every defect ends the reading
// with 2, and no allocation is ever larger than the file could justify.

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "dmcommon/cache/dmarchivecacheimpl.h"
#include "tests/cache/cachetest.h"
#include "tests/robustness/allocationtracker.h"

namespace {

using dmtest::Byte;
using dmtest::Length;
using dmtest::MemoryTempFile;
using dmtest::Real;
using dmtest::Storage;

constexpr int kCorrupted = 2;

// Reads every record of `bytes` laid out as `storages` and returns the result
// of the first read that did not give a record.
int ReadAll(const std::vector<Storage>& storages, const std::string& bytes) {
  auto file = std::make_unique<MemoryTempFile>();
  file->bytes = bytes;
  DMArchiveCacheImpl cache(dmtest::MakeMetaData(storages).release(), file.release());
  auto* iterator = dynamic_cast<DMCacheIterator*>(cache.getIterator());
  if (iterator == nullptr) return -1;
  iterator->setFileLength(static_cast<int64_t>(bytes.size()));
  int rc = 0;
  while ((rc = iterator->NextRecord()) == 0) {
  }
  return rc;
}

struct CorruptCase {
  const char* defect;
  std::vector<Storage> storages;
  std::string bytes;
};

TEST(CorruptCacheTest, EveryDefectEndsWithTwoWithoutAnAllocationBeyondTheFile) {
  const CorruptCase kCases[] = {
      {"a truncated numeric value", {Storage::Real}, Byte(0) + Real(1.5).substr(0, 5)},
      {"a truncated flag byte's record", {Storage::Real, Storage::Real}, Byte(0) + Real(1.0)},
      {"a truncated length", {Storage::String}, Byte(0) + Length(3).substr(0, 4)},
      {"a text shorter than its length", {Storage::String}, Byte(0) + Length(10) + "abc"},
      {"a length beyond the file's end", {Storage::String}, Byte(0) + Length(1000000) + "abc"},
      {"a length of 2^63", {Storage::String}, Byte(0) + Length(uint64_t{1} << 63) + "abc"},
      {"a length of 2^64 - 1", {Storage::String}, Byte(0) + Length(~uint64_t{0}) + "abc"},
      {"a length of 2^64 - 8", {Storage::String}, Byte(0) + Length(~uint64_t{0} - 7) + "abc"},
      {"a good record, then a huge length",
       {Storage::String},
       Byte(0) + Length(2) + "ok" + Byte(0) + Length(~uint64_t{0} >> 1)},
  };
  for (const CorruptCase& c : kCases) {
    SCOPED_TRACE(c.defect);
    const dmtest::LargestAllocation largest;
    EXPECT_EQ(ReadAll(c.storages, c.bytes), kCorrupted);
    // The cache's own read-ahead and text buffers are fixed sizes; beyond
    // them nothing may be sized from the file's contents.
    EXPECT_LE(largest.Bytes(), std::size_t{1} << 20);
  }
}

}  // namespace
