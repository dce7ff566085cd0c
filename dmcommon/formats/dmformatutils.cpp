#include "dmcommon/formats/dmformatutils.h"

#include <algorithm>
#include <charconv>
#include <climits>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <memory>
#include <string>
#include <utility>

#include <unicode/dcfmtsym.h>
#include <unicode/numfmt.h>
#include <unicode/utypes.h>

#include "dmcommon/formats/dmformat_internal.h"
#include "dmcommon/printable/dmuncconverter.h"
#include "dmcommon/values/dmdatum.h"
#include "dmcommon/xml/dmxmlwrapper.h"

using DmExtension::DM_XML_OK;
using DmExtension::DMXMLWrapper;
namespace XMLAttributes = DmCppHelperV1::XMLAttributes;
namespace XMLEntities = DmCppHelperV1::XMLEntities;

static_assert(dmformat_internal::MapsBothWays(gAlignDict));
static_assert(dmformat_internal::MapsBothWays(gDecSymDict));
static_assert(dmformat_internal::MapsBothWays(gGrpSymDict));
// The local units separator reads as the colon, so its value does not lead
// back to its text; the writer maps it on its own.
static_assert(dmformat_internal::TextsAreUnique(gUniSepDict));

namespace {

// Flags are written as these literals and read by comparison with the
// vocabulary's entities; the texts agree, the two sides are kept apart so that
// either can change without the other.
constexpr char kTrueText[] = "true";
constexpr char kFalseText[] = "false";

int FromXml(int xmlResult) { return xmlResult == DM_XML_OK ? DM_FORMAT_OK : DM_FORMAT_FAILED; }

// Reads an entity-valued attribute through `table`: absent gives `absent` and
// success; present but matching no row (the empty text included) fails.
[[nodiscard]] int ReadEntity(const DMXMLWrapper& element, const char* attribute,
                             const DMEnumDictEntry* table, unsigned absent, unsigned& value,
                             bool& found) {
  value = absent;
  std::string text;
  if (element.getAttribute(attribute, text, found) != DM_XML_OK) return DM_FORMAT_FAILED;
  if (!found) return DM_FORMAT_OK;
  const int index = DMEnumDict::IndexOfText(table, text.c_str());
  if (index < 0) return DM_FORMAT_FAILED;
  value = table[index].value;
  return DM_FORMAT_OK;
}

[[nodiscard]] int ReadWidth(const DMXMLWrapper& element, int& width) {
  bool found = false;
  if (element.getAttribute(XMLAttributes::Width, width, found) != DM_XML_OK) {
    return DM_FORMAT_FAILED;
  }
  if (!found || width == 0) return DM_FORMAT_FAILED;
  if (width < 0) width = -1;
  return DM_FORMAT_OK;
}

// Never fails: an empty or unknown alignment is ignored on purpose, so that
// documents written with alignments this library does not know still load.
void ReadAlignment(const DMXMLWrapper& element, DMFormat::Alignment& alignment) {
  std::string text;
  bool found = false;
  if (element.getAttribute(XMLAttributes::Alignment, text, found) != DM_XML_OK) return;
  if (!found) {
    alignment = DMFormat::Auto;
    return;
  }
  const int index = DMEnumDict::IndexOfText(gAlignDict, text.c_str());
  if (index >= 0) alignment = static_cast<DMFormat::Alignment>(gAlignDict[index].value);
}

[[nodiscard]] int ReadName(const DMXMLWrapper& element, std::string& name) {
  bool found = false;
  if (element.getAttribute(XMLAttributes::Name, name, found) != DM_XML_OK) return DM_FORMAT_FAILED;
  return found ? DM_FORMAT_OK : DM_FORMAT_FAILED;
}

[[nodiscard]] int ReadFormatType(const DMXMLWrapper& element, const DMEnumDictEntry* typeDict,
                                 unsigned& type) {
  bool found = false;
  if (int rc = ReadEntity(element, XMLAttributes::FormatType, typeDict, 0, type, found);
      rc != DM_FORMAT_OK) {
    return rc;
  }
  return found ? DM_FORMAT_OK : DM_FORMAT_FAILED;
}

[[nodiscard]] int ReadDecimalPlaces(const DMXMLWrapper& element, unsigned& decimals) {
  int value = 0;
  bool found = false;
  if (element.getAttribute(XMLAttributes::DecimalPlaces, value, found) != DM_XML_OK) {
    return DM_FORMAT_FAILED;
  }
  if (!found || value < 0) return DM_FORMAT_FAILED;
  decimals = static_cast<unsigned>(value);
  return DM_FORMAT_OK;
}

[[nodiscard]] int ReadRequiredDecimalSym(const DMXMLWrapper& element,
                                         DMFormat::DecimalSymbol& symbol) {
  bool found = false;
  if (int rc = DMFormatUtils::GetDecimalSymAttr(element, symbol, found); rc != DM_FORMAT_OK) {
    return rc;
  }
  return found ? DM_FORMAT_OK : DM_FORMAT_FAILED;
}

[[nodiscard]] int ReadRequiredGroupingSym(const DMXMLWrapper& element,
                                          DMFormat::GroupingSymbol& symbol) {
  bool found = false;
  if (int rc = DMFormatUtils::GetGroupingSymAttr(element, symbol, found); rc != DM_FORMAT_OK) {
    return rc;
  }
  return found ? DM_FORMAT_OK : DM_FORMAT_FAILED;
}

[[nodiscard]] int ReadRequiredUnitsSep(const DMXMLWrapper& element,
                                       DMFormat::UnitsSeparator& separator) {
  bool found = false;
  if (int rc = DMFormatUtils::GetUnitsSepAttr(element, separator, found); rc != DM_FORMAT_OK) {
    return rc;
  }
  return found ? DM_FORMAT_OK : DM_FORMAT_FAILED;
}

[[nodiscard]] int WriteDecimalPlaces(DMXMLWrapper& element, unsigned decimals) {
  // The long long overload: from unsigned, int and double would be ambiguous.
  return FromXml(
      element.addAttribute(XMLAttributes::DecimalPlaces, static_cast<long long>(decimals)));
}

[[nodiscard]] int WriteFormatType(DMXMLWrapper& element, const char* typeEntity) {
  return FromXml(element.addAttribute(XMLAttributes::FormatType, typeEntity));
}

}  // namespace

