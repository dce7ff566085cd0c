#include "dmcommon/metadata/dmfieldgroup.h"

#include <memory>

#include "dmcommon/xml/dmxmlresult.h"
#include "dmcommon/xml/dmxmlwrapper.h"

using DmExtension::DM_XML_OK;
using DmExtension::DMXMLWrapper;
namespace XMLAttributes = DmCppHelperV1::XMLAttributes;
namespace XMLElements = DmCppHelperV1::XMLElements;

namespace {

// An optional attribute is left out rather than written empty, so that a
// document read back gives the same text.
[[nodiscard]] bool WriteUnlessEmpty(DMXMLWrapper& element, const char* name,
                                    const std::string& value) {
  return value.empty() || element.addAttribute(name, value.c_str()) == DM_XML_OK;
}

}  // namespace

DMFieldGroup::DMFieldGroup() : type_(GroupType::FieldGroup) {}

DMFieldGroup::DMFieldGroup(GroupType type, const std::string& name,
                           const std::vector<std::string>& fieldNames, const std::string& label,
                           const std::string& countedValue)
    : type_(type),
      name_(name),
      fieldNames_(fieldNames),
      label_(label),
      countedValue_(countedValue) {}

DMFieldGroup::DMFieldGroup(const DMFieldGroup& other) = default;

DMFieldGroup& DMFieldGroup::operator=(const DMFieldGroup& other) = default;

DMFieldGroup::~DMFieldGroup() = default;

DMFieldGroup::GroupType DMFieldGroup::GetType() const { return type_; }

const std::string& DMFieldGroup::GetName() const { return name_; }

const std::vector<std::string>& DMFieldGroup::GetFieldNames() const { return fieldNames_; }

const std::string& DMFieldGroup::GetLabel() const { return label_; }

const std::string& DMFieldGroup::GetCountedValue() const { return countedValue_; }

void DMFieldGroup::AddToTree(DMXMLWrapper& parent, DMXMLWrapper*& created) const {
  created = nullptr;
  if (fieldNames_.empty()) return;
  const char* typeText = DMEnumDict::TextOfValue(gGroupTypeDict, static_cast<unsigned>(type_));
  if (typeText == nullptr) return;
  std::unique_ptr<DMXMLWrapper> element(parent.createFreeElement(XMLElements::FieldGroup));
  if (element == nullptr) return;
  if (element->addAttribute(XMLAttributes::GroupType, typeText) != DM_XML_OK) return;
  if (element->addAttribute(XMLAttributes::Name, name_.c_str()) != DM_XML_OK) return;
  if (!WriteUnlessEmpty(*element, XMLAttributes::DisplayLabel, label_)) return;
  if (!WriteUnlessEmpty(*element, XMLAttributes::CountedValue, countedValue_)) return;
  for (const std::string& member : fieldNames_) {
    DMXMLWrapper* child = nullptr;
    if (element->addElement(XMLElements::FieldName, &child) != DM_XML_OK) return;
    if (child->addAttribute(XMLAttributes::Name, member.c_str()) != DM_XML_OK) return;
  }
  if (parent.addElement(element.get()) != DM_XML_OK) return;
  created = element.release();
}
