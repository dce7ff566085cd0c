#include "dmcommon/fields/dmfield.h"

#include <cstddef>
#include <memory>
#include <string>
#include <utility>

#include "dmcommon/fields/dmgeo.h"
#include "dmcommon/fields/dmmodelfield.h"
#include "dmcommon/formats/dmdateformat.h"
#include "dmcommon/formats/dmdecoratedformat.h"
#include "dmcommon/formats/dmformat.h"
#include "dmcommon/formats/dmnumberformat.h"
#include "dmcommon/formats/dmstringformat.h"
#include "dmcommon/formats/dmtimeformat.h"
#include "dmcommon/stats/dmcatstatsimp.h"
#include "dmcommon/stats/dmcontstats.h"
#include "dmcommon/xml/dmxmliteratorwrapper.h"
#include "dmcommon/xml/dmxmlresult.h"
#include "dmcommon/xml/dmxmlwrapper.h"

using DmExtension::DM_XML_FAILED;
using DmExtension::DM_XML_NO_MORE_ITEMS;
using DmExtension::DM_XML_OK;
using DmExtension::DMXMLIteratorWrapper;
using DmExtension::DMXMLWrapper;
namespace XMLAttributes = DmCppHelperV1::XMLAttributes;
namespace XMLElements = DmCppHelperV1::XMLElements;
namespace XMLEntities = DmCppHelperV1::XMLEntities;

