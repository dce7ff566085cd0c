#include "dmcommon/cache/dmarchivecacheimpl.h"

#include <algorithm>
#include <cstdint>
#include <memory>
#include <optional>
#include <ostream>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "dmcommon/cache/dmcacheinterface.h"
#include "dmcommon/cache/dmtempfile.h"
#include "dmcommon/fields/dmfield.h"
#include "dmcommon/metadata/dmmetadata.h"
#include "tests/cache/cachetest.h"

namespace {

using dmtest::Byte;
using dmtest::Integer;
using dmtest::kOutsideStorage;
using dmtest::Length;
using dmtest::MemoryTempFile;
using dmtest::PlainSource;
using dmtest::Real;
using dmtest::Record;
using dmtest::RecordSource;
using dmtest::Storage;
using dmtest::ValueOf;

constexpr unsigned int kIteratorAppendFailed = 0xFFFFFFFF;
constexpr int kAddRecordFailed = 37;

// A cache over metadata of the given storages and a file in memory, with
// pointers to what it owns so that tests can look inside.
struct TestCache {
  std::unique_ptr<DMArchiveCacheImpl> cache;
  DMMetaData* metadata = nullptr;
  MemoryTempFile* file = nullptr;
  DMCacheIterator* iterator = nullptr;
};

TestCache MakeCache(const std::vector<Storage>& storages, bool* fileDestroyed = nullptr) {
  TestCache made;
  auto metadata = dmtest::MakeMetaData(storages);
  auto file = std::make_unique<MemoryTempFile>(fileDestroyed);
  made.metadata = metadata.get();
  made.file = file.get();
  made.cache = std::make_unique<DMArchiveCacheImpl>(metadata.release(), file.release());
  made.iterator = dynamic_cast<DMCacheIterator*>(made.cache->getIterator());
  return made;
}

int Add(DMArchiveCacheImpl& cache, Record record) {
  PlainSource source(std::move(record));
  return cache.addRecord(source.get(), nullptr);
}

unsigned int AddFromIterator(DMArchiveCacheImpl& cache, Record record) {
  RecordSource source(std::move(record));
  return cache.addRecordFromIterator(&source);
}

// Every value of the iterator's current record.
Record CurrentRecord(DMAIterator& iterator, size_t fields) {
  Record record;
  for (size_t i = 0; i < fields; ++i) record.push_back(ValueOf(iterator, i));
  return record;
}

// ---------------------------------------------------------------------------
// Record layout

TEST(DMArchiveCacheImplTest, WritesFlagByteThenValuesWithoutPadding) {
  TestCache made = MakeCache({Storage::Real, Storage::String, Storage::Integer});
  ASSERT_EQ(Add(*made.cache, {Real(1.5), std::string("abc"), Integer(-42)}), 0);
  const std::string expected = Byte(0x00) + Real(1.5) + Length(3) + "abc" + Integer(-42);
  EXPECT_EQ(made.file->bytes, expected);
  EXPECT_EQ(made.iterator->getFileLength(), static_cast<int64_t>(expected.size()));
}

TEST(DMArchiveCacheImplTest, WritesRecordsOneAfterAnother) {
  TestCache made = MakeCache({Storage::Date, Storage::String});
  ASSERT_EQ(Add(*made.cache, {Real(10.0), std::string("x")}), 0);
  ASSERT_EQ(Add(*made.cache, {std::nullopt, std::string("yz")}), 0);
  EXPECT_EQ(made.file->bytes, Byte(0x00) + Real(10.0) + Length(1) + "x" +  //
                                  Byte(0x80) + Length(2) + "yz");
  EXPECT_EQ(made.iterator->getFileLength(), 1 + 8 + 8 + 1 + 1 + 8 + 2);
}

TEST(DMArchiveCacheImplTest, NineFieldsWriteTwoFlagBytesWithField8InBit7OfTheSecond) {
  TestCache made = MakeCache(std::vector<Storage>(9, Storage::Integer));
  Record record;
  for (int i = 0; i < 9; ++i) record.push_back(Integer(i));
  record[1].reset();
  record[7].reset();
  record[8].reset();
  ASSERT_EQ(Add(*made.cache, record), 0);
  std::string expected = Byte(0x41) + Byte(0x80);
  for (int i : {0, 2, 3, 4, 5, 6}) expected += Integer(i);
  EXPECT_EQ(made.file->bytes, expected);

  ASSERT_EQ(made.iterator->NextRecord(), 0);
  EXPECT_EQ(CurrentRecord(*made.iterator, 9), record);
}

TEST(DMArchiveCacheImplTest, FlagsOfAllMissingRecordLeaveUnusedLowBitsZero) {
  TestCache made = MakeCache(std::vector<Storage>(3, Storage::Real));
  ASSERT_EQ(Add(*made.cache, Record(3)), 0);
  EXPECT_EQ(made.file->bytes, Byte(0xE0));
}

TEST(DMArchiveCacheImplTest, RecordWithAllFieldsMissingOccupiesOnlyItsFlagBytes) {
  TestCache made = MakeCache(std::vector<Storage>(9, Storage::String));
  ASSERT_EQ(Add(*made.cache, Record(9)), 0);
  EXPECT_EQ(made.file->bytes, Byte(0xFF) + Byte(0x80));
  EXPECT_EQ(made.iterator->getFileLength(), 2);

  ASSERT_EQ(made.iterator->NextRecord(), 0);
  EXPECT_EQ(CurrentRecord(*made.iterator, 9), Record(9));
  EXPECT_EQ(made.iterator->GetPosition(), 2);
  EXPECT_EQ(made.iterator->NextRecord(), 1);
}

TEST(DMArchiveCacheImplTest, SixteenFieldsWriteBothFlagBytesBeforeTheValues) {
  TestCache made = MakeCache(std::vector<Storage>(16, Storage::Time));
  Record record(16);
  record[15] = Real(3.0);
  ASSERT_EQ(Add(*made.cache, record), 0);
  EXPECT_EQ(made.file->bytes, Byte(0xFF) + Byte(0xFE) + Real(3.0));
  ASSERT_EQ(made.iterator->NextRecord(), 0);
  EXPECT_EQ(CurrentRecord(*made.iterator, 16), record);
}

TEST(DMArchiveCacheImplTest, EveryNumericStorageTakesEightBytes) {
  TestCache made = MakeCache(
      {Storage::Integer, Storage::Real, Storage::Date, Storage::Time, Storage::Timestamp});
  const Record record = {Integer(1), Real(2.5), Real(3.5), Real(4.5), Real(5.5)};
  ASSERT_EQ(Add(*made.cache, record), 0);
  EXPECT_EQ(made.file->bytes,
            Byte(0x00) + Integer(1) + Real(2.5) + Real(3.5) + Real(4.5) + Real(5.5));
  ASSERT_EQ(made.iterator->NextRecord(), 0);
  EXPECT_EQ(CurrentRecord(*made.iterator, 5), record);
}

TEST(DMArchiveCacheImplTest, WritesNumericValuesAsSuppliedAndReadsEightBytes) {
  // The source's size is taken as it is; a 4-byte value shifts the record,
  // which is why sources must supply 8.
  TestCache made = MakeCache({Storage::Integer, Storage::Integer});
  ASSERT_EQ(Add(*made.cache, {std::string("abcd"), std::string("efghijkl")}), 0);
  EXPECT_EQ(made.file->bytes, Byte(0x00) + "abcdefghijkl");
  EXPECT_EQ(made.iterator->NextRecord(), 2);
}

TEST(DMArchiveCacheImplTest, EmptyTextIsAValueNotAMissingField) {
  TestCache made = MakeCache({Storage::String});
  ASSERT_EQ(Add(*made.cache, {std::string()}), 0);
  EXPECT_EQ(made.file->bytes, Byte(0x00) + Length(0));
  ASSERT_EQ(made.iterator->NextRecord(), 0);
  void* data = nullptr;
  unsigned long size = 99;
  ASSERT_EQ(made.iterator->GetRecordValue(0, data, size), 0);
  EXPECT_NE(data, nullptr);
  EXPECT_EQ(size, 0u);
}

TEST(DMArchiveCacheImplTest, SeeksToTheEndBeforeEveryAppend) {
  TestCache made = MakeCache({Storage::Real});
  made.file->bytes = "earlier";
  ASSERT_EQ(Add(*made.cache, {Real(1.0)}), 0);
  EXPECT_EQ(made.file->seeks, (std::vector<std::pair<long long, int>>{{0, 2}}));
  EXPECT_EQ(made.file->bytes, "earlier" + Byte(0x00) + Real(1.0));
}

TEST(DMArchiveCacheImplTest, IgnoresTheFilesSeekResult) {
  TestCache made = MakeCache({Storage::Real});
  made.file->seekResult = -1;
  ASSERT_EQ(Add(*made.cache, {Real(1.0)}), 0);
  ASSERT_EQ(made.iterator->NextRecord(), 0);
  EXPECT_EQ(ValueOf(*made.iterator, 0), Real(1.0));
}

// ---------------------------------------------------------------------------
// Storage types the layout does not cover

TEST(DMArchiveCacheImplTest, ValueForUnknownStorageFailsTheAppendAfterItsFlags) {
  TestCache made = MakeCache({Storage::Real, Storage::Unknown});
  EXPECT_EQ(Add(*made.cache, {Real(1.0), std::string("x")}), kAddRecordFailed);
  // The flags and the value before it stay, and are counted.
  EXPECT_EQ(made.file->bytes, Byte(0x00) + Real(1.0));
  EXPECT_EQ(made.iterator->getFileLength(), 9);
  EXPECT_EQ(AddFromIterator(*made.cache, {Real(1.0), std::string("x")}), kIteratorAppendFailed);
}

TEST(DMArchiveCacheImplTest, MissingUnknownStorageFieldLetsRecordsPass) {
  TestCache made = MakeCache({Storage::Real, Storage::Unknown});
  ASSERT_EQ(Add(*made.cache, {Real(1.0), std::nullopt}), 0);
  ASSERT_EQ(Add(*made.cache, {Real(2.0), std::nullopt}), 0);
  EXPECT_EQ(made.file->bytes, Byte(0x40) + Real(1.0) + Byte(0x40) + Real(2.0));
  EXPECT_EQ(made.iterator->NextRecord(), 0);
  EXPECT_EQ(made.iterator->NextRecord(), 0);
  EXPECT_EQ(made.iterator->NextRecord(), 1);
  // The Unknown field has no buffer, so no value can be fetched.
  void* data = nullptr;
  unsigned long size = 0;
  EXPECT_EQ(made.iterator->GetRecordValue(0, data, size), 1);
}

TEST(DMArchiveCacheImplTest, ReadFailsWhenTheRecordHoldsAValueForUnknownStorage) {
  TestCache made = MakeCache({Storage::Real, Storage::Unknown});
  made.file->bytes = Byte(0x00) + Real(1.0) + "x";
  made.iterator->setFileLength(static_cast<int64_t>(made.file->bytes.size()));
  EXPECT_EQ(made.iterator->NextRecord(), 2);
  EXPECT_EQ(made.iterator->GetPosition(), 0);
}

TEST(DMArchiveCacheImplTest, StorageOutsideTheEnumerationTakesNoBytes) {
  TestCache made = MakeCache({Storage::Real, kOutsideStorage, Storage::String});
  ASSERT_EQ(Add(*made.cache, {Real(1.0), std::string("ignored"), std::string("ab")}), 0);
  ASSERT_EQ(Add(*made.cache, {Real(2.0), std::nullopt, std::string("c")}), 0);
  EXPECT_EQ(made.file->bytes, Byte(0x00) + Real(1.0) + Length(2) + "ab" +  //
                                  Byte(0x40) + Real(2.0) + Length(1) + "c");
  // Two buffers for three fields.
  EXPECT_EQ(made.iterator->GetBufferCapacity(0), 8u);
  EXPECT_EQ(made.iterator->GetBufferCapacity(1), 1024u);
  EXPECT_EQ(made.iterator->GetBufferCapacity(2), 0u);
}

TEST(DMArchiveCacheImplTest, FieldWithoutBufferKeepsRecordsReadableButRefusesEveryValue) {
  TestCache made = MakeCache({Storage::Real, kOutsideStorage, Storage::String});
  ASSERT_EQ(Add(*made.cache, {Real(1.0), std::string("ignored"), std::string("ab")}), 0);
  ASSERT_EQ(Add(*made.cache, {Real(2.0), std::nullopt, std::string("c")}), 0);
  ASSERT_EQ(made.iterator->NextRecord(), 0);
  EXPECT_EQ(made.iterator->GetPosition(), 1 + 8 + 8 + 2);
  void* data = nullptr;
  unsigned long size = 0;
  for (unsigned long field = 0; field < 3; ++field) {
    EXPECT_EQ(made.iterator->GetRecordValue(field, data, size), 1) << field;
    EXPECT_EQ(data, nullptr);
    EXPECT_EQ(size, 0u);
  }
  ASSERT_EQ(made.iterator->NextRecord(), 0);
  EXPECT_EQ(made.iterator->NextRecord(), 1);
}

// ---------------------------------------------------------------------------
// Text buffers

TEST(DMArchiveCacheImplTest, ReadsTextOf2000BytesWholeGrowingTheBufferTo2001) {
  TestCache made = MakeCache({Storage::String});
  std::string text(2000, 'q');
  text[1999] = 'z';
  ASSERT_EQ(Add(*made.cache, {text}), 0);
  EXPECT_EQ(made.iterator->GetBufferCapacity(0), 1024u);
  ASSERT_EQ(made.iterator->NextRecord(), 0);
  EXPECT_EQ(made.iterator->GetBufferCapacity(0), 2001u);
  void* data = nullptr;
  unsigned long size = 0;
  ASSERT_EQ(made.iterator->GetRecordValue(0, data, size), 0);
  EXPECT_EQ(size, 2000u);
  EXPECT_EQ(std::string(static_cast<const char*>(data), 2001), text + '\0');
}

TEST(DMArchiveCacheImplTest, TextBufferGrowsOnlyWhenTheTerminatorNoLongerFits) {
  TestCache made = MakeCache({Storage::String});
  ASSERT_EQ(Add(*made.cache, {std::string(1023, 'a')}), 0);
  ASSERT_EQ(Add(*made.cache, {std::string(1024, 'b')}), 0);
  ASSERT_EQ(Add(*made.cache, {std::string(10, 'c')}), 0);
  ASSERT_EQ(made.iterator->NextRecord(), 0);
  EXPECT_EQ(made.iterator->GetBufferCapacity(0), 1024u);
  EXPECT_EQ(ValueOf(*made.iterator, 0), std::string(1023, 'a'));
  ASSERT_EQ(made.iterator->NextRecord(), 0);
  EXPECT_EQ(made.iterator->GetBufferCapacity(0), 1025u);
  EXPECT_EQ(ValueOf(*made.iterator, 0), std::string(1024, 'b'));
  // A shorter text keeps the grown buffer.
  ASSERT_EQ(made.iterator->NextRecord(), 0);
  EXPECT_EQ(made.iterator->GetBufferCapacity(0), 1025u);
  EXPECT_EQ(ValueOf(*made.iterator, 0), std::string(10, 'c'));
}

TEST(DMArchiveCacheImplTest, ShorterTextLeavesTheRestOfTheBufferZero) {
  TestCache made = MakeCache({Storage::String, Storage::String});
  ASSERT_EQ(Add(*made.cache, {std::string("abcdefgh"), std::string(1500, 'L')}), 0);
  ASSERT_EQ(Add(*made.cache, {std::string("xy"), std::string("s")}), 0);
  ASSERT_EQ(made.iterator->NextRecord(), 0);
  ASSERT_EQ(made.iterator->NextRecord(), 0);
  for (unsigned long field = 0; field < 2; ++field) {
    void* data = nullptr;
    unsigned long size = 0;
    ASSERT_EQ(made.iterator->GetRecordValue(field, data, size), 0);
    const char* bytes = static_cast<const char*>(data);
    const unsigned long capacity = made.iterator->GetBufferCapacity(field);
    EXPECT_EQ(std::string(bytes, size), field == 0 ? "xy" : "s");
    EXPECT_TRUE(std::all_of(bytes + size, bytes + capacity, [](char c) { return c == '\0'; }))
        << "field " << field;
  }
}

TEST(DMArchiveCacheImplTest, ReportsTextLengthUpToItsFirstZeroByte) {
  TestCache made = MakeCache({Storage::String});
  ASSERT_EQ(Add(*made.cache, {std::string("ab\0cd", 5)}), 0);
  EXPECT_EQ(made.file->bytes, Byte(0x00) + Length(5) + std::string("ab\0cd", 5));
  ASSERT_EQ(made.iterator->NextRecord(), 0);
  EXPECT_EQ(made.iterator->GetPosition(), 1 + 8 + 5);
  EXPECT_EQ(ValueOf(*made.iterator, 0), std::string("ab"));
}

TEST(DMArchiveCacheImplTest, CountBeyondTheFileFailsWithoutAllocatingIt) {
  TestCache made = MakeCache({Storage::String});
  made.file->bytes = Byte(0x00) + Length(uint64_t{1} << 40) + "abc";
  made.iterator->setFileLength(static_cast<int64_t>(made.file->bytes.size()));
  EXPECT_EQ(made.iterator->NextRecord(), 2);
  EXPECT_EQ(made.iterator->GetBufferCapacity(0), 1024u);
  EXPECT_EQ(made.iterator->GetPosition(), 0);
}

TEST(DMArchiveCacheImplTest, LongTextBeyondAnUnderstatedFileLengthIsStillReadWhole) {
  // A caller that hands over a file with records may state less than its
  // length; a record starting inside the stated length is read as it is.
  TestCache made = MakeCache({Storage::String});
  const std::string text(70000, 't');
  made.file->bytes = Byte(0x00) + Length(text.size()) + text;
  made.iterator->setFileLength(1);
  ASSERT_EQ(made.iterator->NextRecord(), 0);
  EXPECT_EQ(made.iterator->GetBufferCapacity(0), 70001u);
  EXPECT_EQ(ValueOf(*made.iterator, 0), text);
  EXPECT_EQ(made.iterator->GetPosition(), static_cast<int64_t>(1 + 8 + text.size()));
}

// ---------------------------------------------------------------------------
// Reading

TEST(DMArchiveCacheImplTest, NextRecordOnAnEmptyCacheReportsTheEnd) {
  TestCache made = MakeCache({Storage::Real});
  EXPECT_EQ(made.iterator->NextRecord(), 1);
  EXPECT_EQ(made.iterator->GetPosition(), 0);
}

TEST(DMArchiveCacheImplTest, GetRecordValueBeforeTheFirstRecordFails) {
  TestCache made = MakeCache({Storage::Real});
  ASSERT_EQ(Add(*made.cache, {Real(1.0)}), 0);
  static char stale = 0;
  void* data = &stale;
  unsigned long size = 7;
  EXPECT_EQ(made.iterator->GetRecordValue(0, data, size), 1);
  EXPECT_EQ(data, nullptr);
  EXPECT_EQ(size, 0u);
}

TEST(DMArchiveCacheImplTest, SeeksToItsPositionBeforeEveryRecord) {
  TestCache made = MakeCache({Storage::Real});
  ASSERT_EQ(Add(*made.cache, {Real(1.0)}), 0);
  made.file->seeks.clear();
  ASSERT_EQ(made.iterator->NextRecord(), 0);
  EXPECT_EQ(made.iterator->NextRecord(), 1);
  EXPECT_EQ(made.file->seeks, (std::vector<std::pair<long long, int>>{{0, 0}, {9, 0}}));
}

TEST(DMArchiveCacheImplTest, GetRecordValueGivesNumericBuffersWithSizeEight) {
  TestCache made = MakeCache({Storage::Integer, Storage::Real});
  ASSERT_EQ(Add(*made.cache, {Integer(77), std::nullopt}), 0);
  ASSERT_EQ(made.iterator->NextRecord(), 0);
  void* data = nullptr;
  unsigned long size = 0;
  ASSERT_EQ(made.iterator->GetRecordValue(0, data, size), 0);
  ASSERT_EQ(size, 8u);
  EXPECT_EQ(*static_cast<int64_t*>(data), 77);
  data = &size;
  ASSERT_EQ(made.iterator->GetRecordValue(1, data, size), 0);
  EXPECT_EQ(data, nullptr);
  EXPECT_EQ(size, 0u);
}

TEST(DMArchiveCacheImplTest, GetRecordValueRefusesAFieldBeyondTheBuffers) {
  TestCache made = MakeCache({Storage::Integer});
  ASSERT_EQ(Add(*made.cache, {Integer(1)}), 0);
  ASSERT_EQ(made.iterator->NextRecord(), 0);
  void* data = nullptr;
  unsigned long size = 0;
  EXPECT_EQ(made.iterator->GetRecordValue(1, data, size), 1);
}

TEST(DMArchiveCacheImplTest, RewindGoesBackToBeforeTheFirstRecord) {
  TestCache made = MakeCache({Storage::Integer});
  ASSERT_EQ(Add(*made.cache, {Integer(1)}), 0);
  ASSERT_EQ(Add(*made.cache, {Integer(2)}), 0);
  ASSERT_EQ(made.iterator->NextRecord(), 0);
  ASSERT_EQ(made.iterator->NextRecord(), 0);
  EXPECT_EQ(made.iterator->Rewind(), 0);
  EXPECT_EQ(made.iterator->GetPosition(), 0);
  void* data = nullptr;
  unsigned long size = 0;
  EXPECT_EQ(made.iterator->GetRecordValue(0, data, size), 1);
  ASSERT_EQ(made.iterator->NextRecord(), 0);
  EXPECT_EQ(ValueOf(*made.iterator, 0), Integer(1));
}

TEST(DMArchiveCacheImplTest, RewindFailsOnAFileThatIsNotValid) {
  TestCache made = MakeCache({Storage::Integer});
  ASSERT_EQ(Add(*made.cache, {Integer(1)}), 0);
  ASSERT_EQ(made.iterator->NextRecord(), 0);
  made.file->valid = false;
  EXPECT_EQ(made.iterator->Rewind(), 2);
  EXPECT_EQ(made.iterator->GetPosition(), 9);
}

TEST(DMArchiveCacheImplTest, GetIteratorAfterSomeRecordsStartsAgainFromTheFirst) {
  TestCache made = MakeCache({Storage::Integer});
  for (int i = 1; i <= 3; ++i) ASSERT_EQ(Add(*made.cache, {Integer(i)}), 0);
  DMAIterator* iterator = made.cache->getIterator();
  ASSERT_EQ(iterator->NextRecord(), 0);
  ASSERT_EQ(iterator->NextRecord(), 0);
  EXPECT_EQ(ValueOf(*iterator, 0), Integer(2));
  DMAIterator* again = made.cache->getIterator();
  EXPECT_EQ(again, iterator);
  ASSERT_EQ(again->NextRecord(), 0);
  EXPECT_EQ(ValueOf(*again, 0), Integer(1));
}

TEST(DMArchiveCacheImplTest, BothInterfacesHandOutTheSameIterator) {
  TestCache made = MakeCache({Storage::Integer});
  DMDataCache& asDataCache = *made.cache;
  DmExtension::DMCacheInterface& asCacheInterface = *made.cache;
  EXPECT_EQ(asDataCache.getIterator(), made.iterator);
  EXPECT_EQ(asCacheInterface.getIterator(), made.iterator);
  PlainSource source({Integer(5)});
  EXPECT_EQ(asCacheInterface.addRecord(source.get(), nullptr), 0);
  RecordSource other({Integer(6)});
  EXPECT_EQ(asDataCache.addRecordFromIterator(&other), 0u);
  EXPECT_EQ(made.file->bytes, Byte(0x00) + Integer(5) + Byte(0x00) + Integer(6));
}

TEST(DMArchiveCacheImplTest, AppendsAndReadsMayBeInterleaved) {
  TestCache made = MakeCache({Storage::String, Storage::Real});
  DMAIterator& iterator = *made.iterator;
  ASSERT_EQ(Add(*made.cache, {std::string("one"), Real(1.0)}), 0);
  ASSERT_EQ(iterator.NextRecord(), 0);
  EXPECT_EQ(CurrentRecord(iterator, 2), (Record{std::string("one"), Real(1.0)}));
  EXPECT_EQ(iterator.NextRecord(), 1);
  ASSERT_EQ(Add(*made.cache, {std::nullopt, Real(2.0)}), 0);
  ASSERT_EQ(AddFromIterator(*made.cache, {std::string("three"), std::nullopt}), 0u);
  ASSERT_EQ(iterator.NextRecord(), 0);
  EXPECT_EQ(CurrentRecord(iterator, 2), (Record{std::nullopt, Real(2.0)}));
  ASSERT_EQ(Add(*made.cache, {std::string("four"), Real(4.0)}), 0);
  ASSERT_EQ(iterator.NextRecord(), 0);
  EXPECT_EQ(CurrentRecord(iterator, 2), (Record{std::string("three"), std::nullopt}));
  ASSERT_EQ(iterator.NextRecord(), 0);
  EXPECT_EQ(CurrentRecord(iterator, 2), (Record{std::string("four"), Real(4.0)}));
  EXPECT_EQ(iterator.NextRecord(), 1);
}

TEST(DMArchiveCacheImplTest, ReadsRecordsOfAFileHandedOverWithItsLength) {
  TestCache made = MakeCache({Storage::Integer, Storage::String});
  made.file->bytes =
      Byte(0x00) + Integer(3) + Length(2) + "hi" + Byte(0x80) + Length(0) + Byte(0xC0);
  made.iterator->setFileLength(static_cast<int64_t>(made.file->bytes.size()));
  EXPECT_EQ(made.iterator->getFileLength(), 29);
  ASSERT_EQ(made.iterator->NextRecord(), 0);
  EXPECT_EQ(CurrentRecord(*made.iterator, 2), (Record{Integer(3), std::string("hi")}));
  ASSERT_EQ(made.iterator->NextRecord(), 0);
  EXPECT_EQ(CurrentRecord(*made.iterator, 2), (Record{std::nullopt, std::string()}));
  ASSERT_EQ(made.iterator->NextRecord(), 0);
  EXPECT_EQ(CurrentRecord(*made.iterator, 2), Record(2));
  EXPECT_EQ(made.iterator->NextRecord(), 1);
}

// ---------------------------------------------------------------------------
// Copying from cache to cache

TEST(DMArchiveCacheImplTest, CopyThroughAddRecordFromIteratorReproducesEveryRecord) {
  const std::vector<Storage> storages = {Storage::Integer, Storage::String, Storage::Real,
                                         Storage::Date,    Storage::Time,   Storage::Timestamp,
                                         Storage::String,  Storage::Real,   Storage::Integer};
  TestCache from = MakeCache(storages);
  std::vector<Record> records;
  for (int r = 0; r < 40; ++r) {
    Record record;
    for (size_t f = 0; f < storages.size(); ++f) {
      if ((r + static_cast<int>(f)) % 5 == 0) {
        record.emplace_back();
      } else if (storages[f] == Storage::String) {
        record.emplace_back(
            std::string(static_cast<size_t>(r * 37 % 1500), static_cast<char>('a' + r % 26)));
      } else if (storages[f] == Storage::Integer) {
        record.emplace_back(Integer(r * 1000 + static_cast<int>(f)));
      } else {
        record.emplace_back(Real(r + static_cast<double>(f) / 10.0));
      }
    }
    ASSERT_EQ(Add(*from.cache, record), 0);
    records.push_back(std::move(record));
  }

  TestCache to = MakeCache(storages);
  DMAIterator* source = from.cache->getIterator();
  int copied = 0;
  while (source->NextRecord() == 0) {
    ASSERT_EQ(to.cache->addRecordFromIterator(source), 0u);
    ++copied;
  }
  EXPECT_EQ(copied, 40);
  EXPECT_EQ(to.file->bytes, from.file->bytes);

  DMAIterator* copy = to.cache->getIterator();
  for (const Record& record : records) {
    ASSERT_EQ(copy->NextRecord(), 0);
    EXPECT_EQ(CurrentRecord(*copy, storages.size()), record);
  }
  EXPECT_EQ(copy->NextRecord(), 1);
}

TEST(DMArchiveCacheImplTest, CopyFromAnIteratorBeforeItsFirstRecordFails) {
  TestCache from = MakeCache({Storage::Integer});
  ASSERT_EQ(Add(*from.cache, {Integer(1)}), 0);
  TestCache to = MakeCache({Storage::Integer});
  EXPECT_EQ(to.cache->addRecordFromIterator(from.cache->getIterator()), kIteratorAppendFailed);
  EXPECT_TRUE(to.file->bytes.empty());
}

// ---------------------------------------------------------------------------
// Appends that fail

TEST(DMArchiveCacheImplTest, AppendFailsWithoutSourceMetadataFieldsOrUsableFile) {
  TestCache made = MakeCache({Storage::Integer});
  EXPECT_EQ(made.cache->addRecord(nullptr, nullptr), kAddRecordFailed);
  EXPECT_EQ(made.cache->addRecordFromIterator(nullptr), kIteratorAppendFailed);
  DMIterator noFunction{nullptr, nullptr, nullptr};
  EXPECT_EQ(made.cache->addRecord(&noFunction, nullptr), kAddRecordFailed);
  made.file->valid = false;
  EXPECT_EQ(Add(*made.cache, {Integer(1)}), kAddRecordFailed);
  EXPECT_EQ(AddFromIterator(*made.cache, {Integer(1)}), kIteratorAppendFailed);
  EXPECT_EQ(made.file->writes, 0);

  DMArchiveCacheImpl noMetadata(nullptr, new MemoryTempFile);
  EXPECT_EQ(Add(noMetadata, {Integer(1)}), kAddRecordFailed);
  EXPECT_EQ(AddFromIterator(noMetadata, {Integer(1)}), kIteratorAppendFailed);

  DMArchiveCacheImpl noFields(new DMMetaData(nullptr), new MemoryTempFile);
  EXPECT_EQ(Add(noFields, {}), kAddRecordFailed);
  EXPECT_EQ(AddFromIterator(noFields, {}), kIteratorAppendFailed);

  DMArchiveCacheImpl noFile(dmtest::MakeMetaData({Storage::Integer}).release(), nullptr);
  EXPECT_EQ(Add(noFile, {Integer(1)}), kAddRecordFailed);
  EXPECT_EQ(AddFromIterator(noFile, {Integer(1)}), kIteratorAppendFailed);
}

TEST(DMArchiveCacheImplTest, SourceFailingWhileFlagsAreGatheredWritesOnlyFinishedFlagBytes) {
  TestCache made = MakeCache(std::vector<Storage>(10, Storage::Integer));
  Record record(10, Integer(1));
  PlainSource source(record);
  source.failAtCall = 3;
  EXPECT_EQ(made.cache->addRecord(source.get(), nullptr), kAddRecordFailed);
  EXPECT_TRUE(made.file->bytes.empty());

  // At field 9 the first flag byte is finished and written.
  PlainSource later(record);
  later.failAtCall = 10;
  EXPECT_EQ(made.cache->addRecord(later.get(), nullptr), kAddRecordFailed);
  EXPECT_EQ(made.file->bytes, Byte(0x00));
  EXPECT_EQ(made.iterator->getFileLength(), 1);
}

TEST(DMArchiveCacheImplTest, SourceFailingWhileValuesAreWrittenLeavesTheCountedPart) {
  TestCache made = MakeCache({Storage::Integer, Storage::String, Storage::Integer});
  RecordSource source({Integer(1), std::string("ab"), Integer(3)});
  // Three calls for the flags, then field 0 and field 1 again.
  source.failAtCall = 5;
  EXPECT_EQ(made.cache->addRecordFromIterator(&source), kIteratorAppendFailed);
  EXPECT_EQ(made.file->bytes, Byte(0x00) + Integer(1));
  EXPECT_EQ(made.iterator->getFileLength(), 9);
  // The half record makes the file unreliable from there on: its text count
  // is taken from the next record's first bytes (0x00 0x04: 1024 bytes),
  // more than the file holds.
  ASSERT_EQ(Add(*made.cache, {Integer(4), std::string("cd"), Integer(6)}), 0);
  EXPECT_EQ(made.iterator->getFileLength(), 9 + 1 + 8 + 8 + 2 + 8);
  EXPECT_EQ(made.iterator->NextRecord(), 2);
}

TEST(DMArchiveCacheImplTest, ExceptionFromTheSourceFailsTheAppend) {
  TestCache made = MakeCache({Storage::Integer, Storage::Integer});
  RecordSource source({Integer(1), Integer(2)});
  source.throwAtCall = 4;
  EXPECT_EQ(made.cache->addRecordFromIterator(&source), kIteratorAppendFailed);
  EXPECT_EQ(made.file->bytes, Byte(0x00) + Integer(1));
  EXPECT_EQ(made.iterator->getFileLength(), 9);
}

TEST(DMArchiveCacheImplTest, ExceptionFromTheFileFailsTheAppend) {
  TestCache made = MakeCache({Storage::Integer});
  made.file->throwOnWrite = 2;
  EXPECT_EQ(Add(*made.cache, {Integer(1)}), kAddRecordFailed);
  EXPECT_EQ(made.iterator->getFileLength(), 1);
}

// Each row plans one short write: which write, how many of its bytes get
// through, and the file length then counted.
struct ShortWriteCase {
  int write;
  size_t bytes;
  int64_t fileLength;
};

void PrintTo(const ShortWriteCase& row, std::ostream* out) {
  *out << "write " << row.write << " stores " << row.bytes << " bytes";
}

class ShortWriteTest : public ::testing::TestWithParam<ShortWriteCase> {};

TEST_P(ShortWriteTest, FailsBothAppendsAndCountsWhatGotThrough) {
  // Writes: flag byte 1, flag byte 2, the Integer, the count, the text.
  const std::vector<Storage> storages = {Storage::Integer, Storage::Real, Storage::Real,
                                         Storage::Real,    Storage::Real, Storage::Real,
                                         Storage::Real,    Storage::Real, Storage::String};
  Record record(9);
  record[0] = Integer(1);
  record[8] = std::string("abcdef");
  for (bool plain : {true, false}) {
    TestCache made = MakeCache(storages);
    made.file->shortWrite = GetParam().write;
    made.file->shortWriteBytes = GetParam().bytes;
    if (plain) {
      EXPECT_EQ(Add(*made.cache, record), kAddRecordFailed);
    } else {
      EXPECT_EQ(AddFromIterator(*made.cache, record), kIteratorAppendFailed);
    }
    EXPECT_EQ(made.iterator->getFileLength(), GetParam().fileLength);
    EXPECT_EQ(made.file->bytes.size(), static_cast<size_t>(GetParam().fileLength));
  }
}

INSTANTIATE_TEST_SUITE_P(DMArchiveCacheImplTest, ShortWriteTest,
                         ::testing::Values(ShortWriteCase{1, 0, 0}, ShortWriteCase{2, 0, 1},
                                           ShortWriteCase{3, 5, 7}, ShortWriteCase{4, 7, 17},
                                           ShortWriteCase{5, 0, 18}, ShortWriteCase{5, 5, 23}));

TEST(DMArchiveCacheImplTest, AppendSucceedsAgainAfterAShortWrite) {
  TestCache made = MakeCache({Storage::Integer});
  made.file->shortWrite = 2;
  EXPECT_EQ(Add(*made.cache, {Integer(1)}), kAddRecordFailed);
  EXPECT_EQ(Add(*made.cache, {Integer(2)}), 0);
  EXPECT_EQ(made.file->bytes, Byte(0x00) + Byte(0x00) + Integer(2));
  EXPECT_EQ(made.iterator->getFileLength(), 10);
}

// ---------------------------------------------------------------------------
// Reads that fail

// Each row plans one short read of the record {Integer 7, "abcdef"} laid out
// with 9 fields: which read and how many of its bytes arrive.
struct ShortReadCase {
  const char* what;
  int read;
  size_t bytes;
};

void PrintTo(const ShortReadCase& row, std::ostream* out) { *out << row.what; }

class ShortReadTest : public ::testing::TestWithParam<ShortReadCase> {};

TEST_P(ShortReadTest, FailsTheReadAndKeepsThePosition) {
  // Reads: flag byte 1, flag byte 2, the Integer, the count, the text.
  std::vector<Storage> storages(9, Storage::Real);
  storages[0] = Storage::Integer;
  storages[8] = Storage::String;
  TestCache made = MakeCache(storages);
  Record record(9);
  record[0] = Integer(7);
  record[8] = std::string("abcdef");
  ASSERT_EQ(Add(*made.cache, record), 0);
  ASSERT_EQ(Add(*made.cache, record), 0);
  ASSERT_EQ(made.iterator->NextRecord(), 0);
  const int64_t second = made.iterator->GetPosition();
  made.file->reads = 0;
  made.file->shortRead = GetParam().read;
  made.file->shortReadBytes = GetParam().bytes;
  EXPECT_EQ(made.iterator->NextRecord(), 2) << GetParam().what;
  EXPECT_EQ(made.iterator->GetPosition(), second);
  // With the fault gone the record reads whole.
  made.file->shortRead = 0;
  ASSERT_EQ(made.iterator->NextRecord(), 0);
  EXPECT_EQ(CurrentRecord(*made.iterator, 9), record);
}

INSTANTIATE_TEST_SUITE_P(DMArchiveCacheImplTest, ShortReadTest,
                         ::testing::Values(ShortReadCase{"first flag byte", 1, 0},
                                           ShortReadCase{"second flag byte", 2, 0},
                                           ShortReadCase{"integer", 3, 7},
                                           ShortReadCase{"text count", 4, 3},
                                           ShortReadCase{"text", 5, 5}));

TEST(DMArchiveCacheImplTest, ShortTextReadLeavesWhatArrivedFollowedByZeros) {
  TestCache made = MakeCache({Storage::String});
  ASSERT_EQ(Add(*made.cache, {std::string("abcdefgh")}), 0);
  ASSERT_EQ(Add(*made.cache, {std::string("wxyz")}), 0);
  ASSERT_EQ(made.iterator->NextRecord(), 0);
  made.file->reads = 0;
  made.file->shortRead = 3;
  made.file->shortReadBytes = 2;
  EXPECT_EQ(made.iterator->NextRecord(), 2);
  void* data = nullptr;
  unsigned long size = 0;
  ASSERT_EQ(made.iterator->GetRecordValue(0, data, size), 0);
  EXPECT_EQ(size, 2u);
  EXPECT_EQ(std::string(static_cast<const char*>(data), 9), std::string("wx\0\0\0\0\0\0\0", 9));
}

TEST(DMArchiveCacheImplTest, ShortReadOfAGrowingTextFails) {
  TestCache made = MakeCache({Storage::String});
  ASSERT_EQ(Add(*made.cache, {std::string(3000, 'g')}), 0);
  made.file->shortRead = 3;
  made.file->shortReadBytes = 100;
  EXPECT_EQ(made.iterator->NextRecord(), 2);
  EXPECT_EQ(made.iterator->GetPosition(), 0);
}

TEST(DMArchiveCacheImplTest, ExceptionFromTheFileFailsTheRead) {
  TestCache made = MakeCache({Storage::Integer});
  ASSERT_EQ(Add(*made.cache, {Integer(1)}), 0);
  made.file->throwOnRead = 2;
  EXPECT_EQ(made.iterator->NextRecord(), 2);
  EXPECT_EQ(made.iterator->GetPosition(), 0);
}

TEST(DMArchiveCacheImplTest, ReadingFailsWithoutMetadataFieldsOrFile) {
  DMArchiveCacheImpl noMetadata(nullptr, new MemoryTempFile);
  EXPECT_EQ(noMetadata.getIterator()->NextRecord(), 2);
  EXPECT_EQ(noMetadata.getIterator()->Rewind(), 2);

  DMArchiveCacheImpl noFields(new DMMetaData(nullptr), new MemoryTempFile);
  EXPECT_EQ(noFields.getIterator()->NextRecord(), 2);
  EXPECT_EQ(noFields.getIterator()->Rewind(), 2);

  DMArchiveCacheImpl noFile(dmtest::MakeMetaData({Storage::Integer}).release(), nullptr);
  EXPECT_EQ(noFile.getIterator()->NextRecord(), 2);
  EXPECT_EQ(noFile.getIterator()->Rewind(), 2);
  void* data = nullptr;
  unsigned long size = 0;
  EXPECT_EQ(noFile.getIterator()->GetRecordValue(0, data, size), 1);
}

// ---------------------------------------------------------------------------
// The layout is the metadata's when the cache is created

TEST(DMArchiveCacheImplTest, FieldAddedToTheMetadataLaterIsNotPartOfTheLayout) {
  TestCache made = MakeCache({Storage::Integer});
  ASSERT_GE(made.metadata->AppendField(DMField("late", DMField::FieldType::Continuous,
                                               Storage::Real, DMField::RoleType::Input)),
            0);
  PlainSource source({Integer(1), Real(2.0)});
  ASSERT_EQ(made.cache->addRecord(source.get(), nullptr), 0);
  EXPECT_EQ(source.calls, 2);
  EXPECT_EQ(made.file->bytes, Byte(0x00) + Integer(1));
  ASSERT_EQ(made.iterator->NextRecord(), 0);
  EXPECT_EQ(ValueOf(*made.iterator, 0), Integer(1));
  void* data = nullptr;
  unsigned long size = 0;
  EXPECT_EQ(made.iterator->GetRecordValue(1, data, size), 1);
}

TEST(DMArchiveCacheImplTest, StorageChangedInTheMetadataLaterKeepsTheLayout) {
  TestCache made = MakeCache({Storage::Real});
  const DMField text("f0", DMField::FieldType::Nominal, Storage::String, DMField::RoleType::Input);
  ASSERT_EQ(made.metadata->ReplaceField(0, &text), 0);
  ASSERT_EQ(Add(*made.cache, {Real(-1.25)}), 0);
  EXPECT_EQ(made.file->bytes, Byte(0x00) + Real(-1.25));
  ASSERT_EQ(made.iterator->NextRecord(), 0);
  EXPECT_EQ(ValueOf(*made.iterator, 0), Real(-1.25));
}

// ---------------------------------------------------------------------------
// Creation and ownership

TEST(DMArchiveCacheImplTest, FactoryCreatesACacheThatOwnsMetadataAndFile) {
  bool destroyed = false;
  auto* file = new MemoryTempFile(&destroyed);
  DMDataCache* cache =
      DMDataCacheFactory::create(dmtest::MakeMetaData({Storage::Integer}).release(), file);
  ASSERT_NE(dynamic_cast<DMArchiveCacheImpl*>(cache), nullptr);
  RecordSource source({Integer(9)});
  EXPECT_EQ(cache->addRecordFromIterator(&source), 0u);
  EXPECT_EQ(file->bytes, Byte(0x00) + Integer(9));
  DMAIterator* iterator = cache->getIterator();
  ASSERT_NE(iterator, nullptr);
  ASSERT_EQ(iterator->NextRecord(), 0);
  EXPECT_EQ(ValueOf(*iterator, 0), Integer(9));
  EXPECT_FALSE(destroyed);
  delete cache;
  EXPECT_TRUE(destroyed);
}

TEST(DMArchiveCacheImplTest, CacheOverALocalTempFileRoundTripsRecords) {
  auto* file = new DMTempFiles::LocalTempFile;
  ASSERT_EQ(file->isValid(), 1);
  std::unique_ptr<DMDataCache> cache(DMDataCacheFactory::create(
      dmtest::MakeMetaData({Storage::Real, Storage::String, Storage::Integer}).release(), file));
  auto& plain = dynamic_cast<DmExtension::DMCacheInterface&>(*cache);
  std::vector<Record> records;
  for (int i = 0; i < 5000; ++i) {
    Record record = {Real(i * 0.5), std::string(static_cast<size_t>(i % 40), 'k'), Integer(-i)};
    if (i % 7 == 0) record[1].reset();
    PlainSource source(record);
    ASSERT_EQ(plain.addRecord(source.get(), nullptr), 0);
    records.push_back(std::move(record));
  }
  DMAIterator* iterator = cache->getIterator();
  for (const Record& record : records) {
    ASSERT_EQ(iterator->NextRecord(), 0);
    ASSERT_EQ(CurrentRecord(*iterator, 3), record);
  }
  EXPECT_EQ(iterator->NextRecord(), 1);
}

}  // namespace
