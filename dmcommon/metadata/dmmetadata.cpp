#include "dmcommon/metadata/dmmetadata.h"

#include <array>
#include <cmath>
#include <cstddef>
#include <functional>
#include <limits>
#include <memory>
#include <string>
#include <string_view>
#include <utility>

#include "dmcommon/formats/dmformat.h"
#include "dmcommon/metadata/dmfieldkeys_internal.h"
#include "dmcommon/stats/dmcatstatsimp.h"
#include "dmcommon/stats/dmcontstats.h"
#include "dmcommon/summaries/dmdatasetsummaries.h"
#include "dmcommon/values/dmvalue.h"
#include "dmcommon/xml/dmxmliteratorwrapper.h"
#include "dmcommon/xml/dmxmlresult.h"
#include "dmcommon/xml/dmxmlwrapper.h"
#include "dmcommon/xml/vocabulary/xmlvocabulary.h"

using DmExtension::DM_XML_NO_MORE_ITEMS;
using DmExtension::DM_XML_OK;
using DmExtension::DMXMLIteratorWrapper;
using DmExtension::DMXMLWrapper;
namespace XMLAttributes = DmCppHelperV1::XMLAttributes;
namespace XMLElements = DmCppHelperV1::XMLElements;

DMUpperFunc::~DMUpperFunc() = default;