namespace {

// Not in the vocabulary: other components write exactly this name.
constexpr char kSubRoleAttribute[] = "subRole";

bool IsCategorical(DMField::FieldType type) {
  switch (type) {
    case DMField::FieldType::Nominal:
    case DMField::FieldType::Ordinal:
    case DMField::FieldType::Flag:
    case DMField::FieldType::Discrete:
      return true;
    case DMField::FieldType::Continuous:
    case DMField::FieldType::Typeless:
    case DMField::FieldType::Unknown:
      return false;
  }
  return false;
}

// Both limits null: the range says nothing.
bool HasNoLimits(const DMRange& range) {
  const auto [lower, upper] = range.GetLimits();
  return lower.IsNull() && upper.IsNull();
}

// Both limits set, of one type, the lower above the upper. Such a range is
// empty everywhere in the library (it is never written), so the setters take
// it whatever the storage. Reals count a not-a-number limit as reversed. Texts
// count as reversed only when their first differing bytes differ by exactly
// 1: larger differences do not, which is intended and kept, since documents
// written so far depend on which ranges were taken as empty.
bool IsReversed(const DMRange& range) {
  const auto [lower, upper] = range.GetLimits();
  if (lower.IsNull() || upper.IsNull() || lower.GetType() != upper.GetType()) return false;
  switch (lower.GetType()) {
    case DMDatum::IntegerType:
      return lower.GetInteger() > upper.GetInteger();
    case DMDatum::RealType:
      return !(upper.GetReal() > lower.GetReal()) && lower.GetReal() != upper.GetReal();
    case DMDatum::StringType:
      return lower.Compare(upper) == 1;
  }
  return false;
}

// A datum as the text of a value attribute; false when it cannot be written.
// A null datum is the empty text.
[[nodiscard]] bool DatumText(const DMDatum& datum, std::string& text) {
  text.clear();
  if (datum.IsNull()) return true;
  switch (datum.GetType()) {
    case DMDatum::IntegerType:
      return DMXMLWrapper::ToString(datum.GetInteger(), text);
    case DMDatum::RealType:
      return DMXMLWrapper::ToString(datum.GetReal(), text);
    case DMDatum::StringType:
      text = datum.GetString();
      return true;
  }
  return false;
}

[[nodiscard]] bool WriteText(DMXMLWrapper& element, const char* name, const char* value) {
  return element.addAttribute(name, value) == DM_XML_OK;
}

// The attributes of one `Value` element, in the order they are written.
[[nodiscard]] bool WriteValue(DMXMLWrapper& element, const DMValue& value, bool isFlagField) {
  std::string text;
  // A real read from a document gives back the very text it was read from,
  // so that rewriting a document leaves its numbers alone.
  if (value.GetDatum().GetType() == DMDatum::RealType && !value.GetDatum().IsNull() &&
      !value.GetValueText().empty()) {
    text = value.GetValueText();
  } else if (!DatumText(value.GetDatum(), text)) {
    return false;
  }
  if (!WriteText(element, XMLAttributes::Value, text.c_str())) return false;
  if (isFlagField && value.GetFlag() != 0) {
    const char* flag = value.GetFlag() == 1 ? XMLEntities::True : XMLEntities::False;
    if (!WriteText(element, XMLAttributes::FlagValue, flag)) return false;
  }
  if (value.GetPartition() != 0) {
    const char* partition = DMEnumDict::TextOfValue(gPartitionDict, value.GetPartition());
    if (partition == nullptr) return false;
    if (!WriteText(element, XMLAttributes::DefinePartition, partition)) return false;
  }
  return value.GetLabel().empty() ||
         WriteText(element, XMLAttributes::DisplayLabel, value.GetLabel().c_str());
}

// The entity of an enumeration value; false when the table has none.
[[nodiscard]] bool WriteEntity(DMXMLWrapper& element, const char* name,
                               const DMEnumDictEntry* table, unsigned value) {
  const char* text = DMEnumDict::TextOfValue(table, value);
  return text != nullptr && WriteText(element, name, text);
}

// A storage outside the enumeration is written as Unknown rather than
// abandoning the field: readers then see a field of unknown storage.
[[nodiscard]] bool WriteStorage(DMXMLWrapper& element, const char* name,
                                DMField::StorageType storage) {
  const char* text = DMEnumDict::TextOfValue(gStorageDict, static_cast<unsigned>(storage));
  return WriteText(element, name, text != nullptr ? text : XMLEntities::Unknown);
}

[[nodiscard]] bool WriteIfSet(DMXMLWrapper& element, const char* name, const std::string& value) {
  return value.empty() || WriteText(element, name, value.c_str());
}

[[nodiscard]] bool WriteBool(DMXMLWrapper& element, const char* name, bool value) {
  return WriteText(element, name, value ? XMLEntities::True : XMLEntities::False);
}

// Hands `child` to `parent`, which owns it from then on; on failure the
// caller still owns it and destroys it.
[[nodiscard]] bool AppendTo(DMXMLWrapper& parent, std::unique_ptr<DMXMLWrapper>& child) {
  if (parent.addElement(child.get()) != DM_XML_OK) return false;
  static_cast<void>(child.release());
  return true;
}

// A range with limits in order writes its element; an empty or reversed one
// writes nothing and succeeds.
[[nodiscard]] bool WriteRange(DMXMLWrapper& element, const DMRange& range) {
  if (HasNoLimits(range) || IsReversed(range)) return true;
  DMXMLWrapper* created = nullptr;
  range.AddToTree(element, created);
  return created != nullptr;
}

[[nodiscard]] bool WriteValues(DMXMLWrapper& element, const std::vector<DMValue>& values,
                               bool isFlagField) {
  if (values.empty()) return true;
  DMXMLWrapper* created = nullptr;
  DMField::AddValuesToTree(values, element, created, isFlagField);
  return created != nullptr;
}

[[nodiscard]] bool WriteMissingValues(DMXMLWrapper& element, const DMMissingValues& missing,
                                      bool isFlagField) {
  const DMRange& range = missing.GetMissingRange();
  const bool emptyRange = HasNoLimits(range) || IsReversed(range);
  if (emptyRange && missing.GetMissingValueList().empty() && missing.IsNullMissing() &&
      !missing.IsWhiteSpMissing()) {
    return true;
  }
  std::unique_ptr<DMXMLWrapper> child(element.createFreeElement(XMLElements::MissingValues));
  if (child == nullptr) return false;
  if (!WriteBool(*child, XMLAttributes::TreatNullAsMissing, missing.IsNullMissing())) return false;
  if (!WriteBool(*child, XMLAttributes::TreatWhitespaceAsMissing, missing.IsWhiteSpMissing())) {
    return false;
  }
  if (!WriteRange(*child, range)) return false;
  if (!WriteValues(*child, missing.GetMissingValueList(), isFlagField)) return false;
  return AppendTo(element, child);
}

[[nodiscard]] bool WriteValueLabels(DMXMLWrapper& element, const std::vector<DMValue>& labels,
                                    bool isFlagField) {
  if (labels.empty()) return true;
  std::unique_ptr<DMXMLWrapper> child(element.createFreeElement(XMLElements::ValueLabels));
  if (child == nullptr) return false;
  if (!WriteValues(*child, labels, isFlagField)) return false;
  return AppendTo(element, child);
}

// A reference names a shared format and stands alone; otherwise the private
// format writes its own element inside.
[[nodiscard]] bool WriteFormat(DMXMLWrapper& element, const std::string& reference,
                               const DMFormat* format) {
  if (reference.empty() && format == nullptr) return true;
  std::unique_ptr<DMXMLWrapper> child(element.createFreeElement(XMLElements::FieldFormat));
  if (child == nullptr) return false;
  if (!reference.empty()) {
    if (!WriteText(*child, XMLAttributes::UseNamedFormat, reference.c_str())) return false;
  } else {
    DMXMLWrapper* created = nullptr;
    format->AddToTree(*child, created);
    if (created == nullptr) return false;
  }
  return AppendTo(element, child);
}

// Any component that writes itself with AddToTree(parent, created); absent
// components write nothing.
template <typename Component>
[[nodiscard]] bool WriteComponent(DMXMLWrapper& element, const Component* component) {
  if (component == nullptr) return true;
  DMXMLWrapper* created = nullptr;
  component->AddToTree(element, created);
  return created != nullptr;
}

// Replaces `values` with the direct `Value` children of `element`, read as
// datums of `type`. A value that fails to read comes out null; it stops the
// walk and its failure is returned, with `values` holding the ones before it.
[[nodiscard]] int ReadValueList(const DMXMLWrapper& element, DMDatum::DataType type,
                                std::vector<DMValue>& values) {
  values.clear();
  // Iterators come from a non-const handle; a local view of the same element
  // owns them and releases them on return.
  DMXMLWrapper view(element.getElement());
  DMXMLIteratorWrapper* children = nullptr;
  if (int rc = view.getElementDirectIterator(XMLElements::Value, &children); rc != DM_XML_OK) {
    return rc;
  }
  for (;;) {
    void* item = nullptr;
    const int rc = children->nextItem(&item);
    if (rc == DM_XML_NO_MORE_ITEMS) return DM_XML_OK;
    if (rc != DM_XML_OK) return rc;
    if (item == nullptr) return DM_XML_FAILED;
    DMValue value(*static_cast<DMXMLWrapper*>(item), type);
    if (value.GetDatum().IsNull()) return DM_XML_FAILED;
    values.push_back(std::move(value));
  }
}

// Everything read from a field element, held apart from the field until all
// of it has been read.
struct FieldRead {
  std::string name;
  DMField::FieldType type = DMField::FieldType::Unknown;
  DMField::StorageType storage = DMField::StorageType::Unknown;
  DMField::RoleType role = DMField::RoleType::None;
  DMField::StructureType structure = DMField::StructureType::Primitive;
  DMField::StorageType structureStorage = DMField::StorageType::Unknown;
  std::string subRole;
  int maxStringLength = 0;
  int depth = -1;
  int elementCount = -1;
  std::string label;
  DMRange range;
  std::vector<DMValue> values;
  DMMissingValues missingValues;
  std::vector<DMValue> valueLabels;
  std::string formatReference;
  std::unique_ptr<DMFormat> privateFormat;
  std::unique_ptr<DMModelField> modelField;
  std::unique_ptr<DMGeo> geo;
  std::unique_ptr<DMCatStats> catStats;
  std::unique_ptr<DMContStats> contStats;
  std::unique_ptr<DMField> baseField;
};

// An attribute's text; an absent one reads as the empty text.
[[nodiscard]] bool ReadText(const DMXMLWrapper& element, const char* name, std::string& value) {
  bool found = false;
  return element.getAttribute(name, value, found) == DM_XML_OK;
}

// An enumerated attribute; absent or empty keeps `value`, a text that no row
// of `table` holds fails.
template <typename Enum>
[[nodiscard]] bool ReadEntity(const DMXMLWrapper& element, const char* name,
                              const DMEnumDictEntry* table, Enum& value) {
  std::string text;
  if (!ReadText(element, name, text)) return false;
  if (text.empty()) return true;
  const int row = DMEnumDict::IndexOfText(table, text.c_str());
  if (row < 0) return false;
  value = static_cast<Enum>(table[row].value);
  return true;
}

// A count attribute; absent or empty keeps `value`, text that is no integer
// or a negative number fails.
[[nodiscard]] bool ReadCount(const DMXMLWrapper& element, const char* name, int& value) {
  std::string text;
  if (!ReadText(element, name, text)) return false;
  if (text.empty()) return true;
  bool found = false;
  int count = 0;
  if (element.getAttribute(name, count, found) != DM_XML_OK || !found || count < 0) return false;
  value = count;
  return true;
}

[[nodiscard]] bool ReadAttributes(const DMXMLWrapper& element, FieldRead& read) {
  if (!ReadText(element, XMLAttributes::Name, read.name) || read.name.empty()) return false;
  if (!ReadEntity(element, XMLAttributes::Storage, gStorageDict, read.storage)) return false;
  if (!ReadEntity(element, XMLAttributes::Role, gRoleDict, read.role)) return false;
  if (!ReadEntity(element, XMLAttributes::Structure, gStructureDict, read.structure)) return false;
  if (!ReadEntity(element, XMLAttributes::StructureStorage, gStorageDict, read.structureStorage)) {
    return false;
  }
  if (!ReadCount(element, XMLAttributes::Depth, read.depth)) return false;
  if (!ReadCount(element, XMLAttributes::ElementCount, read.elementCount)) return false;
  if (!ReadCount(element, XMLAttributes::MaxStringLength, read.maxStringLength)) return false;
  if (!ReadEntity(element, XMLAttributes::Measure, gMeasureDict, read.type)) return false;
  if (!ReadText(element, XMLAttributes::DisplayLabel, read.label)) return false;
  return ReadText(element, kSubRoleAttribute, read.subRole);
}

// The datum type every value of a field of `storage` is read as.
DMDatum::DataType DatumTypeOf(DMField::StorageType storage) {
  switch (storage) {
    case DMField::StorageType::Unknown:
    case DMField::StorageType::Integer:
      return DMDatum::IntegerType;
    case DMField::StorageType::String:
      return DMDatum::StringType;
    case DMField::StorageType::Real:
    case DMField::StorageType::Date:
    case DMField::StorageType::Time:
    case DMField::StorageType::Timestamp:
      return DMDatum::RealType;
  }
  return DMDatum::IntegerType;
}

// Calls `visit(child, name)` for each direct child element in document order;
// false when the walk fails or `visit` does.
template <typename Visit>
[[nodiscard]] bool ForEachChild(const DMXMLWrapper& element, Visit visit) {
  DMXMLWrapper view(element.getElement());
  DMXMLIteratorWrapper* children = nullptr;
  if (view.getElementDirectIterator("", &children) != DM_XML_OK) return false;
  for (;;) {
    void* item = nullptr;
    const int rc = children->nextItem(&item);
    if (rc == DM_XML_NO_MORE_ITEMS) return true;
    if (rc != DM_XML_OK || item == nullptr) return false;
    const DMXMLWrapper& child = *static_cast<DMXMLWrapper*>(item);
    std::string name;
    if (child.getName(name) != DM_XML_OK) return false;
    if (!visit(child, name)) return false;
  }
}

// Absent reads as `fallback`; any text but the two entities fails.
[[nodiscard]] bool ReadSwitch(const DMXMLWrapper& element, const char* name, bool fallback,
                              bool& value) {
  std::string text;
  bool found = false;
  if (element.getAttribute(name, text, found) != DM_XML_OK) return false;
  if (!found) {
    value = fallback;
    return true;
  }
  if (text == XMLEntities::True) {
    value = true;
  } else if (text == XMLEntities::False) {
    value = false;
  } else {
    return false;
  }
  return true;
}

[[nodiscard]] bool ReadMissingValues(const DMXMLWrapper& element, DMDatum::DataType type,
                                     DMMissingValues& missingValues) {
  bool nullMissing = true;
  bool whiteSpaceMissing = false;
  if (!ReadSwitch(element, XMLAttributes::TreatNullAsMissing, true, nullMissing)) return false;
  if (!ReadSwitch(element, XMLAttributes::TreatWhitespaceAsMissing, false, whiteSpaceMissing)) {
    return false;
  }
  DMRange range;
  std::vector<DMValue> values;
  const bool walked =
      ForEachChild(element, [&](const DMXMLWrapper& child, const std::string& name) {
        if (name == XMLElements::Range) range = DMRange(child, type);
        if (name == XMLElements::Values) return ReadValueList(child, type, values) == DM_XML_OK;
        return true;
      });
  if (!walked) return false;
  missingValues = DMMissingValues(range, values, nullMissing, whiteSpaceMissing);
  return true;
}

[[nodiscard]] bool ReadValueLabels(const DMXMLWrapper& element, DMDatum::DataType type,
                                   std::vector<DMValue>& labels) {
  return ForEachChild(element, [&](const DMXMLWrapper& child, const std::string& name) {
    return name != XMLElements::Values || ReadValueList(child, type, labels) == DM_XML_OK;
  });
}

// A reference and a private format exclude each other, as in the setters: the
// one read last stands.
[[nodiscard]] bool ReadFieldFormat(const DMXMLWrapper& element, FieldRead& read) {
  std::string reference;
  if (!ReadText(element, XMLAttributes::UseNamedFormat, reference)) return false;
  if (!reference.empty()) {
    read.formatReference = reference;
    read.privateFormat.reset();
    return true;
  }
  return ForEachChild(element, [&](const DMXMLWrapper& child, const std::string&) {
    std::unique_ptr<DMFormat> format(DMField::FormatFromDOMNode(child));
    if (format == nullptr || !DMField::MatchesFormat(read.storage, *format)) return false;
    read.privateFormat = std::move(format);
    read.formatReference.clear();
    return true;
  });
}

[[nodiscard]] bool ReadCatStats(const DMXMLWrapper& element, FieldRead& read) {
  if (!IsCategorical(read.type)) return false;
  switch (read.storage) {
    case DMField::StorageType::String:
      read.catStats = std::make_unique<DMCatStatsStr>(element);
      return true;
    case DMField::StorageType::Integer:
      read.catStats = std::make_unique<DMCatStatsInt>(element);
      return true;
    case DMField::StorageType::Unknown:
    case DMField::StorageType::Real:
    case DMField::StorageType::Date:
    case DMField::StorageType::Time:
    case DMField::StorageType::Timestamp:
      read.catStats = std::make_unique<DMCatStatsDbl>(element);
      return true;
  }
  return false;
}

[[nodiscard]] bool ReadContStats(const DMXMLWrapper& element, FieldRead& read) {
  if (read.type != DMField::FieldType::Continuous) return false;
  std::unique_ptr<DMContStats> stats;
  if (read.storage == DMField::StorageType::Integer) {
    stats = std::make_unique<DMContStatsInt>(element);
  } else {
    stats = std::make_unique<DMContStatsDbl>(element);
  }
  // Statistics without weight are what a failed statistics element reads as;
  // rejecting the field for them is intended, and documents rely on it.
  if (stats->GetSumFreqWeights() == 0.0) return false;
  read.contStats = std::move(stats);
  return true;
}

[[nodiscard]] bool ReadChild(const DMXMLWrapper& child, const std::string& name, bool isBase,
                             FieldRead& read) {
  const DMDatum::DataType type = DatumTypeOf(read.storage);
  if (name == XMLElements::Range) {
    read.range = DMRange(child, type);
  } else if (name == XMLElements::Values) {
    return ReadValueList(child, type, read.values) == DM_XML_OK;
  } else if (name == XMLElements::MissingValues) {
    return ReadMissingValues(child, type, read.missingValues);
  } else if (name == XMLElements::ValueLabels) {
    return ReadValueLabels(child, type, read.valueLabels);
  } else if (name == XMLElements::FieldFormat) {
    return ReadFieldFormat(child, read);
  } else if (name == XMLElements::ModelField) {
    auto modelField = std::make_unique<DMModelField>(child);
    if (modelField->GetMFRole() == DMModelField::Unset) return false;
    read.modelField = std::move(modelField);
  } else if (name == XMLElements::Geo) {
    read.geo = std::make_unique<DMGeo>(child);
  } else if (name == XMLElements::DiscreteStatistics) {
    return ReadCatStats(child, read);
  } else if (name == XMLElements::ContinuousStatistics) {
    return ReadContStats(child, read);
  } else if (name == XMLElements::BaseField && !isBase) {
    auto baseField = std::make_unique<DMField>(child, true);
    if (baseField->GetName().empty()) return false;
    read.baseField = std::move(baseField);
  }
  return true;
}

[[nodiscard]] bool ReadField(const DMXMLWrapper& element, bool isBase, FieldRead& read) {
  if (!ReadAttributes(element, read)) return false;
  return ForEachChild(element, [&](const DMXMLWrapper& child, const std::string& name) {
    return ReadChild(child, name, isBase, read);
  });
}

}  // namespace

