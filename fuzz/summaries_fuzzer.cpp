// The dataset-summary document: one that parses writes, reads back and
// writes the same text again.

#include <cstddef>
#include <cstdint>
#include <string>

#include "dmcommon/summaries/dmdatasetsummaries.h"
#include "fuzz/fuzz_support.h"

namespace {

constexpr char kTarget[] = "summaries";

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  const std::string text = dmfuzz::AsText(data, size);
  const DMDatasetSummaries summaries = DMDatasetSummaries::fromText(text.c_str());
  if (!summaries.parseSuccess()) return 0;

  // What the reader accepts, the writer must be able to write.
  const std::string first = dmfuzz::Written(summaries);
  dmfuzz::Require(!first.empty(), kTarget, "a document that parses writes nothing");

  const DMDatasetSummaries copy(summaries);
  dmfuzz::Require(dmfuzz::Written(copy) == first, kTarget, "a copy writes other text:\n" + first);

  const DMDatasetSummaries reread = DMDatasetSummaries::fromText(first.c_str());
  dmfuzz::Require(reread.parseSuccess(), kTarget, "the written text does not parse:\n" + first);
  const std::string second = dmfuzz::Written(reread);
  dmfuzz::Require(second == first, kTarget,
                  "write, read, write is no fixed point:\n" + first + "\n" + second);
  return 0;
}
