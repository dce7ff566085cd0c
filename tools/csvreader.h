#ifndef DMCOMMON_TOOLS_CSVREADER_H
#define DMCOMMON_TOOLS_CSVREADER_H

// One streaming pass over a CSV file (RFC 4180: quoted fields with embedded
// commas, quotes and newlines) through libcsv. The first row names the
// columns; every later row must have as many cells, all valid UTF-8.

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace dmtool {

/// Receives the rows of a CSV file as the reader meets them.
class CsvHandler {
 public:
  virtual ~CsvHandler();
  /// The column names of the header row, called once before any cell.
  virtual void OnHeader(const std::vector<std::string>& names) = 0;
  /// One cell of a data row. `cell` points into the parser's buffer and is
  /// valid only during the call.
  virtual void OnCell(std::size_t column, std::string_view cell) = 0;
};

/// The result of `ReadCsv`.
struct CsvResult {
  int exitCode = 0;        ///< an `ExitCode`
  long long dataRows = 0;  ///< rows after the header
  std::string error;       ///< why the file was refused; empty on success
};

/// Reads the CSV file at `path` and hands its header and cells to `handler`.
/// Stops at the first problem: a file that cannot be read (`kExitUsage`), or
/// an empty file, malformed quoting, a row whose cell count differs from the
/// header's, or a cell that is not UTF-8 (`kExitRejected`). With
/// `showProgress`, a progress bar on standard error follows a long file.
CsvResult ReadCsv(const std::string& path, CsvHandler& handler, bool showProgress);

/// Where a CSV file may be cut so that separate readers see whole rows.
struct CsvSplit {
  /// The column names of the header row.
  std::vector<std::string> header;
  /// Byte offsets: part i holds the data rows in [bounds[i], bounds[i + 1]).
  /// The first is the end of the header row, the last the file's size.
  std::vector<long long> bounds;
};

/// Reads the header row of the CSV file at `path` and cuts the rest into at
/// most `parts` ranges of whole rows of about equal size. A cut lands only
/// after a line feed preceded by an even number of quote characters: in a
/// file the strict parser accepts, quotes appear only around quoted cells and
/// doubled inside them, so exactly those line feeds end a row (a line feed
/// inside a quoted cell follows an odd number). Counting the quotes is the
/// only pass before the parts are read, and it runs on `parts` threads.
/// Returns false when the file cannot be read or its header row not parsed;
/// a file the strict parser refuses may still be cut, at wrong places after
/// its first fault, but the part holding that fault refuses it as well.
bool SplitCsv(const std::string& path, std::size_t parts, CsvSplit& split);

/// Reads the data rows in bytes [`begin`, `end`) of the CSV file at `path`,
/// a range of `SplitCsv`, and hands `header` and then the cells to `handler`.
/// Fails as `ReadCsv` does, except that row numbers in the error count from
/// the range's first row.
CsvResult ReadCsvRows(const std::string& path, long long begin, long long end,
                      const std::vector<std::string>& header, CsvHandler& handler);

}  // namespace dmtool

#endif  // DMCOMMON_TOOLS_CSVREADER_H