DMField::DMField()
    : type_(FieldType::Unknown),
      storage_(StorageType::Unknown),
      role_(RoleType::None),
      structure_(StructureType::Primitive),
      structureStorage_(StorageType::Unknown),
      maxStringLength_(0),
      depth_(-1),
      elementCount_(-1) {}

DMField::DMField(const std::string& name, FieldType type, StorageType storage, RoleType role)
    : name_(name),
      type_(type),
      storage_(storage),
      role_(role),
      structure_(StructureType::Primitive),
      structureStorage_(StorageType::Unknown),
      maxStringLength_(0),
      depth_(-1),
      elementCount_(-1) {}

DMField::DMField(const DMXMLWrapper& element, bool isBase) : DMField() {
  FieldRead read;
  if (!ReadField(element, isBase, read)) return;
  name_ = std::move(read.name);
  type_ = read.type;
  storage_ = read.storage;
  role_ = read.role;
  structure_ = read.structure;
  structureStorage_ = read.structureStorage;
  subRole_ = std::move(read.subRole);
  maxStringLength_ = static_cast<unsigned int>(read.maxStringLength);
  depth_ = read.depth;
  elementCount_ = read.elementCount;
  label_ = std::move(read.label);
  // The setters decide which values this field may hold; a value they refuse
  // is dropped rather than failing the whole field.
  SetRange(read.range);
  SetValues(read.values);
  SetMissingValues(read.missingValues);
  SetValueLabels(read.valueLabels);
  formatReference_ = std::move(read.formatReference);
  privateFormat_ = std::move(read.privateFormat);
  modelField_ = std::move(read.modelField);
  geo_ = std::move(read.geo);
  catStats_ = std::move(read.catStats);
  contStats_ = std::move(read.contStats);
  baseField_ = std::move(read.baseField);
}

