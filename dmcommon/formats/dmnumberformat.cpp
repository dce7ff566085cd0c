#include "dmcommon/formats/dmnumberformat.h"

#include <algorithm>
#include <memory>
#include <string>
#include <utility>

#include <unicode/decimfmt.h>
#include <unicode/locid.h>
#include <unicode/unistr.h>

#include "dmcommon/formats/dmformat_internal.h"
#include "dmcommon/formats/dmformatutils.h"
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

// ICU shows at most this many fraction digits and takes the count as a
// signed 32-bit number; larger counts are clamped to it rather than wrapped.
constexpr unsigned kMaxScientificDecimals = 999;

constexpr int32_t kExponentDigits = 3;

double ValueOf(const DMDatum& datum) {
  return datum.GetType() == DMDatum::IntegerType ? static_cast<double>(datum.GetInteger())
                                                 : datum.GetReal();
}

// The locale whose symbols a scientific number shows; null for the default.
const icu::Locale* ScientificLocale(DMFormat::DecimalSymbol symbol) {
  switch (symbol) {
    case DMFormat::DecimalSymbol::Period:
      return &icu::Locale::getUS();
    case DMFormat::DecimalSymbol::Comma:
      return &icu::Locale::getGermany();
    case DMFormat::DecimalSymbol::Local:
      return nullptr;
  }
  // Outside the enumeration: the period, as the XML writer treats it.
  return &icu::Locale::getUS();
}

std::unique_ptr<icu::DecimalFormat> MakeScientificFormatter(DMFormat::DecimalSymbol symbol,
                                                            unsigned decimals) {
  std::unique_ptr<icu::DecimalFormat> formatter(
      DMFormatUtils::MakeDecimalFormat(ScientificLocale(symbol)));
  if (formatter == nullptr) return nullptr;
  const auto places = static_cast<int32_t>(std::min(decimals, kMaxScientificDecimals));
  formatter->setScientificNotation(true);
  formatter->setMinimumIntegerDigits(1);
  formatter->setMaximumIntegerDigits(1);
  formatter->setMaximumFractionDigits(places);
  formatter->setMinimumFractionDigits(places);
  formatter->setMinimumExponentDigits(kExponentDigits);
  formatter->setExponentSignAlwaysShown(true);
  formatter->setSignificantDigitsUsed(false);
  return formatter;
}

}  // namespace

struct DMNumberFormat::ScientificCache {
  DecimalSymbol decimalSymbol;
  unsigned decimals;
  // The default locale the formatter was built for; empty unless the symbol
  // is `Local`.
  std::string locale;
  std::unique_ptr<icu::DecimalFormat> formatter;
};

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

DMNumberFormat::DMNumberFormat(const DMNumberFormat& other)
    : DMFormat(other),
      formatType_(other.formatType_),
      width_(other.width_),
      alignment_(other.alignment_),
      name_(other.name_),
      decimals_(other.decimals_),
      decimalSymbol_(other.decimalSymbol_),
      groupingSymbol_(other.groupingSymbol_) {}

DMNumberFormat& DMNumberFormat::operator=(const DMNumberFormat& other) {
  if (this == &other) return *this;
  DMFormat::operator=(other);
  formatType_ = other.formatType_;
  width_ = other.width_;
  alignment_ = other.alignment_;
  name_ = other.name_;
  decimals_ = other.decimals_;
  decimalSymbol_ = other.decimalSymbol_;
  groupingSymbol_ = other.groupingSymbol_;
  // The own formatter stays: `Format` checks it against the new settings.
  return *this;
}

DMNumberFormat::~DMNumberFormat() = default;

DMNumberFormat* DMNumberFormat::Clone() const { return new DMNumberFormat(*this); }

void DMNumberFormat::SetName(const std::string& name) {
  if (width_ != 0) name_ = name;
}

int DMNumberFormat::GetWidth() const { return width_; }

DMFormat::Alignment DMNumberFormat::GetAlignment() const { return alignment_; }

const std::string& DMNumberFormat::GetName() const { return name_; }

int DMNumberFormat::Format(const DMDatum& datum, ValueUnits /*units*/, std::string& out) const {
  out.clear();
  if (datum.IsNull()) {
    out.push_back('.');
    return DM_FORMAT_OK;
  }
  if (datum.GetType() == DMDatum::StringType || width_ == 0) return DM_FORMAT_FAILED;
  // The binary, zoned and packed types have no display of their own: they
  // show as the standard type does.
  if (formatType_ == Scientific) return FormatScientific(ValueOf(datum), out);
  icu::UnicodeString text;
  if (int rc = DMFormatUtils::FormatStandard(datum, text, width_, decimals_, decimalSymbol_,
                                             groupingSymbol_);
      rc != DM_FORMAT_OK) {
    return rc;
  }
  dmformat_internal::ToUTF8(text, out);
  return DM_FORMAT_OK;
}

int DMNumberFormat::FormatScientific(double value, std::string& out) const {
  if (width_ > DMFormatUtils::kMaxNumberWidth) return DM_FORMAT_FAILED;
  // Building a formatter costs dozens of formatted values, so it is kept for
  // as long as the decimals, the symbol and, for `Local`, the default locale
  // stay what it was built for; then its output is that of a fresh one.
  const char* locale =
      decimalSymbol_ == DecimalSymbol::Local ? icu::Locale::getDefault().getName() : "";
  if (scientific_ == nullptr || scientific_->decimalSymbol != decimalSymbol_ ||
      scientific_->decimals != decimals_ || scientific_->locale != locale) {
    scientific_.reset();
    auto formatter = MakeScientificFormatter(decimalSymbol_, decimals_);
    // A failure is not kept, so a passing shortage of memory is retried.
    if (formatter == nullptr) return DM_FORMAT_FAILED;
    scientific_ = std::make_unique<ScientificCache>(
        ScientificCache{decimalSymbol_, decimals_, std::string(locale), std::move(formatter)});
  }
  icu::UnicodeString text;
  scientific_->formatter->format(value, text);
  if (width_ > 0) text.padLeading(width_, u' ');
  if (text.isBogus()) return DM_FORMAT_FAILED;
  dmformat_internal::ToUTF8(text, out);
  return DM_FORMAT_OK;
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
