// The record cache over a LocalTempFile, each direction beside its anchor in
// the same run, for 1,000,000 records of 10 Real fields and 2 String fields
// of 5 to 20 bytes (about 123 MB of records):
//   - Append/LocalTempFile: addRecord for every record from a plain
//     DMIterator source (one indirect call per value) into a new cache,
//     against Append/FwriteAnchor, one fwrite of the same number of bytes to
//     a new file in the same directory, flushed;
//   - Read/LocalTempFile: getIterator, then NextRecord and GetRecordValue for
//     every value of every record, against Read/FreadAnchor, one fread of the
//     whole cache file into memory.
// Each benchmark reports records per second ("records_per_second"; for the
// anchors, the records their bytes hold); compare the ratios within a run,
// not single times. Files go to $TMPDIR or /tmp.

#include <stdlib.h>

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <memory>
#include <random>
#include <string>
#include <vector>

#include <benchmark/benchmark.h>

#include "dmcommon/cache/dmarchivecacheimpl.h"
#include "dmcommon/cache/dmcacheinterface.h"
#include "dmcommon/cache/dmtempfile.h"
#include "dmcommon/fields/dmfield.h"
#include "dmcommon/metadata/dmmetadata.h"
#include "dmcommon/xml/dmxmlwrapper.h"

namespace {

using DMTempFiles::LocalTempFile;
using Storage = DMField::StorageType;

constexpr int64_t kRecords = 1'000'000;
constexpr unsigned kRealFields = 10;
constexpr unsigned kTextFields = 2;
constexpr unsigned kFields = kRealFields + kTextFields;
// Distinct records, served in turn; a pool this size keeps the source's own
// data in the processor's caches, so that the benchmark measures the cache.
constexpr size_t kPoolRecords = 4096;

// The values of the pooled records, as a source hands them out: the address
// and size of every field's value, record by record.
struct Value {
  const void* data;
  unsigned long size;
};

struct Pool {
  std::vector<double> reals;
  std::string text;
  std::vector<Value> values;
};

const Pool& Values() {
  static const Pool pool = [] {
    std::mt19937_64 random(42);
    std::normal_distribution<double> reals(100.0, 30.0);
    std::uniform_int_distribution<size_t> lengths(5, 20);
    std::uniform_int_distribution<int> letters('a', 'z');
    Pool built;
    std::vector<size_t> textStart;
    std::vector<size_t> textLength;
    for (size_t r = 0; r < kPoolRecords; ++r) {
      for (unsigned f = 0; f < kRealFields; ++f) built.reals.push_back(reals(random));
      for (unsigned f = 0; f < kTextFields; ++f) {
        textStart.push_back(built.text.size());
        textLength.push_back(lengths(random));
        for (size_t i = 0; i < textLength.back(); ++i) {
          built.text += static_cast<char>(letters(random));
        }
      }
    }
    // Addresses last, once the blocks no longer move.
    for (size_t r = 0; r < kPoolRecords; ++r) {
      for (unsigned f = 0; f < kRealFields; ++f) {
        built.values.push_back({&built.reals[r * kRealFields + f], sizeof(double)});
      }
      for (unsigned f = 0; f < kTextFields; ++f) {
        const size_t text = r * kTextFields + f;
        built.values.push_back({built.text.data() + textStart[text], textLength[text]});
      }
    }
    return built;
  }();
  return pool;
}

// The dataset: fields 0 to 9 Real, 10 and 11 String.
DMMetaData* MakeMetaData() {
  auto* metadata = new DMMetaData(nullptr);
  for (unsigned f = 0; f < kFields; ++f) {
    const bool text = f >= kRealFields;
    metadata->AppendField(
        DMField("field" + std::to_string(f),
                text ? DMField::FieldType::Nominal : DMField::FieldType::Continuous,
                text ? Storage::String : Storage::Real, DMField::RoleType::Input));
  }
  return metadata;
}

// A plain record source over the pool, on the values of one record.
struct Source {
  const Value* record;

