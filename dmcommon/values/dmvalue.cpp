#include "dmcommon/values/dmvalue.h"

#include <cstring>

#include "dmcommon/values/dmvalue_internal.h"
#include "dmcommon/xml/dmxmlwrapper.h"

using DmExtension::DM_XML_OK;
using DmExtension::DMXMLWrapper;
namespace XMLAttributes = DmCppHelperV1::XMLAttributes;
namespace XMLEntities = DmCppHelperV1::XMLEntities;

namespace {

// Reads an optional attribute whose text must match a row of `table`: absent
// gives 0, a matching text the row's value; false for any other text.
[[nodiscard]] bool ReadEntity(const DMXMLWrapper& element, const char* attribute,
                              const DMEnumDictEntry* table, unsigned& value) {
  std::string text;
  bool found = false;
  if (element.getAttribute(attribute, text, found) != DM_XML_OK) return false;
  if (!found) {
    value = 0;
    return true;
  }
  const int index = DMEnumDict::IndexOfText(table, text.c_str());
  if (index < 0) return false;
  value = table[index].value;
  return true;
}

// The flag texts: 1 marks the flag field's true value, 2 its false value.
constexpr DMEnumDictEntry kFlagDict[] = {
    {1, XMLEntities::True},
    {2, XMLEntities::False},
    {0, nullptr},
};

}  // namespace

int GetDataValueAttr(const DMXMLWrapper& element, const char* attribute, DMDatum::DataType type,
                     DMDatum& datum, int& special) {
  datum.SetNull();
  special = kValueUnreadable;
  bool found = false;
  switch (type) {
    case DMDatum::IntegerType: {
      long long integer = 0;
      if (int rc = element.getAttribute(attribute, integer, found); rc != DM_XML_OK) return rc;
      if (!found) {
        special = kValueAbsent;
        return DM_XML_OK;
      }
      special = kValueRead;
      datum.SetInteger(integer);
      return DM_XML_OK;
    }
    case DMDatum::StringType: {
      std::string text;
      if (int rc = element.getAttribute(attribute, text, found); rc != DM_XML_OK) return rc;
      if (!found) {
        special = kValueAbsent;
        return DM_XML_OK;
      }
      special = kValueRead;
      datum.SetString(text.c_str());
      return DM_XML_OK;
    }
    case DMDatum::RealType:
      break;
  }
  // Every other type reads as a real number.
  double real = 0.0;
  int kind = kValueUnreadable;
  if (int rc = element.getAttribute(attribute, real, found, kind); rc != DM_XML_OK) return rc;
  if (!found) {
    special = kValueAbsent;
    return DM_XML_OK;
  }
  special = kind;
  if (kind == kValueRead) datum.SetReal(real);
  return DM_XML_OK;
}

DMValue::DMValue() : flag(0), partition(0) {}

DMValue::DMValue(const DMDatum& datum_, const std::string& label_, unsigned flag_,
                 unsigned partition_)
    : datum(datum_), label(label_), flag(flag_), partition(partition_) {}

DMValue::DMValue(const DMXMLWrapper& element, DMDatum::DataType type) : DMValue() {
  int special = kValueUnreadable;
  const int rc = GetDataValueAttr(element, XMLAttributes::Value, type, datum, special);
  if (type == DMDatum::RealType && rc == DM_XML_OK) {
    bool found = false;
    // Kept so that writing gives back exactly the text that was read.
    if (element.getAttribute(XMLAttributes::Value, valueText, found) != DM_XML_OK) {
      valueText.clear();
    }
  }
  if (rc != DM_XML_OK || special != kValueRead ||
      !ReadEntity(element, XMLAttributes::FlagValue, kFlagDict, flag) ||
      !ReadEntity(element, XMLAttributes::DefinePartition, gPartitionDict, partition)) {
    MakeEmpty();
    return;
  }
  bool found = false;
  if (element.getAttribute(XMLAttributes::DisplayLabel, label, found) != DM_XML_OK) MakeEmpty();
}

DMValue::DMValue(const DMValue& other) = default;

DMValue& DMValue::operator=(const DMValue& other) = default;

DMValue::~DMValue() = default;

void DMValue::MakeEmpty() {
  // Flag and partition deliberately keep what was read before the failure.
  datum.SetNull(DMDatum::IntegerType);
  label.clear();
  valueText.clear();
}

const DMDatum& DMValue::GetDatum() const { return datum; }

const std::string& DMValue::GetLabel() const { return label; }

unsigned DMValue::GetFlag() const { return flag; }

unsigned DMValue::GetPartition() const { return partition; }

const std::string& DMValue::GetValueText() const { return valueText; }

void DMValue::SetLabel(const std::string& label_) { label = label_; }

void DMValue::SetFlag(unsigned flag_) { flag = flag_; }

void DMValue::SetPartition(unsigned partition_) { partition = partition_; }

int DMValue::GetIndex(const DMDatum& datum, const std::vector<DMValue>& list) {
  if (datum.IsNull()) return -2;
  if (datum.GetType() == DMDatum::StringType) return GetIndex(datum.GetString(), list);
  for (std::size_t i = 0; i < list.size(); ++i) {
    const DMDatum& candidate = list[i].datum;
    if (candidate.IsNull() || candidate.GetType() != datum.GetType()) return -2;
    if (candidate.Compare(datum) == 0) return static_cast<int>(i);
  }
  return -1;
}

int DMValue::GetIndex(const char* text, const std::vector<DMValue>& list) {
  if (text == nullptr) return -2;
  if (list.empty()) return -1;
  if (list.front().datum.GetType() != DMDatum::StringType) return -2;
  for (std::size_t i = 0; i < list.size(); ++i) {
    // Only the first element's type is checked up front; a later element that
    // holds no text (null, or of another type) equals nothing.
    const char* candidate = list[i].datum.GetString();
    if (candidate != nullptr && std::strcmp(candidate, text) == 0) return static_cast<int>(i);
  }
  return -1;
}

int DMValue::SearchList(const DMDatum& datum, const std::vector<DMValue>& list) {
  const int index = GetIndex(datum, list);
  if (index >= 0) return 1;
  return index == -1 ? 0 : 2;
}

int DMValue::SearchList(const char* text, const std::vector<DMValue>& list) {
  const int index = GetIndex(text, list);
  if (index >= 0) return 1;
  return index == -1 ? 0 : 2;
}