namespace {

constexpr int kNotFound = -1;
constexpr double kUnknownCount = -1;
constexpr std::size_t kSlotCount = 4;

// The storage each default-format slot is checked against, in slot order:
// number, string, date, time.
constexpr DMField::StorageType kSlotStorage[kSlotCount] = {
    DMField::StorageType::Real,
    DMField::StorageType::String,
    DMField::StorageType::Date,
    DMField::StorageType::Time,
};

// The default-format slot of a storage, or -1 for one without a slot.
int SlotOf(DMField::StorageType storage) {
  switch (storage) {
    case DMField::StorageType::Integer:
    case DMField::StorageType::Real:
      return 0;
    case DMField::StorageType::String:
      return 1;
    case DMField::StorageType::Date:
    case DMField::StorageType::Timestamp:
      return 2;
    case DMField::StorageType::Time:
      return 3;
    case DMField::StorageType::Unknown:
      return kNotFound;
  }
  return kNotFound;  // a number outside the enumeration
}

// The attribute of each default-format slot, in slot order.
constexpr const char* kSlotAttribute[kSlotCount] = {
    XMLAttributes::DefaultNumberFormat,
    XMLAttributes::DefaultStringFormat,
    XMLAttributes::DefaultDateFormat,
    XMLAttributes::DefaultTimeFormat,
};

// The two dropped-record details have no vocabulary entries; documents in
// use carry them under these names.
constexpr char kBadWeightCount[] = "badWeightCount";
constexpr char kWeightedDroppedCount[] = "weightedDroppedCount";

[[nodiscard]] bool AppendTo(DMXMLWrapper& parent, std::unique_ptr<DMXMLWrapper>& child) {
  if (parent.addElement(child.get()) != DM_XML_OK) return false;
  static_cast<void>(child.release());
  return true;
}

// The first direct child of `parent` named `name` into `child`, null when
// there is none. False only when the children cannot be walked.
[[nodiscard]] bool FirstChild(DMXMLWrapper& parent, const char* name, DMXMLWrapper*& child) {
  child = nullptr;
  DMXMLIteratorWrapper* children = nullptr;
  if (parent.getElementDirectIterator(name, &children) != DM_XML_OK) return false;
  void* item = nullptr;
  const int rc = children->nextItem(&item);
  if (rc == DM_XML_NO_MORE_ITEMS) return true;
  if (rc != DM_XML_OK || item == nullptr) return false;
  child = static_cast<DMXMLWrapper*>(item);
  return true;
}

// Calls `read` on each direct child of `parent` named `name` (every child
// element when empty) in document order; the first false stops the walk and
// is returned.
template <typename Read>
[[nodiscard]] bool ReadChildren(DMXMLWrapper& parent, const char* name, Read read) {
  DMXMLIteratorWrapper* children = nullptr;
  if (parent.getElementDirectIterator(name, &children) != DM_XML_OK) return false;
  for (;;) {
    void* item = nullptr;
    const int rc = children->nextItem(&item);
    if (rc == DM_XML_NO_MORE_ITEMS) return true;
    if (rc != DM_XML_OK || item == nullptr) return false;
    if (!read(*static_cast<DMXMLWrapper*>(item))) return false;
  }
}

// The default slots in the order the reader takes them, with the storage
// each named format must suit; SetDefaultFormat maps the storage to its slot.
struct SlotReading {
  const char* attribute;
  DMField::StorageType storage;
};
constexpr SlotReading kSlotReadings[kSlotCount] = {
    {XMLAttributes::DefaultNumberFormat, DMField::StorageType::Real},
    {XMLAttributes::DefaultDateFormat, DMField::StorageType::Date},
    {XMLAttributes::DefaultTimeFormat, DMField::StorageType::Time},
    {XMLAttributes::DefaultStringFormat, DMField::StorageType::String},
};

[[nodiscard]] bool ReadDefaultFormats(const DMXMLWrapper& formats, DMMetaData& target) {
  for (const SlotReading& reading : kSlotReadings) {
    std::string name;
    bool found = false;
    if (formats.getAttribute(reading.attribute, name, found) != DM_XML_OK) return false;
    if (name.empty()) continue;
    if (target.SetDefaultFormat(reading.storage, name) < 0) return false;
  }
  return true;
}

[[nodiscard]] bool ReadSharedFormats(DMXMLWrapper& root, DMMetaData& target) {
  DMXMLWrapper* formats = nullptr;
  if (!FirstChild(root, XMLElements::FieldFormats, formats)) return false;
  if (formats == nullptr) return true;
  const bool read = ReadChildren(*formats, "", [&target](DMXMLWrapper& element) {
    const std::unique_ptr<DMFormat> format(DMField::FormatFromDOMNode(element));
    return format != nullptr && target.AddSharedFormat(*format) != kNotFound;
  });
  return read && ReadDefaultFormats(*formats, target);
}

[[nodiscard]] bool ReadFieldGroup(DMXMLWrapper& element, DMMetaData& target) {
  std::string typeText;
  bool found = false;
  if (element.getAttribute(XMLAttributes::GroupType, typeText, found) != DM_XML_OK || !found) {
    return false;
  }
  const int row = DMEnumDict::IndexOfText(gGroupTypeDict, typeText.c_str());
  if (row < 0) return false;
  const auto type = static_cast<DMMetaData::GroupType>(gGroupTypeDict[row].value);
  std::string name;
  if (element.getAttribute(XMLAttributes::Name, name, found) != DM_XML_OK || !found) return false;
  std::string label;
  std::string countedValue;
  if (element.getAttribute(XMLAttributes::DisplayLabel, label, found) != DM_XML_OK ||
      element.getAttribute(XMLAttributes::CountedValue, countedValue, found) != DM_XML_OK) {
    return false;
  }
  std::vector<std::string> members;
  const bool read = ReadChildren(element, XMLElements::FieldName, [&members](DMXMLWrapper& member) {
    std::string memberName;
    bool present = false;
    if (member.getAttribute(XMLAttributes::Name, memberName, present) != DM_XML_OK) {
      return false;
    }
    if (!present) return false;
    members.push_back(std::move(memberName));
    return true;
  });
  // SetFieldGroup refuses a group without members and a second group of the
  // same type and name, both defects of the document.
  return read && target.SetFieldGroup(type, name, members, label, countedValue);
}

[[nodiscard]] bool ReadFieldGroups(DMXMLWrapper& root, DMMetaData& target) {
  DMXMLWrapper* groups = nullptr;
  if (!FirstChild(root, XMLElements::FieldGroups, groups)) return false;
  if (groups == nullptr) return true;
  return ReadChildren(*groups, "",
                      [&target](DMXMLWrapper& element) { return ReadFieldGroup(element, target); });
}

// A count that must be there as an ordinary number: infinities and
// not-a-number are defects.
[[nodiscard]] bool ReadRequiredCount(const DMXMLWrapper& element, const char* name, double& count) {
  bool found = false;
  int special = 0;
  return element.getAttribute(name, count, found, special) == DM_XML_OK && found && special == 0;
}

// An optional count reads as unknown when absent.
[[nodiscard]] bool ReadOptionalCount(const DMXMLWrapper& element, const char* name, double& count) {
  bool found = false;
  int special = 0;
  if (element.getAttribute(name, count, found, special) != DM_XML_OK) return false;
  if (!found) count = kUnknownCount;
  return special == 0;
}

[[nodiscard]] bool ReadRecordCounts(DMXMLWrapper& root, DMMetaData& target) {
  DMXMLWrapper* counts = nullptr;
  if (!FirstChild(root, XMLElements::RecordCounts, counts)) return false;
  if (counts == nullptr) return true;
  double unweighted = 0;
  double weighted = 0;
  double dropped = 0;
  double badWeight = 0;
  double weightedDropped = 0;
  if (!ReadRequiredCount(*counts, XMLAttributes::UnweightedCount, unweighted) ||
      !ReadRequiredCount(*counts, XMLAttributes::WeightedCount, weighted) ||
      !ReadRequiredCount(*counts, XMLAttributes::DroppedCount, dropped) ||
      !ReadOptionalCount(*counts, kBadWeightCount, badWeight) ||
      !ReadOptionalCount(*counts, kWeightedDroppedCount, weightedDropped)) {
    return false;
  }
  // The setters' rules apply: a fractional count that must be whole is
  // dropped silently rather than failing the load.
  target.SetRecordCounts(unweighted, weighted);
  target.SetDroppedCount(dropped);
  target.SetDroppedDetails(badWeight, weightedDropped);
  return true;
}

// Takes a field read from the document into the container; false when the
// container refuses it. Fields are handed over rather than copied in, because
// a document may hold a million of them.
using FieldSink = std::function<bool(std::unique_ptr<DMField>)>;

[[nodiscard]] bool ReadFields(DMXMLWrapper& root, const FieldSink& append) {
  DMXMLWrapper* fields = nullptr;
  if (!FirstChild(root, XMLElements::Fields, fields)) return false;
  if (fields == nullptr) return false;
  return ReadChildren(*fields, XMLElements::Field, [&append](DMXMLWrapper& element) {
    return append(std::make_unique<DMField>(element, false));
  });
}

[[nodiscard]] bool ReadDatasetSummaries(DMXMLWrapper& root, DMMetaData& target) {
  DMXMLWrapper* element = nullptr;
  if (!FirstChild(root, XMLElements::DatasetSummaries, element)) return false;
  if (element == nullptr) return true;
  auto summaries = std::make_unique<DMDatasetSummaries>(*element);
  if (!summaries->parseSuccess()) return false;
  target.setDatasetSummaries(summaries.release());
  return true;
}

// Fills the empty `target` from the document text. The parsed document lives
// only as long as this call, so the DOM is gone before the model is used.
[[nodiscard]] bool ReadDocument(const std::string& xml, DMMetaData& target,
                                const FieldSink& append) {
  DMXMLWrapper document;
  document.loadFromContents(xml.c_str());
  // The root's name is deliberately not checked beyond being readable.
  std::string rootName;
  if (document.getName(rootName) != DM_XML_OK || rootName.empty()) return false;
  if (!ReadSharedFormats(document, target)) return false;
  if (!ReadFieldGroups(document, target)) return false;
  if (!ReadRecordCounts(document, target)) return false;
  if (!ReadFields(document, append)) return false;
  return ReadDatasetSummaries(document, target);
}

bool IsWhole(double value) { return std::floor(value) == value; }

double CountOrUnknown(double value) { return value < 0 ? kUnknownCount : value; }

}  // namespace

