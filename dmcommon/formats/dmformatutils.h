#ifndef DMCOMMON_FORMATS_DMFORMATUTILS_H
#define DMCOMMON_FORMATS_DMFORMATUTILS_H

#include <string>

#include <unicode/decimfmt.h>
#include <unicode/locid.h>
#include <unicode/unistr.h>

#include "dmcommon/dmcommon_export.h"
#include "dmcommon/formats/dmformat.h"
#include "dmcommon/values/dmenumdict.h"
#include "dmcommon/xml/vocabulary/xmlvocabulary.h"

class DMDatum;

namespace DmExtension {
class DMXMLWrapper;
}  // namespace DmExtension

/// Alignments and their XML entities.
inline constexpr DMEnumDictEntry gAlignDict[] = {
    {DMFormat::Left, DmCppHelperV1::XMLEntities::Left},
    {DMFormat::Center, DmCppHelperV1::XMLEntities::Center},
    {DMFormat::Right, DmCppHelperV1::XMLEntities::Right},
    {DMFormat::Auto, DmCppHelperV1::XMLEntities::Auto},
    {0, nullptr},
};

/// Decimal symbols and their XML entities.
inline constexpr DMEnumDictEntry gDecSymDict[] = {
    {static_cast<unsigned>(DMFormat::DecimalSymbol::Period), DmCppHelperV1::XMLEntities::Period},
    {static_cast<unsigned>(DMFormat::DecimalSymbol::Comma), DmCppHelperV1::XMLEntities::Comma},
    {static_cast<unsigned>(DMFormat::DecimalSymbol::Local), DmCppHelperV1::XMLEntities::Local},
    {0, nullptr},
};

/// Grouping symbols and their XML entities.
inline constexpr DMEnumDictEntry gGrpSymDict[] = {
    {static_cast<unsigned>(DMFormat::GroupingSymbol::None), DmCppHelperV1::XMLEntities::None},
    {static_cast<unsigned>(DMFormat::GroupingSymbol::Period), DmCppHelperV1::XMLEntities::Period},
    {static_cast<unsigned>(DMFormat::GroupingSymbol::Comma), DmCppHelperV1::XMLEntities::Comma},
    {static_cast<unsigned>(DMFormat::GroupingSymbol::Space), DmCppHelperV1::XMLEntities::Space},
    {static_cast<unsigned>(DMFormat::GroupingSymbol::Local), DmCppHelperV1::XMLEntities::Local},
    {0, nullptr},
};

/// Units separators and their XML entities, for reading. The entity for
/// `Local` reads as `Colon`, on purpose: documents that ask for the local
/// separator get the colon. Writers map `Local` to its own entity instead,
/// so this table is not read from value to text for that row.
inline constexpr DMEnumDictEntry gUniSepDict[] = {
    {static_cast<unsigned>(DMFormat::UnitsSeparator::None), DmCppHelperV1::XMLEntities::None},
    {static_cast<unsigned>(DMFormat::UnitsSeparator::Period), DmCppHelperV1::XMLEntities::Period},
    {static_cast<unsigned>(DMFormat::UnitsSeparator::Comma), DmCppHelperV1::XMLEntities::Comma},
    {static_cast<unsigned>(DMFormat::UnitsSeparator::Space), DmCppHelperV1::XMLEntities::Space},
    {static_cast<unsigned>(DMFormat::UnitsSeparator::Colon), DmCppHelperV1::XMLEntities::Colon},
    {static_cast<unsigned>(DMFormat::UnitsSeparator::Dash), DmCppHelperV1::XMLEntities::Dash},
    {static_cast<unsigned>(DMFormat::UnitsSeparator::Slash), DmCppHelperV1::XMLEntities::Slash},
    {static_cast<unsigned>(DMFormat::UnitsSeparator::Colon), DmCppHelperV1::XMLEntities::Local},
    {0, nullptr},
};

/// Reading and writing the attributes that the format classes share, and the
/// fixed-width number rendering that the number and decorated formats rest
/// on. Every operation that returns a code returns `DM_FORMAT_OK` or
/// `DM_FORMAT_FAILED` and never throws on bad content.
class DMCOMMON_EXPORT DMFormatUtils {
 public:
  /// Not instantiable: every member is static.
  DMFormatUtils() = delete;

  /// Adds the name (also when empty), the width (any width below 1 as -1) and
  /// the alignment (`Left`, `Center`, `Right`, anything else as `Auto`) to
  /// `element`. Fails when the element refuses an attribute; the attributes
  /// added before the failure stay.
  static int SetCommonAttr(DmExtension::DMXMLWrapper& element, const std::string& name, int width,
                           DMFormat::Alignment alignment);
  /// Reads the width (required integer, not 0; a negative width gives -1),
  /// the alignment (optional: absent gives `Auto`; an empty or unknown text
  /// leaves `alignment` as it was) and the name (required, may be empty).
  /// Fails when a required attribute is absent or the width is unreadable or
  /// 0; all three outputs are then left unchanged.
  static int GetCommonAttr(const DmExtension::DMXMLWrapper& element, std::string& name, int& width,
                           DMFormat::Alignment& alignment);

