#include "csvreader.h"

#include <csv.h>
#include <sys/stat.h>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <memory>
#include <thread>
#include <vector>

#include "cellparse.h"
#include "toolio.h"

namespace dmtool {

CsvHandler::~CsvHandler() = default;

namespace {

// Bytes handed to the parser per call: large enough that the per-call cost
// vanishes, small enough to stay in the cache.
constexpr std::size_t kChunkSize = 1 << 18;
// Files shorter than this finish before a progress bar would help.
constexpr long long kProgressMinBytes = 16LL << 20;

struct FileCloser {
  void operator()(std::FILE* file) const { std::fclose(file); }
};

struct ParserFree {
  void operator()(csv_parser* parser) const { csv_free(parser); }
};

// The state the libcsv callbacks share; they are C functions, so it travels
// as their user pointer.
struct ReadState {
  CsvHandler* handler = nullptr;
  std::vector<std::string> header;
  bool inHeader = true;
  std::size_t column = 0;
  long long dataRows = 0;
  std::string error;
};

std::string RowName(long long dataRow) {
  // The header is row 1, so data row n is row n + 1 of the file.
  return "row " + std::to_string(dataRow + 1);
}

void OnField(void* data, std::size_t size, void* user) {
  auto& state = *static_cast<ReadState*>(user);
  if (!state.error.empty()) return;
  const std::string_view cell(static_cast<const char*>(data), size);
  const auto where = [&state] {
    return (state.inHeader ? std::string("the header") : RowName(state.dataRows + 1)) +
           ", column " + std::to_string(state.column + 1);
  };
  if (!IsValidUtf8(cell)) {
    state.error = where() + ": the text is not valid UTF-8";
    return;
  }
  if (const int control = FirstForbiddenControl(cell); control >= 0) {
    char code[16];
    std::snprintf(code, sizeof code, "0x%02X", static_cast<unsigned>(control));
    state.error = where() + ": the text holds the control character " + code +
                  ", which a metadata document cannot carry";
    return;
  }
  if (state.inHeader) {
    state.header.emplace_back(cell);
  } else if (state.column < state.header.size()) {
    state.handler->OnCell(state.column, cell);
  } else if (state.column == state.header.size()) {
    state.error = RowName(state.dataRows + 1) + " has more cells than the header's " +
                  std::to_string(state.header.size());
  }
  ++state.column;
}

void OnRow(int /*terminator*/, void* user) {
  auto& state = *static_cast<ReadState*>(user);
  if (!state.error.empty()) return;
  if (state.inHeader) {
    // A byte-order mark is no part of the first column's name.
    if (!state.header.empty() && state.header[0].rfind("\xEF\xBB\xBF", 0) == 0) {
      state.header[0].erase(0, 3);
    }
    state.handler->OnHeader(state.header);
    state.inHeader = false;
  } else {
    ++state.dataRows;
    if (state.column < state.header.size()) {
      state.error = RowName(state.dataRows) + " has " + std::to_string(state.column) +
                    (state.column == 1 ? " cell" : " cells") + ", the header has " +
                    std::to_string(state.header.size());
    }
  }
  state.column = 0;
}

class ProgressBar {
 public:
  ProgressBar(bool enabled, long long total)
      : enabled_(enabled && total >= kProgressMinBytes), total_(total) {}
  ~ProgressBar() {
    if (shown_ >= 0) std::fputs("\r\033[K", stderr);
  }
  ProgressBar(const ProgressBar&) = delete;
  ProgressBar& operator=(const ProgressBar&) = delete;

  void Update(long long done) {
    if (!enabled_) return;
    const int percent = static_cast<int>(done * 100 / total_);
    if (percent == shown_) return;
    shown_ = percent;
    constexpr int kWidth = 40;
    const int filled = percent * kWidth / 100;
    std::fprintf(stderr, "\rprofiling [%.*s%*s] %3d%%", filled,
                 "========================================", kWidth - filled, "", percent);
    std::fflush(stderr);
  }

