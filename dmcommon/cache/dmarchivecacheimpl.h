#ifndef DMCOMMON_CACHE_DMARCHIVECACHEIMPL_H
#define DMCOMMON_CACHE_DMARCHIVECACHEIMPL_H

#include <cstdint>
#include <memory>
#include <utility>
#include <vector>

#include "dmcommon/cache/dmcacheinterface.h"
#include "dmcommon/dmcommon_export.h"
#include "dmcommon/fields/dmfield.h"

class DMMetaData;

/// Reads the records of a cache's temporary file back, one record at a time
/// from the first, into buffers of its own: an 8-byte buffer for each
/// Integer, Real, Date, Time and Timestamp field and a text buffer (1024
/// bytes at first, zero-filled, grown to fit) for each String field, built
/// from the metadata when the iterator is constructed. A field of any other
/// storage gets no buffer; the buffers of later fields then no longer line
/// up with their field numbers and `GetRecordValue` refuses every field. That
/// limitation is kept on purpose: callers depend on the refusal.
///
/// The field count and storage types are read from the metadata once, by
/// the constructor, and decide the layout for the iterator's life: the
/// metadata belongs to the cache, which never changes it, and looking it up
/// again for every value would cost more than the rest of the read.
///
/// The iterator and the cache that owns it share the file: the cache appends
/// at its end and counts the bytes in `getFileLength`, the iterator seeks to
/// its own position before every record, so appends and reads may be
/// interleaved.
class DMCOMMON_EXPORT DMCacheIterator : public DMAIterator {
 public:
  /// An iterator before the first record of `file`, whose records are laid
  /// out after `metadata` as it is now. Neither is owned; `file` must
  /// outlive the iterator. Either may be null, which makes reading fail.
  DMCacheIterator(DMMetaData* metadata, DMTempFiles::VELA_TempFile* file);
  DMCacheIterator(const DMCacheIterator&) = delete;
  DMCacheIterator& operator=(const DMCacheIterator&) = delete;
  /// Frees the record buffers.
  ~DMCacheIterator() override;

  /// Reads the record at the position into the buffers and moves past it.
  /// Returns 0 when a record was read; 1 at the end of the data (the
  /// position is at or beyond `getFileLength`); 2 on error: no metadata, no
  /// fields, no file, a short read, a value for a field of Unknown storage,
  /// or a failed allocation. After an error the position stays at the start
  /// of the failed record and the buffers may hold parts of it.
  int NextRecord() override;
  /// Points `data` at the buffer of `field` in the current record and sets
  /// `size` to its length (for a String field the length of its
  /// zero-terminated text, for the others 8), or sets them to null and 0 when
  /// the field is missing in the record; returns 0. The buffer is the
  /// iterator's, valid until the next `NextRecord`. Returns 1, with `data`
  /// null and `size` 0, before the first record, when `field` has no buffer,
  /// when not every field has one, or when the field does not exist or has
  /// Unknown storage.
  int GetRecordValue(unsigned long field, void*& data, unsigned long& size) override;
  /// Goes back to before the first record and returns 0. Returns 2, keeping
  /// the position, when there is no metadata, no field, no file, or the file
  /// is not valid.
  int Rewind() override;

  /// Sets the number of bytes of records in the file; the cache keeps it up
  /// to date as it appends. A caller that hands over a file already holding
  /// records sets it once.
  void setFileLength(int64_t length);
  /// The number of bytes of records in the file, counting the bytes of
  /// failed appends.
  int64_t getFileLength() const;
  /// The file offset of the next record to read: 0 before the first.
  int64_t GetPosition() const;
  /// The capacity in bytes of the record buffer at `index` (buffers are
  /// numbered in field order, skipping fields that have none); 0 when there
  /// is no such buffer.
  unsigned long GetBufferCapacity(unsigned long index) const;

 private:
  struct Buffer {
    std::unique_ptr<char[]> bytes;
    unsigned long capacity = 0;
    // For text buffers: the bytes from the start that may not be zero. The
    // rest is kept zero, so zero-filling before a read only has to clear
    // these.
    unsigned long used = 0;
  };

