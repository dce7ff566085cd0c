// A field element: a field read with a name writes, reads back and writes
// the same text again; a field read without one is the default field.

#include <cstddef>
#include <cstdint>
#include <string>

#include "dmcommon/fields/dmfield.h"
#include "dmcommon/values/dmmissingvalues.h"
#include "dmcommon/xml/dmxmlwrapper.h"
#include "fuzz/fuzz_support.h"

namespace {

constexpr char kTarget[] = "field";

// The state of `DMField()`, as far as the getters show it.
void RequireDefault(const DMField& field) {
  const DMField fresh;
  const bool same =
      field.GetType() == fresh.GetType() && field.GetStorage() == fresh.GetStorage() &&
      field.GetRole() == fresh.GetRole() && field.GetSubRole().empty() &&
      field.GetMaxStringLength() == 0 && field.GetValues().empty() && field.GetLabel().empty() &&
      field.GetValueLabels().empty() && field.GetPrivateFormat() == nullptr &&
      field.GetFormatReference().empty() && field.GetModelField() == nullptr &&
      field.GetGeo() == nullptr && field.GetCatStats() == nullptr &&
      field.GetContStats() == nullptr && field.GetBaseField() == nullptr &&
      field.GetStructure() == fresh.GetStructure() &&
      field.GetStructureStorage() == fresh.GetStructureStorage() &&
      field.GetDepth() == fresh.GetDepth() && field.GetElementCount() == fresh.GetElementCount();
  dmfuzz::Require(same, kTarget, "a field read without a name is not the default field");
}

// Reads the root element of `text` as a field, the way it was written.
DMField ReadBack(const std::string& text, bool isBase) {
  DmExtension::DMXMLWrapper document;
  document.loadFromContents(text.c_str());
  dmfuzz::Require(document.getElement() != nullptr, kTarget,
                  "the written field does not parse:\n" + text);
  return DMField(document, isBase);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  // The first byte chooses between a field and a base field, so that both
  // readings are explored from the same corpus.
  if (size == 0) return 0;
  const bool isBase = (data[0] & 1) != 0;
  const std::string text = dmfuzz::AsText(data + 1, size - 1);

  DmExtension::DMXMLWrapper document;
  document.loadFromContents(text.c_str());
  const DMField field(document, isBase);
  if (field.GetName().empty()) {
    RequireDefault(field);
    return 0;
  }

  const std::string first = dmfuzz::Written(field, isBase);
  dmfuzz::Require(!first.empty(), kTarget, "a field read with a name writes nothing");
  const DMField copy(field);
  dmfuzz::Require(dmfuzz::Written(copy, isBase) == first, kTarget,
                  "a copy writes other text:\n" + first);

  const DMField reread = ReadBack(first, isBase);
  dmfuzz::Require(reread.GetName() == field.GetName(), kTarget,
                  "the written field reads back with another name:\n" + first);
  const std::string second = dmfuzz::Written(reread, isBase);
  dmfuzz::Require(second == first, kTarget,
                  "write, read, write is no fixed point:\n" + first + "\n" + second);
  return 0;
}
