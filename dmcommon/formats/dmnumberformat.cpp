#include "dmcommon/formats/dmnumberformat.h"

#include <memory>
#include <string>
#include <utility>

#include "dmcommon/formats/dmformat_internal.h"
#include "dmcommon/values/dmdatum.h"
#include "dmcommon/values/dmenumdict.h"
#include "dmcommon/xml/dmxmlwrapper.h"
#include "dmcommon/xml/vocabulary/xmlvocabulary.h"

using DmExtension::DMXMLWrapper;
namespace XMLElements = DmCppHelperV1::XMLElements;
namespace XMLEntities = DmCppHelperV1::XMLEntities;

namespace {

constexpr DMEnumDictEntry gFmtTypeDict[] = {
    {DMNumberFormat::Standard, XMLEntities::Standard},
    {DMNumberFormat::Scientific, XMLEntities::Scientific},
    {DMNumberFormat::General, XMLEntities::General},
    {DMNumberFormat::Restricted, XMLEntities::Restricted},
    {DMNumberFormat::IntBin, XMLEntities::IntBin},
    {DMNumberFormat::PosIntBin, XMLEntities::PosIntBin},
    {DMNumberFormat::PosIntBinHex, XMLEntities::PosIntBinHex},
    {DMNumberFormat::Zoned, XMLEntities::Zoned},
    {DMNumberFormat::Packed, XMLEntities::Packed},
    {DMNumberFormat::UnsignedPacked, XMLEntities::UnsignedPacked},
    {DMNumberFormat::RealBin, XMLEntities::RealBin},
    {DMNumberFormat::PosRealBin, XMLEntities::PosRealBin},
    {0, nullptr},
};
static_assert(dmformat_internal::MapsBothWays(gFmtTypeDict));

}  // namespace

DMNumberFormat::DMNumberFormat() : DMNumberFormat(Standard, 0, 0) {}

DMNumberFormat::DMNumberFormat(FormatType type, int width, unsigned decimals)
    : formatType_(type),
      width_(width),
      alignment_(Auto),
      decimals_(decimals),
      decimalSymbol_(DecimalSymbol::Period),
      groupingSymbol_(GroupingSymbol::None) {}

DMNumberFormat::DMNumberFormat(const DMXMLWrapper& element) : DMNumberFormat() {
  dmformat_internal::NumericAttrs read;
  if (dmformat_internal::ReadNumericAttrs(element, gFmtTypeDict, read) != DM_FORMAT_OK) return;
  formatType_ = static_cast<FormatType>(read.type);
  width_ = read.width;
  alignment_ = read.alignment;
  name_ = read.name;
  decimals_ = read.decimals;
  decimalSymbol_ = read.decimalSymbol;
  groupingSymbol_ = read.groupingSymbol;
}

DMNumberFormat::DMNumberFormat(const DMNumberFormat& other) = default;

DMNumberFormat& DMNumberFormat::operator=(const DMNumberFormat& other) = default;

DMNumberFormat::~DMNumberFormat() = default;

DMNumberFormat* DMNumberFormat::Clone() const { return new DMNumberFormat(*this); }

void DMNumberFormat::SetName(const std::string& name) {
  if (width_ != 0) name_ = name;
}

int DMNumberFormat::GetWidth() const { return width_; }

DMFormat::Alignment DMNumberFormat::GetAlignment() const { return alignment_; }

const std::string& DMNumberFormat::GetName() const { return name_; }

int DMNumberFormat::Format(const DMDatum& /*datum*/, ValueUnits /*units*/, std::string& out) const {
  // Rendering is not part of the library yet: every datum is refused.
  out.clear();
  return DM_FORMAT_FAILED;
}

void DMNumberFormat::AddToTree(DMXMLWrapper& parent, DMXMLWrapper*& created) const {
  created = nullptr;
  if (width_ == 0) return;
  auto element = dmformat_internal::CreateElement(parent, XMLElements::NumberFormat);
  if (element == nullptr) return;
  const dmformat_internal::NumericAttrs attrs{
      name_, width_, alignment_, formatType_, decimals_, decimalSymbol_, groupingSymbol_};
  const char* type = dmformat_internal::EntityOr(gFmtTypeDict, formatType_, XMLEntities::Standard);
  if (dmformat_internal::WriteNumericAttrs(*element, attrs, type) != DM_FORMAT_OK) return;
  dmformat_internal::Publish(parent, std::move(element), created);
}

DMFormat::FormatClass DMNumberFormat::GetFormatClass() const { return Number; }

void DMNumberFormat::Reset(FormatType type, int width, unsigned decimals) {
  if (width == 0) return;
  *this = DMNumberFormat(type, width, decimals);
}

void DMNumberFormat::SetAlignment(Alignment alignment) {
  if (width_ != 0) alignment_ = alignment;
}

DMNumberFormat::FormatType DMNumberFormat::GetFormatType() const {
  return width_ != 0 ? formatType_ : Standard;
}

void DMNumberFormat::SetWidthDecimals(int width, unsigned decimals) {
  if (width == 0 || width_ == 0) return;
  width_ = width;
  decimals_ = decimals;
}

unsigned DMNumberFormat::GetDecimals() const { return width_ != 0 ? decimals_ : 0; }

void DMNumberFormat::SetSeparators(DecimalSymbol decimalSymbol, GroupingSymbol groupingSymbol) {
  if (width_ == 0) return;
  decimalSymbol_ = decimalSymbol;
  groupingSymbol_ = groupingSymbol;
}

void DMNumberFormat::GetSeparators(DecimalSymbol& decimalSymbol,
                                   GroupingSymbol& groupingSymbol) const {
  decimalSymbol = width_ != 0 ? decimalSymbol_ : DecimalSymbol::Period;
  groupingSymbol = width_ != 0 ? groupingSymbol_ : GroupingSymbol::None;
}
