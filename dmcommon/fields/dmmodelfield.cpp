#include "dmcommon/fields/dmmodelfield.h"

#include <cmath>
#include <cstdio>
#include <memory>
#include <string>

#include "dmcommon/fields/dmfield.h"
#include "dmcommon/values/dmvalue_internal.h"
#include "dmcommon/xml/dmxmlresult.h"
#include "dmcommon/xml/dmxmlwrapper.h"
#include "dmcommon/xml/vocabulary/xmlelement.h"

using DmCppHelperV1::XMLElement;
using DmExtension::DM_XML_OK;
using DmExtension::DMXMLWrapper;
namespace XMLAttributes = DmCppHelperV1::XMLAttributes;
namespace XMLElements = DmCppHelperV1::XMLElements;
namespace XMLEntities = DmCppHelperV1::XMLEntities;

namespace {

// Not in the vocabulary: other components write exactly this name.
constexpr char kExtendedRoleAttribute[] = "extendedRole";

// The datum type a value of `storage` is read as; false for Unknown, whose
// values cannot be read, so naming it fails like any text that is no storage.
[[nodiscard]] bool DatumTypeOf(DMField::StorageType storage, DMDatum::DataType& type) {
  switch (storage) {
    case DMField::StorageType::Unknown:
      return false;
    case DMField::StorageType::Integer:
      type = DMDatum::IntegerType;
      return true;
    case DMField::StorageType::String:
      type = DMDatum::StringType;
      return true;
    case DMField::StorageType::Real:
    case DMField::StorageType::Date:
    case DMField::StorageType::Time:
    case DMField::StorageType::Timestamp:
      type = DMDatum::RealType;
      return true;
  }
  return false;
}

// Reads attributes through the element handle; a target value goes through
// the library's datum reader, whose failure code is the only failure.
class HandleAccess {
 public:
  explicit HandleAccess(const DMXMLWrapper& element) : element_(element) {}

  // False when the handle cannot read (no element); absence is not a failure.
  [[nodiscard]] bool Text(const char* name, std::string& value, bool& found) const {
    return element_.getAttribute(name, value, found) == DM_XML_OK;
  }

  // Infinities and not-a-number come back as a null datum without failing,
  // as the datum reader reports them through its special code only.
  [[nodiscard]] bool Datum(const char* name, DMDatum::DataType type, DMDatum& datum) const {
    int special = kValueUnreadable;
    return GetDataValueAttr(element_, name, type, datum, special) == DM_XML_OK;
  }

 private:
  const DMXMLWrapper& element_;
};

// Reads attributes through the element view, giving the outcomes of
// `HandleAccess` for every text, so that both readers agree on a document.
class ViewAccess {
 public:
  explicit ViewAccess(const XMLElement& element) : element_(element) {}

  [[nodiscard]] bool Text(const char* name, std::string& value, bool& found) const {
    found = element_.hasAttribute(name);
    value = found ? element_.getAttribute(name) : std::string();
    return true;
  }

  // Called for a present attribute only.
  [[nodiscard]] bool Datum(const char* name, DMDatum::DataType type, DMDatum& datum) const {
    datum.SetNull();
    switch (type) {
      case DMDatum::IntegerType: {
        // The view's own integer reader refuses trailing characters, which the
        // handle's "%lld" accepts; the same sscanf keeps the readers in step.
        const std::string text = element_.getAttribute(name);
        long long integer = 0;
        if (std::sscanf(text.c_str(), "%lld", &integer) != 1) return false;
        datum.SetInteger(integer);
        return true;
      }
      case DMDatum::StringType:
        datum.SetString(element_.getAttribute(name).c_str());
        return true;
      case DMDatum::RealType: {
        double real = 0.0;
        if (!element_.getAttribute(name, real)) return false;
        // The view hands out infinities and not-a-number as values; the
        // handle's reader leaves them null without failing.
        if (std::isfinite(real)) datum.SetReal(real);
        return true;
      }
    }
    return false;
  }