DMField::DMField(const DMField& other)
    : name_(other.name_),
      type_(other.type_),
      storage_(other.storage_),
      role_(other.role_),
      structure_(other.structure_),
      structureStorage_(other.structureStorage_),
      subRole_(other.subRole_),
      maxStringLength_(other.maxStringLength_),
      depth_(other.depth_),
      elementCount_(other.elementCount_),
      label_(other.label_),
      range_(other.range_),
      values_(other.values_),
      missingValues_(other.missingValues_),
      valueLabels_(other.valueLabels_),
      formatReference_(other.formatReference_),
      privateFormat_(other.privateFormat_ ? other.privateFormat_->Clone() : nullptr),
      modelField_(other.modelField_ ? std::make_unique<DMModelField>(*other.modelField_) : nullptr),
      geo_(other.geo_ ? std::make_unique<DMGeo>(*other.geo_) : nullptr),
      catStats_(other.catStats_ ? other.catStats_->Clone() : nullptr),
      contStats_(other.contStats_ ? other.contStats_->Clone() : nullptr),
      baseField_(other.baseField_ ? std::make_unique<DMField>(*other.baseField_) : nullptr) {}

DMField& DMField::operator=(const DMField& other) {
  if (this == &other) return *this;
  // Copy before releasing anything: `other` may be this field's own base
  // field, which the release would destroy.
  DMField copy(other);
  name_ = std::move(copy.name_);
  type_ = copy.type_;
  storage_ = copy.storage_;
  role_ = copy.role_;
  structure_ = copy.structure_;
  structureStorage_ = copy.structureStorage_;
  subRole_ = std::move(copy.subRole_);
  maxStringLength_ = copy.maxStringLength_;
  depth_ = copy.depth_;
  elementCount_ = copy.elementCount_;
  label_ = std::move(copy.label_);
  range_ = copy.range_;
  values_ = std::move(copy.values_);
  missingValues_ = copy.missingValues_;
  valueLabels_ = std::move(copy.valueLabels_);
  formatReference_ = std::move(copy.formatReference_);
  privateFormat_ = std::move(copy.privateFormat_);
  modelField_ = std::move(copy.modelField_);
  geo_ = std::move(copy.geo_);
  catStats_ = std::move(copy.catStats_);
  contStats_ = std::move(copy.contStats_);
  baseField_ = std::move(copy.baseField_);
  return *this;
}

