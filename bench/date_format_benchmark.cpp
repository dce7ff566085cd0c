// Date and time Format per value, beside two anchors measured in the same run
// on the same values: a bare ICU formatter built once and reused (the floor),
// and a formatter with its calendar built for every value (what rendering
// would cost without keeping formatters). Each anchor produces the same UTF-8
// text as the library; the "NoConversion" anchor stops at ICU's UTF-16 text.

#include <cstddef>
#include <memory>
#include <string>
#include <vector>

#include <benchmark/benchmark.h>
#include <unicode/gregocal.h>
#include <unicode/locid.h>
#include <unicode/smpdtfmt.h>
#include <unicode/timezone.h>
#include <unicode/unistr.h>

#include "dmcommon/formats/dmdateformat.h"
#include "dmcommon/formats/dmformat.h"
#include "dmcommon/formats/dmtimeformat.h"
#include "dmcommon/printable/dmuncconverter.h"
#include "dmcommon/values/dmdatum.h"

namespace {

using UnitsSeparator = DMFormat::UnitsSeparator;

constexpr std::size_t kValueCount = 1024;
constexpr double kSecondsPerDay = 86400.0;

// Days from 1970 spread over some 270 years either side, with a time of day.
const std::vector<double>& Days() {
  static const std::vector<double> days = [] {
    std::vector<double> values;
    for (std::size_t i = 0; i < kValueCount; ++i) {
      values.push_back(-100000.0 + static_cast<double>(i) * 197.371 +
                       0.1 * static_cast<double>(i % 10));
    }
    return values;
  }();
  return days;
}

// Seconds within a few days, with hundredths.
const std::vector<double>& Seconds() {
  static const std::vector<double> seconds = [] {
    std::vector<double> values;
    for (std::size_t i = 0; i < kValueCount; ++i) {
      values.push_back(static_cast<double>(i) * 311.27);
    }
    return values;
  }();
  return seconds;
}

std::vector<DMDatum> Datums(const std::vector<double>& values) {
  std::vector<DMDatum> datums;
  datums.reserve(values.size());
  for (const double value : values) datums.emplace_back(value);
  return datums;
}

std::unique_ptr<icu::SimpleDateFormat> Build(const char* pattern) {
  UErrorCode status = U_ZERO_ERROR;
  auto formatter = std::make_unique<icu::SimpleDateFormat>(icu::UnicodeString(pattern),
                                                           icu::Locale::getUS(), status);
  formatter->adoptCalendar(new icu::GregorianCalendar(*icu::TimeZone::getGMT(), status));
  if (U_FAILURE(status)) return nullptr;
  return formatter;
}

DMDateFormat DateFormat() {
  return DMDateFormat(DMDateFormat::Y_M_D, 10, 0, UnitsSeparator::Dash, false, false);
}
constexpr char kDatePattern[] = "yyyy-MM-dd";

DMTimeFormat TimeFormat() {
  return DMTimeFormat(DMTimeFormat::H_M_S, 11, 2, UnitsSeparator::Colon, true);
}
constexpr char kTimePattern[] = "HH:mm:ss.SS";

DMDateFormat DateTimeFormat() {
  DMDateFormat format = DateFormat();
  const DMTimeFormat time = TimeFormat();
  format.SetTimeFormat(&time);
  return format;
}

// The library's text must be the anchor's, or the comparison means nothing.
template <typename Library, typename Anchor>
bool SameText(benchmark::State& state, std::size_t count, Library library, Anchor anchor) {
  for (std::size_t i = 0; i < count; ++i) {
    if (library(i) != anchor(i)) {
      state.SkipWithError("the library and its anchor give different text");
      return false;
    }
  }
  return true;
}

// ---------------------------------------------------------------------------
// Dates

void BM_DateFormat_Library(benchmark::State& state) {
  const DMDateFormat format = DateFormat();
  const std::vector<DMDatum> datums = Datums(Days());
  std::string out;
  std::size_t i = 0;
  for (auto _ : state) {
    format.Format(datums[i], DMFormat::UnitsDays, out);
    benchmark::DoNotOptimize(out);
    i = (i + 1) % datums.size();
  }
}
BENCHMARK(BM_DateFormat_Library);

void BM_DateFormat_ReusedIcu(benchmark::State& state) {
  const std::unique_ptr<icu::SimpleDateFormat> formatter = Build(kDatePattern);
  if (formatter == nullptr) {
    state.SkipWithError("ICU could not build the formatter");
    return;
  }
  DMPrintableUtil::DMUncConverter converter;
  const std::vector<double>& days = Days();
  const DMDateFormat format = DateFormat();
  const auto anchor = [&](std::size_t at) {
    icu::UnicodeString text;
    formatter->format(days[at] * kSecondsPerDay * 1000.0, text);
    return converter.ToUTF8(text);
  };
  const auto library = [&](std::size_t at) {
    std::string out;
    format.Format(DMDatum(days[at]), DMFormat::UnitsDays, out);
    return out;
  };
  if (!SameText(state, days.size(), library, anchor)) return;
  std::size_t i = 0;
  for (auto _ : state) {
    icu::UnicodeString text;
    formatter->format(days[i] * kSecondsPerDay * 1000.0, text);
    std::string out = converter.ToUTF8(text);
    benchmark::DoNotOptimize(out);
    i = (i + 1) % days.size();
  }
}
BENCHMARK(BM_DateFormat_ReusedIcu);

void BM_DateFormat_ReusedIcuNoConversion(benchmark::State& state) {
  const std::unique_ptr<icu::SimpleDateFormat> formatter = Build(kDatePattern);
  if (formatter == nullptr) {
    state.SkipWithError("ICU could not build the formatter");
    return;
  }
  const std::vector<double>& days = Days();
  std::size_t i = 0;
  for (auto _ : state) {
    icu::UnicodeString text;
    formatter->format(days[i] * kSecondsPerDay * 1000.0, text);
    benchmark::DoNotOptimize(text);
    i = (i + 1) % days.size();
  }
}
BENCHMARK(BM_DateFormat_ReusedIcuNoConversion);

void BM_DateFormat_FreshIcu(benchmark::State& state) {
  DMPrintableUtil::DMUncConverter converter;
  const std::vector<double>& days = Days();
  std::size_t i = 0;
  for (auto _ : state) {
    const std::unique_ptr<icu::SimpleDateFormat> formatter = Build(kDatePattern);
    if (formatter == nullptr) {
      state.SkipWithError("ICU could not build the formatter");
      break;
    }
    icu::UnicodeString text;
    formatter->format(days[i] * kSecondsPerDay * 1000.0, text);
    std::string out = converter.ToUTF8(text);
    benchmark::DoNotOptimize(out);
    i = (i + 1) % days.size();
  }
}
BENCHMARK(BM_DateFormat_FreshIcu);

// ---------------------------------------------------------------------------
// Times

void BM_TimeFormat_Library(benchmark::State& state) {
  const DMTimeFormat format = TimeFormat();
  const std::vector<DMDatum> datums = Datums(Seconds());
  std::string out;
  std::size_t i = 0;
  for (auto _ : state) {
    format.Format(datums[i], DMFormat::UnitsSeconds, out);
    benchmark::DoNotOptimize(out);
    i = (i + 1) % datums.size();
  }
}
BENCHMARK(BM_TimeFormat_Library);

void BM_TimeFormat_ReusedIcu(benchmark::State& state) {
  const std::unique_ptr<icu::SimpleDateFormat> formatter = Build(kTimePattern);
  if (formatter == nullptr) {
    state.SkipWithError("ICU could not build the formatter");
    return;
  }
  DMPrintableUtil::DMUncConverter converter;
  const std::vector<double>& seconds = Seconds();
  const DMTimeFormat format = TimeFormat();
  const auto anchor = [&](std::size_t at) {
    icu::UnicodeString text;
    formatter->format(seconds[at] * 1000.0, text);
    return converter.ToUTF8(text);
  };
  const auto library = [&](std::size_t at) {
    std::string out;
    format.Format(DMDatum(seconds[at]), DMFormat::UnitsSeconds, out);
    return out;
  };
  if (!SameText(state, seconds.size(), library, anchor)) return;
  std::size_t i = 0;
  for (auto _ : state) {
    icu::UnicodeString text;
    formatter->format(seconds[i] * 1000.0, text);
    std::string out = converter.ToUTF8(text);
    benchmark::DoNotOptimize(out);
    i = (i + 1) % seconds.size();
  }
}
BENCHMARK(BM_TimeFormat_ReusedIcu);

void BM_TimeFormat_ReusedIcuNoConversion(benchmark::State& state) {
  const std::unique_ptr<icu::SimpleDateFormat> formatter = Build(kTimePattern);
  if (formatter == nullptr) {
    state.SkipWithError("ICU could not build the formatter");
    return;
  }
  const std::vector<double>& seconds = Seconds();
  std::size_t i = 0;
  for (auto _ : state) {
    icu::UnicodeString text;
    formatter->format(seconds[i] * 1000.0, text);
    benchmark::DoNotOptimize(text);
    i = (i + 1) % seconds.size();
  }
}
BENCHMARK(BM_TimeFormat_ReusedIcuNoConversion);

void BM_TimeFormat_FreshIcu(benchmark::State& state) {
  DMPrintableUtil::DMUncConverter converter;
  const std::vector<double>& seconds = Seconds();
  std::size_t i = 0;
  for (auto _ : state) {
    const std::unique_ptr<icu::SimpleDateFormat> formatter = Build(kTimePattern);
    if (formatter == nullptr) {
      state.SkipWithError("ICU could not build the formatter");
      break;
    }
    icu::UnicodeString text;
    formatter->format(seconds[i] * 1000.0, text);
    std::string out = converter.ToUTF8(text);
    benchmark::DoNotOptimize(out);
    i = (i + 1) % seconds.size();
  }
}
BENCHMARK(BM_TimeFormat_FreshIcu);

// ---------------------------------------------------------------------------
// A date with its time of day: two formatters per value

void BM_DateTimeFormat_Library(benchmark::State& state) {
  const DMDateFormat format = DateTimeFormat();
  const std::vector<DMDatum> datums = Datums(Days());
  std::string out;
  std::size_t i = 0;
  for (auto _ : state) {
    format.Format(datums[i], DMFormat::UnitsDays, out);
    benchmark::DoNotOptimize(out);
    i = (i + 1) % datums.size();
  }
}
BENCHMARK(BM_DateTimeFormat_Library);

void BM_DateTimeFormat_ReusedIcu(benchmark::State& state) {
  const std::unique_ptr<icu::SimpleDateFormat> date = Build(kDatePattern);
  const std::unique_ptr<icu::SimpleDateFormat> time = Build(kTimePattern);
  if (date == nullptr || time == nullptr) {
    state.SkipWithError("ICU could not build the formatters");
    return;
  }
  DMPrintableUtil::DMUncConverter converter;
  const std::vector<double>& days = Days();
  const DMDateFormat format = DateTimeFormat();
  const auto anchor = [&](std::size_t at) {
    icu::UnicodeString dateText;
    icu::UnicodeString timeText;
    // The time part is rendered from seconds, as the library hands them on.
    date->format(days[at] * kSecondsPerDay * 1000.0, dateText);
    time->format(days[at] * kSecondsPerDay * 1000.0, timeText);
    return converter.ToUTF8(dateText) + " " + converter.ToUTF8(timeText);
  };
  const auto library = [&](std::size_t at) {
    std::string out;
    format.Format(DMDatum(days[at]), DMFormat::UnitsDays, out);
    return out;
  };
  if (!SameText(state, days.size(), library, anchor)) return;
  std::size_t i = 0;
  for (auto _ : state) {
    icu::UnicodeString dateText;
    icu::UnicodeString timeText;
    date->format(days[i] * kSecondsPerDay * 1000.0, dateText);
    time->format(days[i] * kSecondsPerDay * 1000.0, timeText);
    std::string out = converter.ToUTF8(dateText);
    out += ' ';
    out += converter.ToUTF8(timeText);
    benchmark::DoNotOptimize(out);
    i = (i + 1) % days.size();
  }
}
BENCHMARK(BM_DateTimeFormat_ReusedIcu);

}  // namespace

BENCHMARK_MAIN();
