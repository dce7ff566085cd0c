#ifndef DMCOMMON_TOOLS_TOOLIO_H
#define DMCOMMON_TOOLS_TOOLIO_H

// What every subcommand of dmtool shares: exit codes, reading and writing
// files, the XML layer's lifetime, and loading a metadata document.

#include <memory>
#include <string>

#include "dmcommon/dmcommon.h"

namespace dmtool {

/// The exit codes of dmtool. Scripts rely on them, so their numbers are fixed.
enum ExitCode : int {
  kExitOk = 0,        ///< success
  kExitRejected = 1,  ///< the input was read but its content was refused
  kExitUsage = 2,     ///< bad arguments, or a file that cannot be read or written
};

/// Starts the library's XML layer for the lifetime of the object.
class XmlSession {
 public:
  XmlSession();
  ~XmlSession();
  XmlSession(const XmlSession&) = delete;
  XmlSession& operator=(const XmlSession&) = delete;
};

/// While alive, sends what is written to standard output to standard error
/// instead, or nowhere with `discard`. The XML layer prints the parser's
/// complaints to standard output, which would corrupt a document or table
/// that dmtool writes there.
class StdoutToStderr {
 public:
  explicit StdoutToStderr(bool discard = false);
  ~StdoutToStderr();
  StdoutToStderr(const StdoutToStderr&) = delete;
  StdoutToStderr& operator=(const StdoutToStderr&) = delete;

 private:
  int saved_;
};

/// Reads the whole file at `path` into `text`. Returns false, with a message
/// on standard error naming the file and the reason, when it cannot be read.
bool ReadFile(const std::string& path, std::string& text);

/// Writes `text` to the file at `path`, or to standard output when `path` is
/// empty or "-". A trailing NUL that the XML layer leaves inside the text is
/// not written. Returns false, with a message on standard error, on failure.
bool WriteOutput(const std::string& path, const std::string& text);

/// The outcome of `LoadMetaData`.
enum class LoadResult {
  kLoaded,      ///< the document was accepted
  kUnreadable,  ///< the file could not be read (message printed)
  kRejected,    ///< the library refused the document (message printed)
};

/// Reads the metadata document at `path` into `metadata`. The library's
/// all-or-nothing reader gives no reason for a refusal, so the message points
/// at `dmtool check`.
LoadResult LoadMetaData(const std::string& path, std::unique_ptr<DMMetaData>& metadata);

/// The exit code that `result` stands for.
int ExitCodeOf(LoadResult result);

}  // namespace dmtool

#endif  // DMCOMMON_TOOLS_TOOLIO_H
