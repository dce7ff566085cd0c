#ifndef DMCOMMON_TOOLS_PROFILE_H
#define DMCOMMON_TOOLS_PROFILE_H

// `dmtool profile`: a dataset dictionary built from a CSV file in one pass.

#include <cstddef>
#include <memory>
#include <string>

#include "dmcommon/dmcommon.h"

namespace dmtool {

/// What `Profile` reads and how.
struct ProfileOptions {
  std::string csvPath;
  /// Text columns with more distinct values than this are typeless.
  std::size_t maxCategories = 250;
  /// Whether a progress bar may be shown on standard error (one thread only).
  bool progress = false;
  /// Threads profiling parts of the file at once; their profiles are pooled.
  std::size_t jobs = 1;
};

/// Reads the CSV file and builds its dictionary into `metadata`: one field
/// per column with storage, measurement level, display format, statistics
/// and category values, the record counts, and a dataset-summary document
/// with one field summary per field. Dates are kept as days since
/// 1970-01-01, times and timestamps as seconds. With more than one job the
/// file is cut into ranges of whole rows (see `SplitCsv`), profiled on that
/// many threads and the profiles pooled: the document equals the one-thread
/// document except for means, variances and standard deviations, which agree
/// up to floating-point rounding. Returns an `ExitCode`; on failure the
/// reason is on standard error and `metadata` is untouched.
int Profile(const ProfileOptions& options, std::unique_ptr<DMMetaData>& metadata);

}  // namespace dmtool

#endif  // DMCOMMON_TOOLS_PROFILE_H
