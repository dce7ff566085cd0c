#include "dmcommon/formats/dmdecoratedformat.h"

#include <memory>
#include <string>
#include <utility>

#include <unicode/unistr.h>

#include "dmcommon/formats/dmformat_internal.h"
#include "dmcommon/formats/dmformatutils.h"
#include "dmcommon/values/dmdatum.h"
#include "dmcommon/values/dmenumdict.h"
#include "dmcommon/xml/dmxmlwrapper.h"
#include "dmcommon/xml/vocabulary/xmlvocabulary.h"

using DmExtension::DM_XML_OK;
using DmExtension::DMXMLWrapper;
namespace XMLAttributes = DmCppHelperV1::XMLAttributes;
namespace XMLElements = DmCppHelperV1::XMLElements;
namespace XMLEntities = DmCppHelperV1::XMLEntities;

namespace {

constexpr DMEnumDictEntry gFmtTypeDict[] = {
    {DMDecoratedFormat::Currency, XMLEntities::Currency},
    {DMDecoratedFormat::Percentage, XMLEntities::Percentage},
    {0, nullptr},
};
static_assert(dmformat_internal::MapsBothWays(gFmtTypeDict));

// Ids from 0 to this one are known; XML may carry any non-negative id.
constexpr unsigned kLastCustomCurrencyId = 5;

// The negative prefix that formats made by the program start with, so that a
// negative amount shows its sign before the currency.
constexpr char kDefaultNegPrefix[] = "-";

struct Affixes {
  std::string prefix;
  std::string suffix;
  std::string negPrefix;
  std::string negSuffix;
};

[[nodiscard]] int ReadOptionalText(const DMXMLWrapper& element, const char* attribute,
                                   std::string& text) {
  bool found = false;
  return element.getAttribute(attribute, text, found) == DM_XML_OK ? DM_FORMAT_OK
                                                                   : DM_FORMAT_FAILED;
}

// Absent affixes are empty; in particular the negative prefix is then empty,
// not the "-" that the argument constructor gives.
[[nodiscard]] int ReadAffixes(const DMXMLWrapper& element, Affixes& affixes) {
  Affixes read;
  if (int rc = ReadOptionalText(element, XMLAttributes::Prefix, read.prefix); rc != DM_FORMAT_OK) {
    return rc;
  }
  if (int rc = ReadOptionalText(element, XMLAttributes::Suffix, read.suffix); rc != DM_FORMAT_OK) {
    return rc;
  }
  if (int rc = ReadOptionalText(element, XMLAttributes::NegPrefix, read.negPrefix);
      rc != DM_FORMAT_OK) {
    return rc;
  }
  if (int rc = ReadOptionalText(element, XMLAttributes::NegSuffix, read.negSuffix);
      rc != DM_FORMAT_OK) {
    return rc;
  }
  affixes = std::move(read);
  return DM_FORMAT_OK;
}

// No upper bound here: documents may name currencies this version does not
// know, and they are kept so that writing gives them back.
[[nodiscard]] int ReadCustomCurrencyId(const DMXMLWrapper& element, unsigned& id) {
  int value = 0;
  bool found = false;
  if (element.getAttribute(XMLAttributes::CustomCurrType, value, found) != DM_XML_OK) {
    return DM_FORMAT_FAILED;
  }
  if (value < 0) return DM_FORMAT_FAILED;
  id = static_cast<unsigned>(value);
  return DM_FORMAT_OK;
}

[[nodiscard]] int WriteOptionalText(DMXMLWrapper& element, const char* attribute,
                                    const std::string& text) {
  if (text.empty()) return DM_FORMAT_OK;
  return element.addAttribute(attribute, text.c_str()) == DM_XML_OK ? DM_FORMAT_OK
                                                                    : DM_FORMAT_FAILED;
}

[[nodiscard]] int WriteAffixes(DMXMLWrapper& element, const Affixes& affixes) {
  if (int rc = WriteOptionalText(element, XMLAttributes::Prefix, affixes.prefix);
      rc != DM_FORMAT_OK) {
    return rc;
  }
  if (int rc = WriteOptionalText(element, XMLAttributes::Suffix, affixes.suffix);
      rc != DM_FORMAT_OK) {
    return rc;
  }
  if (int rc = WriteOptionalText(element, XMLAttributes::NegPrefix, affixes.negPrefix);
      rc != DM_FORMAT_OK) {
    return rc;
  }
  return WriteOptionalText(element, XMLAttributes::NegSuffix, affixes.negSuffix);
}

[[nodiscard]] int WriteCustomCurrencyId(DMXMLWrapper& element, unsigned id) {
  if (id == 0) return DM_FORMAT_OK;
  return element.addAttribute(XMLAttributes::CustomCurrType, static_cast<long long>(id)) ==
                 DM_XML_OK
             ? DM_FORMAT_OK
             : DM_FORMAT_FAILED;
}

bool StartsWithZero(const std::string& text) { return !text.empty() && text[0] == '0'; }

}  // namespace