class DMMetaData::Impl {
 public:
  explicit Impl(DMUpperFunc* upper) : upperFunc(upper) {}

  Impl(const Impl& other)
      : upperFunc(other.upperFunc),
        fieldKeys(other.fieldKeys),
        defaultFormats(other.defaultFormats),
        unweightedCount(other.unweightedCount),
        weightedCount(other.weightedCount),
        droppedCount(other.droppedCount),
        badWeightCount(other.badWeightCount),
        weightedDroppedCount(other.weightedDroppedCount) {
    fields.reserve(other.fields.size());
    for (const auto& field : other.fields) fields.push_back(std::make_unique<DMField>(*field));
    sharedFormats.reserve(other.sharedFormats.size());
    for (const auto& format : other.sharedFormats) {
      sharedFormats.emplace_back(format->Clone());
    }
    fieldGroups.reserve(other.fieldGroups.size());
    for (const auto& group : other.fieldGroups) {
      fieldGroups.push_back(std::make_unique<DMFieldGroup>(*group));
    }
    if (other.datasetSummaries) {
      datasetSummaries = std::make_unique<DMDatasetSummaries>(*other.datasetSummaries);
    }
  }

  Impl& operator=(const Impl&) = delete;
  ~Impl() = default;

  std::string KeyOf(const std::string& name) const {
    return upperFunc != nullptr ? (*upperFunc)(name) : name;
  }

