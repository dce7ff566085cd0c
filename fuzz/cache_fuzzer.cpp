// The record cache reading a corrupted temporary file: the input chooses a
// field layout and is the file's content. Reading stops with a result code,
// hands out values inside their buffers, and never grows a buffer beyond
// what the file holds.

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <iterator>
#include <string>
#include <vector>

#include "dmcommon/cache/dmarchivecacheimpl.h"
#include "dmcommon/fields/dmfield.h"
#include "dmcommon/metadata/dmmetadata.h"
#include "fuzz/fuzz_support.h"
#include "fuzz/memorytempfile.h"

namespace {

constexpr char kTarget[] = "cache";

using Storage = DMField::StorageType;

constexpr int kRecordRead = 0;
constexpr int kEndOfData = 1;
constexpr int kReadFailed = 2;
constexpr unsigned long kTextBufferSize = 1024;
constexpr unsigned long kNumericSize = 8;

constexpr std::size_t kMaxFields = 16;
// Texts are likelier than the rarer storages, so that long, short and lying
// byte counts are explored; a storage outside the enumeration is one a
// corrupted caller may hand over.
constexpr Storage kStorages[] = {
    Storage::String,  Storage::String, Storage::Integer,        Storage::Real,
    Storage::Date,    Storage::Time,   Storage::Timestamp,      Storage::String,
    Storage::Unknown, Storage::String, static_cast<Storage>(9), Storage::Real,
};

// Beyond its buffers, the iterator may allocate fixed sizes (pieces of a text
// whose length lies); nothing larger may be sized from the file's contents.
constexpr std::size_t kFixedAllocationBound = std::size_t{1} << 20;

void Require(bool holds, const std::string& what) { dmfuzz::Require(holds, kTarget, what); }

// The largest allocation while `tracking`, seen through the sanitizers'
// allocation hook; without a sanitizer runtime nothing is measured.
bool tracking = false;
std::size_t largest = 0;

void OnAllocation(const volatile void* /*pointer*/, std::size_t size) {
  if (tracking && size > largest) largest = size;
}

void OnFree(const volatile void* /*pointer*/) {}

}  // namespace

extern "C" int __sanitizer_install_malloc_and_free_hooks(void (*malloc_hook)(const volatile void*,
                                                                             std::size_t),
                                                         void (*free_hook)(const volatile void*))
    __attribute__((weak));

namespace {

const bool kHooked = [] {
  return __sanitizer_install_malloc_and_free_hooks != nullptr &&
         __sanitizer_install_malloc_and_free_hooks(&OnAllocation, &OnFree) != 0;
}();

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  // Byte 0: the field count; byte 1: whether the cache is told the whole
  // file or only half of it; one byte per field: its storage; the rest is
  // the file.
  if (size < 2) return 0;
  const std::size_t fieldCount = 1 + data[0] % kMaxFields;
  const bool toldHalf = (data[1] & 1) != 0;
  if (size < 2 + fieldCount) return 0;

  DMMetaData metadata(nullptr);
  std::vector<Storage> storages;
  for (std::size_t i = 0; i < fieldCount; ++i) {
    storages.push_back(kStorages[data[2 + i] % std::size(kStorages)]);
    metadata.AppendField(DMField("f" + std::to_string(i), DMField::FieldType::Continuous,
                                 storages.back(), DMField::RoleType::Input));
  }
  const std::size_t header = 2 + fieldCount;
  dmfuzz::MemoryTempFile file(
      std::string(reinterpret_cast<const char*>(data) + header, size - header));
  const auto fileSize = static_cast<int64_t>(file.size());
  const int64_t declared = toldHalf ? fileSize / 2 : fileSize;

  DMCacheIterator iterator(&metadata, &file);
  iterator.setFileLength(declared);
  // The largest buffer a record of this file can call for: a text of every
  // byte of it and its terminator, or the buffer every text field starts
  // with.
  const unsigned long bound =
      std::max<unsigned long>(kTextBufferSize, static_cast<unsigned long>(fileSize) + 1);

  largest = 0;
  tracking = true;
  int first = -1;
  int result = kRecordRead;
  // Each record takes at least its flag byte, so a file of n bytes holds at
  // most n records; one more call must then stop.
  for (int64_t records = 0; result == kRecordRead; ++records) {
    Require(records <= fileSize, "more records than bytes");
    const int64_t before = iterator.GetPosition();
    result = iterator.NextRecord();
    if (first < 0) first = result;
    const int64_t after = iterator.GetPosition();
    Require(result == kRecordRead || result == kEndOfData || result == kReadFailed,
            "NextRecord gave an unknown result");
    if (result == kRecordRead) {
      Require(after > before && after <= fileSize, "a record read did not advance inside the file");
    } else {
      Require(after == before, "a record not read moved the position");
      Require(result != kEndOfData || before >= declared, "end of data before the end");
    }
    for (unsigned long b = 0; b < fieldCount; ++b) {
      Require(iterator.GetBufferCapacity(b) <= bound,
              "a buffer grew to " + std::to_string(iterator.GetBufferCapacity(b)) +
                  " bytes for a file of " + std::to_string(fileSize));
    }
    if (result != kRecordRead) break;

    for (unsigned long f = 0; f < fieldCount + 1; ++f) {
      void* value = reinterpret_cast<void*>(1);
      unsigned long length = 1;
      const int status = iterator.GetRecordValue(f, value, length);
      if (status != 0 || value == nullptr) {
        Require(value == nullptr && length == 0, "a refused or missing value has data");
        continue;
      }
      Require(f < fieldCount, "a value for a field that does not exist");
      if (storages[f] == Storage::String) {
        Require(length < iterator.GetBufferCapacity(f) &&
                    length <= static_cast<unsigned long>(fileSize),
                "a text longer than its buffer or the file");
        Require(static_cast<const char*>(value)[length] == '\0', "a text without terminator");
      } else {
        Require(length == kNumericSize, "a number of another size than 8");
      }
    }
  }

  tracking = false;
  if (kHooked) {
    Require(largest <= std::max<std::size_t>(kFixedAllocationBound, file.size() + 1),
            "an allocation of " + std::to_string(largest) + " bytes for a file of " +
                std::to_string(fileSize));
  }

  // Reading again from the start gives the same first result.
  Require(iterator.Rewind() == 0, "Rewind failed");
  Require(iterator.GetPosition() == 0, "Rewind did not go back to the start");
  Require(iterator.NextRecord() == first, "the first record reads otherwise after Rewind");
  return 0;
}