// ---------------------------------------------------------------------------
// DMFormatUtils

int DMFormatUtils::SetCommonAttr(DMXMLWrapper& element, const std::string& name, int width,
                                 DMFormat::Alignment alignment) {
  if (element.addAttribute(XMLAttributes::Name, name.c_str()) != DM_XML_OK) {
    return DM_FORMAT_FAILED;
  }
  // Variable width and the invalid width 0 are both written as -1.
  const long long written = width < 1 ? -1 : width;
  if (element.addAttribute(XMLAttributes::Width, written) != DM_XML_OK) return DM_FORMAT_FAILED;
  const char* entity = dmformat_internal::EntityOr(gAlignDict, alignment, XMLEntities::Auto);
  return FromXml(element.addAttribute(XMLAttributes::Alignment, entity));
}

int DMFormatUtils::GetCommonAttr(const DMXMLWrapper& element, std::string& name, int& width,
                                 DMFormat::Alignment& alignment) {
  int readWidth = 0;
  if (int rc = ReadWidth(element, readWidth); rc != DM_FORMAT_OK) return rc;
  DMFormat::Alignment readAlignment = alignment;
  ReadAlignment(element, readAlignment);
  std::string readName;
  if (int rc = ReadName(element, readName); rc != DM_FORMAT_OK) return rc;
  name = std::move(readName);
  width = readWidth;
  alignment = readAlignment;
  return DM_FORMAT_OK;
}

int DMFormatUtils::SetDecimalSymAttr(DMXMLWrapper& element, DMFormat::DecimalSymbol symbol) {
  const char* entity =
      dmformat_internal::EntityOr(gDecSymDict, static_cast<unsigned>(symbol), XMLEntities::Period);
  return FromXml(element.addAttribute(XMLAttributes::DecimalSymbol, entity));
}