  int FindKey(std::string_view key) const {
    const long found = fieldKeys.Find(key);
    return found < 0 ? kNotFound : static_cast<int>(found);
  }

  // Without a folding function the name is its own key and is looked up as
  // it stands, without a copy.
  int FindField(const std::string& name) const {
    return upperFunc != nullptr ? FindKey((*upperFunc)(name)) : FindKey(name);
  }

  // Takes `field` in at the end unless its name is empty or its key taken.
  int Append(std::unique_ptr<DMField> field) {
    const std::string& name = field->GetName();
    if (name.empty()) return kNotFound;
    std::string key = KeyOf(name);
    if (FindKey(key) != kNotFound) return kNotFound;
    const std::size_t index = fields.size();
    fieldKeys.Append(std::move(key));
    fields.push_back(std::move(field));
    return static_cast<int>(index);
  }

  DMField* FieldAt(unsigned index) const {
    return index < fields.size() ? fields[index].get() : nullptr;
  }

  void RemoveField(std::size_t index) {
    fields.erase(fields.begin() + static_cast<std::ptrdiff_t>(index));
    fieldKeys.Remove(index);
  }

  int FindSharedFormat(const std::string& name) const {
    for (std::size_t i = 0; i < sharedFormats.size(); ++i) {
      if (sharedFormats[i]->GetName() == name) return static_cast<int>(i);
    }
    return kNotFound;
  }

  int FindFieldGroup(GroupType type, int ordinal, const std::string& name) const {
    int seen = 0;
    for (std::size_t i = 0; i < fieldGroups.size(); ++i) {
      const DMFieldGroup& group = *fieldGroups[i];
      if (group.GetType() != type) continue;
      if (ordinal < 0 ? group.GetName() == name : seen++ == ordinal) return static_cast<int>(i);
    }
    return kNotFound;
  }

