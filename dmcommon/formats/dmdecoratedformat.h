#ifndef DMCOMMON_FORMATS_DMDECORATEDFORMAT_H
#define DMCOMMON_FORMATS_DMDECORATEDFORMAT_H

#include <string>

#include "dmcommon/dmcommon_export.h"
#include "dmcommon/formats/dmformat.h"

/// A currency or percentage format: a number format with texts before and
/// after the number, one pair for non-negative and one for negative values,
/// and an optional custom currency.
class DMCOMMON_EXPORT DMDecoratedFormat : public DMFormat {
 public:
  /// Written in XML as `XMLEntities::Currency` or `XMLEntities::Percentage`.
  enum FormatType : unsigned {
    Currency = 0,
    Percentage = 1,
  };

  /// An invalid format: `Currency`, width 0, `Auto`, no name, 0 decimals,
  /// `Period`, no grouping, all four affixes empty, currency id 0.
  DMDecoratedFormat();
  /// A format of `type`, `width` and `decimals`, with `Auto` alignment, no
  /// name, decimal symbol `Period`, no grouping, negative prefix "-", the
  /// other affixes empty and currency id 0. Width 0 gives an invalid format.
  DMDecoratedFormat(FormatType type, int width, unsigned decimals);
  /// Reads a `DecoratedFormat` element: the attributes of a number format,
  /// then the optional affixes (absent ones empty, the negative prefix too)
  /// and the optional custom currency id (any non-negative number). Any
  /// failure gives the default, invalid format.
  explicit DMDecoratedFormat(const DmExtension::DMXMLWrapper& element);
  /// A copy of `other`.
  DMDecoratedFormat(const DMDecoratedFormat& other);
  /// Makes this format a copy of `other`.
  DMDecoratedFormat& operator=(const DMDecoratedFormat& other);
  /// Destroys the format.
  ~DMDecoratedFormat() override;

  /// A new copy, owned by the caller.
  DMDecoratedFormat* Clone() const override;
  /// Sets the name; does nothing while the width is 0.
  void SetName(const std::string& name) override;
  /// The width as stored.
  int GetWidth() const override;
  /// The alignment as stored.
  Alignment GetAlignment() const override;
  /// The name as stored.
  const std::string& GetName() const override;
  /// Renders a number datum into `out` as UTF-8 (`units` plays no part): the
  /// number as `DMFormatUtils::FormatStandard` renders it, trimmed, between
  /// the prefix and the suffix, or for a negative number (one shown with a
  /// leading "-") without its sign between negative prefix + prefix and
  /// suffix + negative suffix. When that is wider than a fixed width the
  /// affixes are left out and only the number is shown, with its "-". A
  /// positive width pads on the left. The format type and the currency id
  /// change nothing: "%" and currency signs come from the affixes. A null
  /// datum gives "." and succeeds. Fails with `out` empty for a text datum,
  /// width 0, or whatever `FormatStandard` refuses.
  int Format(const DMDatum& datum, ValueUnits units, std::string& out) const override;
  /// Writes a `DecoratedFormat` element with name, width, alignment, decimal
  /// symbol, grouping symbol, decimal places, format type (`Percentage` for
  /// any non-zero type), then each non-empty affix and a non-zero currency
  /// id. An invalid format writes nothing; `created` is then null, as on
  /// failure.
  void AddToTree(DmExtension::DMXMLWrapper& parent,
                 DmExtension::DMXMLWrapper*& created) const override;
  /// `Decorated`.
  FormatClass GetFormatClass() const override;

  /// Makes the format what the argument constructor makes; does nothing at
  /// all when `width` is 0.
  void Reset(FormatType type, int width, unsigned decimals);
  /// Sets the alignment; does nothing while the width is 0.
  void SetAlignment(Alignment alignment);
  /// The format type; `Currency` while the width is 0.
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
  /// Sets the affixes of non-negative values. Both are stored only when both
  /// or neither begin with the digit '0'; otherwise, and while the width is
  /// 0, nothing changes.
  void SetAffixes(const std::string& prefix, const std::string& suffix);
  /// The affixes of non-negative values; both empty while the width is 0.
  void GetAffixes(std::string& prefix, std::string& suffix) const;
  /// Sets the affixes of negative values; does nothing while the width is 0.
  void SetNegAffixes(const std::string& prefix, const std::string& suffix);
  /// The affixes of negative values; both empty while the width is 0.
  void GetNegAffixes(std::string& prefix, std::string& suffix) const;
  /// Sets the custom currency id; does nothing for an id above 5 or while the
  /// width is 0.
  void SetCustomCurrencyID(unsigned id);
  /// The custom currency id as stored; 0 means none. An id read from XML may
  /// exceed 5.
  unsigned GetCustomCurrencyID() const;

 private:
  FormatType formatType_;
  int width_;
  Alignment alignment_;
  std::string name_;
  unsigned decimals_;
  DecimalSymbol decimalSymbol_;
  GroupingSymbol groupingSymbol_;
  std::string prefix_;
  std::string suffix_;
  std::string negPrefix_;
  std::string negSuffix_;
  unsigned customCurrencyId_;
};

#endif  // DMCOMMON_FORMATS_DMDECORATEDFORMAT_H