int DMFormatUtils::SetGroupingSymAttr(DMXMLWrapper& element, DMFormat::GroupingSymbol symbol) {
  const char* entity =
      dmformat_internal::EntityOr(gGrpSymDict, static_cast<unsigned>(symbol), XMLEntities::None);
  return FromXml(element.addAttribute(XMLAttributes::GroupingSymbol, entity));
}

int DMFormatUtils::SetUnitsSepAttr(DMXMLWrapper& element, DMFormat::UnitsSeparator separator) {
  // Not through gUniSepDict: that table reads `Local` as `Colon`, while
  // `Local` is written as its own entity.
  const char* entity = XMLEntities::None;
  switch (separator) {
    case DMFormat::UnitsSeparator::None:
      entity = XMLEntities::None;
      break;
    case DMFormat::UnitsSeparator::Period:
      entity = XMLEntities::Period;
      break;
    case DMFormat::UnitsSeparator::Comma:
      entity = XMLEntities::Comma;
      break;
    case DMFormat::UnitsSeparator::Space:
      entity = XMLEntities::Space;
      break;
    case DMFormat::UnitsSeparator::Colon:
      entity = XMLEntities::Colon;
      break;
    case DMFormat::UnitsSeparator::Dash:
      entity = XMLEntities::Dash;
      break;
    case DMFormat::UnitsSeparator::Slash:
      entity = XMLEntities::Slash;
      break;
    case DMFormat::UnitsSeparator::Local:
      entity = XMLEntities::Local;
      break;
  }
  return FromXml(element.addAttribute(XMLAttributes::Separator, entity));
}

int DMFormatUtils::GetDecimalSymAttr(const DMXMLWrapper& element, DMFormat::DecimalSymbol& symbol,
                                     bool& found) {
  unsigned value = 0;
  const int rc = ReadEntity(element, XMLAttributes::DecimalSymbol, gDecSymDict,
                            static_cast<unsigned>(DMFormat::DecimalSymbol::Period), value, found);
  symbol = static_cast<DMFormat::DecimalSymbol>(value);
  return rc;
}

int DMFormatUtils::GetGroupingSymAttr(const DMXMLWrapper& element, DMFormat::GroupingSymbol& symbol,
                                      bool& found) {
  unsigned value = 0;
  const int rc = ReadEntity(element, XMLAttributes::GroupingSymbol, gGrpSymDict,
                            static_cast<unsigned>(DMFormat::GroupingSymbol::None), value, found);
  symbol = static_cast<DMFormat::GroupingSymbol>(value);
  return rc;
}

int DMFormatUtils::GetUnitsSepAttr(const DMXMLWrapper& element, DMFormat::UnitsSeparator& separator,
                                   bool& found) {
  unsigned value = 0;
  const int rc = ReadEntity(element, XMLAttributes::Separator, gUniSepDict,
                            static_cast<unsigned>(DMFormat::UnitsSeparator::None), value, found);
  separator = static_cast<DMFormat::UnitsSeparator>(value);
  return rc;
}

int DMFormatUtils::SetBoolAttr(DMXMLWrapper& element, const char* attribute, bool value) {
  return FromXml(element.addAttribute(attribute, value ? kTrueText : kFalseText));
}

int DMFormatUtils::GetBoolAttr(const DMXMLWrapper& element, const char* attribute, bool& value,
                               bool& found) {
  value = false;
  std::string text;
  if (element.getAttribute(attribute, text, found) != DM_XML_OK) return DM_FORMAT_FAILED;
  if (!found) return DM_FORMAT_OK;
  if (text == XMLEntities::True) {
    value = true;
    return DM_FORMAT_OK;
  }
  return text == XMLEntities::False ? DM_FORMAT_OK : DM_FORMAT_FAILED;
}

int DMFormatUtils::FindStrInList(const char* text, const DMEnumDictEntry* table) {
  return DMEnumDict::IndexOfText(table, text);
}