  [[nodiscard]] bool WriteRecordCounts(DMXMLWrapper& root) const {
    if (unweightedCount < 0 && weightedCount < 0 && droppedCount < 0) return true;
    std::unique_ptr<DMXMLWrapper> element(root.createFreeElement(XMLElements::RecordCounts));
    if (element == nullptr) return false;
    if (element->addAttribute(XMLAttributes::UnweightedCount, unweightedCount) != DM_XML_OK ||
        element->addAttribute(XMLAttributes::WeightedCount, weightedCount) != DM_XML_OK ||
        element->addAttribute(XMLAttributes::DroppedCount, droppedCount) != DM_XML_OK) {
      return false;
    }
    if (badWeightCount >= 0 &&
        element->addAttribute(kBadWeightCount, badWeightCount) != DM_XML_OK) {
      return false;
    }
    if (weightedDroppedCount >= 0 &&
        element->addAttribute(kWeightedDroppedCount, weightedDroppedCount) != DM_XML_OK) {
      return false;
    }
    return AppendTo(root, element);
  }

  [[nodiscard]] bool WriteFieldFormats(DMXMLWrapper& root) const {
    if (sharedFormats.empty()) return true;
    std::unique_ptr<DMXMLWrapper> element(root.createFreeElement(XMLElements::FieldFormats));
    if (element == nullptr) return false;
    for (std::size_t slot = 0; slot < kSlotCount; ++slot) {
      const int index = defaultFormats[slot];
      if (index < 0) continue;
      const std::string& name = sharedFormats[static_cast<std::size_t>(index)]->GetName();
      if (element->addAttribute(kSlotAttribute[slot], name.c_str()) != DM_XML_OK) return false;
    }
    for (const auto& format : sharedFormats) {
      DMXMLWrapper* created = nullptr;
      format->AddToTree(*element, created);
      if (created == nullptr) return false;
    }
    return AppendTo(root, element);
  }

  [[nodiscard]] bool WriteFieldGroups(DMXMLWrapper& root) const {
    if (fieldGroups.empty()) return true;
    std::unique_ptr<DMXMLWrapper> element(root.createFreeElement(XMLElements::FieldGroups));
    if (element == nullptr) return false;
    for (const auto& group : fieldGroups) {
      DMXMLWrapper* created = nullptr;
      group->AddToTree(*element, created);
      // Intended: a group without members ends the list instead of failing
      // the export, and the groups after it are left out. Documents written
      // so far depend on this.
      if (created == nullptr) break;
    }
    return AppendTo(root, element);
  }

  [[nodiscard]] bool WriteFields(DMXMLWrapper& root) const {
    std::unique_ptr<DMXMLWrapper> element(root.createFreeElement(XMLElements::Fields));
    if (element == nullptr) return false;
    // The count goes out as a real number ("%.15g"), as readers expect.
    if (element->addAttribute(XMLAttributes::Count, static_cast<double>(fields.size())) !=
        DM_XML_OK) {
      return false;
    }
    const char* caseSensitive = upperFunc != nullptr ? "false" : "true";
    if (element->addAttribute(XMLAttributes::CaseSensitive, caseSensitive) != DM_XML_OK) {
      return false;
    }
    for (const auto& field : fields) {
      DMXMLWrapper* created = nullptr;
      field->AddToTree(*element, created, false);
      if (created == nullptr) return false;
    }
    return AppendTo(root, element);
  }

  [[nodiscard]] bool WriteDatasetSummaries(DMXMLWrapper& root) const {
    if (datasetSummaries == nullptr) return true;
    DMXMLWrapper* created = nullptr;
    datasetSummaries->AddToTree(root, created);
    return created != nullptr;
  }

  DMUpperFunc* upperFunc;
  std::vector<std::unique_ptr<DMField>> fields;
  dmmetadata_internal::FieldKeys fieldKeys;
  std::vector<std::unique_ptr<DMFormat>> sharedFormats;
  std::vector<std::unique_ptr<DMFieldGroup>> fieldGroups;
  std::array<int, kSlotCount> defaultFormats{kNotFound, kNotFound, kNotFound, kNotFound};
  double unweightedCount = kUnknownCount;
  double weightedCount = kUnknownCount;
  double droppedCount = kUnknownCount;
  double badWeightCount = kUnknownCount;
  double weightedDroppedCount = kUnknownCount;
  std::unique_ptr<DMDatasetSummaries> datasetSummaries;
};

