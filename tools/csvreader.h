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

}  // namespace dmtool

#endif  // DMCOMMON_TOOLS_CSVREADER_H
