#include "csvreader.h"

#include <csv.h>
#include <sys/stat.h>

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <memory>
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
  if (!IsValidUtf8(cell)) {
    state.error = (state.inHeader ? std::string("the header") : RowName(state.dataRows + 1)) +
                  ", column " + std::to_string(state.column + 1) + ": the text is not valid UTF-8";
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

CsvResult ReadCsv(const std::string& path, CsvHandler& handler, bool showProgress) {
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
  ProgressBar progress(showProgress, static_cast<long long>(info.st_size));
  std::vector<char> buffer(kChunkSize);
  long long done = 0;
  bool any = false;
  while (state.error.empty()) {
    const std::size_t got = std::fread(buffer.data(), 1, buffer.size(), file.get());
    if (got == 0) break;
    any = true;
    if (csv_parse(parser.get(), buffer.data(), got, OnField, OnRow, &state) != got &&
        state.error.empty()) {
      state.error = RowName(state.dataRows + (state.inHeader ? 0 : 1)) + ": " +
                    csv_strerror(csv_error(parser.get()));
    }
    done += static_cast<long long>(got);
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
  if (state.error.empty() && (!any || state.inHeader)) {
    state.error = "the file is empty: there is no header row naming the columns";
  }
  result.dataRows = state.dataRows;
  if (!state.error.empty()) {
    result.exitCode = kExitRejected;
    result.error = path + ": " + state.error;
  }
  return result;
}

}  // namespace dmtool