 private:
  bool enabled_;
  long long total_;
  int shown_ = -1;
};

}  // namespace

namespace {

// Reads bytes [begin, end) of the file at `path` (to its end for a negative
// `end`). Without `header` the first row is the header; with it, `header`
// names the columns and every row is data.
CsvResult ReadPart(const std::string& path, long long begin, long long end,
                   const std::vector<std::string>* header, CsvHandler& handler, bool showProgress) {
  CsvResult result;
  std::unique_ptr<std::FILE, FileCloser> file(std::fopen(path.c_str(), "rb"));
  struct stat info {};
  if (!file || fstat(fileno(file.get()), &info) != 0) {
    result.exitCode = kExitUsage;
    result.error = "cannot open " + path + ": " + std::strerror(errno);
    return result;
  }
  if (S_ISDIR(info.st_mode)) {
    result.exitCode = kExitUsage;
    result.error = "cannot read " + path + ": it is a directory";
    return result;
  }
  if (begin > 0 && fseeko(file.get(), static_cast<off_t>(begin), SEEK_SET) != 0) {
    result.exitCode = kExitUsage;
    result.error = "cannot read " + path + ": " + std::strerror(errno);
    return result;
  }

  auto parser = std::make_unique<csv_parser>();
  if (csv_init(parser.get(), CSV_STRICT | CSV_STRICT_FINI) != 0) {
    result.exitCode = kExitUsage;
    result.error = "cannot start the CSV parser";
    return result;
  }
  // csv_free releases the parser's buffers; the struct itself is `parser`'s.
  std::unique_ptr<csv_parser, ParserFree> parserBuffers(parser.get());

  ReadState state;
  state.handler = &handler;
  if (header != nullptr) {
    state.header = *header;
    state.inHeader = false;
    handler.OnHeader(state.header);
  }
  ProgressBar progress(showProgress, static_cast<long long>(info.st_size));
  std::vector<char> buffer(kChunkSize);
  long long done = 0;
  long long left = end < 0 ? -1 : end - begin;
  bool any = false;
  while (state.error.empty() && left != 0) {
    const std::size_t want = left < 0 ? buffer.size() : std::min<std::size_t>(buffer.size(), left);
    const std::size_t got = std::fread(buffer.data(), 1, want, file.get());
    if (got == 0) break;
    any = true;
    if (csv_parse(parser.get(), buffer.data(), got, OnField, OnRow, &state) != got &&
        state.error.empty()) {
      state.error = RowName(state.dataRows + (state.inHeader ? 0 : 1)) + ": " +
                    csv_strerror(csv_error(parser.get()));
    }
    done += static_cast<long long>(got);
    if (left > 0) left -= static_cast<long long>(got);
    progress.Update(done);
  }
  if (std::ferror(file.get())) {
    result.exitCode = kExitUsage;
    result.error = "cannot read " + path + ": " + std::strerror(errno);
    return result;
  }
  if (state.error.empty() && csv_fini(parser.get(), OnField, OnRow, &state) != 0) {
    state.error = RowName(state.dataRows + 1) + ": " + csv_strerror(csv_error(parser.get()));
  }
  if (state.error.empty() && header == nullptr && (!any || state.inHeader)) {
    state.error = "the file is empty: there is no header row naming the columns";
  }
  result.dataRows = state.dataRows;
  if (!state.error.empty()) {
    result.exitCode = kExitRejected;
    result.error = path + ": " + state.error;
  }
  return result;
}

// Keeps the header row's names and refuses any data row.
class HeaderReader : public CsvHandler {
 public:
  void OnHeader(const std::vector<std::string>& names) override { names_ = names; }
  void OnCell(std::size_t /*column*/, std::string_view /*cell*/) override { data_ = true; }

