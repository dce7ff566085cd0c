#include "dmcommon/formats/dmtimeformat.h"

#include <memory>
#include <string>
#include <utility>

#include "dmcommon/formats/dmformat_internal.h"
#include "dmcommon/formats/dmformatutils.h"
#include "dmcommon/values/dmdatum.h"
#include "dmcommon/values/dmenumdict.h"
#include "dmcommon/xml/dmxmlwrapper.h"
#include "dmcommon/xml/vocabulary/xmlvocabulary.h"

using DmExtension::DMXMLWrapper;
namespace XMLAttributes = DmCppHelperV1::XMLAttributes;
namespace XMLElements = DmCppHelperV1::XMLElements;
namespace XMLEntities = DmCppHelperV1::XMLEntities;

namespace {

constexpr DMEnumDictEntry gFmtTypeDict[] = {
    {DMTimeFormat::H_M, XMLEntities::H_M},
    {DMTimeFormat::H_M_S, XMLEntities::H_M_S},
    {DMTimeFormat::M_S, XMLEntities::M_S},
    {DMTimeFormat::D_H_M_S, XMLEntities::D_H_M_S},
    {0, nullptr},
};
static_assert(dmformat_internal::MapsBothWays(gFmtTypeDict));

}  // namespace

DMTimeFormat::DMTimeFormat() : DMTimeFormat(H_M_S, 0, 0, UnitsSeparator::None, true) {}

DMTimeFormat::DMTimeFormat(FormatType type, int width, unsigned decimals, UnitsSeparator separator,
                           bool paddedHMS)
    : formatType_(type),
      width_(width),
      alignment_(Auto),
      decimals_(decimals),
      separator_(separator),
      paddedHMS_(paddedHMS) {}

DMTimeFormat::DMTimeFormat(const DMXMLWrapper& element) : DMTimeFormat() {
  dmformat_internal::TemporalAttrs read;
  bool padded = false;
  if (dmformat_internal::ReadTemporalAttrs(element, gFmtTypeDict, read) != DM_FORMAT_OK) return;
  if (dmformat_internal::ReadRequiredBool(element, XMLAttributes::PaddedHMS, padded) !=
      DM_FORMAT_OK) {
    return;
  }
  formatType_ = static_cast<FormatType>(read.type);
  width_ = read.width;
  alignment_ = read.alignment;
  name_ = std::move(read.name);
  decimals_ = read.decimals;
  separator_ = read.separator;
  paddedHMS_ = padded;
}

DMTimeFormat::DMTimeFormat(const DMTimeFormat& other) = default;

DMTimeFormat& DMTimeFormat::operator=(const DMTimeFormat& other) = default;

DMTimeFormat::~DMTimeFormat() = default;

DMTimeFormat* DMTimeFormat::Clone() const { return new DMTimeFormat(*this); }

void DMTimeFormat::SetName(const std::string& name) {
  if (width_ != 0) name_ = name;
}

int DMTimeFormat::GetWidth() const { return width_; }

DMFormat::Alignment DMTimeFormat::GetAlignment() const { return alignment_; }

const std::string& DMTimeFormat::GetName() const { return name_; }

int DMTimeFormat::Format(const DMDatum& /*datum*/, ValueUnits /*units*/, std::string& out) const {
  // Rendering is not part of the library yet: every datum is refused.
  out.clear();
  return DM_FORMAT_FAILED;
}

void DMTimeFormat::AddToTree(DMXMLWrapper& parent, DMXMLWrapper*& created) const {
  created = nullptr;
  // Intended: unlike the number, decorated and string formats, an invalid
  // time format is still written, with width -1, and so reads back as a
  // variable-width one.
  auto element = dmformat_internal::CreateElement(parent, XMLElements::TimeFormat);
  if (element == nullptr) return;
  const dmformat_internal::TemporalAttrs attrs{name_,       width_,    alignment_,
                                               formatType_, decimals_, separator_};
  const char* type = dmformat_internal::EntityOr(gFmtTypeDict, formatType_, XMLEntities::H_M_S);
  if (dmformat_internal::WriteTemporalAttrs(*element, attrs, type) != DM_FORMAT_OK) return;
  if (DMFormatUtils::SetBoolAttr(*element, XMLAttributes::PaddedHMS, paddedHMS_) != DM_FORMAT_OK) {
    return;
  }
  dmformat_internal::Publish(parent, std::move(element), created);
}

DMFormat::FormatClass DMTimeFormat::GetFormatClass() const { return Time; }

void DMTimeFormat::Reset(FormatType type, int width, unsigned decimals, UnitsSeparator separator,
                         bool paddedHMS) {
  if (width == 0) return;
  *this = DMTimeFormat(type, width, decimals, separator, paddedHMS);
}

void DMTimeFormat::SetAlignment(Alignment alignment) {
  if (width_ != 0) alignment_ = alignment;
}

DMTimeFormat::FormatType DMTimeFormat::GetFormatType() const {
  return width_ != 0 ? formatType_ : H_M_S;
}

void DMTimeFormat::SetWidthDecimals(int width, unsigned decimals) {
  if (width == 0 || width_ == 0) return;
  width_ = width;
  decimals_ = decimals;
}

unsigned DMTimeFormat::GetDecimals() const { return width_ != 0 ? decimals_ : 0; }

void DMTimeFormat::SetSeparator(UnitsSeparator separator) {
  if (width_ != 0) separator_ = separator;
}

void DMTimeFormat::GetSeparator(UnitsSeparator& separator) const {
  separator = width_ != 0 ? separator_ : UnitsSeparator::None;
}

bool DMTimeFormat::GetPaddedHMS() const { return width_ != 0 && paddedHMS_; }
