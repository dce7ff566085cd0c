// `dmtool profile` on arbitrary bytes: the CSV reader, the type inference and
// the statistics of every column, and the dictionary built from them.
//
// Invariants: the result is success or a rejected file (never an I/O error:
// the bytes sit in an in-memory file); an accepted file gives a dictionary
// with at least one field that exports, and its export reads back and exports
// to the same text; cutting the file for two threads gives the same verdict
// and the same fields as one thread.

#include <sys/mman.h>
#include <unistd.h>

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>

#include "dmcommon/metadata/dmmetadata.h"
#include "fuzz/fuzz_support.h"
#include "tools/profile.h"

namespace {

constexpr char kTarget[] = "profile";
constexpr int kAccepted = 0;
constexpr int kRejected = 1;

// An in-memory file holding `data`, reachable by path through /proc.
class MemoryFile {
 public:
  MemoryFile(const uint8_t* data, std::size_t size) : fd_(memfd_create("csv", MFD_CLOEXEC)) {
    dmfuzz::Require(fd_ >= 0, kTarget, "memfd_create failed");
    std::size_t written = 0;
    while (written < size) {
      const ssize_t put = write(fd_, data + written, size - written);
      dmfuzz::Require(put > 0, kTarget, "writing the in-memory file failed");
      written += static_cast<std::size_t>(put);
    }
  }
  ~MemoryFile() { close(fd_); }
  MemoryFile(const MemoryFile&) = delete;
  MemoryFile& operator=(const MemoryFile&) = delete;

  std::string Path() const { return "/proc/self/fd/" + std::to_string(fd_); }

 private:
  int fd_;
};

std::string Exported(const DMMetaData& metadata) {
  std::string xml;
  dmfuzz::Require(metadata.ExportXMLDoc(xml), kTarget,
                  "an accepted file's dictionary does not export");
  return xml;
}

int ProfileWith(const std::string& path, std::size_t jobs, std::unique_ptr<DMMetaData>& metadata) {
  dmtool::ProfileOptions options;
  options.csvPath = path;
  // Small, so that short inputs reach the typeless branch too.
  options.maxCategories = 8;
  options.jobs = jobs;
  return dmtool::Profile(options, metadata);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  if (size > 1 << 16) return 0;
  const MemoryFile file(data, size);
  std::unique_ptr<DMMetaData> metadata;
  const int rc = ProfileWith(file.Path(), 1, metadata);
  dmfuzz::Require(rc == kAccepted || rc == kRejected, kTarget,
                  "result " + std::to_string(rc) + " for bytes in memory");
  if (rc == kRejected) {
    dmfuzz::Require(metadata == nullptr, kTarget, "a rejected file left a dictionary");
  } else {
    dmfuzz::Require(metadata != nullptr && metadata->FieldCount() > 0, kTarget,
                    "an accepted file gave no fields");
    const std::string first = Exported(*metadata);
    const DMMetaData read(first, nullptr);
    dmfuzz::Require(Exported(read) == first, kTarget, "export, read, export is not a fixed point");
  }
  // Threads only for some inputs: they cost more than the rest of a run.
  if (size > 0 && (data[0] & 1) != 0) {
    std::unique_ptr<DMMetaData> split;
    const int splitRc = ProfileWith(file.Path(), 2, split);
    dmfuzz::Require(splitRc == rc, kTarget, "two threads gave another verdict than one");
    if (rc == kAccepted) {
      dmfuzz::Require(split->FieldCount() == metadata->FieldCount(), kTarget,
                      "two threads gave another number of fields");
      for (unsigned i = 0; i < metadata->FieldCount(); ++i) {
        dmfuzz::Require(
            split->GetField(i)->GetName() == metadata->GetField(i)->GetName() &&
                split->GetField(i)->GetStorage() == metadata->GetField(i)->GetStorage() &&
                split->GetField(i)->GetType() == metadata->GetField(i)->GetType(),
            kTarget, "two threads gave field " + std::to_string(i) + " otherwise");
      }
    }
  }
  return 0;
}
