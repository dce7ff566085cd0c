#ifndef DMCOMMON_FORMATS_DMTIMEFORMAT_H
#define DMCOMMON_FORMATS_DMTIMEFORMAT_H

#include <string>
#include <string_view>

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
  /// Renders a real `datum` counting seconds as a time of day in GMT (`H_M`,
  /// `H_M_S`, `M_S`: hours wrap at 24, minutes at 60) or as a duration of
  /// whole days, hours, minutes and seconds (`D_H_M_S`, where 0 is day 0,
  /// 00:00:00), always with English digits. A positive width pads on the
  /// left with spaces; a duration longer than the width loses fractional
  /// digits, the fraction, then seconds, minutes and hours with their
  /// separators, and becomes "*" (not padded) when even the day number does
  /// not fit. Other times are never cut. A null datum renders as ".". Returns
  /// `DM_FORMAT_FAILED` with `out` empty for units other than `UnitsSeconds`,
  /// a datum that is not real, width 0, a value that is not a number,
  /// infinite or beyond the span of ICU's calendar (about 5.8 million years
  /// either side of 1970), or an ICU failure.
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

  /// The ICU pattern of the stored type, separator, padding and decimals,
  /// read as stored also while the width is 0: "HH:mm:ss.SS" for `H_M_S` with
  /// `Colon`, padding and 2 decimals; `D_H_M_S` puts "g " (the Julian day
  /// number) in front. `duration` is set to whether the pattern is that of
  /// `D_H_M_S`. A type outside the enumeration gives the empty pattern.
  std::string MakePattern(bool& duration) const;
  /// Appends to `pattern` one field per letter of `letters` (H, m or s), each
  /// written twice when `padded`, else once, with the text of `separator`
  /// between two fields (nothing for `None` and `Local`), then "." and
  /// `fractionDigits` letters S when `fractionDigits` is above 0, at most 64
  /// of them (ICU shows no more than 13 fractional digits).
  static void SetTimePatt(std::string_view letters, unsigned fractionDigits, bool padded,
                          UnitsSeparator separator, std::string& pattern);

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
