#ifndef DMCOMMON_FORMATS_DMNUMBERFORMAT_H
#define DMCOMMON_FORMATS_DMNUMBERFORMAT_H

#include <memory>
#include <string>

#include "dmcommon/dmcommon_export.h"
#include "dmcommon/formats/dmformat.h"

/// A plain, scientific or machine-representation number format.
class DMCOMMON_EXPORT DMNumberFormat : public DMFormat {
 public:
  /// How the number is shown; written in XML as the entity of the same name.
  enum FormatType : unsigned {
    Standard = 0,
    Scientific = 1,
    General = 2,
    Restricted = 3,
    IntBin = 4,
    PosIntBin = 5,
    PosIntBinHex = 6,
    Zoned = 7,
    Packed = 8,
    UnsignedPacked = 9,
    RealBin = 10,
    PosRealBin = 11,
  };

  /// An invalid format: `Standard`, width 0, `Auto`, no name, 0 decimals,
  /// `Period`, no grouping.
  DMNumberFormat();
  /// A format of `type`, `width` and `decimals`, with `Auto` alignment, no
  /// name, decimal symbol `Period` and no grouping. Width 0 gives an invalid
  /// format.
  DMNumberFormat(FormatType type, int width, unsigned decimals);
  /// Reads a `NumberFormat` element. Any missing, empty or unknown required
  /// attribute, a width of 0 or negative decimals give the default, invalid
  /// format.
  explicit DMNumberFormat(const DmExtension::DMXMLWrapper& element);
  /// A copy of `other`. The copy builds its own ICU formatter when it needs
  /// one; it never shares that of `other`.
  DMNumberFormat(const DMNumberFormat& other);
  /// Makes this format a copy of `other`, keeping its own ICU formatter.
  DMNumberFormat& operator=(const DMNumberFormat& other);
  /// Destroys the format.
  ~DMNumberFormat() override;

  /// A new copy, owned by the caller.
  DMNumberFormat* Clone() const override;
  /// Sets the name; does nothing while the width is 0.
  void SetName(const std::string& name) override;
  /// The width as stored.
  int GetWidth() const override;
  /// The alignment as stored.
  Alignment GetAlignment() const override;
  /// The name as stored.
  const std::string& GetName() const override;
  /// Renders a number datum into `out` as UTF-8 (`units` plays no part). A
  /// null datum gives "." and succeeds. `Scientific` goes through an ICU
  /// formatter (US symbols for `Period`, German ones for `Comma`, the
  /// default locale's for `Local`) with one integer digit, the decimals, at
  /// least three exponent digits and the exponent's sign always shown,
  /// padded on the left to a positive width; every other type renders as
  /// `DMFormatUtils::FormatStandard` does. Fails with `out` empty for a text
  /// datum, width 0, a width above `DMFormatUtils::kMaxNumberWidth`, or when
  /// ICU gives no formatter or symbols. The scientific formatter is built on
  /// first use and kept until the settings or, for `Local`, the default
  /// locale change; so, like every format, one object is used by one thread
  /// at a time.
  int Format(const DMDatum& datum, ValueUnits units, std::string& out) const override;
  /// Writes a `NumberFormat` element with name, width, alignment, decimal
  /// symbol, grouping symbol, decimal places and format type (an unknown type
  /// as `Standard`). An invalid format writes nothing; `created` is then
  /// null, as on failure.
  void AddToTree(DmExtension::DMXMLWrapper& parent,
                 DmExtension::DMXMLWrapper*& created) const override;
  /// `Number`.
  FormatClass GetFormatClass() const override;

  /// Makes the format what the argument constructor makes; does nothing at
  /// all when `width` is 0.
  void Reset(FormatType type, int width, unsigned decimals);
  /// Sets the alignment; does nothing while the width is 0.
  void SetAlignment(Alignment alignment);
  /// The format type; `Standard` while the width is 0.
  FormatType GetFormatType() const;
  /// Sets width and decimals; does nothing when `width` is 0 or the current
  /// width is 0.
  void SetWidthDecimals(int width, unsigned decimals);
  /// The number of decimal places; 0 while the width is 0.
  unsigned GetDecimals() const;
  /// Sets both symbols; does nothing while the width is 0.
  void SetSeparators(DecimalSymbol decimalSymbol, GroupingSymbol groupingSymbol);
  /// The decimal and grouping symbols; `Period` and `None` (both 0) while the
  /// width is 0.
  void GetSeparators(DecimalSymbol& decimalSymbol, GroupingSymbol& groupingSymbol) const;

 private:
  // The ICU formatter of the scientific type with the settings it was built
  // for. Defined in the .cpp, so that ICU's formatter classes stay out of
  // this header.
  struct ScientificCache;

  [[nodiscard]] int FormatScientific(double value, std::string& out) const;

  FormatType formatType_;
  int width_;
  Alignment alignment_;
  std::string name_;
  unsigned decimals_;
  DecimalSymbol decimalSymbol_;
  GroupingSymbol groupingSymbol_;
  // Rendering state, not part of the format's value: copies start without
  // it, and `Format` rebuilds it when it no longer fits the settings.
  mutable std::unique_ptr<ScientificCache> scientific_;
};

#endif  // DMCOMMON_FORMATS_DMNUMBERFORMAT_H