std::string DMFormatUtils::MakeSeparatorStr(DMFormat::UnitsSeparator separator) {
  switch (separator) {
    case DMFormat::UnitsSeparator::Period:
      return ".";
    case DMFormat::UnitsSeparator::Comma:
      return ",";
    case DMFormat::UnitsSeparator::Space:
      return " ";
    case DMFormat::UnitsSeparator::Colon:
      return ":";
    case DMFormat::UnitsSeparator::Dash:
      return "-";
    case DMFormat::UnitsSeparator::Slash:
      return "/";
    case DMFormat::UnitsSeparator::None:
    case DMFormat::UnitsSeparator::Local:
      return "";
  }
  return "";
}

// ---------------------------------------------------------------------------
// Number rendering

namespace {

// Room for the widest field plus the one character a value below 1 may take
// beyond it before the retry with one decimal fewer; the rest is slack.
constexpr int kPrintBufferSize = DMFormatUtils::kMaxNumberWidth + 32;

// The exponent form keeps one leading digit, the decimal point and up to five
// characters of exponent ("E+308") out of the width.
constexpr long long kExponentOverhead = 7;

constexpr int kDefaultGroupSize = 3;

// Powers of ten that are exact in a double; larger ones come from pow.
constexpr double kPowersOfTen[] = {1e0,  1e1,  1e2,  1e3,  1e4,  1e5,  1e6,  1e7,
                                   1e8,  1e9,  1e10, 1e11, 1e12, 1e13, 1e14, 1e15,
                                   1e16, 1e17, 1e18, 1e19, 1e20, 1e21, 1e22};
constexpr double kNegativePowersOfTen[] = {1e0,   1e-1,  1e-2,  1e-3,  1e-4,  1e-5,  1e-6,  1e-7,
                                           1e-8,  1e-9,  1e-10, 1e-11, 1e-12, 1e-13, 1e-14, 1e-15,
                                           1e-16, 1e-17, 1e-18, 1e-19, 1e-20, 1e-21, 1e-22};
constexpr long long kTabledPowers = sizeof(kPowersOfTen) / sizeof(kPowersOfTen[0]);

// The table keeps pow out of the common case, where the room test runs once
// or twice per value.
double TenToThe(long long exponent) {
  if (exponent >= 0 && exponent < kTabledPowers) return kPowersOfTen[exponent];
  return std::pow(10.0, static_cast<double>(exponent));
}

double TenToTheMinus(long long exponent) {
  if (exponent >= 0 && exponent < kTabledPowers) return kNegativePowersOfTen[exponent];
  return std::pow(10.0, -static_cast<double>(exponent));
}

// printf's "%*.*f" (fixed) or "%*.*E" (scientific) into `buffer`, returning
// the length. std::to_chars writes what printf writes in the C locale, so a
// decimal comma of the process locale never appears, and it is faster. The
// bounds on width and decimals keep every text inside the buffer; a text that
// still would not fit gives the empty one.
int PrintRightAligned(char (&buffer)[kPrintBufferSize], int width, int precision, double value,
                      std::chars_format format) {
  char digits[kPrintBufferSize];
  const auto [end, error] =
      std::to_chars(digits, digits + sizeof(digits), value, format, precision);
  const auto length = static_cast<int>(end - digits);
  const int padding = std::max(width - length, 0);
  if (error != std::errc() || padding + length >= kPrintBufferSize) {
    buffer[0] = '\0';
    return 0;
  }
  if (format == std::chars_format::scientific) {
    // printf's %E: "1.5E+05", "INF", "NAN".
    for (char* c = digits; c != end; ++c) {
      if (*c >= 'a' && *c <= 'z') *c = static_cast<char>(*c - 'a' + 'A');
    }
  }
  std::memset(buffer, ' ', static_cast<std::size_t>(padding));
  std::memcpy(buffer + padding, digits, static_cast<std::size_t>(length));
  buffer[padding + length] = '\0';
  return padding + length;
}

// EncodeStandard into a caller's buffer, so that the rendering path needs no
// allocation: returns the length of the text, or -1 for a width above the
// bound.
int EncodeInto(double value, int width, int decimals, char (&buffer)[kPrintBufferSize]) {
  if (width > DMFormatUtils::kMaxNumberWidth) return -1;
  const long long neg = value < 0.0 ? 1 : 0;
  const double magnitude = std::fabs(value);
  if (decimals >= 0) {
    // With as many decimals as the width or more there is never room, so
    // the count starts at the width: the same answer, without a loop over
    // the billions of decimals a program may ask for.
    long long places = std::min<long long>(decimals, std::max(width, 0));
    for (; places >= 0; --places) {
      const long long room = width - neg - places - (places > 0 ? 1 : 0);
      if (room < 0) continue;
      const double rounded = magnitude + 0.5 * TenToTheMinus(places);
      // Not-a-number fails both comparisons, and infinity the second, so
      // neither is ever printed with "%f".
      if (rounded < 1.0 || rounded < TenToThe(room)) break;
    }
    if (places >= 0) {
      const int precision = static_cast<int>(places);
      const int length =
          PrintRightAligned(buffer, width, precision, value, std::chars_format::fixed);
      if (length <= width) return length;
      // The room test does not count the leading zero of a value below 1;
      // one decimal fewer always fits, and is taken as it comes.
      if (precision > 0) {
        return PrintRightAligned(buffer, width, precision - 1, value, std::chars_format::fixed);
      }
    }
  }
  const long long digits = width - neg - kExponentOverhead;
  if (digits >= 0) {
    return PrintRightAligned(buffer, width, static_cast<int>(digits), value,
                             std::chars_format::scientific);
  }
  buffer[0] = '*';
  buffer[1] = '\0';
  return 1;
}

// The default locale's symbols, as a `Local` decimal or grouping symbol
// needs them.
struct LocalSymbols {
  icu::UnicodeString decimal;
  icu::UnicodeString grouping;
  // 0 when the locale has no decimal formatter to tell it; no grouping then.
  int32_t groupSize = 0;
};

// Building ICU's symbols and a formatter costs microseconds, so each thread
// keeps the last default locale's symbols; they depend on nothing but the
// locale, so the answer is that of a fresh build. Null when ICU cannot make
// the symbols; failures are not kept, so a passing shortage of memory is not
// remembered.
const LocalSymbols* DefaultLocaleSymbols() {
  thread_local std::string cachedLocale;
  thread_local std::unique_ptr<LocalSymbols> cached;
  const icu::Locale locale = icu::Locale::getDefault();
  if (cached != nullptr && cachedLocale == locale.getName()) return cached.get();
  cached.reset();
  UErrorCode status = U_ZERO_ERROR;
  const icu::DecimalFormatSymbols symbols(locale, status);
  if (U_FAILURE(status)) return nullptr;
  auto built = std::make_unique<LocalSymbols>();
  built->decimal = symbols.getSymbol(icu::DecimalFormatSymbols::kDecimalSeparatorSymbol);
  built->grouping = symbols.getSymbol(icu::DecimalFormatSymbols::kGroupingSeparatorSymbol);
  // A missing formatter only costs the grouping, not the call.
  const std::unique_ptr<icu::DecimalFormat> formatter(DMFormatUtils::MakeDecimalFormat(&locale));
  if (formatter != nullptr) built->groupSize = formatter->getGroupingSize();
  cachedLocale = locale.getName();
  cached = std::move(built);
  return cached.get();
}

// The text between the integer and the fractional digits. Values outside
// the enumeration show the period, as the XML writer treats them.
icu::UnicodeString DecimalText(DMFormat::DecimalSymbol symbol, const LocalSymbols* local) {
  switch (symbol) {
    case DMFormat::DecimalSymbol::Period:
      return icu::UnicodeString(u'.');
    case DMFormat::DecimalSymbol::Comma:
      return icu::UnicodeString(u',');
    case DMFormat::DecimalSymbol::Local:
      return local->decimal;
  }
  return icu::UnicodeString(u'.');
}

// The text between groups of integer digits; empty for none. Values outside
// the enumeration group nothing, as the XML writer treats them.
icu::UnicodeString GroupingText(DMFormat::GroupingSymbol symbol, const LocalSymbols* local) {
  switch (symbol) {
    case DMFormat::GroupingSymbol::None:
      return icu::UnicodeString();
    case DMFormat::GroupingSymbol::Period:
      return icu::UnicodeString(u'.');
    case DMFormat::GroupingSymbol::Comma:
      return icu::UnicodeString(u',');
    case DMFormat::GroupingSymbol::Space:
      return icu::UnicodeString(u' ');
    case DMFormat::GroupingSymbol::Local:
      return local->grouping;
  }
  return icu::UnicodeString();
}

// Where the decimal separator sits: the first period or, failing that, the
// last comma (printf under a C locale that writes decimal commas); -1 when
// there is none.
int32_t DecimalPointOf(const icu::UnicodeString& text) {
  const int32_t period = text.indexOf(u'.');
  return period >= 0 ? period : text.lastIndexOf(u',');
}

// Inserts `grouping` every `groupSize` integer digits of the right-aligned
// number in `text`, whose digits (after a minus sign when `negative`) run
// from `start` to `end`, and takes as many characters off the left padding.
// When the padding is too short for them the number stays ungrouped, on
// purpose: the field keeps its width.
void InsertGroupSeparators(icu::UnicodeString& text, int32_t start, int32_t end, bool negative,
                           const icu::UnicodeString& grouping, int32_t groupSize) {
  const int32_t sign = negative ? 1 : 0;
  const int32_t digits = end - start - sign;
  if (digits <= 1) return;
  const int32_t separators = (digits - 1) / groupSize;
  if (separators > start) return;
  for (int32_t at = end - groupSize; at > start + sign; at -= groupSize) {
    text.insert(at, grouping);
  }
  text.remove(0, separators);
}

}  // namespace

