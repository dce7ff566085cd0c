#ifndef DMCOMMON_TOOLS_CELLPARSE_H
#define DMCOMMON_TOOLS_CELLPARSE_H

// Reading one CSV cell as a typed value. Each reader takes the whole cell or
// nothing: "12abc" is not an integer, "2012-02-30" is not a date. They work
// on the parser's bytes in place, so profiling allocates nothing per cell.

#include <string_view>

namespace dmtool {

/// Seconds in a day; dates count days and times count seconds.
inline constexpr double kSecondsPerDay = 86400.0;

/// An optionally signed decimal integer that fits in 64 bits.
bool ParseInteger(std::string_view text, long long& value);

/// A decimal real number, optionally signed, with an optional fraction and
/// exponent; infinities and not-a-number are refused. `decimals` receives the
/// number of digits after the decimal point.
bool ParseReal(std::string_view text, double& value, unsigned& decimals);

/// An ISO date yyyy-mm-dd of the Gregorian calendar; `days` counts from
/// 1970-01-01.
bool ParseDate(std::string_view text, long long& days);

/// A time of day hh:mm:ss; `seconds` counts from midnight.
bool ParseTime(std::string_view text, long long& seconds);

/// An ISO timestamp "yyyy-mm-dd hh:mm:ss" (or with 'T' between date and
/// time); `seconds` counts from 1970-01-01 00:00:00.
bool ParseTimestamp(std::string_view text, double& seconds);

/// Whether `text` is well-formed UTF-8 (no overlong forms, no surrogates,
/// nothing above U+10FFFF).
bool IsValidUtf8(std::string_view text);

/// The first control byte of `text` that XML cannot carry (0 to 8, 11, 12,
/// 14 to 31), or -1 when there is none. A document could not hold such a
/// cell: written, it would not read back.
int FirstForbiddenControl(std::string_view text);

/// The number of code points in the UTF-8 `text`: its width in a table of
/// mostly single-width characters.
std::size_t DisplayWidth(std::string_view text);

}  // namespace dmtool

#endif  // DMCOMMON_TOOLS_CELLPARSE_H
