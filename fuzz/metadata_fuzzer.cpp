// The metadata document: an accepted one exports, and to a fixed point of
// export, read, export; a rejected one is the empty container.

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "dmcommon/fields/dmfield.h"
#include "dmcommon/metadata/dmmetadata.h"
#include "dmcommon/xml/dmxmliteratorwrapper.h"
#include "dmcommon/xml/dmxmlresult.h"
#include "dmcommon/xml/dmxmlwrapper.h"
#include "fuzz/fuzz_support.h"

namespace {

constexpr char kTarget[] = "metadata";

using Storage = DMField::StorageType;
using GroupType = DMMetaData::GroupType;

void RequireEmpty(const DMMetaData& metadata) {
  dmfuzz::Require(metadata.FieldCount() == 0, kTarget, "rejected container has fields");
  dmfuzz::Require(metadata.GetSharedFormat(0u) == nullptr, kTarget,
                  "rejected container has shared formats");
  for (Storage storage : {Storage::Unknown, Storage::Integer, Storage::Real, Storage::String,
                          Storage::Date, Storage::Time, Storage::Timestamp}) {
    dmfuzz::Require(metadata.GetDefaultFormat(storage) == nullptr, kTarget,
                    "rejected container has a default format");
  }
  for (GroupType type : {GroupType::FieldGroup, GroupType::MultiCategorySet,
                         GroupType::MultiDichotomySet, GroupType::SplitGroup}) {
    dmfuzz::Require(metadata.FindFieldGroup(type, 0, "") == -1, kTarget,
                    "rejected container has field groups");
  }
  double badWeight = 0;
  double weightedDropped = 0;
  metadata.GetDroppedDetails(badWeight, weightedDropped);
  dmfuzz::Require(metadata.GetRecordCount(false) == -1 && metadata.GetRecordCount(true) == -1 &&
                      metadata.GetDroppedCount() == -1 && badWeight == -1 && weightedDropped == -1,
                  kTarget, "rejected container has record counts");
  dmfuzz::Require(metadata.getDatasetSummaries() == nullptr, kTarget,
                  "rejected container has dataset summaries");
  dmfuzz::Require(metadata.IsCaseSensitive(), kTarget, "case-folding appeared from nowhere");
  std::string xml = "untouched";
  dmfuzz::Require(!metadata.ExportXMLDoc(xml) && xml == "untouched", kTarget,
                  "the empty container exported");
}

// Whether the document's root has a first `Fields` child without any
// `Field`: such a document is accepted as a container without fields, which
// keeps what else the document held.
bool HasEmptyFields(const std::string& text) {
  DmExtension::DMXMLWrapper document;
  document.loadFromContents(text.c_str());
  if (document.getElement() == nullptr) return false;
  DmExtension::DMXMLIteratorWrapper* children = nullptr;
  void* fields = nullptr;
  if (document.getElementDirectIterator("Fields", &children) != DmExtension::DM_XML_OK ||
      children->nextItem(&fields) != DmExtension::DM_XML_OK) {
    return false;
  }
  void* field = nullptr;
  return static_cast<DmExtension::DMXMLWrapper*>(fields)->getElementDirectIterator(
             "Field", &children) == DmExtension::DM_XML_OK &&
         children->nextItem(&field) == DmExtension::DM_XML_NO_MORE_ITEMS;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  const std::string text = dmfuzz::AsText(data, size);
  const DMMetaData metadata(text, nullptr);
  // The Fields element is required, so a container without fields is a
  // rejected document, which must leave nothing behind, unless the document
  // had that element empty.
  if (metadata.FieldCount() == 0) {
    if (!HasEmptyFields(text)) RequireEmpty(metadata);
    return 0;
  }

  // What the reader accepts, the writer must be able to write, or a
  // dictionary would be lost on its next save.
  std::string first;
  dmfuzz::Require(metadata.ExportXMLDoc(first), kTarget, "an accepted document does not export");

  const DMMetaData copy(metadata);
  std::string copied;
  dmfuzz::Require(copy.ExportXMLDoc(copied) && copied == first, kTarget,
                  "a copy exports other text:\n" + first + "\n" + copied);

  const DMMetaData reread(first, nullptr);
  dmfuzz::Require(reread.FieldCount() == metadata.FieldCount(), kTarget,
                  "the export reads back with another field count:\n" + first);
  std::string second;
  dmfuzz::Require(reread.ExportXMLDoc(second), kTarget,
                  "the export reads back as a container that does not export:\n" + first);
  dmfuzz::Require(second == first, kTarget,
                  "export, read, export is no fixed point:\n" + first + "\n" + second);
  return 0;
}
