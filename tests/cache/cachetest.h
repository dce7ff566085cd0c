#ifndef DMCOMMON_TESTS_CACHE_CACHETEST_H
#define DMCOMMON_TESTS_CACHE_CACHETEST_H

// Fakes for the record cache tests: a temporary file in memory that can fail
// or throw on the Nth read or write, record sources of both kinds over a
// record held as byte strings, and builders for metadata and value bytes.

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <memory>
#include <optional>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "dmcommon/cache/dmcacheinterface.h"
#include "dmcommon/fields/dmfield.h"
#include "dmcommon/metadata/dmmetadata.h"

namespace dmtest {

using Storage = DMField::StorageType;

// A record as the sources hand it out: the bytes of each field's value, or
// no value when the field is missing.
using Record = std::vector<std::optional<std::string>>;

// A storage number outside the enumeration, as a corrupted or newer caller
// may hand the cache.
inline constexpr Storage kOutsideStorage = static_cast<Storage>(9);

// Metadata with one field per entry of `storages`, named f0, f1, ...
inline std::unique_ptr<DMMetaData> MakeMetaData(const std::vector<Storage>& storages) {
  auto metadata = std::make_unique<DMMetaData>(nullptr);
  for (size_t i = 0; i < storages.size(); ++i) {
    metadata->AppendField(DMField("f" + std::to_string(i), DMField::FieldType::Continuous,
                                  storages[i], DMField::RoleType::Input));
  }
  return metadata;
}

template <typename T>
std::string BytesOf(const T& value) {
  std::string bytes(sizeof(value), '\0');
  std::memcpy(bytes.data(), &value, sizeof(value));
  return bytes;
}

inline std::string Real(double value) { return BytesOf(value); }
inline std::string Integer(int64_t value) { return BytesOf(value); }
// The 8-byte count before a text in the file.
inline std::string Length(uint64_t length) { return BytesOf(length); }
inline std::string Byte(unsigned value) { return std::string(1, static_cast<char>(value)); }

// A temporary file in memory. The test keeps a pointer to it while the cache
// owns it, to look at the bytes and the calls and to plan faults.
class MemoryTempFile : public DMTempFiles::VELA_TempFile {
 public:
  explicit MemoryTempFile(bool* destroyed = nullptr) : destroyed_(destroyed) {}
  ~MemoryTempFile() override {
    if (destroyed_ != nullptr) *destroyed_ = true;
  }

  const char* getName() const override { return "memory"; }
  int isValid() const override { return valid ? 1 : 0; }

  size_t read(void* buffer, size_t count) override {
    ++reads;
    if (throwOnRead == reads) throw std::runtime_error("read");
    const size_t available = position < bytes.size() ? bytes.size() - position : 0;
    size_t done = std::min(count, available);
    if (shortRead == reads) done = std::min(done, shortReadBytes);
    std::memcpy(buffer, bytes.data() + position, done);
    position += done;
    return done;
  }

  size_t write(const void* buffer, size_t count) override {
    ++writes;
    if (throwOnWrite == writes) throw std::runtime_error("write");
    size_t done = count;
    if (shortWrite == writes) done = std::min(done, shortWriteBytes);
    if (position + done > bytes.size()) bytes.resize(position + done);
    std::memcpy(bytes.data() + position, buffer, done);
    position += done;
    return done;
  }

  int seek(long long offset, int origin) override {
    seeks.emplace_back(offset, origin);
    const long long base = origin == 2 ? static_cast<long long>(bytes.size()) : 0;
    position = static_cast<size_t>(base + offset);
    return seekResult;
  }

  std::string bytes;
  size_t position = 0;
  bool valid = true;
  // Calls so far, counted from 1.
  int reads = 0;
  int writes = 0;
  std::vector<std::pair<long long, int>> seeks;
  // Faults: the read or write with this number delivers at most the given
  // bytes, or throws; 0 plans nothing.
  int shortRead = 0;
  size_t shortReadBytes = 0;
  int shortWrite = 0;
  size_t shortWriteBytes = 0;
  int throwOnRead = 0;
  int throwOnWrite = 0;
  int seekResult = 0;

 private:
  bool* destroyed_;
};

// A plain `DMIterator` source over one record. `failAtCall` makes that call
// (counted from 1 over all fields) return `failStatus`.
class PlainSource {
 public:
  explicit PlainSource(Record record) : record_(std::move(record)) {
    iterator_.context = this;
    iterator_.reserved = nullptr;
    iterator_.getValue = &PlainSource::GetValue;
  }
  PlainSource(const PlainSource&) = delete;
  PlainSource& operator=(const PlainSource&) = delete;

  DMIterator* get() { return &iterator_; }
  void Set(Record record) { record_ = std::move(record); }

  int calls = 0;
  int failAtCall = 0;
  int32_t failStatus = 5;

 private:
  static int32_t GetValue(void* context, unsigned long field, const void** data,
                          unsigned long* size, int32_t* flag) {
    auto* self = static_cast<PlainSource*>(context);
    ++self->calls;
    // The cache must not depend on the flag output.
    *flag = 1;
    if (self->calls == self->failAtCall) return self->failStatus;
    const std::optional<std::string>& value = self->record_.at(field);
    *data = value ? value->data() : nullptr;
    *size = value ? value->size() : 0;
    return 0;
  }

  Record record_;
  DMIterator iterator_{};
};

// A `DMAIterator` source over one record, failing or throwing at a planned
// call.
class RecordSource : public DMAIterator {
 public:
  explicit RecordSource(Record record) : record_(std::move(record)) {}

  int NextRecord() override { return 0; }
  int GetRecordValue(unsigned long field, void*& data, unsigned long& size) override {
    ++calls;
    if (calls == throwAtCall) throw std::runtime_error("source");
    if (calls == failAtCall) return 3;
    std::optional<std::string>& value = record_.at(field);
    data = value ? value->data() : nullptr;
    size = value ? value->size() : 0;
    return 0;
  }
  int Rewind() override { return 0; }

  int calls = 0;
  int failAtCall = 0;
  int throwAtCall = 0;

 private:
  Record record_;
};

// The value of `field` in the iterator's current record as bytes; no value
// when it is missing. Fails the test when the iterator refuses.
inline std::optional<std::string> ValueOf(DMAIterator& iterator, unsigned long field) {
  // Set beforehand, to see that the iterator writes both outputs.
  static char stale = 0;
  void* data = &stale;
  unsigned long size = 1;
  const int status = iterator.GetRecordValue(field, data, size);
  EXPECT_EQ(status, 0) << "field " << field;
  if (data == nullptr) {
    EXPECT_EQ(size, 0u);
    return std::nullopt;
  }
  return std::string(static_cast<const char*>(data), size);
}

}  // namespace dmtest

#endif  // DMCOMMON_TESTS_CACHE_CACHETEST_H