  static int32_t GetValue(void* context, unsigned long field, const void** data,
                          unsigned long* size, int32_t* /*flag*/) {
    const Value& value = static_cast<const Source*>(context)->record[field];
    *data = value.data;
    *size = value.size;
    return 0;
  }
};

// Appends kRecords records; false when one fails.
bool Fill(DmExtension::DMCacheInterface& cache) {
  const Pool& pool = Values();
  Source source{nullptr};
  DMIterator iterator{&source, nullptr, &Source::GetValue};
  for (int64_t r = 0; r < kRecords; ++r) {
    source.record = &pool.values[static_cast<size_t>(r) % kPoolRecords * kFields];
    if (cache.addRecord(&iterator, nullptr) != 0) return false;
  }
  return true;
}

// The bytes kRecords records take in the file.
int64_t RecordBytes() {
  static const int64_t bytes = [] {
    const Pool& pool = Values();
    int64_t total = 0;
    for (int64_t r = 0; r < kRecords; ++r) {
      const Value* record = &pool.values[static_cast<size_t>(r) % kPoolRecords * kFields];
      total += 2 + kRealFields * 8;
      for (unsigned f = kRealFields; f < kFields; ++f) {
        total += 8 + static_cast<int64_t>(record[f].size);
      }
    }
    return total;
  }();
  return bytes;
}

void SetRecordRate(benchmark::State& state) {
  state.SetItemsProcessed(state.iterations() * kRecords);
  state.SetBytesProcessed(state.iterations() * RecordBytes());
  state.counters["records_per_second"] = benchmark::Counter(
      static_cast<double>(state.iterations() * kRecords), benchmark::Counter::kIsRate);
}

std::string Directory() {
  const char* directory = getenv("TMPDIR");
  return directory != nullptr && *directory != '\0' ? directory : "/tmp";
}

// A new empty file for an anchor, removed by the caller.
FILE* AnchorFile(std::string& path) {
  path = Directory() + "/dmcache-anchor-XXXXXX";
  const int fd = mkstemp(path.data());
  return fd < 0 ? nullptr : fdopen(fd, "w+b");
}

// ---------------------------------------------------------------------------
// Append

void BM_AppendLocalTempFile(benchmark::State& state) {
  Values();
  for (auto _ : state) {
    state.PauseTiming();
    auto* file = new LocalTempFile;
    std::unique_ptr<DMDataCache> cache(DMDataCacheFactory::create(MakeMetaData(), file));
    auto* plain = dynamic_cast<DmExtension::DMCacheInterface*>(cache.get());
    state.ResumeTiming();
    if (file->isValid() == 0 || plain == nullptr || !Fill(*plain)) {
      state.SkipWithError("append failed");
      break;
    }
    state.PauseTiming();
    const int64_t length = dynamic_cast<DMCacheIterator*>(cache->getIterator())->getFileLength();
    if (length != RecordBytes()) {
      state.ResumeTiming();
      state.SkipWithError("unexpected file length");
      break;
    }
    cache.reset();
    state.ResumeTiming();
  }
  SetRecordRate(state);
}

void BM_AppendFwriteAnchor(benchmark::State& state) {
  const std::vector<char> bytes(static_cast<size_t>(RecordBytes()), 'r');
  for (auto _ : state) {
    state.PauseTiming();
    std::string path;
    FILE* file = AnchorFile(path);
    state.ResumeTiming();
    if (file == nullptr || std::fwrite(bytes.data(), 1, bytes.size(), file) != bytes.size() ||
        std::fflush(file) != 0) {
      state.SkipWithError("fwrite failed");
      break;
    }
    state.PauseTiming();
    std::fclose(file);
    std::remove(path.c_str());
    state.ResumeTiming();
  }
  SetRecordRate(state);
}

// ---------------------------------------------------------------------------
// Read

// One cache of kRecords records with its file, filled on first use, read
// through once (so that every byte is in the file, not in its buffer) and
// kept for the run. Null members when it could not be filled.
struct Filled {
  std::unique_ptr<DMDataCache> cache;
  std::string path;
};

const Filled& FilledCache() {
  static const Filled filled = [] {
    Filled built;
    auto* file = new LocalTempFile;
    built.path = file->getName();
    built.cache.reset(DMDataCacheFactory::create(MakeMetaData(), file));
    auto* plain = dynamic_cast<DmExtension::DMCacheInterface*>(built.cache.get());
    if (file->isValid() == 0 || plain == nullptr || !Fill(*plain)) {
      built.cache.reset();
      return built;
    }
    DMAIterator* iterator = built.cache->getIterator();
    int64_t records = 0;
    while (iterator->NextRecord() == 0) ++records;
    if (records != kRecords) built.cache.reset();
    return built;
  }();
  return filled;
}

void BM_ReadLocalTempFile(benchmark::State& state) {
  DMDataCache* cache = FilledCache().cache.get();
  if (cache == nullptr) {
    state.SkipWithError("could not fill the cache");
    return;
  }
  for (auto _ : state) {
    DMAIterator* iterator = cache->getIterator();
    double sum = 0;
    unsigned long textBytes = 0;
    int64_t records = 0;
    while (iterator->NextRecord() == 0) {
      ++records;
      for (unsigned f = 0; f < kFields; ++f) {
        void* data = nullptr;
        unsigned long size = 0;
        if (iterator->GetRecordValue(f, data, size) != 0) break;
        if (f < kRealFields) {
          sum += *static_cast<const double*>(data);
        } else {
          textBytes += size;
        }
      }
    }
    if (records != kRecords) {
      state.SkipWithError("read failed");
      break;
    }
    benchmark::DoNotOptimize(sum);
    benchmark::DoNotOptimize(textBytes);
  }
  SetRecordRate(state);
}

void BM_ReadFreadAnchor(benchmark::State& state) {
  // The cache's own file, so that both read the same bytes from the same
  // pages.
  const Filled& filled = FilledCache();
  if (filled.cache == nullptr) {
    state.SkipWithError("could not fill the cache");
    return;
  }
  const std::string& path = filled.path;
  std::vector<char> bytes(static_cast<size_t>(RecordBytes()));
  for (auto _ : state) {
    state.PauseTiming();
    FILE* file = std::fopen(path.c_str(), "rb");
    state.ResumeTiming();
    if (file == nullptr || std::fread(bytes.data(), 1, bytes.size(), file) != bytes.size()) {
      if (file != nullptr) std::fclose(file);
      state.SkipWithError("fread failed");
      break;
    }
    benchmark::DoNotOptimize(bytes.data());
    state.PauseTiming();
    std::fclose(file);
    state.ResumeTiming();
  }
  SetRecordRate(state);
}

}  // namespace

int main(int argc, char** argv) {
  DmExtension::DMXMLWrapper::startup(false);
  benchmark::Initialize(&argc, argv);
  if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 1;
  benchmark::RegisterBenchmark("Append/LocalTempFile", BM_AppendLocalTempFile)
      ->Unit(benchmark::kMillisecond)
      ->UseRealTime();
  benchmark::RegisterBenchmark("Append/FwriteAnchor", BM_AppendFwriteAnchor)
      ->Unit(benchmark::kMillisecond)
      ->UseRealTime();
  benchmark::RegisterBenchmark("Read/LocalTempFile", BM_ReadLocalTempFile)
      ->Unit(benchmark::kMillisecond)
      ->UseRealTime();
  benchmark::RegisterBenchmark("Read/FreadAnchor", BM_ReadFreadAnchor)
      ->Unit(benchmark::kMillisecond)
      ->UseRealTime();
  benchmark::RunSpecifiedBenchmarks();
  benchmark::Shutdown();
  DmExtension::DMXMLWrapper::shutdown(false);
  return 0;
}