DMField::~DMField() = default;

std::string DMField::GetName() const { return name_; }
DMField::FieldType DMField::GetType() const { return type_; }
DMField::StorageType DMField::GetStorage() const { return storage_; }
DMField::RoleType DMField::GetRole() const { return role_; }
std::string DMField::GetSubRole() const { return subRole_; }
unsigned int DMField::GetMaxStringLength() const { return maxStringLength_; }
const DMRange& DMField::GetRange() const { return range_; }
const std::vector<DMValue>& DMField::GetValues() const { return values_; }
const std::string& DMField::GetLabel() const { return label_; }
const DMMissingValues& DMField::GetMissingValues() const { return missingValues_; }
const std::vector<DMValue>& DMField::GetValueLabels() const { return valueLabels_; }
const DMFormat* DMField::GetPrivateFormat() const { return privateFormat_.get(); }
std::string DMField::GetFormatReference() const { return formatReference_; }
const DMModelField* DMField::GetModelField() const { return modelField_.get(); }
const DMGeo* DMField::GetGeo() const { return geo_.get(); }
const DMCatStats* DMField::GetCatStats() const { return catStats_.get(); }
const DMContStats* DMField::GetContStats() const { return contStats_.get(); }
const DMField* DMField::GetBaseField() const { return baseField_.get(); }
DMField::StructureType DMField::GetStructure() const { return structure_; }
DMField::StorageType DMField::GetStructureStorage() const { return structureStorage_; }
int DMField::GetDepth() const { return depth_; }
int DMField::GetElementCount() const { return elementCount_; }