  // The cache appends after the same layout.
  friend class DMArchiveCacheImpl;

  [[nodiscard]] int ReadRecord();
  [[nodiscard]] bool ReadText(Buffer& buffer, int64_t offset, uint64_t length);

  int64_t position_ = 0;
  int64_t fileLength_ = 0;
  std::vector<Buffer> recordBuffer_;
  std::vector<bool> missingFlags_;
  DMMetaData* metadata_;
  DMTempFiles::VELA_TempFile* file_;
  // The storage type of each field, read from the metadata by the
  // constructor; empty without metadata.
  std::vector<DMField::StorageType> storages_;
};

/// A cache of the records of one dataset in a temporary file, laid out after
/// the dataset's metadata. For a dataset of n fields, a record is ceil(n / 8)
/// bytes of missing flags (bit 7 of the first byte for field 0, down to bit 0
/// for field 7, then the next byte; a set bit marks a missing value), then
/// the value of each field that is not missing, in field order: the 8 bytes
/// of an Integer, Real, Date, Time or Timestamp value, or for a String value
/// its byte count as an unsigned 64-bit integer followed by its bytes.
/// Integers are in the machine's byte order; records follow one another
/// without header or padding. A field of Unknown storage fails any record
/// with a value for it; fields of other storage numbers take no bytes.
///
/// The cache owns the metadata, the file and its iterator; the layout follows
/// the metadata as it is when the cache is created. Appends go to the end of
/// the file and may be interleaved with reads. A failed append leaves
/// the bytes it wrote in the file and counted in the iterator's file length,
/// so records read after it are not reliable; that is intended, the file is
/// never rewritten.
class DMCOMMON_EXPORT DMArchiveCacheImpl : public DMDataCache,
                                           public DmExtension::DMCacheInterface {
 public:
  /// A cache of `metadata`'s records in `file`; takes ownership of both,
  /// even when it throws. Either may be null, which makes every append fail.
  DMArchiveCacheImpl(DMMetaData* metadata, DMTempFiles::VELA_TempFile* file);
  DMArchiveCacheImpl(const DMArchiveCacheImpl&) = delete;
  DMArchiveCacheImpl& operator=(const DMArchiveCacheImpl&) = delete;
  /// Destroys the iterator, then the metadata, then the file.
  ~DMArchiveCacheImpl() override;

  /// Appends the record on which `source` is positioned, read through its
  /// `GetRecordValue`, and returns 0. Returns 0xFFFFFFFF on failure: no
  /// source, metadata, field or file, a file that is not valid, a non-zero
  /// status from the source, a value for a field of Unknown storage, a short
  /// write or an exception; the bytes written so far stay in the file.
  unsigned int addRecordFromIterator(DMAIterator* source) override;
  /// Rewinds the cache's iterator and returns it; the cache keeps ownership,
  /// so every call returns the same iterator. Null when there is none.
  DMAIterator* getIterator() override;
  /// Appends the current record of `source`, read through its `getValue`,
  /// and returns 0; `reserved` is not used. Returns 37 on the failures of
  /// `addRecordFromIterator`, and when `source` has no `getValue`.
  int addRecord(DMIterator* source, int* reserved) override;

 private:
  std::unique_ptr<DMMetaData> metadata_;
  std::unique_ptr<DMTempFiles::VELA_TempFile> file_;
  std::unique_ptr<DMCacheIterator> iterator_;
};

/// Creates record caches.
class DMCOMMON_EXPORT DMDataCacheFactory {
 public:
  /// A new `DMArchiveCacheImpl` over `metadata` and `file`, owned by the
  /// caller; the cache owns both arguments. Null when the cache cannot be
  /// allocated; both arguments are then destroyed.
  static DMDataCache* create(DMMetaData* metadata, DMTempFiles::VELA_TempFile* file);
};

#endif  // DMCOMMON_CACHE_DMARCHIVECACHEIMPL_H