std::string DMFormatUtils::EncodeStandard(double value, int width, int decimals) {
  char buffer[kPrintBufferSize];
  const int length = EncodeInto(value, width, decimals, buffer);
  if (length < 0) return std::string();
  return std::string(buffer, static_cast<std::size_t>(length));
}

int DMFormatUtils::FormatStandard(const DMDatum& datum, icu::UnicodeString& out, int width,
                                  unsigned decimals, DMFormat::DecimalSymbol decimalSymbol,
                                  DMFormat::GroupingSymbol groupingSymbol) {
  out.remove();
  if (width == 0 || width > kMaxNumberWidth) return DM_FORMAT_FAILED;
  if (datum.IsNull() || datum.GetType() == DMDatum::StringType) return DM_FORMAT_FAILED;
  // Integers beyond 2^53 lose their last digits here; the display has no
  // more precision than a real value would.
  const double value = datum.GetType() == DMDatum::IntegerType
                           ? static_cast<double>(datum.GetInteger())
                           : datum.GetReal();
  const int workWidth = width < 0 ? kVariableStandardWidth : width;
  // More decimals than fit are given up anyway; clamping keeps a huge count
  // from wrapping into a negative one, which would mean the exponent form.
  const int places =
      decimals > static_cast<unsigned>(INT_MAX) ? INT_MAX : static_cast<int>(decimals);

  char buffer[kPrintBufferSize];
  const int length = EncodeInto(value, workWidth, places, buffer);
  icu::UnicodeString text = dmformat_internal::ToUTF16(buffer, static_cast<std::size_t>(length));
  // "*" says that nothing fits; it takes no symbols. Neither do not-a-number
  // and the infinities: their letters are no digits to group, and a negative
  // not-a-number carries a sign that the value's sign does not show.
  const bool symbolsApply = std::isfinite(value) && !(length == 1 && buffer[0] == '*');
  if (symbolsApply) {
    const LocalSymbols* local = nullptr;
    if (decimalSymbol == DMFormat::DecimalSymbol::Local ||
        groupingSymbol == DMFormat::GroupingSymbol::Local) {
      local = DefaultLocaleSymbols();
      if (local == nullptr) return DM_FORMAT_FAILED;
    }
    // Both positions are taken from the printed text, before any edit.
    const int32_t paddingEnd = text.lastIndexOf(u' ');
    const int32_t point = DecimalPointOf(text);
    const icu::UnicodeString decimal = DecimalText(decimalSymbol, local);
    if (point >= 0 && text.compare(point, 1, decimal) != 0) text.replace(point, 1, decimal);

    const icu::UnicodeString grouping = GroupingText(groupingSymbol, local);
    const int32_t groupSize =
        groupingSymbol == DMFormat::GroupingSymbol::Local ? local->groupSize : kDefaultGroupSize;
    if (!grouping.isEmpty() && groupSize > 0) {
      const int32_t digitsEnd = point >= 0 ? point : workWidth;
      InsertGroupSeparators(text, paddingEnd + 1, digitsEnd, value < 0.0, grouping, groupSize);
    }
  }
  if (width < 0) text.trim();
  out = std::move(text);
  return DM_FORMAT_OK;
}