void DMField::SetName(const std::string& name) {
  // An unnamed field stays unnamed here on purpose: the metadata container
  // takes an empty name as the mark of a field that failed to read, and such
  // a field must not be revived piecemeal.
  if (name_.empty()) return;
  name_ = name;
}

void DMField::SetRole(RoleType role) {
  if (name_.empty()) return;
  role_ = role;
}

void DMField::SetSubRole(const std::string& subRole) {
  if (name_.empty()) return;
  subRole_ = subRole;
}

// No name test in the next two: callers set them on fields they are still
// building, before the name is known.
void DMField::SetMaxStringLength(unsigned int length) { maxStringLength_ = length; }

void DMField::SetLabel(const std::string& label) { label_ = label; }

void DMField::SetRange(const DMRange& range) {
  if (name_.empty() || type_ != FieldType::Continuous) return;
  if (HasNoLimits(range) || IsReversed(range)) {
    range_ = range;
    return;
  }
  // A range open below has a null lower limit; its type decides all the same.
  if (!StorageMatches(range.GetLimits().first)) return;
  range_ = range;
}

void DMField::SetValues(const std::vector<DMValue>& values) {
  if (name_.empty() || !IsCategorical(type_)) return;
  for (const DMValue& value : values) {
    if (value.GetDatum().IsNull() || !StorageMatches(value.GetDatum())) return;
  }
  values_ = values;
}

void DMField::SetMissingValues(const DMMissingValues& missingValues) {
  if (name_.empty() || !missingValues.IsValid()) return;
  const DMRange& range = missingValues.GetMissingRange();
  if (HasNoLimits(range) || IsReversed(range)) {
    const std::vector<DMValue>& list = missingValues.GetMissingValueList();
    if (!list.empty() && !StorageMatches(list.front().GetDatum())) return;
  } else if (!StorageMatches(range.GetLimits().first)) {
    return;
  }
  missingValues_ = missingValues;
}

void DMField::SetValueLabels(const std::vector<DMValue>& valueLabels) {
  if (name_.empty()) return;
  for (const DMValue& value : valueLabels) {
    if (value.GetDatum().IsNull() || !StorageMatches(value.GetDatum())) return;
  }
  valueLabels_ = valueLabels;
}

bool DMField::SetPrivateFormat(const DMFormat* format) {
  if (name_.empty()) return false;
  if (format == nullptr) {
    privateFormat_.reset();
    return true;
  }
  if (!MatchesFormat(storage_, *format)) return false;
  privateFormat_.reset(format->Clone());
  formatReference_.clear();
  return true;
}

bool DMField::SetFormatReference(const std::string& name) {
  if (name_.empty()) return false;
  if (name.empty()) {
    // Only the reference goes: a private format set meanwhile stays in use.
    formatReference_.clear();
    return true;
  }
  formatReference_ = name;
  privateFormat_.reset();
  return true;
}

bool DMField::SetModelField(const DMModelField* modelField) {
  if (name_.empty()) return false;
  if (modelField == nullptr) {
    modelField_.reset();
    return true;
  }
  // Unset is what a model field that failed to read comes out as.
  if (modelField->GetMFRole() == DMModelField::Unset) return false;
  modelField_ = std::make_unique<DMModelField>(*modelField);
  return true;
}