DMDecoratedFormat::DMDecoratedFormat()
    : formatType_(Currency),
      width_(0),
      alignment_(Auto),
      decimals_(0),
      decimalSymbol_(DecimalSymbol::Period),
      groupingSymbol_(GroupingSymbol::None),
      customCurrencyId_(0) {}

DMDecoratedFormat::DMDecoratedFormat(FormatType type, int width, unsigned decimals)
    : formatType_(type),
      width_(width),
      alignment_(Auto),
      decimals_(decimals),
      decimalSymbol_(DecimalSymbol::Period),
      groupingSymbol_(GroupingSymbol::None),
      negPrefix_(kDefaultNegPrefix),
      customCurrencyId_(0) {}

DMDecoratedFormat::DMDecoratedFormat(const DMXMLWrapper& element) : DMDecoratedFormat() {
  dmformat_internal::NumericAttrs read;
  Affixes affixes;
  unsigned id = 0;
  if (dmformat_internal::ReadNumericAttrs(element, gFmtTypeDict, read) != DM_FORMAT_OK) return;
  if (ReadAffixes(element, affixes) != DM_FORMAT_OK) return;
  if (ReadCustomCurrencyId(element, id) != DM_FORMAT_OK) return;
  formatType_ = static_cast<FormatType>(read.type);
  width_ = read.width;
  alignment_ = read.alignment;
  name_ = std::move(read.name);
  decimals_ = read.decimals;
  decimalSymbol_ = read.decimalSymbol;
  groupingSymbol_ = read.groupingSymbol;
  prefix_ = std::move(affixes.prefix);
  suffix_ = std::move(affixes.suffix);
  negPrefix_ = std::move(affixes.negPrefix);
  negSuffix_ = std::move(affixes.negSuffix);
  customCurrencyId_ = id;
}

DMDecoratedFormat::DMDecoratedFormat(const DMDecoratedFormat& other) = default;

DMDecoratedFormat& DMDecoratedFormat::operator=(const DMDecoratedFormat& other) = default;

DMDecoratedFormat::~DMDecoratedFormat() = default;

DMDecoratedFormat* DMDecoratedFormat::Clone() const { return new DMDecoratedFormat(*this); }

void DMDecoratedFormat::SetName(const std::string& name) {
  if (width_ != 0) name_ = name;
}

int DMDecoratedFormat::GetWidth() const { return width_; }

DMFormat::Alignment DMDecoratedFormat::GetAlignment() const { return alignment_; }

const std::string& DMDecoratedFormat::GetName() const { return name_; }

int DMDecoratedFormat::Format(const DMDatum& datum, ValueUnits /*units*/, std::string& out) const {
  out.clear();
  if (datum.IsNull()) {
    out.push_back('.');
    return DM_FORMAT_OK;
  }
  if (datum.GetType() == DMDatum::StringType || width_ == 0) return DM_FORMAT_FAILED;
  icu::UnicodeString number;
  if (int rc = DMFormatUtils::FormatStandard(datum, number, width_, decimals_, decimalSymbol_,
                                             groupingSymbol_);
      rc != DM_FORMAT_OK) {
    return rc;
  }
  number.trim();
  // The sign is read from the text, so that a value that shows as "-0.00"
  // is dressed as negative, as it reads.
  const bool negative = number.startsWith(icu::UnicodeString(u'-'));
  if (negative) number.remove(0, 1);
  icu::UnicodeString leading = dmformat_internal::ToUTF16(prefix_);
  icu::UnicodeString trailing = dmformat_internal::ToUTF16(suffix_);
  if (negative) {
    leading.insert(0, dmformat_internal::ToUTF16(negPrefix_));
    trailing.append(dmformat_internal::ToUTF16(negSuffix_));
  }
  icu::UnicodeString text;
  // A fixed width keeps the number and gives up the affixes; a variable one
  // always has room.
  if (width_ > 0 && leading.length() + number.length() + trailing.length() > width_) {
    if (negative) text.append(u'-');
    text.append(number);
  } else {
    text.append(leading).append(number).append(trailing);
  }
  if (width_ > 0) text.padLeading(width_, u' ');
  dmformat_internal::ToUTF8(text, out);
  return DM_FORMAT_OK;
}