  std::vector<std::string> names_;
  bool data_ = false;
};

// Reads bytes [begin, end) of `file` to the end of the range or of the file.
// Calls `visit(block, size)` for each piece; false on a read error.
template <typename Visit>
bool ReadBytes(std::FILE* file, long long begin, long long end, Visit visit) {
  if (fseeko(file, static_cast<off_t>(begin), SEEK_SET) != 0) return false;
  std::vector<char> buffer(kChunkSize);
  long long left = end - begin;
  while (left > 0) {
    const std::size_t got =
        std::fread(buffer.data(), 1, std::min<std::size_t>(buffer.size(), left), file);
    if (got == 0) return std::ferror(file) == 0;
    if (!visit(buffer.data(), got)) return true;
    left -= static_cast<long long>(got);
  }
  return true;
}

// The number of quote characters in bytes [begin, end) of the file at
// `path`, or -1 when it cannot be read.
long long CountQuotes(const std::string& path, long long begin, long long end) {
  std::unique_ptr<std::FILE, FileCloser> file(std::fopen(path.c_str(), "rb"));
  if (!file) return -1;
  long long quotes = 0;
  const bool read =
      ReadBytes(file.get(), begin, end, [&quotes](const char* data, std::size_t size) {
        // memchr skips the long runs between quotes many bytes at a time.
        const char* at = data;
        const char* const stop = data + size;
        while ((at = static_cast<const char*>(
                    std::memchr(at, '"', static_cast<std::size_t>(stop - at)))) != nullptr) {
          ++quotes;
          ++at;
        }
        return true;
      });
  return read ? quotes : -1;
}

// The offset after the first line feed at or after `from` (and before `end`)
// that an even number of quotes precede, counting `quotes` before `from`;
// -1 when there is none.
long long RowEnd(std::FILE* file, long long from, long long end, long long quotes) {
  long long at = from;
  long long found = -1;
  bool odd = (quotes & 1) != 0;
  const bool read = ReadBytes(file, from, end, [&](const char* data, std::size_t size) {
    for (std::size_t i = 0; i < size; ++i) {
      if (data[i] == '"') {
        odd = !odd;
      } else if (data[i] == '\n' && !odd) {
        found = at + static_cast<long long>(i) + 1;
        return false;
      }
    }
    at += static_cast<long long>(size);
    return true;
  });
  return read ? found : -1;
}

}  // namespace

CsvResult ReadCsv(const std::string& path, CsvHandler& handler, bool showProgress) {
  return ReadPart(path, 0, -1, nullptr, handler, showProgress);
}

CsvResult ReadCsvRows(const std::string& path, long long begin, long long end,
                      const std::vector<std::string>& header, CsvHandler& handler) {
  return ReadPart(path, begin, end, &header, handler, false);
}

bool SplitCsv(const std::string& path, std::size_t parts, CsvSplit& split) {
  std::unique_ptr<std::FILE, FileCloser> file(std::fopen(path.c_str(), "rb"));
  struct stat info {};
  if (!file || fstat(fileno(file.get()), &info) != 0 || !S_ISREG(info.st_mode) || parts == 0) {
    return false;
  }
  const long long size = info.st_size;
  const long long headerEnd = RowEnd(file.get(), 0, size, 0);
  if (headerEnd <= 0) return false;
  HeaderReader header;
  if (ReadPart(path, 0, headerEnd, nullptr, header, false).exitCode != kExitOk || header.data_ ||
      header.names_.empty()) {
    return false;
  }

  // The quotes of each slice, counted at once; a cut then needs only the
  // parity of the quotes before its slice.
  std::vector<long long> starts;
  for (std::size_t i = 0; i < parts; ++i) {
    starts.push_back(headerEnd + (size - headerEnd) * static_cast<long long>(i) /
                                     static_cast<long long>(parts));
  }
  starts.push_back(size);
  std::vector<long long> quotes(parts, 0);
  std::vector<std::thread> counters;
  for (std::size_t i = 1; i < parts; ++i) {
    counters.emplace_back(
        [&path, &starts, &quotes, i] { quotes[i] = CountQuotes(path, starts[i], starts[i + 1]); });
  }
  quotes[0] = CountQuotes(path, starts[0], starts[1]);
  for (std::thread& counter : counters) counter.join();
  if (std::find(quotes.begin(), quotes.end(), -1) != quotes.end()) return false;

  split.header = std::move(header.names_);
  split.bounds = {headerEnd};
  long long before = 0;
  for (std::size_t i = 1; i < parts; ++i) {
    before += quotes[i - 1];
    // A slice without a row end of its own joins the part before it.
    const long long cut = RowEnd(file.get(), starts[i], starts[i + 1], before);
    if (cut > split.bounds.back() && cut < size) split.bounds.push_back(cut);
  }
  split.bounds.push_back(size);
  return true;
}

}  // namespace dmtool
