#ifndef DMCOMMON_FORMATS_DMNUMBERFORMAT_H
#define DMCOMMON_FORMATS_DMNUMBERFORMAT_H

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
  /// A copy of `other`.
  DMNumberFormat(const DMNumberFormat& other);
  /// Makes this format a copy of `other`.
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
  /// Not available yet: clears `out` and returns `DM_FORMAT_FAILED`.
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
  FormatType formatType_;
  int width_;
  Alignment alignment_;
  std::string name_;
  unsigned decimals_;
  DecimalSymbol decimalSymbol_;
  GroupingSymbol groupingSymbol_;
};

#endif  // DMCOMMON_FORMATS_DMNUMBERFORMAT_H
