#include "dmcommon/formats/dmstringformat.h"

#include <memory>
#include <string>
#include <utility>

#include "dmcommon/formats/dmformat_internal.h"
#include "dmcommon/formats/dmformatutils.h"
#include "dmcommon/values/dmdatum.h"
#include "dmcommon/xml/dmxmlwrapper.h"
#include "dmcommon/xml/vocabulary/xmlvocabulary.h"

using DmExtension::DMXMLWrapper;
namespace XMLAttributes = DmCppHelperV1::XMLAttributes;
namespace XMLElements = DmCppHelperV1::XMLElements;

DMStringFormat::DMStringFormat() : DMStringFormat(0, false) {}

DMStringFormat::DMStringFormat(int width, bool hexadecimal)
    : width_(width), hexadecimal_(hexadecimal), alignment_(Auto) {}

DMStringFormat::DMStringFormat(const DMXMLWrapper& element) : DMStringFormat() {
  std::string name;
  int width = 0;
  Alignment alignment = Auto;
  bool hexadecimal = false;
  bool found = false;
  if (DMFormatUtils::GetCommonAttr(element, name, width, alignment) != DM_FORMAT_OK) return;
  if (DMFormatUtils::GetBoolAttr(element, XMLAttributes::Hexadecimal, hexadecimal, found) !=
      DM_FORMAT_OK) {
    return;
  }
  width_ = width;
  hexadecimal_ = hexadecimal;
  alignment_ = alignment;
  name_ = std::move(name);
}

DMStringFormat::DMStringFormat(const DMStringFormat& other) = default;

DMStringFormat& DMStringFormat::operator=(const DMStringFormat& other) = default;

DMStringFormat::~DMStringFormat() = default;

DMStringFormat* DMStringFormat::Clone() const { return new DMStringFormat(*this); }

void DMStringFormat::SetName(const std::string& name) {
  if (width_ != 0) name_ = name;
}

int DMStringFormat::GetWidth() const { return width_; }

DMFormat::Alignment DMStringFormat::GetAlignment() const { return alignment_; }

const std::string& DMStringFormat::GetName() const { return name_; }

int DMStringFormat::Format(const DMDatum& datum, ValueUnits /*units*/, std::string& out) const {
  out.clear();
  if (width_ < 0) {
    if (datum.IsNull()) return DM_FORMAT_OK;
    if (datum.GetType() != DMDatum::StringType || datum.GetString() == nullptr) {
      return DM_FORMAT_FAILED;
    }
    out = datum.GetString();
    return DM_FORMAT_OK;
  }
  // Fixed-width text is refused on purpose: callers lay out fixed columns of
  // text themselves; the invalid width 0 renders nothing, successfully.
  return width_ == 0 ? DM_FORMAT_OK : DM_FORMAT_FAILED;
}

void DMStringFormat::AddToTree(DMXMLWrapper& parent, DMXMLWrapper*& created) const {
  created = nullptr;
  if (width_ == 0) return;
  auto element = dmformat_internal::CreateElement(parent, XMLElements::StringFormat);
  if (element == nullptr) return;
  if (DMFormatUtils::SetCommonAttr(*element, name_, width_, alignment_) != DM_FORMAT_OK) return;
  if (DMFormatUtils::SetBoolAttr(*element, XMLAttributes::Hexadecimal, hexadecimal_) !=
      DM_FORMAT_OK) {
    return;
  }
  dmformat_internal::Publish(parent, std::move(element), created);
}

DMFormat::FormatClass DMStringFormat::GetFormatClass() const { return String; }

void DMStringFormat::Reset(int width, bool hexadecimal) {
  if (width == 0) return;
  *this = DMStringFormat(width, hexadecimal);
}

void DMStringFormat::SetAlignment(Alignment alignment) {
  if (width_ != 0) alignment_ = alignment;
}

bool DMStringFormat::GetHexRep() const { return hexadecimal_; }
