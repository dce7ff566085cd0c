#include "dmcommon/cache/dmarchivecacheimpl.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <memory>
#include <new>
#include <vector>

#include "dmcommon/fields/dmfield.h"
#include "dmcommon/metadata/dmmetadata.h"

using DMTempFiles::VELA_TempFile;

namespace {

constexpr unsigned int kIteratorAppendFailed = 0xFFFFFFFF;
constexpr int kAddRecordFailed = 37;
constexpr int kAppended = 0;

constexpr int kRecordRead = 0;
constexpr int kEndOfData = 1;
constexpr int kReadFailed = 2;

constexpr int kValueFound = 0;
constexpr int kValueFailed = 1;

constexpr int kRewound = 0;
constexpr int kRewindFailed = 2;

constexpr int kSourceOk = 0;

constexpr int kFromStart = 0;
constexpr int kFromEnd = 2;

constexpr unsigned kFieldsPerFlagByte = 8;
constexpr unsigned char kFirstFieldBit = 0x80;
constexpr unsigned long kNumericSize = 8;
constexpr unsigned long kTextBufferSize = 1024;
// The byte count before a text.
constexpr size_t kLengthSize = sizeof(uint64_t);
// Texts longer than the data the cache knows of are read in pieces of this
// size before their buffer is allocated.
constexpr size_t kTextChunk = size_t{64} * 1024;

// How a field's value is laid out in a record.
enum class Layout {
  Numeric,   // 8 bytes
  Text,      // an 8-byte byte count, then the bytes
  Rejected,  // no value can be stored
  Skipped,   // takes no bytes and has no buffer
};

Layout LayoutOf(DMField::StorageType storage) {
  switch (storage) {
    case DMField::StorageType::Integer:
    case DMField::StorageType::Real:
    case DMField::StorageType::Date:
    case DMField::StorageType::Time:
    case DMField::StorageType::Timestamp:
      return Layout::Numeric;
    case DMField::StorageType::String:
      return Layout::Text;
    case DMField::StorageType::Unknown:
      return Layout::Rejected;
  }
  // A storage number outside the enumeration.
  return Layout::Skipped;
}

unsigned char FieldBit(unsigned index) {
  return static_cast<unsigned char>(kFirstFieldBit >> (index % kFieldsPerFlagByte));
}

// Writes `count` bytes and adds the bytes written to `fileLength`, also when
// they fall short; false when they do.
[[nodiscard]] bool WriteCounted(VELA_TempFile& file, const void* bytes, size_t count,
                                int64_t& fileLength) {
  const size_t written = file.write(bytes, count);
  fileLength += static_cast<int64_t>(std::min(written, count));
  return written >= count;
}

// Appends one record whose values `valueOf(field, data, size)` supplies,
// returning the source's status. The source is asked twice for every field,
// once for the flags and once for the value, so that nothing of the record
// has to be held in memory. Stops at the first failure, leaving what was
// written in the file and counted in `fileLength`.
template <typename ValueOf>
[[nodiscard]] bool AppendRecord(const std::vector<DMField::StorageType>& storages,
                                VELA_TempFile& file, const ValueOf& valueOf, int64_t& fileLength) {
  const auto count = static_cast<unsigned>(storages.size());
  // The file's seek result has no meaning the cache may rely on; a seek that
  // did not happen shows in the reads.
  (void)file.seek(0, kFromEnd);

  const void* data = nullptr;
  unsigned long size = 0;
  unsigned char flags = 0;
  for (unsigned i = 0; i < count; ++i) {
    if (i != 0 && i % kFieldsPerFlagByte == 0) {
      if (!WriteCounted(file, &flags, 1, fileLength)) return false;
      flags = 0;
    }
    if (valueOf(i, data, size) != kSourceOk) return false;
    if (data == nullptr) flags |= FieldBit(i);
  }
  if (!WriteCounted(file, &flags, 1, fileLength)) return false;

  for (unsigned i = 0; i < count; ++i) {
    if (valueOf(i, data, size) != kSourceOk) return false;
    if (data == nullptr) continue;
    switch (LayoutOf(storages[i])) {
      case Layout::Numeric:
        // The source's size is written as it is: numeric values are
        // expected to be 8 bytes, and the reader takes 8.
        if (!WriteCounted(file, data, size, fileLength)) return false;
        break;
      case Layout::Text: {
        const uint64_t length = size;
        if (!WriteCounted(file, &length, kLengthSize, fileLength)) return false;
        if (!WriteCounted(file, data, size, fileLength)) return false;
        break;
      }
      case Layout::Rejected:
        return false;
      case Layout::Skipped:
        break;
    }
  }
  return true;
}

// Checks that the cache can take a record, appends it and brings the
// iterator's file length up to date, whatever happened.
template <typename ValueOf>
[[nodiscard]] bool Append(const std::vector<DMField::StorageType>& storages, VELA_TempFile* file,
                          int64_t& iteratorFileLength, const ValueOf& valueOf) {
  if (storages.empty() || file == nullptr || file->isValid() == 0) return false;
  int64_t fileLength = iteratorFileLength;
  bool appended = false;
  try {
    appended = AppendRecord(storages, *file, valueOf, fileLength);
  } catch (...) {
    // Whatever a source or the file throws fails this record only.
    appended = false;
  }
  iteratorFileLength = fileLength;
  return appended;
}

}  // namespace