 private:
  const XMLElement& element_;
};

template <typename Access>
[[nodiscard]] bool ReadRole(const Access& access, DMModelField::MFRoleType& role) {
  std::string text;
  bool found = false;
  if (!access.Text(XMLAttributes::Role, text, found) || !found) return false;
  const int row = DMEnumDict::IndexOfText(gMFRoleDict, text.c_str());
  if (row < 0) return false;
  role = static_cast<DMModelField::MFRoleType>(gMFRoleDict[row].value);
  return true;
}

template <typename Access>
[[nodiscard]] bool ReadRuleFeature(const Access& access,
                                   DMModelField::MFRuleFeatureType& ruleFeature) {
  std::string text;
  bool found = false;
  if (!access.Text(XMLAttributes::RuleFeature, text, found)) return false;
  if (!found) return true;
  // The table's empty first row makes an empty attribute read as None.
  const int row = DMEnumDict::IndexOfText(gMFRuleFeatureDict, text.c_str());
  if (row < 0) return false;
  ruleFeature = static_cast<DMModelField::MFRuleFeatureType>(gMFRuleFeatureDict[row].value);
  return true;
}

template <typename Access>
[[nodiscard]] bool ReadOptionalText(const Access& access, const char* name, std::string& value) {
  bool found = false;
  return access.Text(name, value, found);
}

template <typename Access>
[[nodiscard]] bool ReadTargetValue(const Access& access, DMDatum& value) {
  std::string text;
  bool found = false;
  if (!access.Text(XMLAttributes::Value, text, found)) return false;
  if (!found) return true;
  std::string storage;
  if (!access.Text(XMLAttributes::TargetFieldStorage, storage, found) || !found) return false;
  const int row = DMEnumDict::IndexOfText(gStorageDict, storage.c_str());
  if (row < 0) return false;
  DMDatum::DataType type = DMDatum::IntegerType;
  if (!DatumTypeOf(static_cast<DMField::StorageType>(gStorageDict[row].value), type)) return false;
  return access.Datum(XMLAttributes::Value, type, value);
}

// Step by step into locals; any failing step gives the default (invalid)
// model field, so nothing half-read is ever installed.
template <typename Access>
DMModelField ReadModelField(const Access& access) {
  DMModelField::MFRoleType role = DMModelField::Unset;
  std::string extendedRole;
  DMModelField::MFRuleFeatureType ruleFeature = DMModelField::MFRuleFeatureType::None;
  std::string targetField;
  DMDatum targetValue;
  std::string group;
  std::string tag;
  if (!ReadRole(access, role)) return {};
  if (!ReadOptionalText(access, kExtendedRoleAttribute, extendedRole)) return {};
  if (!ReadRuleFeature(access, ruleFeature)) return {};
  if (!ReadOptionalText(access, XMLAttributes::TargetField, targetField)) return {};
  if (!ReadTargetValue(access, targetValue)) return {};
  if (!ReadOptionalText(access, XMLAttributes::Group, group)) return {};
  if (!ReadOptionalText(access, XMLAttributes::Tag, tag)) return {};
  DMModelField read(role, extendedRole, ruleFeature);
  // Cannot refuse: a role that was read is never Unset.
  if (!read.SetTargetProps(targetField, targetValue, group, tag)) return {};
  return read;
}

[[nodiscard]] bool WriteText(DMXMLWrapper& element, const char* name, const char* value) {
  return element.addAttribute(name, value) == DM_XML_OK;
}

[[nodiscard]] bool WriteIfSet(DMXMLWrapper& element, const char* name, const std::string& value) {
  return value.empty() || WriteText(element, name, value.c_str());
}

[[nodiscard]] bool WriteRuleFeature(DMXMLWrapper& element,
                                    DMModelField::MFRuleFeatureType ruleFeature) {
  if (ruleFeature == DMModelField::MFRuleFeatureType::None) return true;
  const char* text =
      DMEnumDict::TextOfValue(gMFRuleFeatureDict, static_cast<unsigned>(ruleFeature));
  return text != nullptr && WriteText(element, XMLAttributes::RuleFeature, text);
}

// The value, then the storage it is read back as.
[[nodiscard]] bool WriteTargetValue(DMXMLWrapper& element, const DMDatum& value) {
  if (value.IsNull()) return true;
  std::string text;
  const char* storage = nullptr;
  bool written = false;
  switch (value.GetType()) {
    case DMDatum::IntegerType:
      written = DMXMLWrapper::ToString(value.GetInteger(), text);
      storage = XMLEntities::Integer;
      break;
    case DMDatum::RealType:
      written = DMXMLWrapper::ToString(value.GetReal(), text);
      storage = XMLEntities::Real;
      break;
    case DMDatum::StringType:
      text = value.GetString();
      written = true;
      storage = XMLEntities::String;
      break;
  }
  if (!written || storage == nullptr) return false;
  if (!WriteText(element, XMLAttributes::Value, text.c_str())) return false;
  return WriteText(element, XMLAttributes::TargetFieldStorage, storage);
}

}  // namespace