void DMDecoratedFormat::AddToTree(DMXMLWrapper& parent, DMXMLWrapper*& created) const {
  created = nullptr;
  if (width_ == 0) return;
  auto element = dmformat_internal::CreateElement(parent, XMLElements::DecoratedFormat);
  if (element == nullptr) return;
  const dmformat_internal::NumericAttrs attrs{
      name_, width_, alignment_, formatType_, decimals_, decimalSymbol_, groupingSymbol_};
  const char* type = formatType_ == Currency ? XMLEntities::Currency : XMLEntities::Percentage;
  if (dmformat_internal::WriteNumericAttrs(*element, attrs, type) != DM_FORMAT_OK) return;
  if (WriteAffixes(*element, {prefix_, suffix_, negPrefix_, negSuffix_}) != DM_FORMAT_OK) return;
  if (WriteCustomCurrencyId(*element, customCurrencyId_) != DM_FORMAT_OK) return;
  dmformat_internal::Publish(parent, std::move(element), created);
}

DMFormat::FormatClass DMDecoratedFormat::GetFormatClass() const { return Decorated; }

void DMDecoratedFormat::Reset(FormatType type, int width, unsigned decimals) {
  if (width == 0) return;
  *this = DMDecoratedFormat(type, width, decimals);
}

void DMDecoratedFormat::SetAlignment(Alignment alignment) {
  if (width_ != 0) alignment_ = alignment;
}

DMDecoratedFormat::FormatType DMDecoratedFormat::GetFormatType() const {
  return width_ != 0 ? formatType_ : Currency;
}

void DMDecoratedFormat::SetWidthDecimals(int width, unsigned decimals) {
  if (width == 0 || width_ == 0) return;
  width_ = width;
  decimals_ = decimals;
}

unsigned DMDecoratedFormat::GetDecimals() const { return width_ != 0 ? decimals_ : 0; }

void DMDecoratedFormat::SetSeparators(DecimalSymbol decimalSymbol, GroupingSymbol groupingSymbol) {
  if (width_ == 0) return;
  decimalSymbol_ = decimalSymbol;
  groupingSymbol_ = groupingSymbol;
}

void DMDecoratedFormat::GetSeparators(DecimalSymbol& decimalSymbol,
                                      GroupingSymbol& groupingSymbol) const {
  decimalSymbol = width_ != 0 ? decimalSymbol_ : DecimalSymbol::Period;
  groupingSymbol = width_ != 0 ? groupingSymbol_ : GroupingSymbol::None;
}

void DMDecoratedFormat::SetAffixes(const std::string& prefix, const std::string& suffix) {
  if (width_ == 0) return;
  // A leading '0' on one side only is refused; the test is on that character
  // alone and is intended as it stands.
  if (StartsWithZero(prefix) != StartsWithZero(suffix)) return;
  prefix_ = prefix;
  suffix_ = suffix;
}

void DMDecoratedFormat::GetAffixes(std::string& prefix, std::string& suffix) const {
  prefix = width_ != 0 ? prefix_ : std::string();
  suffix = width_ != 0 ? suffix_ : std::string();
}

void DMDecoratedFormat::SetNegAffixes(const std::string& prefix, const std::string& suffix) {
  if (width_ == 0) return;
  negPrefix_ = prefix;
  negSuffix_ = suffix;
}

void DMDecoratedFormat::GetNegAffixes(std::string& prefix, std::string& suffix) const {
  prefix = width_ != 0 ? negPrefix_ : std::string();
  suffix = width_ != 0 ? negSuffix_ : std::string();
}

void DMDecoratedFormat::SetCustomCurrencyID(unsigned id) {
  if (width_ == 0 || id > kLastCustomCurrencyId) return;
  customCurrencyId_ = id;
}

unsigned DMDecoratedFormat::GetCustomCurrencyID() const { return customCurrencyId_; }