  /// Adds the decimal symbol: `Comma`, `Local`, anything else as `Period`.
  /// Fails when the element refuses the attribute.
  static int SetDecimalSymAttr(DmExtension::DMXMLWrapper& element, DMFormat::DecimalSymbol symbol);
  /// Adds the grouping symbol: `Period`, `Comma`, `Space`, `Local`, anything
  /// else as `None`. Fails when the element refuses the attribute.
  static int SetGroupingSymAttr(DmExtension::DMXMLWrapper& element,
                                DMFormat::GroupingSymbol symbol);
  /// Adds the units separator: `Period` to `Local`, anything else as `None`.
  /// Fails when the element refuses the attribute.
  static int SetUnitsSepAttr(DmExtension::DMXMLWrapper& element,
                             DMFormat::UnitsSeparator separator);

  /// Reads the decimal symbol through `gDecSymDict`. `symbol` and `found` are
  /// reset to `Period` and false first. Absent: success. Present: `found` is
  /// true, and an empty or unknown text fails, leaving `symbol` at `Period`.
  static int GetDecimalSymAttr(const DmExtension::DMXMLWrapper& element,
                               DMFormat::DecimalSymbol& symbol, bool& found);
  /// Reads the grouping symbol through `gGrpSymDict`, as `GetDecimalSymAttr`
  /// does; the reset and absent value is `None`.
  static int GetGroupingSymAttr(const DmExtension::DMXMLWrapper& element,
                                DMFormat::GroupingSymbol& symbol, bool& found);
  /// Reads the units separator through `gUniSepDict`, as `GetDecimalSymAttr`
  /// does; the reset and absent value is `None`, and `Local` reads as `Colon`.
  static int GetUnitsSepAttr(const DmExtension::DMXMLWrapper& element,
                             DMFormat::UnitsSeparator& separator, bool& found);

  /// Adds `attribute` as the text "true" or "false". Fails when the element
  /// refuses the attribute.
  static int SetBoolAttr(DmExtension::DMXMLWrapper& element, const char* attribute, bool value);
  /// Reads `attribute` as a flag. `value` and `found` are reset to false
  /// first. Absent: success. Present: `found` is true; `XMLEntities::True`
  /// gives true, `XMLEntities::False` false, and any other text fails with
  /// `value` false.
  static int GetBoolAttr(const DmExtension::DMXMLWrapper& element, const char* attribute,
                         bool& value, bool& found);

  /// The index of the row of `table` whose text equals `text` exactly
  /// (case-sensitive), searching up to the terminating row; -1 when there is
  /// none or `text` is null.
  static int FindStrInList(const char* text, const DMEnumDictEntry* table);
  /// The text that stands between two units: ".", ",", " ", ":", "-" or "/";
  /// the empty text for `None`, `Local` and values outside the enumeration.
  static std::string MakeSeparatorStr(DMFormat::UnitsSeparator separator);

  /// The widest field, in characters, that a number is rendered into: the
  /// bound of the fixed print buffer of `EncodeStandard`, applied to every
  /// number and decorated format alike, so that a width read from XML can
  /// neither overflow a buffer nor ask for an absurd amount of padding.
  static constexpr int kMaxNumberWidth = 512;
  /// The width that `FormatStandard` prints into for a variable (negative)
  /// width, before the padding is trimmed.
  static constexpr int kVariableStandardWidth = 23;

  /// `value` printed right-aligned into `width` characters with "%*.*f",
  /// giving up decimals (from `decimals` down to none) before integer digits,
  /// then falling back to "%*.*E" with as many digits as fit, then to "*"
  /// when not even that fits. Negative `decimals` go straight to the
  /// exponent form. Not-a-number and infinities come out in
  /// the exponent form's spelling ("NAN", "INF", "-INF", padded) or as "*".
  /// A `width` above `kMaxNumberWidth` gives the empty string.
  static std::string EncodeStandard(double value, int width, int decimals);
  /// Renders a number datum into `out` in `width` characters (a negative
  /// width: in `kVariableStandardWidth` characters, then trimmed) with
  /// `decimals` decimals as `EncodeStandard` does, then puts in the decimal
  /// symbol and, where the left padding has room for them, the group
  /// separators (a `Local` symbol is the default locale's). "*" stands for a
  /// number that does not fit. Fails with `out` empty for width 0, a width
  /// above `kMaxNumberWidth`, a null or text datum, or when the default
  /// locale's symbols cannot be had for a `Local` symbol.
  static int FormatStandard(const DMDatum& datum, icu::UnicodeString& out, int width,
                            unsigned decimals, DMFormat::DecimalSymbol decimalSymbol,
                            DMFormat::GroupingSymbol groupingSymbol);
  /// A new ICU number formatter for `locale` (the default locale when null),
  /// owned by the caller; null when ICU cannot make one or makes one that is
  /// not a `DecimalFormat` (a locale that numbers by rules, for instance).
  static icu::DecimalFormat* MakeDecimalFormat(const icu::Locale* locale);
};

#endif  // DMCOMMON_FORMATS_DMFORMATUTILS_H
