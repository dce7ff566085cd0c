#ifndef DMCOMMON_FORMATS_DMFORMAT_INTERNAL_H
#define DMCOMMON_FORMATS_DMFORMAT_INTERNAL_H

// Pieces of the XML form and of the rendering that several format classes
// share. Never installed.

#include <cstddef>
#include <memory>
#include <string>
#include <string_view>

#include <unicode/unistr.h>

#include "dmcommon/formats/dmformat.h"
#include "dmcommon/values/dmenumdict.h"

namespace DmExtension {
class DMXMLWrapper;
}  // namespace DmExtension

namespace dmformat_internal {

/// The settings that number and decorated formats read and write alike. The
/// format type is the class's own `FormatType` as a number.
struct NumericAttrs {
  std::string name;
  int width = 0;
  DMFormat::Alignment alignment = DMFormat::Auto;
  unsigned type = 0;
  unsigned decimals = 0;
  DMFormat::DecimalSymbol decimalSymbol = DMFormat::DecimalSymbol::Period;
  DMFormat::GroupingSymbol groupingSymbol = DMFormat::GroupingSymbol::None;
};

/// The settings that date and time formats read and write alike.
struct TemporalAttrs {
  std::string name;
  int width = 0;
  DMFormat::Alignment alignment = DMFormat::Auto;
  unsigned type = 0;
  unsigned decimals = 0;
  DMFormat::UnitsSeparator separator = DMFormat::UnitsSeparator::None;
};

/// Reads the common attributes, then the format type through `typeDict`, the
/// decimal places and both symbols, all required. `attrs` is filled only on
/// success.
[[nodiscard]] int ReadNumericAttrs(const DmExtension::DMXMLWrapper& element,
                                   const DMEnumDictEntry* typeDict, NumericAttrs& attrs);
/// Adds name, width, alignment, decimal symbol, grouping symbol, decimal
/// places and `typeEntity` as the format type, in that order.
[[nodiscard]] int WriteNumericAttrs(DmExtension::DMXMLWrapper& element, const NumericAttrs& attrs,
                                    const char* typeEntity);

/// Reads the common attributes, then the format type through `typeDict`, the
/// decimal places and the separator, all required. `attrs` is filled only on
/// success.
[[nodiscard]] int ReadTemporalAttrs(const DmExtension::DMXMLWrapper& element,
                                    const DMEnumDictEntry* typeDict, TemporalAttrs& attrs);
/// Adds name, width, alignment, separator, decimal places and `typeEntity` as
/// the format type, in that order.
[[nodiscard]] int WriteTemporalAttrs(DmExtension::DMXMLWrapper& element, const TemporalAttrs& attrs,
                                     const char* typeEntity);

/// Reads a flag that must be present.
[[nodiscard]] int ReadRequiredBool(const DmExtension::DMXMLWrapper& element, const char* attribute,
                                   bool& value);

/// Whether no two rows before the terminating one share a text. Works on the
/// array itself, counting rows by its size: sanitizer builds cannot compare
/// the vocabulary's addresses with null at compile time.
template <std::size_t N>
constexpr bool TextsAreUnique(const DMEnumDictEntry (&table)[N]) {
  for (std::size_t i = 0; i + 1 < N; ++i) {
    for (std::size_t j = i + 1; j + 1 < N; ++j) {
      if (std::string_view(table[i].text) == std::string_view(table[j].text)) return false;
    }
  }
  return true;
}

/// Whether no two rows share a text or a value, so that every text leads back
/// to its row and every value to its text. Each table of a format class is
/// checked with it at compile time.
template <std::size_t N>
constexpr bool MapsBothWays(const DMEnumDictEntry (&table)[N]) {
  for (std::size_t i = 0; i + 1 < N; ++i) {
    for (std::size_t j = i + 1; j + 1 < N; ++j) {
      if (table[i].value == table[j].value) return false;
    }
  }
  return TextsAreUnique(table);
}

/// The text of `value` in `table`, or `fallback` when no row holds it.
const char* EntityOr(const DMEnumDictEntry* table, unsigned value, const char* fallback);

/// A new element named `name` in `parent`'s document, attached nowhere; null
/// when it cannot be made.
std::unique_ptr<DmExtension::DMXMLWrapper> CreateElement(DmExtension::DMXMLWrapper& parent,
                                                         const char* name);
/// Appends `element` to `parent` and hands it out through `created`. When the
/// parent refuses it, the element is destroyed and `created` stays as it was.
void Publish(DmExtension::DMXMLWrapper& parent, std::unique_ptr<DmExtension::DMXMLWrapper> element,
             DmExtension::DMXMLWrapper*& created);

/// `length` bytes of UTF-8 text as UTF-16, exactly as
/// `DMPrintableUtil::DMUncConverter::ToUTF16` converts them. ASCII text, what
/// printf and the fixed symbols produce, is widened without a converter, so
/// the common case costs no more than a copy.
icu::UnicodeString ToUTF16(const char* bytes, std::size_t length);
/// `bytes` as UTF-16, as the overload above.
icu::UnicodeString ToUTF16(const std::string& bytes);
/// Replaces `out` with `text` as UTF-8, exactly as
/// `DMPrintableUtil::DMUncConverter::ToUTF8` converts it (the empty text when
/// ICU reports an error). ASCII text is narrowed without a converter and
/// reuses the capacity of `out`.
void ToUTF8(const icu::UnicodeString& text, std::string& out);

}  // namespace dmformat_internal

#endif  // DMCOMMON_FORMATS_DMFORMAT_INTERNAL_H