DMMetaData::DMMetaData(DMUpperFunc* upper) : impl_(std::make_unique<Impl>(upper)) {}

DMMetaData::DMMetaData(const std::string& xml, DMUpperFunc* upper)
    : impl_(std::make_unique<Impl>(upper)) {
  // All or nothing: the document is read into a separate container whose
  // state is taken over only when every step succeeded.
  DMMetaData loaded(upper);
  Impl& model = *loaded.impl_;
  const auto append = [&model](std::unique_ptr<DMField> field) {
    return model.Append(std::move(field)) != kNotFound;
  };
  if (ReadDocument(xml, loaded, append)) impl_ = std::move(loaded.impl_);
}

DMMetaData::DMMetaData(const DMMetaData& other) : impl_(std::make_unique<Impl>(*other.impl_)) {}

DMMetaData& DMMetaData::operator=(const DMMetaData& other) {
  // Copy first, so that self-assignment and a failed copy leave this intact.
  auto copy = std::make_unique<Impl>(*other.impl_);
  impl_ = std::move(copy);
  return *this;
}

DMMetaData::~DMMetaData() = default;

unsigned DMMetaData::FieldCount() const { return static_cast<unsigned>(impl_->fields.size()); }

const DMField* DMMetaData::GetField(unsigned index) const { return impl_->FieldAt(index); }

const DMField* DMMetaData::GetField(const std::string& name) const {
  const int index = impl_->FindField(name);
  return index < 0 ? nullptr : impl_->fields[static_cast<std::size_t>(index)].get();
}

int DMMetaData::GetFieldIndex(const std::string& name) const { return impl_->FindField(name); }

int DMMetaData::AppendField(const DMField& field) {
  return impl_->Append(std::make_unique<DMField>(field));
}

int DMMetaData::ReplaceField(unsigned index, const DMField* field) {
  if (index >= impl_->fields.size()) return kNotFound;
  if (field == nullptr) {
    impl_->RemoveField(index);
    return static_cast<int>(index);
  }
  const std::string name = field->GetName();
  if (name.empty()) return kNotFound;
  std::string key = impl_->KeyOf(name);
  if (impl_->FindKey(key) != kNotFound && key != impl_->fieldKeys.At(index)) return kNotFound;
  auto copy = std::make_unique<DMField>(*field);
  impl_->fieldKeys.Replace(index, std::move(key));
  impl_->fields[index] = std::move(copy);
  return static_cast<int>(index);
}

bool DMMetaData::SetSumStats(unsigned index, const DMCatStats* stats) {
  DMField* field = impl_->FieldAt(index);
  return field != nullptr && field->SetSumStats(stats);
}

bool DMMetaData::SetSumStats(unsigned index, const DMContStats* stats) {
  DMField* field = impl_->FieldAt(index);
  return field != nullptr && field->SetSumStats(stats);
}

bool DMMetaData::SetFieldType(unsigned index, DMField::FieldType type) {
  DMField* field = impl_->FieldAt(index);
  return field != nullptr && field->SetFieldType(type);
}

bool DMMetaData::SetValues(unsigned index, const std::vector<DMValue>& values) {
  DMField* field = impl_->FieldAt(index);
  if (field == nullptr) return false;
  field->SetValues(values);
  return true;
}

bool DMMetaData::SetValueLabels(unsigned index, const std::vector<DMValue>& valueLabels) {
  DMField* field = impl_->FieldAt(index);
  if (field == nullptr) return false;
  field->SetValueLabels(valueLabels);
  return true;
}