icu::DecimalFormat* DMFormatUtils::MakeDecimalFormat(const icu::Locale* locale) {
  UErrorCode status = U_ZERO_ERROR;
  std::unique_ptr<icu::NumberFormat> format(locale != nullptr
                                                ? icu::NumberFormat::createInstance(*locale, status)
                                                : icu::NumberFormat::createInstance(status));
  if (U_FAILURE(status) || format == nullptr) return nullptr;
  // ICU's own class identity, not a cast: only a plain DecimalFormat is
  // wanted, not a subclass with other rules.
  if (format->getDynamicClassID() != icu::DecimalFormat::getStaticClassID()) return nullptr;
  return static_cast<icu::DecimalFormat*>(format.release());
}

// ---------------------------------------------------------------------------
// Shared by the format classes

namespace dmformat_internal {

int ReadNumericAttrs(const DMXMLWrapper& element, const DMEnumDictEntry* typeDict,
                     NumericAttrs& attrs) {
  NumericAttrs read;
  if (int rc = DMFormatUtils::GetCommonAttr(element, read.name, read.width, read.alignment);
      rc != DM_FORMAT_OK) {
    return rc;
  }
  if (int rc = ReadFormatType(element, typeDict, read.type); rc != DM_FORMAT_OK) return rc;
  if (int rc = ReadDecimalPlaces(element, read.decimals); rc != DM_FORMAT_OK) return rc;
  // Both symbols are required here, although each reader alone accepts an
  // absent symbol as its default.
  if (int rc = ReadRequiredDecimalSym(element, read.decimalSymbol); rc != DM_FORMAT_OK) return rc;
  if (int rc = ReadRequiredGroupingSym(element, read.groupingSymbol); rc != DM_FORMAT_OK) {
    return rc;
  }
  attrs = std::move(read);
  return DM_FORMAT_OK;
}

int WriteNumericAttrs(DMXMLWrapper& element, const NumericAttrs& attrs, const char* typeEntity) {
  if (int rc = DMFormatUtils::SetCommonAttr(element, attrs.name, attrs.width, attrs.alignment);
      rc != DM_FORMAT_OK) {
    return rc;
  }
  if (int rc = DMFormatUtils::SetDecimalSymAttr(element, attrs.decimalSymbol); rc != DM_FORMAT_OK) {
    return rc;
  }
  if (int rc = DMFormatUtils::SetGroupingSymAttr(element, attrs.groupingSymbol);
      rc != DM_FORMAT_OK) {
    return rc;
  }
  if (int rc = WriteDecimalPlaces(element, attrs.decimals); rc != DM_FORMAT_OK) return rc;
  return WriteFormatType(element, typeEntity);
}

int ReadTemporalAttrs(const DMXMLWrapper& element, const DMEnumDictEntry* typeDict,
                      TemporalAttrs& attrs) {
  TemporalAttrs read;
  if (int rc = DMFormatUtils::GetCommonAttr(element, read.name, read.width, read.alignment);
      rc != DM_FORMAT_OK) {
    return rc;
  }
  if (int rc = ReadFormatType(element, typeDict, read.type); rc != DM_FORMAT_OK) return rc;
  if (int rc = ReadDecimalPlaces(element, read.decimals); rc != DM_FORMAT_OK) return rc;
  if (int rc = ReadRequiredUnitsSep(element, read.separator); rc != DM_FORMAT_OK) return rc;
  attrs = std::move(read);
  return DM_FORMAT_OK;
}

int WriteTemporalAttrs(DMXMLWrapper& element, const TemporalAttrs& attrs, const char* typeEntity) {
  if (int rc = DMFormatUtils::SetCommonAttr(element, attrs.name, attrs.width, attrs.alignment);
      rc != DM_FORMAT_OK) {
    return rc;
  }
  if (int rc = DMFormatUtils::SetUnitsSepAttr(element, attrs.separator); rc != DM_FORMAT_OK) {
    return rc;
  }
  if (int rc = WriteDecimalPlaces(element, attrs.decimals); rc != DM_FORMAT_OK) return rc;
  return WriteFormatType(element, typeEntity);
}

int ReadRequiredBool(const DMXMLWrapper& element, const char* attribute, bool& value) {
  bool found = false;
  if (int rc = DMFormatUtils::GetBoolAttr(element, attribute, value, found); rc != DM_FORMAT_OK) {
    return rc;
  }
  return found ? DM_FORMAT_OK : DM_FORMAT_FAILED;
}

const char* EntityOr(const DMEnumDictEntry* table, unsigned value, const char* fallback) {
  const char* text = DMEnumDict::TextOfValue(table, value);
  return text != nullptr ? text : fallback;
}

std::unique_ptr<DMXMLWrapper> CreateElement(DMXMLWrapper& parent, const char* name) {
  return std::unique_ptr<DMXMLWrapper>(parent.createFreeElement(name));
}

void Publish(DMXMLWrapper& parent, std::unique_ptr<DMXMLWrapper> element, DMXMLWrapper*& created) {
  if (element == nullptr) return;
  if (parent.addElement(element.get()) != DM_XML_OK) return;
  // The parent owns the element from here on.
  created = element.release();
}

namespace {

// One converter per thread for the rare text that is not ASCII: opening one
// per call would cost more than the rest of the rendering.
DMPrintableUtil::DMUncConverter& ThreadConverter() {
  thread_local DMPrintableUtil::DMUncConverter converter;
  return converter;
}

}  // namespace

icu::UnicodeString ToUTF16(const char* bytes, std::size_t length) {
  const bool ascii = std::all_of(bytes, bytes + length,
                                 [](char c) { return static_cast<unsigned char>(c) < 0x80; });
  if (!ascii) return ThreadConverter().ToUTF16(std::string(bytes, length));
  icu::UnicodeString text;
  if (length == 0) return text;
  const auto size = static_cast<int32_t>(length);
  char16_t* units = text.getBuffer(size);
  if (units == nullptr) return text;
  std::transform(bytes, bytes + length, units,
                 [](char c) { return static_cast<char16_t>(static_cast<unsigned char>(c)); });
  text.releaseBuffer(size);
  return text;
}

icu::UnicodeString ToUTF16(const std::string& bytes) { return ToUTF16(bytes.data(), bytes.size()); }

void ToUTF8(const icu::UnicodeString& text, std::string& out) {
  const char16_t* units = text.getBuffer();
  const int32_t length = text.length();
  const bool ascii = units != nullptr &&
                     std::all_of(units, units + length, [](char16_t unit) { return unit < 0x80; });
  if (!ascii) {
    out = ThreadConverter().ToUTF8(text);
    return;
  }
  out.resize(static_cast<std::size_t>(length));
  std::transform(units, units + length, out.begin(),
                 [](char16_t unit) { return static_cast<char>(unit); });
}

}  // namespace dmformat_internal
