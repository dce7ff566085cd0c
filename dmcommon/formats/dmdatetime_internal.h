#ifndef DMCOMMON_FORMATS_DMDATETIME_INTERNAL_H
#define DMCOMMON_FORMATS_DMDATETIME_INTERNAL_H

// The ICU side of date and time rendering, shared by the date and time
// formats. Header-only and never installed.

#include <algorithm>
#include <cstddef>
#include <cstring>
#include <memory>
#include <string>
#include <vector>

#include <unicode/gregocal.h>
#include <unicode/locid.h>
#include <unicode/smpdtfmt.h>
#include <unicode/timezone.h>
#include <unicode/unistr.h>
#include <unicode/utypes.h>

#include "dmcommon/formats/dmformat.h"
#include "dmcommon/printable/dmuncconverter.h"

namespace dmdatetime_internal {

// The instants ICU's calendar can hold, in milliseconds from 1970: Julian days
// -0x7F000000 and +0x7F000000. A lenient calendar silently pins anything
// beyond them to the edge, and a not-a-number comes out as a blank, so such
// values are refused instead of being shown as a wrong date.
inline constexpr double kMinMillis = -184303902528000000.0;
inline constexpr double kMaxMillis = 183882168921600000.0;

/// Whether `millis` is an instant ICU's calendar holds; false for
/// not-a-number and the infinities.
[[nodiscard]] inline bool WithinCalendarSpan(double millis) {
  return millis >= kMinMillis && millis <= kMaxMillis;
}

/// A formatter for `pattern` with the names of `names`, on a Gregorian
/// calendar in GMT whose week rules are those of the ICU default locale (the
/// calendar is made for the default locale, as a fresh one would be). Null
/// when ICU reports a failure.
[[nodiscard]] inline std::unique_ptr<icu::SimpleDateFormat> BuildFormatter(
    const std::string& pattern, const icu::Locale& names) {
  UErrorCode status = U_ZERO_ERROR;
  auto formatter =
      std::make_unique<icu::SimpleDateFormat>(icu::UnicodeString::fromUTF8(pattern), names, status);
  if (U_FAILURE(status)) return nullptr;
  auto calendar = std::make_unique<icu::GregorianCalendar>(*icu::TimeZone::getGMT(), status);
  if (U_FAILURE(status)) return nullptr;
  formatter->adoptCalendar(calendar.release());
  return formatter;
}

/// The settings a date or time format makes its pattern from. Equal settings
/// make equal patterns, so formatters are found by these, and a pattern is
/// only built when its formatter is.
struct PatternKey {
  DMFormat::FormatClass formatClass;
  unsigned type;
  DMFormat::UnitsSeparator separator;
  // Two-digit year for dates, padded units for times.
  bool flag;
  // Fractional digits for times; 0 for dates.
  unsigned decimals;
};

[[nodiscard]] inline bool operator==(const PatternKey& left, const PatternKey& right) {
  return left.formatClass == right.formatClass && left.type == right.type &&
         left.separator == right.separator && left.flag == right.flag &&
         left.decimals == right.decimals;
}

/// The formatters of one thread, ready for reuse. Building a formatter and its
/// calendar costs some twenty times what formatting one value does, so each
/// is kept under everything its output depends on: the settings that make its
/// pattern, the locale of its names and the default locale its calendar was
/// made for. A changed setting or a new default locale is then simply another
/// key, and what comes out is always what a freshly built formatter would
/// give. Per thread, so that format objects stay free of hidden shared state
/// and copy as plain values.
class FormatterCache {
 public:
  /// The ready formatter for `key` with the names of `names`, built from the
  /// pattern `makePattern()` returns on first use; null when ICU fails to
  /// build it (nothing is kept then). The cache owns it; it stays valid until
  /// the next call on this cache.
  template <typename MakePattern>
  [[nodiscard]] icu::SimpleDateFormat* Find(const PatternKey& key, const icu::Locale& names,
                                            const MakePattern& makePattern) {
    const char* namesName = names.getName();
    const char* calendarName = icu::Locale::getDefault().getName();
    for (std::size_t i = 0; i < entries_.size(); ++i) {
      Entry& entry = entries_[i];
      if (!(entry.key == key) || std::strcmp(entry.names.c_str(), namesName) != 0 ||
          std::strcmp(entry.calendar.c_str(), calendarName) != 0) {
        continue;
      }
      // Most recently used first: the usual caller renders a column with
      // one or two formats, so the first comparison nearly always hits.
      if (i != 0) {
        std::rotate(entries_.begin(), entries_.begin() + static_cast<std::ptrdiff_t>(i),
                    entries_.begin() + static_cast<std::ptrdiff_t>(i) + 1);
      }
      return entries_.front().formatter.get();
    }
    std::unique_ptr<icu::SimpleDateFormat> built = BuildFormatter(makePattern(), names);
    if (built == nullptr) return nullptr;
    if (entries_.size() == kCapacity) entries_.pop_back();
    entries_.insert(entries_.begin(), Entry{key, namesName, calendarName, std::move(built)});
    return entries_.front().formatter.get();
  }

  /// The thread's UTF-8 converter, opened once rather than per value.
  DMPrintableUtil::DMUncConverter& Converter() { return converter_; }

 private:
  static constexpr std::size_t kCapacity = 16;

  struct Entry {
    PatternKey key;
    std::string names;
    std::string calendar;
    std::unique_ptr<icu::SimpleDateFormat> formatter;
  };

  std::vector<Entry> entries_;
  DMPrintableUtil::DMUncConverter converter_;
};

/// The calling thread's cache, destroyed when the thread ends.
inline FormatterCache& ThreadFormatterCache() {
  thread_local FormatterCache cache;
  return cache;
}

/// Appends to `text` the instant `millis` formatted on a GMT Gregorian
/// calendar with the names of `names` and the pattern that `key` stands for
/// (`makePattern` builds it when `cache` has no formatter for it yet). Fails,
/// leaving `text` as it was, when `millis` lies outside the calendar's span or
/// ICU cannot build the formatter.
template <typename MakePattern>
[[nodiscard]] int FormatMillis(FormatterCache& cache, const PatternKey& key,
                               const icu::Locale& names, const MakePattern& makePattern,
                               double millis, icu::UnicodeString& text) {
  if (!WithinCalendarSpan(millis)) return DM_FORMAT_FAILED;
  icu::SimpleDateFormat* formatter = cache.Find(key, names, makePattern);
  if (formatter == nullptr) return DM_FORMAT_FAILED;
  formatter->format(millis, text);
  return DM_FORMAT_OK;
}

}  // namespace dmdatetime_internal

#endif  // DMCOMMON_FORMATS_DMDATETIME_INTERNAL_H
