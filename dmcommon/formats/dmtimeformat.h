#ifndef DMCOMMON_FORMATS_DMTIMEFORMAT_H
#define DMCOMMON_FORMATS_DMTIMEFORMAT_H

#include <string>

#include "dmcommon/dmcommon_export.h"
#include "dmcommon/formats/dmformat.h"

/// A time of day or a duration in days, hours, minutes and seconds.
class DMCOMMON_EXPORT DMTimeFormat : public DMFormat {
 public:
  /// The units shown; written in XML as the entity of the same name.
  enum FormatType : unsigned {
    H_M = 0,
    H_M_S = 1,
    M_S = 2,
    D_H_M_S = 3,
  };

  /// An invalid format: `H_M_S`, width 0, `Auto`, no name, 0 decimals, no
  /// separator, padded units.
  DMTimeFormat();
  /// A format with the given settings, `Auto` alignment and no name. Width 0
  /// gives an invalid format.
  DMTimeFormat(FormatType type, int width, unsigned decimals, UnitsSeparator separator,
               bool paddedHMS);
  /// Reads a `TimeFormat` element. Any missing, empty or unknown required
  /// attribute, a width of 0 or negative decimals give the default, invalid
  /// format.
  explicit DMTimeFormat(const DmExtension::DMXMLWrapper& element);
  /// A copy of `other`.
  DMTimeFormat(const DMTimeFormat& other);
  /// Makes this format a copy of `other`.
  DMTimeFormat& operator=(const DMTimeFormat& other);
  /// Destroys the format.
  ~DMTimeFormat() override;

  /// A new copy, owned by the caller.
  DMTimeFormat* Clone() const override;
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
  /// Writes a `TimeFormat` element with name, width, alignment, separator,
  /// decimal places, format type (an unknown type as `H_M_S`) and the padding
  /// flag. Written also for an invalid format, with width -1. On failure
  /// nothing is added and `created` is null.
  void AddToTree(DmExtension::DMXMLWrapper& parent,
                 DmExtension::DMXMLWrapper*& created) const override;
  /// `Time`.
  FormatClass GetFormatClass() const override;

  /// Makes the format what the argument constructor makes; does nothing at
  /// all when `width` is 0.
  void Reset(FormatType type, int width, unsigned decimals, UnitsSeparator separator,
             bool paddedHMS);
  /// Sets the alignment; does nothing while the width is 0.
  void SetAlignment(Alignment alignment);
  /// The format type; `H_M_S` while the width is 0.
  FormatType GetFormatType() const;
  /// Sets width and decimals; does nothing when `width` is 0 or the current
  /// width is 0.
  void SetWidthDecimals(int width, unsigned decimals);
  /// The digits of fractional seconds; 0 while the width is 0.
  unsigned GetDecimals() const;
  /// Sets the separator; does nothing while the width is 0.
  void SetSeparator(UnitsSeparator separator);
  /// The separator; `None` while the width is 0.
  void GetSeparator(UnitsSeparator& separator) const;
  /// Whether units are padded to two digits; false while the width is 0,
  /// although an invalid format stores true.
  bool GetPaddedHMS() const;

 private:
  FormatType formatType_;
  int width_;
  Alignment alignment_;
  std::string name_;
  unsigned decimals_;
  UnitsSeparator separator_;
  bool paddedHMS_;
};

#endif  // DMCOMMON_FORMATS_DMTIMEFORMAT_H