// ---------------------------------------------------------------------------
// DMCacheIterator

DMCacheIterator::DMCacheIterator(DMMetaData* metadata, VELA_TempFile* file)
    : metadata_(metadata), file_(file) {
  if (metadata_ == nullptr) return;
  const unsigned count = metadata_->FieldCount();
  for (unsigned i = 0; i < count; ++i) {
    const DMField* field = metadata_->GetField(i);
    storages_.push_back(field->GetStorage());
    switch (LayoutOf(storages_.back())) {
      case Layout::Numeric:
        recordBuffer_.push_back({std::make_unique<char[]>(kNumericSize), kNumericSize, 0});
        break;
      case Layout::Text:
        recordBuffer_.push_back({std::make_unique<char[]>(kTextBufferSize), kTextBufferSize, 0});
        break;
      case Layout::Rejected:
      case Layout::Skipped:
        break;
    }
  }
  missingFlags_.resize(count);
}

DMCacheIterator::~DMCacheIterator() = default;

int DMCacheIterator::NextRecord() {
  if (storages_.empty() || file_ == nullptr) return kReadFailed;
  try {
    return ReadRecord();
  } catch (...) {
    // An allocation for a long text failed; the record cannot be read.
    return kReadFailed;
  }
}

int DMCacheIterator::ReadRecord() {
  const auto count = static_cast<unsigned>(storages_.size());
  (void)file_->seek(position_, kFromStart);
  if (position_ >= fileLength_) return kEndOfData;

  unsigned char flags = 0;
  for (unsigned i = 0; i < count; ++i) {
    if (i % kFieldsPerFlagByte == 0 && file_->read(&flags, 1) != 1) return kReadFailed;
    missingFlags_[i] = (flags & FieldBit(i)) != 0;
  }
  int64_t consumed = (count + kFieldsPerFlagByte - 1) / kFieldsPerFlagByte;

  // Buffers belong to the fields that have one, in field order.
  auto buffer = recordBuffer_.begin();
  for (unsigned i = 0; i < count; ++i) {
    const Layout layout = LayoutOf(storages_[i]);
    if (layout == Layout::Rejected || layout == Layout::Skipped) {
      if (!missingFlags_[i] && layout == Layout::Rejected) return kReadFailed;
      continue;
    }
    Buffer& into = *buffer++;
    if (missingFlags_[i]) continue;
    if (layout == Layout::Numeric) {
      if (file_->read(into.bytes.get(), kNumericSize) != kNumericSize) return kReadFailed;
      consumed += static_cast<int64_t>(kNumericSize);
      continue;
    }
    uint64_t length = 0;
    if (file_->read(&length, kLengthSize) != kLengthSize) return kReadFailed;
    consumed += static_cast<int64_t>(kLengthSize);
    if (!ReadText(into, position_ + consumed, length)) return kReadFailed;
    consumed += static_cast<int64_t>(length);
  }
  position_ += consumed;
  return kRecordRead;
}

bool DMCacheIterator::ReadText(Buffer& buffer, int64_t offset, uint64_t length) {
  if (length < buffer.capacity) {
    // The text and its terminator fit. The buffer is zero beyond `used`, so
    // clearing what the last texts left behind is the same as zero-filling
    // it all before the read.
    const size_t got = file_->read(buffer.bytes.get(), length);
    const size_t kept = std::min<size_t>(got, length);
    const size_t dirty = std::max<size_t>(buffer.used, length);
    if (dirty > kept) std::memset(buffer.bytes.get() + kept, 0, dirty - kept);
    buffer.used = kept;
    return got == length;
  }

  const int64_t known = fileLength_ - offset;
  if (known >= 0 && length <= static_cast<uint64_t>(known)) {
    // The buffer grows to exactly the text and its terminator.
    buffer.bytes = std::make_unique<char[]>(length + 1);
    buffer.capacity = length + 1;
    const size_t got = file_->read(buffer.bytes.get(), length);
    const size_t kept = std::min<size_t>(got, length);
    std::memset(buffer.bytes.get() + kept, 0, length - kept);
    buffer.used = kept;
    return got == length;
  }

  // A count beyond the bytes the cache has written is most likely a
  // corrupted file. The text is read in pieces first, so that such a count
  // fails at the end of the file instead of allocating what it claims; a
  // file that does hold the text still gives it back whole.
  std::vector<char> text;
  while (text.size() < length) {
    const size_t piece = static_cast<size_t>(std::min<uint64_t>(length - text.size(), kTextChunk));
    const size_t old = text.size();
    text.resize(old + piece);
    if (file_->read(text.data() + old, piece) != piece) return false;
  }
  buffer.bytes = std::make_unique<char[]>(length + 1);
  buffer.capacity = length + 1;
  std::memcpy(buffer.bytes.get(), text.data(), length);
  buffer.used = length;
  return true;
}