bool DMField::SetGeo(const DMGeo* geo) {
  if (name_.empty()) return false;
  if (geo == nullptr) {
    geo_.reset();
    return true;
  }
  geo_ = std::make_unique<DMGeo>(*geo);
  return true;
}

bool DMField::SetFieldType(FieldType type) {
  if (name_.empty()) return false;
  // Written as two tests rather than a switch so that a number outside the
  // enumeration, which a caller can still cast in, drops everything too.
  if (type != FieldType::Continuous) {
    range_ = DMRange();
    contStats_.reset();
  }
  if (!IsCategorical(type)) {
    values_.clear();
    catStats_.reset();
  }
  type_ = type;
  return true;
}

bool DMField::SetSumStats(const DMCatStats* stats) {
  if (name_.empty() || !IsCategorical(type_)) return false;
  if (stats == nullptr) {
    catStats_.reset();
    return true;
  }
  bool suits = false;
  switch (storage_) {
    case StorageType::Integer:
      suits = dynamic_cast<const DMCatStatsInt*>(stats) != nullptr;
      break;
    case StorageType::Real:
    case StorageType::Date:
    case StorageType::Time:
    case StorageType::Timestamp:
      suits = dynamic_cast<const DMCatStatsDbl*>(stats) != nullptr;
      break;
    case StorageType::String:
      suits = dynamic_cast<const DMCatStatsStr*>(stats) != nullptr;
      break;
    case StorageType::Unknown:
      break;
  }
  if (!suits) return false;
  catStats_.reset(stats->Clone());
  return true;
}

bool DMField::SetSumStats(const DMContStats* stats) {
  if (name_.empty() || type_ != FieldType::Continuous) return false;
  if (stats == nullptr) {
    contStats_.reset();
    return true;
  }
  bool suits = false;
  switch (storage_) {
    case StorageType::Integer:
      suits = dynamic_cast<const DMContStatsInt*>(stats) != nullptr;
      break;
    case StorageType::Real:
    case StorageType::Date:
    case StorageType::Time:
    case StorageType::Timestamp:
      suits = dynamic_cast<const DMContStatsDbl*>(stats) != nullptr;
      break;
    case StorageType::Unknown:
    case StorageType::String:
      break;
  }
  if (!suits) return false;
  contStats_.reset(stats->Clone());
  return true;
}

void DMField::SetBaseField(const DMField& baseField) {
  if (name_.empty() || baseField.baseField_ != nullptr) return;
  // Copied before the old one goes: `baseField` may be that very object.
  auto copy = std::make_unique<DMField>(baseField);
  baseField_ = std::move(copy);
}

void DMField::SetStructure(StructureType structure) {
  if (name_.empty()) return;
  structure_ = structure;
}

void DMField::SetStructureStorage(StorageType storage) {
  if (name_.empty()) return;
  structureStorage_ = storage;
}

void DMField::SetDepth(int depth) {
  if (name_.empty()) return;
  depth_ = depth;
}

void DMField::SetElementCount(int count) {
  if (name_.empty()) return;
  elementCount_ = count;
}

bool DMField::StorageMatches(const DMDatum& datum) const {
  switch (datum.GetType()) {
    case DMDatum::IntegerType:
      return storage_ == StorageType::Integer;
    case DMDatum::RealType:
      return storage_ == StorageType::Real || storage_ == StorageType::Date ||
             storage_ == StorageType::Time || storage_ == StorageType::Timestamp;
    case DMDatum::StringType:
      return storage_ == StorageType::String;
  }
  return false;
}

bool DMField::MatchesFormat(StorageType storage, const DMFormat& format) {
  const DMFormat::FormatClass formatClass = format.GetFormatClass();
  switch (storage) {
    case StorageType::Integer:
    case StorageType::Real:
      return formatClass == DMFormat::Number || formatClass == DMFormat::Decorated;
    case StorageType::String:
      return formatClass == DMFormat::String;
    case StorageType::Date:
    case StorageType::Timestamp:
      return formatClass == DMFormat::Date;
    case StorageType::Time:
      return formatClass == DMFormat::Time;
    case StorageType::Unknown:
      return false;
  }
  return false;
}

void DMField::AddValuesToTree(const std::vector<DMValue>& values, DMXMLWrapper& parent,
                              DMXMLWrapper*& created, bool isFlagField) {
  created = nullptr;
  if (values.empty()) return;
  std::unique_ptr<DMXMLWrapper> list(parent.createFreeElement(XMLElements::Values));
  if (list == nullptr) return;
  for (const DMValue& value : values) {
    DMXMLWrapper* item = nullptr;
    if (list->addElement(XMLElements::Value, &item) != DM_XML_OK || item == nullptr) return;
    if (!WriteValue(*item, value, isFlagField)) return;
  }
  if (parent.addElement(list.get()) != DM_XML_OK) return;
  created = list.release();
}

