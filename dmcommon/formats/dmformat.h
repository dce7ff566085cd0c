#ifndef DMCOMMON_FORMATS_DMFORMAT_H
#define DMCOMMON_FORMATS_DMFORMAT_H

#include <string>

#include "dmcommon/dmcommon_export.h"

class DMDatum;

namespace DmExtension {
class DMXMLWrapper;
}  // namespace DmExtension

/// Result of `DMFormat::Format` and of the attribute operations of
/// `DMFormatUtils`: the operation succeeded.
inline constexpr int DM_FORMAT_OK = 0;
/// Result of `DMFormat::Format` and of the attribute operations of
/// `DMFormatUtils`: the operation failed; callers test for non-zero.
inline constexpr int DM_FORMAT_FAILED = 1;

/// How one value of a field is shown: the abstract base of the number,
/// decorated (currency, percentage), date, time and string formats. A format
/// whose width is 0 is invalid: its setters do nothing and its guarded getters
/// answer the class defaults. Formats never throw on bad XML; a failed read
/// leaves an invalid format.
class DMCOMMON_EXPORT DMFormat {
 public:
  /// Where the text sits in its field.
  enum Alignment : unsigned {
    Left = 0,
    Center = 1,
    Right = 2,
    Auto = 3,
  };

  /// The character between the integer and the fractional digits. Scoped
  /// because the symbol enumerations share enumerator names.
  enum class DecimalSymbol : unsigned {
    Period = 0,
    Comma = 1,
    Local = 2,
  };

  /// The character between groups of integer digits.
  enum class GroupingSymbol : unsigned {
    None = 0,
    Period = 1,
    Comma = 2,
    Space = 3,
    Local = 4,
  };

  /// The character between the units of a date or a time.
  enum class UnitsSeparator : unsigned {
    None = 0,
    Period = 1,
    Comma = 2,
    Space = 3,
    Colon = 4,
    Dash = 5,
    Slash = 6,
    Local = 7,
  };

  /// The concrete kind of a format. The codes are the ASCII letters c, d, n,
  /// s and t; other components compare the numbers.
  enum FormatClass : unsigned {
    Decorated = 99,
    Date = 100,
    Number = 110,
    String = 115,
    Time = 116,
  };

  /// What one unit of a datum's value counts, for the date and time formats.
  enum ValueUnits : unsigned {
    UnitsNone = 0,
    UnitsSeconds = 1,
    UnitsDays = 2,
  };

  /// Destroys the format and everything it owns.
  virtual ~DMFormat();

  /// A new heap copy of the same concrete class, owned by the caller.
  virtual DMFormat* Clone() const = 0;
  /// Sets the name; does nothing while the width is 0.
  virtual void SetName(const std::string& name) = 0;
  /// The width as stored; 0 for an invalid format, -1 for variable width.
  virtual int GetWidth() const = 0;
  /// The alignment as stored.
  virtual Alignment GetAlignment() const = 0;
  /// The name as stored.
  virtual const std::string& GetName() const = 0;
  /// Renders `datum` into `out`, which is cleared first. Returns
  /// `DM_FORMAT_OK`, or non-zero with `out` empty when the datum cannot be
  /// shown.
  virtual int Format(const DMDatum& datum, ValueUnits units, std::string& out) const = 0;
  /// Writes the format as a new child element of `parent`; `created` receives
  /// the element, owned by `parent`. On failure, and when the class writes
  /// nothing for an invalid format, nothing is added and `created` is null.
  virtual void AddToTree(DmExtension::DMXMLWrapper& parent,
                         DmExtension::DMXMLWrapper*& created) const = 0;
  /// The concrete kind of the format.
  virtual FormatClass GetFormatClass() const = 0;

 protected:
  DMFormat() = default;
  // Copying only through the concrete classes, so that no format is sliced.
  DMFormat(const DMFormat&) = default;
  DMFormat& operator=(const DMFormat&) = default;
};

#endif  // DMCOMMON_FORMATS_DMFORMAT_H
