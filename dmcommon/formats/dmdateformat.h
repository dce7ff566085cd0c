#ifndef DMCOMMON_FORMATS_DMDATEFORMAT_H
#define DMCOMMON_FORMATS_DMDATEFORMAT_H

#include <memory>
#include <string>
#include <string_view>

#include "dmcommon/dmcommon_export.h"
#include "dmcommon/formats/dmformat.h"
#include "dmcommon/formats/dmtimeformat.h"

/// A date, optionally followed by a time of day shown with an owned time
/// format.
class DMCOMMON_EXPORT DMDateFormat : public DMFormat {
 public:
  /// The units and their order; written in XML as the entity of the same
  /// name.
  enum FormatType : unsigned {
    D_M_Y = 0,
    M_D_Y = 1,
    Y_M_D = 2,
    D_monthName_Y = 3,
    MonthName_Y = 4,
    Y_dayNo = 5,
    DayName = 6,
    MonthName = 7,
    Q_Y = 8,
    W_Y = 9,
  };

  /// An invalid format: `Y_M_D`, width 0, `Auto`, no name, 0 decimals, no
  /// separator, four-digit year, English names, no time format.
  DMDateFormat();
  /// A format with the given settings, `Auto` alignment, no name and no time
  /// format. Width 0 gives an invalid format.
  DMDateFormat(FormatType type, int width, unsigned decimals, UnitsSeparator separator,
               bool twoDigitYear, bool namesLocal);
  /// Reads a `DateFormat` element and its first direct `TimeFormat` child, if
  /// any. Any missing, empty or unknown required attribute, a width of 0,
  /// negative decimals, or a time format child that reads as invalid give the
  /// default, invalid format.
  explicit DMDateFormat(const DmExtension::DMXMLWrapper& element);
  /// A deep copy: the time format is copied into a new owned object.
  DMDateFormat(const DMDateFormat& other);
  /// A deep copy: the time format is copied into a new owned object and the
  /// one owned before is destroyed.
  DMDateFormat& operator=(const DMDateFormat& other);
  /// Destroys the format and the time format it owns.
  ~DMDateFormat() override;

  /// A new deep copy, owned by the caller.
  DMDateFormat* Clone() const override;
  /// Sets the name; does nothing while the width is 0.
  void SetName(const std::string& name) override;
  /// The width as stored.
  int GetWidth() const override;
  /// The alignment as stored.
  Alignment GetAlignment() const override;
  /// The name as stored.
  const std::string& GetName() const override;
  /// Renders a real `datum` counting seconds (`UnitsSeconds`) or days (any
  /// other non-zero units) from 1970-01-01 00:00:00 GMT as a date in GMT on a
  /// Gregorian calendar, with English names unless names local is set (then
  /// those of the ICU default locale). `DayName` and `MonthName` are cut to a
  /// positive width; other dates are neither cut nor padded. An owned time
  /// format adds one space and the time of day; a time part that cannot be
  /// shown is left out. A null datum renders as ".". Returns
  /// `DM_FORMAT_FAILED` with `out` empty for `UnitsNone`, a datum that is not
  /// real, width 0, a value that is not a number, infinite or beyond the span
  /// of ICU's calendar (about 5.8 million years either side of 1970), or an
  /// ICU failure.
  int Format(const DMDatum& datum, ValueUnits units, std::string& out) const override;
  /// Writes a `DateFormat` element with name, width, alignment, separator,
  /// decimal places, format type (an unknown type as `D_M_Y`), two-digit
  /// year and local names, then the owned time format as its child. Written
  /// also for an invalid format, with width -1. When any attribute or the
  /// time format cannot be written nothing is added and `created` is null.
  void AddToTree(DmExtension::DMXMLWrapper& parent,
                 DmExtension::DMXMLWrapper*& created) const override;
  /// `Date`.
  FormatClass GetFormatClass() const override;

  /// Makes the format what the argument constructor makes, destroying the
  /// time format; does nothing at all when `width` is 0.
  void Reset(FormatType type, int width, unsigned decimals, UnitsSeparator separator,
             bool twoDigitYear, bool namesLocal);
  /// Sets the alignment; does nothing while the width is 0.
  void SetAlignment(Alignment alignment);
  /// The format type; `Y_M_D` while the width is 0.
  FormatType GetFormatType() const;
  /// Sets width and decimals; does nothing when `width` is 0 or the current
  /// width is 0.
  void SetWidthDecimals(int width, unsigned decimals);
  /// The digits of fractional seconds of the time part; 0 while the width is
  /// 0.
  unsigned GetDecimals() const;
  /// Sets the separator; does nothing while the width is 0.
  void SetSeparator(UnitsSeparator separator);
  /// The separator; `None` while the width is 0.
  void GetSeparator(UnitsSeparator& separator) const;
  /// Whether the year is shown with two digits; false while the width is 0.
  bool GetTwoDigitYear() const;
  /// Whether month and day names are in the local language; false while the
  /// width is 0.
  bool GetNamesLocal() const;
  /// While the width is non-zero: a null `timeFormat` destroys the owned time
  /// format; otherwise the owned one becomes a copy of `*timeFormat` (made
  /// when there is none yet). Does nothing while the width is 0.
  void SetTimeFormat(const DMTimeFormat* timeFormat);
  /// The owned time format, or null when there is none. The date format keeps
  /// ownership; the pointer is valid until the time format is replaced or
  /// destroyed.
  const DMTimeFormat* GetTimeFormat() const;

  /// The ICU date pattern of the stored type, separator and year setting,
  /// read as stored also while the width is 0: "dd/MM/yyyy" for `D_M_Y` with
  /// `Slash`, "EEEE" for `DayName`, "MMMM" for `MonthName`, "ww 'WK' yy" or
  /// "ww 'WK' yyyy" for `W_Y`, the pattern of `MonthName_Y` for `Q_Y`, the
  /// empty pattern for a type outside the enumeration.
  std::string MakePattern() const;
  /// Appends to `pattern` one field per letter of `letters` with the text of
  /// `separator` between two fields (nothing for `None` and `Local`): y as
  /// "yyyy", or "yy" with `twoDigitYear`; M as "MM", or "MMM" (abbreviated
  /// month name) with `monthName`; D (day of year) as "DDD"; d as "dd"; any
  /// other letter once.
  static void SetDatePatt(std::string_view letters, bool monthName, bool twoDigitYear,
                          UnitsSeparator separator, std::string& pattern);

 private:
  FormatType formatType_;
  int width_;
  Alignment alignment_;
  std::string name_;
  unsigned decimals_;
  UnitsSeparator separator_;
  bool twoDigitYear_;
  bool namesLocal_;
  std::unique_ptr<DMTimeFormat> timeFormat_;
};

#endif  // DMCOMMON_FORMATS_DMDATEFORMAT_H