DMModelField::DMModelField() : role(Unset), ruleFeature(MFRuleFeatureType::None) {}

DMModelField::DMModelField(MFRoleType role_, const std::string& extendedRole_,
                           MFRuleFeatureType ruleFeature_)
    : role(role_), extendedRole(extendedRole_), ruleFeature(ruleFeature_) {}

DMModelField::DMModelField(const DMXMLWrapper& element)
    : DMModelField(ReadModelField(HandleAccess(element))) {}

DMModelField::DMModelField(const XMLElement& element)
    : DMModelField(ReadModelField(ViewAccess(element))) {}

DMModelField::DMModelField(const DMModelField& other) = default;

DMModelField& DMModelField::operator=(const DMModelField& other) = default;

DMModelField::~DMModelField() = default;

DMModelField::MFRoleType DMModelField::GetMFRole() const { return role; }

std::string DMModelField::GetMFExtendedRole() const { return extendedRole; }

DMModelField::MFRuleFeatureType DMModelField::GetMFRuleFeature() const { return ruleFeature; }

bool DMModelField::SetTargetProps(const std::string& targetField_, const DMDatum& targetValue_,
                                  const std::string& group_, const std::string& tag_) {
  if (role == Unset) return false;
  targetField = targetField_;
  targetValue = targetValue_;
  group = group_;
  tag = tag_;
  return true;
}

void DMModelField::GetTargetProps(std::string& targetField_, DMDatum& targetValue_,
                                  std::string& group_, std::string& tag_) const {
  targetField_ = targetField;
  targetValue_ = targetValue;
  group_ = group;
  tag_ = tag;
}

void DMModelField::AddToTree(DMXMLWrapper& parent, DMXMLWrapper*& created) const {
  created = nullptr;
  // Unset has no row, so an invalid model field writes nothing; so does a
  // role number outside the table.
  const char* roleText = DMEnumDict::TextOfValue(gMFRoleDict, role);
  if (roleText == nullptr) return;
  std::unique_ptr<DMXMLWrapper> element(parent.createFreeElement(XMLElements::ModelField));
  if (element == nullptr) return;
  if (!WriteText(*element, XMLAttributes::Role, roleText)) return;
  if (!WriteIfSet(*element, kExtendedRoleAttribute, extendedRole)) return;
  if (!WriteRuleFeature(*element, ruleFeature)) return;
  if (!WriteIfSet(*element, XMLAttributes::TargetField, targetField)) return;
  if (!WriteTargetValue(*element, targetValue)) return;
  if (!WriteIfSet(*element, XMLAttributes::Group, group)) return;
  if (!WriteIfSet(*element, XMLAttributes::Tag, tag)) return;
  if (parent.addElement(element.get()) != DM_XML_OK) return;
  created = element.release();
}