int DMMetaData::AddSharedFormat(const DMFormat& format) {
  if (format.GetWidth() == 0) return kNotFound;
  if (format.GetName().empty()) return kNotFound;
  std::unique_ptr<DMFormat> copy(format.Clone());
  int index = impl_->FindSharedFormat(copy->GetName());
  if (index == kNotFound) {
    index = static_cast<int>(impl_->sharedFormats.size());
    impl_->sharedFormats.push_back(std::move(copy));
  } else {
    impl_->sharedFormats[static_cast<std::size_t>(index)] = std::move(copy);
  }
  // A replacement may be of another kind than the format a slot chose.
  const DMFormat& stored = *impl_->sharedFormats[static_cast<std::size_t>(index)];
  for (std::size_t slot = 0; slot < kSlotCount; ++slot) {
    if (impl_->defaultFormats[slot] == index &&
        !DMField::MatchesFormat(kSlotStorage[slot], stored)) {
      impl_->defaultFormats[slot] = kNotFound;
    }
  }
  return index;
}

const DMFormat* DMMetaData::GetSharedFormat(unsigned index) const {
  return index < impl_->sharedFormats.size() ? impl_->sharedFormats[index].get() : nullptr;
}

const DMFormat* DMMetaData::GetSharedFormat(const std::string& name) const {
  const int index = impl_->FindSharedFormat(name);
  return index < 0 ? nullptr : impl_->sharedFormats[static_cast<std::size_t>(index)].get();
}

int DMMetaData::DropSharedFormat(unsigned index) {
  if (index >= impl_->sharedFormats.size()) return kNotFound;
  impl_->sharedFormats.erase(impl_->sharedFormats.begin() + static_cast<std::ptrdiff_t>(index));
  const int dropped = static_cast<int>(index);
  for (int& slot : impl_->defaultFormats) {
    if (slot == dropped) {
      slot = kNotFound;
    } else if (slot > dropped) {
      --slot;
    }
  }
  return dropped;
}

int DMMetaData::SetDefaultFormat(DMField::StorageType storage, const std::string& name) {
  const int index = impl_->FindSharedFormat(name);
  if (index < 0) return index;
  const int slot = SlotOf(storage);
  if (slot < 0) return kNotFound;
  if (!DMField::MatchesFormat(storage, *impl_->sharedFormats[static_cast<std::size_t>(index)])) {
    return kNotFound;
  }
  impl_->defaultFormats[static_cast<std::size_t>(slot)] = index;
  return index;
}

const DMFormat* DMMetaData::GetDefaultFormat(DMField::StorageType storage) const {
  const int slot = SlotOf(storage);
  if (slot < 0) return nullptr;
  const int index = impl_->defaultFormats[static_cast<std::size_t>(slot)];
  return index < 0 ? nullptr : impl_->sharedFormats[static_cast<std::size_t>(index)].get();
}

// Which counts must be whole differs between the setters on purpose: the
// document reader applies the same rules, and callers rely on fractional
// weighted counts being kept.
void DMMetaData::SetRecordCounts(double unweighted, double weighted) {
  if (!IsWhole(unweighted)) return;
  impl_->unweightedCount = CountOrUnknown(unweighted);
  impl_->weightedCount = CountOrUnknown(weighted);
}

double DMMetaData::GetRecordCount(bool weighted) const {
  return weighted ? impl_->weightedCount : impl_->unweightedCount;
}

void DMMetaData::SetDroppedCount(double dropped) {
  if (IsWhole(dropped)) impl_->droppedCount = CountOrUnknown(dropped);
}

double DMMetaData::GetDroppedCount() const { return impl_->droppedCount; }

void DMMetaData::SetDroppedDetails(double badWeight, double weightedDropped) {
  if (IsWhole(badWeight)) impl_->badWeightCount = CountOrUnknown(badWeight);
  impl_->weightedDroppedCount = CountOrUnknown(weightedDropped);
}

void DMMetaData::GetDroppedDetails(double& badWeight, double& weightedDropped) const {
  badWeight = impl_->badWeightCount;
  weightedDropped = impl_->weightedDroppedCount;
}

bool DMMetaData::SetFieldGroup(GroupType type, const std::string& name,
                               const std::vector<std::string>& fieldNames, const std::string& label,
                               const std::string& countedValue) {
  if (fieldNames.empty()) return false;
  if (impl_->FindFieldGroup(type, kNotFound, name) != kNotFound) return false;
  impl_->fieldGroups.push_back(
      std::make_unique<DMFieldGroup>(type, name, fieldNames, label, countedValue));
  return true;
}

