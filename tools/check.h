#ifndef DMCOMMON_TOOLS_CHECK_H
#define DMCOMMON_TOOLS_CHECK_H

// `dmtool check`: whether the library accepts a metadata document, and when
// it does not, which part is at fault and why.

#include <string>

namespace dmtool {

/// Finds the first part of the metadata document `text` that the library's
/// reader refuses: the XML itself, a shared format or a default-format slot,
/// a field group, the record counts, a field (by position and name) or the
/// dataset summaries. Reads the parts one at a time with the library's own
/// constructors, in the order the reader does. Returns the reason in plain
/// words, or the empty text when no single part is at fault. Needs the XML
/// layer started.
std::string DiagnoseDocument(const std::string& text);

/// Loads the document at `path`: prints a one-line summary on standard
/// output and returns `kExitOk` when the library accepts it; prints the
/// diagnosis on standard error and returns `kExitRejected` when it does not;
/// `kExitUsage` when the file cannot be read.
int CheckDocument(const std::string& path);

}  // namespace dmtool

#endif  // DMCOMMON_TOOLS_CHECK_H
