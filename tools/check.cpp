#include "check.h"

#include <iostream>
#include <memory>
#include <string_view>
#include <vector>

#include "toolio.h"

namespace dmtool {
namespace {

namespace Elements = DmCppHelperV1::XMLElements;
namespace Attributes = DmCppHelperV1::XMLAttributes;
namespace Entities = DmCppHelperV1::XMLEntities;

using DmExtension::DM_XML_OK;
using DmExtension::DMXMLIteratorWrapper;
using DmExtension::DMXMLWrapper;
using Storage = DMField::StorageType;
using Measure = DMField::FieldType;

// The direct child elements of `parent` named `name` (all of them for the
// empty name), in document order. Owned by `parent`.
std::vector<DMXMLWrapper*> Children(DMXMLWrapper& parent, const char* name) {
  std::vector<DMXMLWrapper*> children;
  DMXMLIteratorWrapper* iterator = nullptr;
  if (parent.getElementDirectIterator(name, &iterator) != DM_XML_OK || iterator == nullptr) {
    return children;
  }
  void* item = nullptr;
  while (iterator->nextItem(&item) == DM_XML_OK && item != nullptr) {
    children.push_back(static_cast<DMXMLWrapper*>(item));
  }
  return children;
}

DMXMLWrapper* FirstChild(DMXMLWrapper& parent, const char* name) {
  const std::vector<DMXMLWrapper*> children = Children(parent, name);
  return children.empty() ? nullptr : children.front();
}

std::string Attribute(const DMXMLWrapper& element, const char* name, bool* found = nullptr) {
  std::string value;
  bool present = false;
  element.getAttribute(name, value, present);
  if (found != nullptr) *found = present;
  return value;
}

std::string ElementName(const DMXMLWrapper& element) {
  std::string name;
  element.getName(name);
  return name;
}

std::string Quoted(const std::string& text) { return "\"" + text + "\""; }

// Why an enumerated attribute is refused: its text is no entity of `table`.
// An empty text counts as absent and passes.
std::string CheckEntity(const DMXMLWrapper& element, const char* attribute,
                        const DMEnumDictEntry* table) {
  const std::string text = Attribute(element, attribute);
  if (text.empty() || DMEnumDict::IndexOfText(table, text.c_str()) >= 0) return "";
  std::string allowed;
  for (int i = 0; table[i].text != nullptr; ++i) {
    allowed += (i == 0 ? "" : ", ") + std::string(table[i].text);
  }
  return "its " + std::string(attribute) + " " + Quoted(text) + " is none of " + allowed;
}

std::string CheckCount(const DMXMLWrapper& element, const char* attribute) {
  int value = 0;
  bool found = false;
  if (element.getAttribute(attribute, value, found) != DM_XML_OK) {
    return "its " + std::string(attribute) + " " + Quoted(Attribute(element, attribute)) +
           " is not an integer";
  }
  if (found && value < 0) {
    return "its " + std::string(attribute) + " " + std::to_string(value) + " is negative";
  }
  return "";
}

std::string CheckFlag(const DMXMLWrapper& element, const char* attribute) {
  bool found = false;
  const std::string text = Attribute(element, attribute, &found);
  if (!found || text == Entities::True || text == Entities::False) return "";
  return "its " + std::string(attribute) + " " + Quoted(text) + " is neither true nor false";
}

const char* StorageText(Storage storage) {
  const char* text = DMEnumDict::TextOfValue(gStorageDict, static_cast<unsigned>(storage));
  return text != nullptr ? text : "unknown";
}

// Why a `FieldFormat` or shared format element gives no format for
// `storage`; empty when it does.
std::string CheckFormatElement(const DMXMLWrapper& element, const Storage* storage) {
  const std::unique_ptr<DMFormat> format(DMField::FormatFromDOMNode(element));
  const std::string name = ElementName(element);
  if (format == nullptr) {
    if (name != Elements::NumberFormat && name != Elements::DecoratedFormat &&
        name != Elements::DateFormat && name != Elements::TimeFormat &&
        name != Elements::StringFormat) {
      return "<" + name + "> is not a format element";
    }
    return "its <" + name +
           "> cannot be read (a required attribute is missing or unknown, or the width is 0)";
  }
  if (storage != nullptr && !DMField::MatchesFormat(*storage, *format)) {
    return "its <" + name + "> cannot display " + StorageText(*storage) + " values";
  }
  return "";
}

// Why a field element is refused, following the field reader's rules.
std::string DiagnoseField(DMXMLWrapper& element, bool isBase) {
  bool found = false;
  if (Attribute(element, Attributes::Name, &found).empty()) return "it has no name";
  for (const auto& [attribute, table] :
       {std::pair{Attributes::Storage, gStorageDict}, std::pair{Attributes::Measure, gMeasureDict},
        std::pair{Attributes::Role, gRoleDict}, std::pair{Attributes::Structure, gStructureDict},
        std::pair{Attributes::StructureStorage, gStorageDict}}) {
    if (std::string why = CheckEntity(element, attribute, table); !why.empty()) return why;
  }
  for (const char* attribute :
       {Attributes::Depth, Attributes::ElementCount, Attributes::MaxStringLength}) {
    if (std::string why = CheckCount(element, attribute); !why.empty()) return why;
  }
  const std::string storageText = Attribute(element, Attributes::Storage);
  const int storageIndex = DMEnumDict::IndexOfText(gStorageDict, storageText.c_str());
  const auto storage =
      storageIndex < 0 ? Storage::Unknown : static_cast<Storage>(gStorageDict[storageIndex].value);
  const std::string measureText = Attribute(element, Attributes::Measure);
  const int measureIndex = DMEnumDict::IndexOfText(gMeasureDict, measureText.c_str());
  const auto measure =
      measureIndex < 0 ? Measure::Unknown : static_cast<Measure>(gMeasureDict[measureIndex].value);
  const bool categorical = measure == Measure::Nominal || measure == Measure::Ordinal ||
                           measure == Measure::Flag || measure == Measure::Discrete;

  for (DMXMLWrapper* missing : Children(element, Elements::MissingValues)) {
    for (const char* attribute :
         {Attributes::TreatNullAsMissing, Attributes::TreatWhitespaceAsMissing}) {
      if (std::string why = CheckFlag(*missing, attribute); !why.empty()) {
        return "its missing values: " + why;
      }
    }
  }
  for (DMXMLWrapper* format : Children(element, Elements::FieldFormat)) {
    if (!Attribute(*format, Attributes::UseNamedFormat).empty()) continue;
    for (DMXMLWrapper* child : Children(*format, "")) {
      if (std::string why = CheckFormatElement(*child, &storage); !why.empty()) {
        return "its display format: " + why;
      }
    }
  }
  if (!Children(element, Elements::DiscreteStatistics).empty() && !categorical) {
    return "it has categorical statistics but its measure " + Quoted(measureText) +
           " is not categorical";
  }
  for (DMXMLWrapper* stats : Children(element, Elements::ContinuousStatistics)) {
    if (measure != Measure::Continuous) {
      return "it has continuous statistics but its measure " + Quoted(measureText) +
             " is not continuous";
    }
    const double weight = storage == Storage::Integer ? DMContStatsInt(*stats).GetSumFreqWeights()
                                                      : DMContStatsDbl(*stats).GetSumFreqWeights();
    if (weight == 0.0) {
      return "its continuous statistics cannot be read or count no values (a required "
             "attribute is missing or not a number, a sum or the variance is negative, or "
             "the minimum is above the maximum)";
    }
  }
  if (!isBase) {
    for (DMXMLWrapper* base : Children(element, Elements::BaseField)) {
      if (DMField(*base, true).GetName().empty()) {
        const std::string why = DiagnoseField(*base, true);
        return "its base field cannot be read" + (why.empty() ? "" : ": " + why);
      }
    }
  }
  return "";
}

std::string DiagnoseFormats(DMXMLWrapper& root, DMMetaData& scratch) {
  DMXMLWrapper* formats = FirstChild(root, Elements::FieldFormats);
  if (formats == nullptr) return "";
  int index = 0;
  for (DMXMLWrapper* child : Children(*formats, "")) {
    ++index;
    const std::string where = "shared format #" + std::to_string(index) + " " +
                              Quoted(Attribute(*child, Attributes::Name));
    if (std::string why = CheckFormatElement(*child, nullptr); !why.empty()) {
      return where + ": " += why;
    }
    const std::unique_ptr<DMFormat> format(DMField::FormatFromDOMNode(*child));
    if (scratch.AddSharedFormat(*format) < 0) return where + ": a shared format needs a name";
  }
  const struct {
    const char* attribute;
    Storage storage;
  } slots[] = {{Attributes::DefaultNumberFormat, Storage::Real},
               {Attributes::DefaultDateFormat, Storage::Date},
               {Attributes::DefaultTimeFormat, Storage::Time},
               {Attributes::DefaultStringFormat, Storage::String}};
  for (const auto& slot : slots) {
    const std::string name = Attribute(*formats, slot.attribute);
    if (name.empty()) continue;
    const DMFormat* format = scratch.GetSharedFormat(name);
    const std::string where = "the formats' " + std::string(slot.attribute) + " " + Quoted(name);
    if (format == nullptr) return where + " names no shared format";
    if (!DMField::MatchesFormat(slot.storage, *format)) {
      return where + " names a format that cannot display " + StorageText(slot.storage) + " values";
    }
  }
  return "";
}

std::string DiagnoseGroups(DMXMLWrapper& root, DMMetaData& scratch) {
  DMXMLWrapper* groups = FirstChild(root, Elements::FieldGroups);
  if (groups == nullptr) return "";
  int index = 0;
  for (DMXMLWrapper* group : Children(*groups, "")) {
    ++index;
    bool hasName = false;
    const std::string name = Attribute(*group, Attributes::Name, &hasName);
    const std::string where = "field group #" + std::to_string(index) + " " + Quoted(name);
    const std::string typeText = Attribute(*group, Attributes::GroupType);
    const int type = DMEnumDict::IndexOfText(gGroupTypeDict, typeText.c_str());
    if (type < 0) return where + ": its groupType " + Quoted(typeText) + " is not a group type";
    if (!hasName) return where + ": it has no name";
    std::vector<std::string> members;
    for (DMXMLWrapper* member : Children(*group, Elements::FieldName)) {
      bool present = false;
      members.push_back(Attribute(*member, Attributes::Name, &present));
      if (!present) return where + ": a member <FieldName> has no name";
    }
    if (members.empty()) return where + ": it has no members";
    if (!scratch.SetFieldGroup(static_cast<DMMetaData::GroupType>(gGroupTypeDict[type].value), name,
                               members, "", "")) {
      return where + ": another group of its type has its name";
    }
  }
  return "";
}

std::string DiagnoseRecordCounts(DMXMLWrapper& root) {
  DMXMLWrapper* counts = FirstChild(root, Elements::RecordCounts);
  if (counts == nullptr) return "";
  const struct {
    const char* attribute;
    bool required;
  } items[] = {{Attributes::UnweightedCount, true},
               {Attributes::WeightedCount, true},
               {Attributes::DroppedCount, true},
               {"badWeightCount", false},
               {"weightedDroppedCount", false}};
  for (const auto& item : items) {
    double value = 0;
    bool found = false;
    int special = 0;
    const int rc = counts->getAttribute(item.attribute, value, found, special);
    const std::string where = "the record counts: " + std::string(item.attribute);
    if (!found && item.required) return where + " is missing";
    if (found && (rc != DM_XML_OK || special != 0)) {
      return where + " " + Quoted(Attribute(*counts, item.attribute)) +
             " is not an ordinary number";
    }
  }
  return "";
}

std::string DiagnoseFields(DMXMLWrapper& root, DMMetaData& scratch) {
  DMXMLWrapper* fields = FirstChild(root, Elements::Fields);
  if (fields == nullptr) return "the document has no <Fields> element";
  int index = 0;
  for (DMXMLWrapper* element : Children(*fields, Elements::Field)) {
    ++index;
    const std::string name = Attribute(*element, Attributes::Name);
    const std::string where = "field #" + std::to_string(index) + " " + Quoted(name);
    DMField field(*element, false);
    if (field.GetName().empty()) {
      const std::string why = DiagnoseField(*element, false);
      return where + ": " +
             (why.empty() ? "one of its values, ranges, labels, model-field or geospatial parts "
                            "breaks a rule of its storage"
                          : why);
    }
    if (scratch.AppendField(field) < 0) {
      return where + ": an earlier field has the same name";
    }
  }
  if (index == 0) return "<Fields> holds no <Field> element";
  return "";
}

std::string DiagnoseSummaries(DMXMLWrapper& root) {
  DMXMLWrapper* element = FirstChild(root, Elements::DatasetSummaries);
  if (element == nullptr || DMDatasetSummaries(*element).parseSuccess()) return "";
  if (DMXMLWrapper* overall = FirstChild(*element, Elements::OverallSummaries)) {
    if (!DMOverallSummaries(*overall).parseSuccess()) {
      return "the overall summaries: a flag (current, includeUMissing, includeNotValid) is "
             "neither true nor false";
    }
  }
  DMXMLWrapper* list = FirstChild(*element, Elements::FieldSummaries);
  if (list == nullptr) return "the dataset summaries cannot be read";
  int index = 0;
  for (DMXMLWrapper* summary : Children(*list, Elements::FieldSummary)) {
    ++index;
    if (DMFieldSummary(*summary).parseSuccess()) continue;
    const std::string where = "field summary #" + std::to_string(index) + " " +
                              Quoted(Attribute(*summary, Attributes::FieldName));
    DMXMLWrapper* continuous = FirstChild(*summary, Elements::ContinuousStatisticsExt);
    DMXMLWrapper* discrete = FirstChild(*summary, Elements::DiscreteStatisticsExt);
    if ((continuous == nullptr) == (discrete == nullptr)) {
      return where + ": it needs exactly one of continuous and discrete statistics";
    }
    if (continuous != nullptr && !DMContinuousStatisticsExt(*continuous).parseSuccess()) {
      return where + ": its continuous statistics cannot be read";
    }
    if (discrete != nullptr && !DMDiscreteStatisticsExt(*discrete).parseSuccess()) {
      return where +
             ": its discrete statistics cannot be read (a distribution summary with "
             "categories or clusters is required)";
    }
    for (const char* attribute :
         {Attributes::current, Attributes::includeUMissing, Attributes::includeNotValid}) {
      if (std::string why = CheckFlag(*summary, attribute); !why.empty()) {
        return where + ": " += why;
      }
    }
    if (Attribute(*summary, Attributes::FieldName).empty()) return where + ": it has no fieldName";
    return where + ": a count is negative or not a number";
  }
  return "the dataset summaries cannot be read";
}

}  // namespace

std::string DiagnoseDocument(const std::string& text) {
  DMXMLWrapper document;
  {
    // The parser's complaint was shown when the container read the text.
    StdoutToStderr guard(true);
    document.loadFromContents(text.c_str());
  }
  if (document.getElement() == nullptr) return "the text is not well-formed XML";
  std::string rootName;
  if (document.getName(rootName) != DM_XML_OK || rootName.empty()) {
    return "the root element has no name";
  }
  DMMetaData scratch(nullptr);
  if (std::string why = DiagnoseFormats(document, scratch); !why.empty()) return why;
  if (std::string why = DiagnoseGroups(document, scratch); !why.empty()) return why;
  if (std::string why = DiagnoseRecordCounts(document); !why.empty()) return why;
  if (std::string why = DiagnoseFields(document, scratch); !why.empty()) return why;
  return DiagnoseSummaries(document);
}

int CheckDocument(const std::string& path) {
  std::string text;
  if (!ReadFile(path, text)) return kExitUsage;
  std::unique_ptr<DMMetaData> metadata;
  {
    StdoutToStderr guard;
    metadata = std::make_unique<DMMetaData>(text, nullptr);
  }
  if (metadata->FieldCount() > 0) {
    unsigned shared = 0;
    while (metadata->GetSharedFormat(shared) != nullptr) ++shared;
    std::cout << path << ": accepted: " << metadata->FieldCount() << " fields";
    if (const double records = metadata->GetRecordCount(false); records >= 0) {
      std::cout << ", " << static_cast<long long>(records) << " records";
    }
    std::cout << ", " << shared << " shared formats";
    const DMDatasetSummaries* summaries = metadata->getDatasetSummaries();
    if (summaries != nullptr && summaries->getFieldSummaries() != nullptr) {
      std::cout << ", " << summaries->getFieldSummaries()->getFieldSummaryCount()
                << " field summaries";
    }
    std::cout << '\n';
    return kExitOk;
  }
  const std::string why = DiagnoseDocument(text);
  std::cerr << path << ": rejected: "
            << (why.empty() ? "the library refused the document, but no single part could be "
                              "blamed"
                            : why)
            << '\n';
  return kExitRejected;
}

}  // namespace dmtool