int DMMetaData::FindFieldGroup(GroupType type, int ordinal, const std::string& name) const {
  return impl_->FindFieldGroup(type, ordinal, name);
}

bool DMMetaData::GetFieldGroup(GroupType type, const std::string& name,
                               std::vector<std::string>& fieldNames, std::string& label,
                               std::string& countedValue) const {
  const int index = impl_->FindFieldGroup(type, kNotFound, name);
  if (index < 0) {
    fieldNames.clear();
    label.clear();
    countedValue.clear();
    return false;
  }
  const DMFieldGroup& group = *impl_->fieldGroups[static_cast<std::size_t>(index)];
  fieldNames = group.GetFieldNames();
  label = group.GetLabel();
  countedValue = group.GetCountedValue();
  return true;
}

bool DMMetaData::GetFieldGroup(GroupType type, unsigned ordinal, std::string& name,
                               std::vector<std::string>& fieldNames, std::string& label,
                               std::string& countedValue) const {
  // An ordinal beyond int would read as a search by name once converted.
  const int index = ordinal > static_cast<unsigned>(std::numeric_limits<int>::max())
                        ? kNotFound
                        : impl_->FindFieldGroup(type, static_cast<int>(ordinal), name);
  if (index < 0) {
    name.clear();
    fieldNames.clear();
    label.clear();
    countedValue.clear();
    return false;
  }
  const DMFieldGroup& group = *impl_->fieldGroups[static_cast<std::size_t>(index)];
  name = group.GetName();
  fieldNames = group.GetFieldNames();
  label = group.GetLabel();
  countedValue = group.GetCountedValue();
  return true;
}

bool DMMetaData::DropFieldGroup(GroupType type, const std::string& name) {
  const int index = impl_->FindFieldGroup(type, kNotFound, name);
  if (index < 0) return false;
  impl_->fieldGroups.erase(impl_->fieldGroups.begin() + index);
  return true;
}

bool DMMetaData::IsCaseSensitive() const { return impl_->upperFunc == nullptr; }

bool DMMetaData::setDatasetSummaries(const std::string& xml) {
  if (xml.empty()) return false;
  auto summaries = std::make_unique<DMDatasetSummaries>(DMDatasetSummaries::fromText(xml.c_str()));
  if (!summaries->parseSuccess()) return false;
  impl_->datasetSummaries = std::move(summaries);
  return true;
}

void DMMetaData::setDatasetSummaries(DMDatasetSummaries* summaries) {
  impl_->datasetSummaries.reset(summaries);
}

const DMDatasetSummaries* DMMetaData::getDatasetSummaries() const {
  return impl_->datasetSummaries.get();
}

bool DMMetaData::ExportXMLDoc(std::string& xml) const {
  if (impl_->fields.empty()) return false;
  DMXMLWrapper document;
  document.createNew(XMLElements::DataModel);
  if (document.getElement() == nullptr) return false;
  if (!impl_->WriteRecordCounts(document)) return false;
  if (!impl_->WriteFieldFormats(document)) return false;
  if (!impl_->WriteFieldGroups(document)) return false;
  if (!impl_->WriteFields(document)) return false;
  if (!impl_->WriteDatasetSummaries(document)) return false;
  std::string text;
  if (document.doc2string(text) != DM_XML_OK) return false;
  xml = std::move(text);
  return true;
}

bool DMMetaData::ValidateXMLChars(const std::string& text) {
  for (const char c : text) {
    const auto byte = static_cast<unsigned char>(c);
    // The zero byte passes on purpose: callers hand in texts that carry the
    // serialiser's trailing NUL.
    if (byte == 0 || byte == '\t' || byte == '\n' || byte == '\r') continue;
    if (byte < 0x20) return false;
  }
  return true;
}