int DMCacheIterator::GetRecordValue(unsigned long field, void*& data, unsigned long& size) {
  data = nullptr;
  size = 0;
  if (position_ < 1) return kValueFailed;
  if (field >= recordBuffer_.size()) return kValueFailed;
  // The kept limitation: a field without a buffer shifts the buffers of the
  // fields after it, so no field's buffer can be trusted. With one buffer per
  // field every field exists and none has Unknown storage, which has none.
  if (recordBuffer_.size() != storages_.size()) return kValueFailed;
  if (missingFlags_[field]) return kValueFound;

  Buffer& buffer = recordBuffer_[field];
  data = buffer.bytes.get();
  if (storages_[field] == DMField::StorageType::String) {
    // The buffer is zero from `used` on, so the text ends at or before it.
    const void* end = std::memchr(buffer.bytes.get(), '\0', buffer.used + 1);
    size = static_cast<unsigned long>(static_cast<const char*>(end) - buffer.bytes.get());
  } else {
    size = buffer.capacity;
  }
  return kValueFound;
}

int DMCacheIterator::Rewind() {
  if (storages_.empty() || file_ == nullptr || file_->isValid() == 0) return kRewindFailed;
  position_ = 0;
  return kRewound;
}

void DMCacheIterator::setFileLength(int64_t length) { fileLength_ = length; }

int64_t DMCacheIterator::getFileLength() const { return fileLength_; }

int64_t DMCacheIterator::GetPosition() const { return position_; }

unsigned long DMCacheIterator::GetBufferCapacity(unsigned long index) const {
  return index < recordBuffer_.size() ? recordBuffer_[index].capacity : 0;
}

// ---------------------------------------------------------------------------
// DMArchiveCacheImpl

DMArchiveCacheImpl::DMArchiveCacheImpl(DMMetaData* metadata, VELA_TempFile* file)
    : metadata_(metadata),
      file_(file),
      iterator_(std::make_unique<DMCacheIterator>(metadata, file)) {}

DMArchiveCacheImpl::~DMArchiveCacheImpl() {
  // The iterator points into the metadata and the file, so it goes first;
  // the metadata then goes before the file, an order callers' metadata and
  // file services may rely on. The members alone would free the file first.
  iterator_.reset();
  metadata_.reset();
}

unsigned int DMArchiveCacheImpl::addRecordFromIterator(DMAIterator* source) {
  if (source == nullptr) return kIteratorAppendFailed;
  const auto valueOf = [source](unsigned field, const void*& data, unsigned long& size) {
    void* value = nullptr;
    size = 0;
    const int status = source->GetRecordValue(field, value, size);
    data = value;
    return status;
  };
  if (!Append(iterator_->storages_, file_.get(), iterator_->fileLength_, valueOf))
    return kIteratorAppendFailed;
  return kAppended;
}

DMAIterator* DMArchiveCacheImpl::getIterator() {
  if (iterator_ == nullptr) return nullptr;
  // A rewind that fails leaves the iterator where it was; its reads then
  // fail for the same reason.
  (void)iterator_->Rewind();
  return iterator_.get();
}

int DMArchiveCacheImpl::addRecord(DMIterator* source, int* /*reserved*/) {
  if (source == nullptr || source->getValue == nullptr) return kAddRecordFailed;
  const auto valueOf = [source](unsigned field, const void*& data, unsigned long& size) {
    data = nullptr;
    size = 0;
    int32_t ignored = 0;
    return source->getValue(source->context, field, &data, &size, &ignored);
  };
  if (!Append(iterator_->storages_, file_.get(), iterator_->fileLength_, valueOf))
    return kAddRecordFailed;
  return kAppended;
}

// ---------------------------------------------------------------------------
// DMDataCacheFactory

DMDataCache* DMDataCacheFactory::create(DMMetaData* metadata, VELA_TempFile* file) {
  // Owned from here on, so that nothing leaks when the cache cannot be made:
  // the cache's memory is allocated before the pointers are released.
  std::unique_ptr<DMMetaData> ownedMetadata(metadata);
  std::unique_ptr<VELA_TempFile> ownedFile(file);
  try {
    return new DMArchiveCacheImpl(ownedMetadata.release(), ownedFile.release());
  } catch (const std::bad_alloc&) {
    return nullptr;
  }
}