DMFormat* DMField::FormatFromDOMNode(const DMXMLWrapper& element) {
  std::string name;
  if (element.getName(name) != DM_XML_OK) return nullptr;
  std::unique_ptr<DMFormat> format;
  if (name == XMLElements::NumberFormat) {
    format = std::make_unique<DMNumberFormat>(element);
  } else if (name == XMLElements::DecoratedFormat) {
    format = std::make_unique<DMDecoratedFormat>(element);
  } else if (name == XMLElements::StringFormat) {
    format = std::make_unique<DMStringFormat>(element);
  } else if (name == XMLElements::DateFormat) {
    format = std::make_unique<DMDateFormat>(element);
  } else if (name == XMLElements::TimeFormat) {
    format = std::make_unique<DMTimeFormat>(element);
  } else {
    return nullptr;
  }
  // The format readers report a failed element only through a width of 0.
  if (format->GetWidth() == 0) return nullptr;
  return format.release();
}

void DMField::MakeCategoryMap(const DMCatStats& stats, const std::vector<DMValue>& values,
                              std::vector<DMValue>& out) {
  out.clear();
  const unsigned int count = stats.GetNCats();
  for (unsigned int i = 0; i < count; ++i) {
    const DMDatum datum = stats.GetCatValDatum(i);
    const int index = DMValue::GetIndex(datum, values);
    unsigned flag = 0;
    unsigned partition = 0;
    if (index >= 0) {
      flag = values[static_cast<std::size_t>(index)].GetFlag();
      partition = values[static_cast<std::size_t>(index)].GetPartition();
    }
    std::string text;
    if (datum.IsNull() || !DatumText(datum, text)) continue;
    out.emplace_back(DMDatum(static_cast<double>(i)), text, flag, partition);
  }
}

void DMField::MakeCategoryValueLabels(const DMCatStats& stats,
                                      const std::vector<DMValue>& valueLabels,
                                      std::vector<DMValue>& out) {
  out.clear();
  const unsigned int count = stats.GetNCats();
  for (unsigned int i = 0; i < count; ++i) {
    const int index = DMValue::GetIndex(stats.GetCatValDatum(i), valueLabels);
    if (index == -2) {
      // Labels of another type cannot name any category: none is given.
      out.clear();
      return;
    }
    if (index < 0) continue;
    out.emplace_back(DMDatum(static_cast<double>(i)),
                     valueLabels[static_cast<std::size_t>(index)].GetLabel());
  }
}

void DMField::AddToTree(DMXMLWrapper& parent, DMXMLWrapper*& created, bool isBase) const {
  std::unique_ptr<DMXMLWrapper> element(
      parent.createFreeElement(isBase ? XMLElements::BaseField : XMLElements::Field));
  if (element == nullptr) return;
  DMXMLWrapper& out = *element;
  const bool isFlagField = type_ == FieldType::Flag;
  if (!WriteText(out, XMLAttributes::Name, name_.c_str())) return;
  if (!WriteStorage(out, XMLAttributes::Storage, storage_)) return;
  if (!WriteEntity(out, XMLAttributes::Measure, gMeasureDict, static_cast<unsigned>(type_))) {
    return;
  }
  if (!WriteEntity(out, XMLAttributes::Role, gRoleDict, static_cast<unsigned>(role_))) return;
  if (!WriteIfSet(out, kSubRoleAttribute, subRole_)) return;
  // Primitive is what a reader assumes, so only List is ever written.
  if (structure_ == StructureType::List &&
      !WriteEntity(out, XMLAttributes::Structure, gStructureDict,
                   static_cast<unsigned>(structure_))) {
    return;
  }
  if (structureStorage_ != StorageType::Unknown &&
      !WriteStorage(out, XMLAttributes::StructureStorage, structureStorage_)) {
    return;
  }
  if (depth_ >= 0 &&
      out.addAttribute(XMLAttributes::Depth, static_cast<long long>(depth_)) != DM_XML_OK) {
    return;
  }
  if (elementCount_ >= 0 && out.addAttribute(XMLAttributes::ElementCount,
                                             static_cast<long long>(elementCount_)) != DM_XML_OK) {
    return;
  }
  if (maxStringLength_ != 0 &&
      out.addAttribute(XMLAttributes::MaxStringLength, static_cast<long long>(maxStringLength_)) !=
          DM_XML_OK) {
    return;
  }
  if (!WriteIfSet(out, XMLAttributes::DisplayLabel, label_)) return;

  if (!WriteRange(out, range_)) return;
  if (!WriteValues(out, values_, isFlagField)) return;
  if (!WriteMissingValues(out, missingValues_, isFlagField)) return;
  if (!WriteValueLabels(out, valueLabels_, isFlagField)) return;
  if (!WriteFormat(out, formatReference_, privateFormat_.get())) return;
  if (!WriteComponent(out, modelField_.get())) return;
  if (!WriteComponent(out, geo_.get())) return;
  if (!WriteComponent(out, catStats_.get())) return;
  if (!WriteComponent(out, contStats_.get())) return;
  // One level only: a base field's own base field is never written.
  if (!isBase && baseField_ != nullptr) {
    DMXMLWrapper* base = nullptr;
    baseField_->AddToTree(out, base, true);
    if (base == nullptr) return;
  }
  if (parent.addElement(element.get()) != DM_XML_OK) return;
  created = element.release();
}
