// Rendering of the date and time formats: their ICU patterns, the text of
// every type, width and separator, the cutting of names and durations, the
// time part of a date, locales, values ICU cannot hold, and the reuse of
// formatters.

#include <cmath>
#include <limits>
#include <memory>
#include <ostream>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include <gtest/gtest.h>
#include <unicode/gregocal.h>
#include <unicode/locid.h>
#include <unicode/smpdtfmt.h>
#include <unicode/timezone.h>
#include <unicode/unistr.h>
#include <unicode/utypes.h>

#include "dmcommon/formats/dmdateformat.h"
#include "dmcommon/formats/dmformat.h"
#include "dmcommon/formats/dmtimeformat.h"
#include "dmcommon/values/dmdatum.h"

namespace {

using UnitsSeparator = DMFormat::UnitsSeparator;
constexpr DMFormat::ValueUnits kNone = DMFormat::UnitsNone;
constexpr DMFormat::ValueUnits kSeconds = DMFormat::UnitsSeconds;
constexpr DMFormat::ValueUnits kDays = DMFormat::UnitsDays;

// Days from 1970-01-01 of the dates the tables use.
constexpr double k2021Mar07 = 18693.0;  // a Sunday, day 66 of its year, in US week 11
constexpr double k1955Nov05 = -5171.0;  // a Saturday, day 309 of its year, in US week 45
constexpr double k2021Jan03 = 18630.0;  // a Sunday: US week 2, ISO week 53 of 2020
constexpr double kSecondsPerDay = 86400.0;

// What Format gave: its result and the text it left.
struct Rendered {
  int result;
  std::string text;
};

bool operator==(const Rendered& left, const Rendered& right) {
  return left.result == right.result && left.text == right.text;
}

void PrintTo(const Rendered& rendered, std::ostream* out) {
  *out << "{result " << rendered.result << ", \"" << rendered.text << "\"}";
}

Rendered Shown(const std::string& text) { return {DM_FORMAT_OK, text}; }

Rendered Refused() { return {DM_FORMAT_FAILED, ""}; }

Rendered Render(const DMFormat& format, const DMDatum& datum, DMFormat::ValueUnits units) {
  Rendered rendered{DM_FORMAT_OK, "stale"};
  rendered.result = format.Format(datum, units, rendered.text);
  return rendered;
}

Rendered Render(const DMFormat& format, double value, DMFormat::ValueUnits units) {
  return Render(format, DMDatum(value), units);
}

// Makes `name` the ICU default locale for the life of the object, then puts
// back the one before.
class DefaultLocale {
 public:
  explicit DefaultLocale(const char* name) : previous_(icu::Locale::getDefault()) {
    Set(icu::Locale(name));
  }
  ~DefaultLocale() { Set(previous_); }
  DefaultLocale(const DefaultLocale&) = delete;
  DefaultLocale& operator=(const DefaultLocale&) = delete;

 private:
  static void Set(const icu::Locale& locale) {
    UErrorCode status = U_ZERO_ERROR;
    icu::Locale::setDefault(locale, status);
    EXPECT_TRUE(U_SUCCESS(status)) << u_errorName(status);
  }

  icu::Locale previous_;
};

// Rendering tests run under en_US whatever the machine's locale: even with
// English names, the calendar takes its week rules from the default locale.
class DMDateRenderTest : public ::testing::Test {
 private:
  DefaultLocale locale_{"en_US"};
};

class DMTimeRenderTest : public ::testing::Test {
 private:
  DefaultLocale locale_{"en_US"};
};

// What a formatter built afresh for this one value gives: the reference for
// the formatters the library keeps.
std::string FreshlyFormatted(const std::string& pattern, const icu::Locale& names, double millis) {
  UErrorCode status = U_ZERO_ERROR;
  icu::SimpleDateFormat formatter(icu::UnicodeString::fromUTF8(pattern), names, status);
  const icu::GregorianCalendar calendar(*icu::TimeZone::getGMT(), status);
  EXPECT_TRUE(U_SUCCESS(status)) << u_errorName(status);
  formatter.setCalendar(calendar);
  icu::UnicodeString text;
  formatter.format(millis, text);
  std::string bytes;
  text.toUTF8String(bytes);
  return bytes;
}

// ---------------------------------------------------------------------------
// Date patterns

struct DatePatternRow {
  DMDateFormat::FormatType type;
  UnitsSeparator separator;
  bool twoDigitYear;
  const char* pattern;
};

void PrintTo(const DatePatternRow& row, std::ostream* out) {
  *out << "type " << row.type << ", separator " << static_cast<unsigned>(row.separator)
       << ", two-digit year " << row.twoDigitYear << " -> \"" << row.pattern << "\"";
}

class DMDatePatternTest : public ::testing::TestWithParam<DatePatternRow> {};

TEST_P(DMDatePatternTest, MakesThePatternOfTheTypeSeparatorAndYear) {
  const DatePatternRow& row = GetParam();
  const DMDateFormat format(row.type, 10, 2, row.separator, row.twoDigitYear, false);
  EXPECT_EQ(format.MakePattern(), row.pattern);
}

constexpr DatePatternRow kDatePatterns[] = {
    {DMDateFormat::D_M_Y, UnitsSeparator::Slash, false, "dd/MM/yyyy"},
    {DMDateFormat::D_M_Y, UnitsSeparator::Period, true, "dd.MM.yy"},
    {DMDateFormat::M_D_Y, UnitsSeparator::Dash, false, "MM-dd-yyyy"},
    {DMDateFormat::M_D_Y, UnitsSeparator::Comma, true, "MM,dd,yy"},
    {DMDateFormat::Y_M_D, UnitsSeparator::Dash, false, "yyyy-MM-dd"},
    {DMDateFormat::Y_M_D, UnitsSeparator::Space, false, "yyyy MM dd"},
    {DMDateFormat::Y_M_D, UnitsSeparator::Colon, true, "yy:MM:dd"},
    {DMDateFormat::Y_M_D, UnitsSeparator::None, false, "yyyyMMdd"},
    {DMDateFormat::Y_M_D, UnitsSeparator::Local, false, "yyyyMMdd"},
    {DMDateFormat::D_monthName_Y, UnitsSeparator::Dash, false, "dd-MMM-yyyy"},
    {DMDateFormat::D_monthName_Y, UnitsSeparator::Space, true, "dd MMM yy"},
    {DMDateFormat::MonthName_Y, UnitsSeparator::Space, false, "MMM yyyy"},
    {DMDateFormat::MonthName_Y, UnitsSeparator::Slash, true, "MMM/yy"},
    {DMDateFormat::Y_dayNo, UnitsSeparator::None, false, "yyyyDDD"},
    {DMDateFormat::Y_dayNo, UnitsSeparator::Dash, true, "yy-DDD"},
    {DMDateFormat::DayName, UnitsSeparator::Slash, true, "EEEE"},
    {DMDateFormat::MonthName, UnitsSeparator::Dash, true, "MMMM"},
    {DMDateFormat::Q_Y, UnitsSeparator::Space, false, "MMM yyyy"},
    {DMDateFormat::Q_Y, UnitsSeparator::Dash, true, "MMM-yy"},
    {DMDateFormat::W_Y, UnitsSeparator::Colon, true, "ww 'WK' yy"},
    {DMDateFormat::W_Y, UnitsSeparator::Slash, false, "ww 'WK' yyyy"},
    {static_cast<DMDateFormat::FormatType>(10), UnitsSeparator::Dash, false, ""},
};

INSTANTIATE_TEST_SUITE_P(Rows, DMDatePatternTest, ::testing::ValuesIn(kDatePatterns));

TEST(DMDatePatternBuilderTest, RepeatsEachLetterAndPutsTheSeparatorBetween) {
  std::string pattern;
  DMDateFormat::SetDatePatt("yMdD", false, false, UnitsSeparator::Slash, pattern);
  EXPECT_EQ(pattern, "yyyy/MM/dd/DDD");
}

TEST(DMDatePatternBuilderTest, MonthNameAndTwoDigitYearShortenAndLengthen) {
  std::string pattern;
  DMDateFormat::SetDatePatt("dMy", true, true, UnitsSeparator::Space, pattern);
  EXPECT_EQ(pattern, "dd MMM yy");
}

TEST(DMDatePatternBuilderTest, AppendsToWhatThePatternHeld) {
  std::string pattern = "EEEE ";
  DMDateFormat::SetDatePatt("Md", false, false, UnitsSeparator::Dash, pattern);
  EXPECT_EQ(pattern, "EEEE MM-dd");
}

TEST(DMDatePatternBuilderTest, WritesOtherLettersOnceAndNoLettersAsNothing) {
  std::string pattern;
  DMDateFormat::SetDatePatt("Gy", false, false, UnitsSeparator::Comma, pattern);
  EXPECT_EQ(pattern, "G,yyyy");
  std::string empty;
  DMDateFormat::SetDatePatt("", true, true, UnitsSeparator::Comma, empty);
  EXPECT_EQ(empty, "");
}

TEST(DMDatePatternBuilderTest, InvalidFormatStillMakesThePatternOfItsStoredSettings) {
  EXPECT_EQ(DMDateFormat().MakePattern(), "yyyyMMdd");
}

// ---------------------------------------------------------------------------
// Time patterns

struct TimePatternRow {
  DMTimeFormat::FormatType type;
  UnitsSeparator separator;
  bool padded;
  unsigned decimals;
  const char* pattern;
  bool duration;
};

void PrintTo(const TimePatternRow& row, std::ostream* out) {
  *out << "type " << row.type << ", separator " << static_cast<unsigned>(row.separator)
       << ", padded " << row.padded << ", decimals " << row.decimals << " -> \"" << row.pattern
       << "\"";
}

class DMTimePatternTest : public ::testing::TestWithParam<TimePatternRow> {};

TEST_P(DMTimePatternTest, MakesThePatternOfTheTypeSeparatorPaddingAndDecimals) {
  const TimePatternRow& row = GetParam();
  const DMTimeFormat format(row.type, 12, row.decimals, row.separator, row.padded);
  bool duration = !row.duration;
  EXPECT_EQ(format.MakePattern(duration), row.pattern);
  EXPECT_EQ(duration, row.duration);
}

constexpr TimePatternRow kTimePatterns[] = {
    {DMTimeFormat::H_M, UnitsSeparator::Colon, true, 0, "HH:mm", false},
    {DMTimeFormat::H_M, UnitsSeparator::Colon, true, 3, "HH:mm", false},
    {DMTimeFormat::H_M, UnitsSeparator::Dash, false, 0, "H-m", false},
    {DMTimeFormat::H_M_S, UnitsSeparator::Colon, true, 2, "HH:mm:ss.SS", false},
    {DMTimeFormat::H_M_S, UnitsSeparator::Colon, true, 0, "HH:mm:ss", false},
    {DMTimeFormat::H_M_S, UnitsSeparator::None, false, 0, "Hms", false},
    {DMTimeFormat::H_M_S, UnitsSeparator::Local, false, 1, "Hms.S", false},
    {DMTimeFormat::H_M_S, UnitsSeparator::Period, true, 4, "HH.mm.ss.SSSS", false},
    {DMTimeFormat::M_S, UnitsSeparator::Colon, true, 0, "mm:ss", false},
    {DMTimeFormat::M_S, UnitsSeparator::Dash, false, 1, "m-s.S", false},
    {DMTimeFormat::D_H_M_S, UnitsSeparator::Colon, true, 0, "g HH:mm:ss", true},
    {DMTimeFormat::D_H_M_S, UnitsSeparator::Period, false, 2, "g H.m.s.SS", true},
    {DMTimeFormat::D_H_M_S, UnitsSeparator::Space, true, 1, "g HH mm ss.S", true},
    {static_cast<DMTimeFormat::FormatType>(4), UnitsSeparator::Colon, true, 2, "", false},
};

INSTANTIATE_TEST_SUITE_P(Rows, DMTimePatternTest, ::testing::ValuesIn(kTimePatterns));

TEST(DMTimePatternBuilderTest, WritesEachLetterTwiceWhenPaddedThenTheFraction) {
  std::string pattern;
  DMTimeFormat::SetTimePatt("Hms", 3, true, UnitsSeparator::Slash, pattern);
  EXPECT_EQ(pattern, "HH/mm/ss.SSS");
}

TEST(DMTimePatternBuilderTest, WritesAtMostSixtyFourFractionLetters) {
  std::string pattern;
  DMTimeFormat::SetTimePatt("s", 4000000000u, true, UnitsSeparator::Colon, pattern);
  EXPECT_EQ(pattern, "ss." + std::string(64, 'S'));
}

TEST(DMTimePatternBuilderTest, WritesEachLetterOnceWhenNotPaddedAndNoFractionForZero) {
  std::string pattern = "g ";
  DMTimeFormat::SetTimePatt("Hm", 0, false, UnitsSeparator::Comma, pattern);
  EXPECT_EQ(pattern, "g H,m");
}

// ---------------------------------------------------------------------------
// Edge cases of date rendering

TEST_F(DMDateRenderTest, ZeroSecondsIsTheFirstOfJanuary1970) {
  const DMDateFormat format(DMDateFormat::Y_M_D, 10, 0, UnitsSeparator::Dash, false, false);
  EXPECT_EQ(Render(format, 0.0, kSeconds), Shown("1970-01-01"));
}

TEST_F(DMDateRenderTest, OneDayIsTheSecondOfJanuary1970) {
  const DMDateFormat format(DMDateFormat::Y_M_D, 10, 0, UnitsSeparator::Dash, false, false);
  EXPECT_EQ(Render(format, 1.0, kDays), Shown("1970-01-02"));
}

TEST_F(DMDateRenderTest, UnitsNoneIsRefused) {
  const DMDateFormat format(DMDateFormat::Y_M_D, 10, 0, UnitsSeparator::Dash, false, false);
  EXPECT_EQ(Render(format, 0.0, kNone), Refused());
}

TEST_F(DMDateRenderTest, DayNameInWidthThreeIsTheAbbreviatedEnglishName) {
  const DMDateFormat format(DMDateFormat::DayName, 3, 0, UnitsSeparator::None, false, false);
  EXPECT_EQ(Render(format, 0.0, kDays), Shown("Thu"));
}

TEST_F(DMDateRenderTest, DayNameOfWidthZeroIsRefused) {
  const DMDateFormat format(DMDateFormat::DayName, 0, 0, UnitsSeparator::None, false, false);
  EXPECT_EQ(Render(format, 0.0, kDays), Refused());
}

TEST_F(DMDateRenderTest, QuarterRendersExactlyLikeMonthNameAndYear) {
  const DMDateFormat quarter(DMDateFormat::Q_Y, 8, 0, UnitsSeparator::Space, false, false);
  const DMDateFormat month(DMDateFormat::MonthName_Y, 8, 0, UnitsSeparator::Space, false, false);
  EXPECT_EQ(Render(quarter, 0.0, kDays), Shown("Jan 1970"));
  EXPECT_EQ(Render(month, 0.0, kDays), Shown("Jan 1970"));
  EXPECT_EQ(Render(quarter, k2021Mar07, kDays), Render(month, k2021Mar07, kDays));
}

TEST_F(DMDateRenderTest, WeekWithTwoDigitYearShowsWeekLiteralAndYear) {
  const DMDateFormat format(DMDateFormat::W_Y, 8, 0, UnitsSeparator::None, true, false);
  EXPECT_EQ(Render(format, 0.0, kDays), Shown("01 WK 70"));
}

TEST_F(DMDateRenderTest, AttachedTimeOfDayFollowsAfterOneSpace) {
  DMDateFormat format(DMDateFormat::Y_M_D, 10, 0, UnitsSeparator::Dash, false, false);
  const DMTimeFormat time(DMTimeFormat::H_M, 5, 0, UnitsSeparator::Colon, true);
  format.SetTimeFormat(&time);
  EXPECT_EQ(Render(format, 0.5, kDays), Shown("1970-01-01 12:00"));
}

// ---------------------------------------------------------------------------
// Date types, widths and separators, on a date after and one before 1970

struct DateRow {
  DMDateFormat::FormatType type;
  int width;
  UnitsSeparator separator;
  bool twoDigitYear;
  double days;
  const char* expected;
};

void PrintTo(const DateRow& row, std::ostream* out) {
  *out << "type " << row.type << ", width " << row.width << ", separator "
       << static_cast<unsigned>(row.separator) << ", two-digit year " << row.twoDigitYear
       << ", day " << row.days << " -> \"" << row.expected << "\"";
}

class DMDateTableTest : public ::testing::TestWithParam<DateRow> {
 private:
  DefaultLocale locale_{"en_US"};
};

TEST_P(DMDateTableTest, RendersTheExpectedText) {
  const DateRow& row = GetParam();
  const DMDateFormat format(row.type, row.width, 0, row.separator, row.twoDigitYear, false);
  EXPECT_EQ(Render(format, row.days, kDays), Shown(row.expected));
  // The same instant counted in seconds gives the same text.
  EXPECT_EQ(Render(format, row.days * kSecondsPerDay, kSeconds), Shown(row.expected));
}

constexpr DateRow kDates[] = {
    {DMDateFormat::D_M_Y, 10, UnitsSeparator::Slash, false, k2021Mar07, "07/03/2021"},
    {DMDateFormat::D_M_Y, 10, UnitsSeparator::Slash, false, k1955Nov05, "05/11/1955"},
    {DMDateFormat::D_M_Y, 8, UnitsSeparator::Period, true, k1955Nov05, "05.11.55"},
    {DMDateFormat::D_M_Y, 8, UnitsSeparator::None, false, k2021Mar07, "07032021"},
    {DMDateFormat::M_D_Y, 10, UnitsSeparator::Dash, false, k2021Mar07, "03-07-2021"},
    {DMDateFormat::M_D_Y, 10, UnitsSeparator::Comma, false, k1955Nov05, "11,05,1955"},
    {DMDateFormat::M_D_Y, 8, UnitsSeparator::Slash, true, k2021Mar07, "03/07/21"},
    {DMDateFormat::Y_M_D, 10, UnitsSeparator::Dash, false, k2021Mar07, "2021-03-07"},
    {DMDateFormat::Y_M_D, 10, UnitsSeparator::Space, false, k1955Nov05, "1955 11 05"},
    {DMDateFormat::Y_M_D, 8, UnitsSeparator::Colon, true, k1955Nov05, "55:11:05"},
    {DMDateFormat::Y_M_D, 8, UnitsSeparator::Local, false, k2021Mar07, "20210307"},
    // Numeric dates are neither cut to a narrow width nor padded to a wide one.
    {DMDateFormat::Y_M_D, 4, UnitsSeparator::Dash, false, k2021Mar07, "2021-03-07"},
    {DMDateFormat::Y_M_D, 30, UnitsSeparator::Dash, false, k1955Nov05, "1955-11-05"},
    {DMDateFormat::Y_M_D, -1, UnitsSeparator::Period, false, k1955Nov05, "1955.11.05"},
    {DMDateFormat::D_monthName_Y, 11, UnitsSeparator::Dash, false, k2021Mar07, "07-Mar-2021"},
    {DMDateFormat::D_monthName_Y, 9, UnitsSeparator::Space, true, k1955Nov05, "05 Nov 55"},
    {DMDateFormat::D_monthName_Y, 9, UnitsSeparator::None, false, k1955Nov05, "05Nov1955"},
    {DMDateFormat::MonthName_Y, 8, UnitsSeparator::Space, false, k2021Mar07, "Mar 2021"},
    {DMDateFormat::MonthName_Y, 8, UnitsSeparator::Slash, false, k1955Nov05, "Nov/1955"},
    {DMDateFormat::MonthName_Y, 2, UnitsSeparator::Dash, true, k1955Nov05, "Nov-55"},
    {DMDateFormat::Y_dayNo, 7, UnitsSeparator::None, false, k2021Mar07, "2021066"},
    {DMDateFormat::Y_dayNo, 6, UnitsSeparator::Dash, true, k1955Nov05, "55-309"},
    {DMDateFormat::Y_dayNo, 8, UnitsSeparator::Period, false, k1955Nov05, "1955.309"},
    {DMDateFormat::DayName, 9, UnitsSeparator::Dash, false, k2021Mar07, "Sunday"},
    {DMDateFormat::DayName, 9, UnitsSeparator::Dash, false, k1955Nov05, "Saturday"},
    {DMDateFormat::DayName, 3, UnitsSeparator::None, false, k2021Mar07, "Sun"},
    {DMDateFormat::DayName, 3, UnitsSeparator::None, true, k1955Nov05, "Sat"},
    {DMDateFormat::DayName, 1, UnitsSeparator::None, false, k2021Mar07, "S"},
    {DMDateFormat::DayName, 8, UnitsSeparator::None, false, k1955Nov05, "Saturday"},
    {DMDateFormat::DayName, 7, UnitsSeparator::None, false, k1955Nov05, "Saturda"},
    {DMDateFormat::DayName, -1, UnitsSeparator::None, false, k1955Nov05, "Saturday"},
    {DMDateFormat::DayName, 20, UnitsSeparator::None, false, k2021Mar07, "Sunday"},
    {DMDateFormat::MonthName, 9, UnitsSeparator::Slash, false, k2021Mar07, "March"},
    {DMDateFormat::MonthName, 9, UnitsSeparator::Slash, false, k1955Nov05, "November"},
    {DMDateFormat::MonthName, 3, UnitsSeparator::None, true, k1955Nov05, "Nov"},
    {DMDateFormat::MonthName, 2, UnitsSeparator::None, false, k2021Mar07, "Ma"},
    {DMDateFormat::MonthName, -1, UnitsSeparator::None, false, k1955Nov05, "November"},
    {DMDateFormat::Q_Y, 8, UnitsSeparator::Space, false, k2021Mar07, "Mar 2021"},
    {DMDateFormat::Q_Y, 6, UnitsSeparator::Dash, true, k1955Nov05, "Nov-55"},
    {DMDateFormat::W_Y, 10, UnitsSeparator::Slash, false, k2021Mar07, "11 WK 2021"},
    {DMDateFormat::W_Y, 8, UnitsSeparator::Dash, true, k1955Nov05, "45 WK 55"},
    {DMDateFormat::W_Y, 3, UnitsSeparator::None, false, k2021Jan03, "02 WK 2021"},
};

INSTANTIATE_TEST_SUITE_P(Rows, DMDateTableTest, ::testing::ValuesIn(kDates));

// ---------------------------------------------------------------------------
// More date behaviour

TEST_F(DMDateRenderTest, NullDatumRendersAsADotBeforeAnyCheck) {
  const DMDateFormat invalid;
  EXPECT_EQ(Render(invalid, DMDatum(), kNone), Shown("."));
  DMDatum nullReal(1.0);
  nullReal.SetNull();
  const DMDateFormat format(DMDateFormat::Y_M_D, 10, 0, UnitsSeparator::Dash, false, false);
  EXPECT_EQ(Render(format, nullReal, kDays), Shown("."));
}

TEST_F(DMDateRenderTest, DatumThatIsNotRealIsRefused) {
  const DMDateFormat format(DMDateFormat::Y_M_D, 10, 0, UnitsSeparator::Dash, false, false);
  EXPECT_EQ(Render(format, DMDatum(1LL), kDays), Refused());
  EXPECT_EQ(Render(format, DMDatum("1970-01-02"), kDays), Refused());
}

TEST_F(DMDateRenderTest, InvalidFormatIsRefused) {
  EXPECT_EQ(Render(DMDateFormat(), 0.0, kDays), Refused());
}

TEST_F(DMDateRenderTest, UnitsOtherThanNoneAndSecondsCountDays) {
  const DMDateFormat format(DMDateFormat::Y_M_D, 10, 0, UnitsSeparator::Dash, false, false);
  EXPECT_EQ(Render(format, 1.0, static_cast<DMFormat::ValueUnits>(7)), Shown("1970-01-02"));
}

TEST_F(DMDateRenderTest, FractionOfADayStaysOnItsDate) {
  const DMDateFormat format(DMDateFormat::Y_M_D, 10, 0, UnitsSeparator::Dash, false, false);
  EXPECT_EQ(Render(format, k2021Mar07 + 0.999, kDays), Shown("2021-03-07"));
  EXPECT_EQ(Render(format, -0.25, kDays), Shown("1969-12-31"));
}

TEST_F(DMDateRenderTest, DaysBeforeTheGregorianChangeFollowTheJulianCalendar) {
  // ICU's Gregorian calendar switches from the Julian one on 1582-10-15; the
  // day before is 1582-10-04.
  const DMDateFormat format(DMDateFormat::Y_M_D, 10, 0, UnitsSeparator::Dash, false, false);
  EXPECT_EQ(Render(format, -141427.0, kDays), Shown("1582-10-15"));
  EXPECT_EQ(Render(format, -141428.0, kDays), Shown("1582-10-04"));
}

TEST_F(DMDateRenderTest, UnknownTypeRendersAnEmptyText) {
  DMDateFormat format(static_cast<DMDateFormat::FormatType>(10), 10, 0, UnitsSeparator::Dash, false,
                      false);
  EXPECT_EQ(Render(format, 0.5, kDays), Shown(""));
  // The time part still follows its space.
  const DMTimeFormat time(DMTimeFormat::H_M, 5, 0, UnitsSeparator::Colon, true);
  format.SetTimeFormat(&time);
  EXPECT_EQ(Render(format, 0.5, kDays), Shown(" 12:00"));
}

TEST_F(DMDateRenderTest, AttachedTimeKeepsItsOwnDecimalsWidthAndPadding) {
  DMDateFormat format(DMDateFormat::D_M_Y, 10, 3, UnitsSeparator::Slash, false, false);
  const DMTimeFormat time(DMTimeFormat::H_M_S, 12, 2, UnitsSeparator::Colon, true);
  format.SetTimeFormat(&time);
  const double seconds = k2021Mar07 * kSecondsPerDay + 13 * 3600 + 45 * 60 + 30.25;
  EXPECT_EQ(Render(format, seconds, kSeconds), Shown("07/03/2021  13:45:30.25"));
}

TEST_F(DMDateRenderTest, AttachedTimeBefore1970IsTheTimeOfThatDay) {
  DMDateFormat format(DMDateFormat::Y_M_D, 10, 0, UnitsSeparator::Dash, false, false);
  const DMTimeFormat time(DMTimeFormat::H_M, 5, 0, UnitsSeparator::Colon, true);
  format.SetTimeFormat(&time);
  EXPECT_EQ(Render(format, k1955Nov05 + 0.75, kDays), Shown("1955-11-05 18:00"));
}

TEST_F(DMDateRenderTest, AttachedUnpaddedTimeWithoutSeparator) {
  DMDateFormat format(DMDateFormat::D_monthName_Y, 11, 0, UnitsSeparator::Dash, true, false);
  const DMTimeFormat time(DMTimeFormat::H_M_S, -1, 0, UnitsSeparator::None, false);
  format.SetTimeFormat(&time);
  EXPECT_EQ(Render(format, 3723.0, kSeconds), Shown("01-Jan-70 123"));
}

TEST_F(DMDateRenderTest, AttachedDurationCountsTheDaysSince1970) {
  DMDateFormat format(DMDateFormat::Y_M_D, 10, 0, UnitsSeparator::Dash, false, false);
  const DMTimeFormat duration(DMTimeFormat::D_H_M_S, -1, 0, UnitsSeparator::Colon, true);
  format.SetTimeFormat(&duration);
  EXPECT_EQ(Render(format, k2021Mar07 + 0.5, kDays), Shown("2021-03-07 18693 12:00:00"));
}

TEST_F(DMDateRenderTest, TimePartThatCannotBeShownIsLeftOut) {
  DMDateFormat format(DMDateFormat::Y_M_D, 10, 0, UnitsSeparator::Dash, false, false);
  const DMTimeFormat invalid;
  format.SetTimeFormat(&invalid);
  ASSERT_NE(format.GetTimeFormat(), nullptr);
  EXPECT_EQ(Render(format, 0.5, kDays), Shown("1970-01-01"));
}

TEST_F(DMDateRenderTest, SettersChangeTheNextText) {
  DMDateFormat format(DMDateFormat::Y_M_D, 10, 0, UnitsSeparator::Dash, false, false);
  EXPECT_EQ(Render(format, k2021Mar07, kDays), Shown("2021-03-07"));
  format.SetSeparator(UnitsSeparator::Slash);
  EXPECT_EQ(Render(format, k2021Mar07, kDays), Shown("2021/03/07"));
  const DMTimeFormat time(DMTimeFormat::H_M, 5, 0, UnitsSeparator::Colon, true);
  format.SetTimeFormat(&time);
  EXPECT_EQ(Render(format, k2021Mar07, kDays), Shown("2021/03/07 00:00"));
  format.Reset(DMDateFormat::DayName, 3, 0, UnitsSeparator::None, false, false);
  EXPECT_EQ(Render(format, k2021Mar07, kDays), Shown("Sun"));
  format.SetWidthDecimals(6, 0);
  EXPECT_EQ(Render(format, k2021Mar07, kDays), Shown("Sunday"));
}

TEST_F(DMDateRenderTest, CopiesRenderLikeTheOriginalAndOutliveIt) {
  auto original = std::make_unique<DMDateFormat>(DMDateFormat::D_monthName_Y, 11, 0,
                                                 UnitsSeparator::Dash, false, false);
  const DMTimeFormat time(DMTimeFormat::H_M_S, 8, 0, UnitsSeparator::Colon, true);
  original->SetTimeFormat(&time);
  const std::string expected = "07-Mar-2021 06:00:00";
  ASSERT_EQ(Render(*original, k2021Mar07 + 0.25, kDays), Shown(expected));
  const DMDateFormat copy(*original);
  const std::unique_ptr<DMFormat> clone(original->Clone());
  DMDateFormat assigned;
  assigned = *original;
  original.reset();
  EXPECT_EQ(Render(copy, k2021Mar07 + 0.25, kDays), Shown(expected));
  EXPECT_EQ(Render(*clone, k2021Mar07 + 0.25, kDays), Shown(expected));
  EXPECT_EQ(Render(assigned, k2021Mar07 + 0.25, kDays), Shown(expected));
}

// ---------------------------------------------------------------------------
// Names in the default locale

TEST(DMDateLocaleTest, LocalNamesComeFromTheDefaultLocale) {
  const DefaultLocale german("de_DE");
  const DMDateFormat day(DMDateFormat::DayName, 20, 0, UnitsSeparator::None, false, true);
  const DMDateFormat month(DMDateFormat::MonthName, 20, 0, UnitsSeparator::None, false, true);
  const DMDateFormat dated(DMDateFormat::D_monthName_Y, 12, 0, UnitsSeparator::Dash, false, true);
  EXPECT_EQ(Render(day, k2021Mar07, kDays), Shown("Sonntag"));
  EXPECT_EQ(Render(month, k2021Mar07, kDays), Shown("März"));
  EXPECT_EQ(Render(dated, k1955Nov05, kDays), Shown("05-Nov.-1955"));
}

TEST(DMDateLocaleTest, EnglishNamesWhateverTheDefaultLocaleUnlessLocalIsSet) {
  const DefaultLocale french("fr_FR");
  const DMDateFormat english(DMDateFormat::DayName, 20, 0, UnitsSeparator::None, false, false);
  const DMDateFormat local(DMDateFormat::DayName, 20, 0, UnitsSeparator::None, false, true);
  EXPECT_EQ(Render(english, k2021Mar07, kDays), Shown("Sunday"));
  EXPECT_EQ(Render(local, k2021Mar07, kDays), Shown("dimanche"));
}

TEST(DMDateLocaleTest, LocalNamesAreCutByCharactersNotBytes) {
  const DefaultLocale russian("ru_RU");
  const DMDateFormat day(DMDateFormat::DayName, 3, 0, UnitsSeparator::None, false, true);
  const DMDateFormat month(DMDateFormat::MonthName, 4, 0, UnitsSeparator::None, false, true);
  EXPECT_EQ(Render(day, k2021Mar07, kDays), Shown("вос"));
  EXPECT_EQ(Render(month, k1955Nov05, kDays), Shown("нояб"));
}

TEST(DMDateLocaleTest, ChangingTheDefaultLocaleChangesTheNextText) {
  const DefaultLocale english("en_US");
  const DMDateFormat day(DMDateFormat::DayName, 20, 0, UnitsSeparator::None, false, true);
  EXPECT_EQ(Render(day, k2021Mar07, kDays), Shown("Sunday"));
  {
    const DefaultLocale german("de_DE");
    EXPECT_EQ(Render(day, k2021Mar07, kDays), Shown("Sonntag"));
  }
  EXPECT_EQ(Render(day, k2021Mar07, kDays), Shown("Sunday"));
}

TEST(DMDateLocaleTest, WeekRulesFollowTheDefaultLocaleEvenWithEnglishNames) {
  // The calendar is made for the default locale, as a fresh one is: a US
  // week starts on Sunday, an ISO week (German) on Monday with four days.
  const DMDateFormat week(DMDateFormat::W_Y, 8, 0, UnitsSeparator::None, true, false);
  {
    const DefaultLocale english("en_US");
    EXPECT_EQ(Render(week, k2021Jan03, kDays), Shown("02 WK 21"));
  }
  {
    const DefaultLocale german("de_DE");
    EXPECT_EQ(Render(week, k2021Jan03, kDays), Shown("53 WK 21"));
  }
}

// ---------------------------------------------------------------------------
// Edge cases of time rendering

TEST_F(DMTimeRenderTest, UnitsNoneIsRefused) {
  const DMTimeFormat format(DMTimeFormat::H_M_S, 8, 0, UnitsSeparator::Colon, true);
  EXPECT_EQ(Render(format, 90061.0, kNone), Refused());
}

TEST_F(DMTimeRenderTest, UnitsDaysIsRefused) {
  const DMTimeFormat format(DMTimeFormat::H_M_S, 8, 0, UnitsSeparator::Colon, true);
  EXPECT_EQ(Render(format, 0.5, kDays), Refused());
}

TEST_F(DMTimeRenderTest, DurationOfWidthElevenIsPaddedWithOneSpace) {
  const DMTimeFormat format(DMTimeFormat::D_H_M_S, 11, 0, UnitsSeparator::Colon, true);
  EXPECT_EQ(Render(format, 90061.0, kSeconds), Shown(" 1 01:01:01"));
}

TEST_F(DMTimeRenderTest, DurationOfWidthSevenLosesItsSeconds) {
  const DMTimeFormat format(DMTimeFormat::D_H_M_S, 7, 0, UnitsSeparator::Colon, true);
  EXPECT_EQ(Render(format, 90061.0, kSeconds), Shown("1 01:01"));
}

TEST_F(DMTimeRenderTest, DurationOfWidthTwoKeepsTheDayNumberBehindOneSpace) {
  const DMTimeFormat format(DMTimeFormat::D_H_M_S, 2, 0, UnitsSeparator::Colon, true);
  EXPECT_EQ(Render(format, 90061.0, kSeconds), Shown(" 1"));
}

TEST_F(DMTimeRenderTest, DurationWhoseDayNumberDoesNotFitIsAStar) {
  const DMTimeFormat format(DMTimeFormat::D_H_M_S, 2, 0, UnitsSeparator::Colon, true);
  EXPECT_EQ(Render(format, 8730061.0, kSeconds), Shown("*"));
}

TEST_F(DMTimeRenderTest, TimeOfDayLosesTheDay) {
  const DMTimeFormat format(DMTimeFormat::H_M_S, 8, 0, UnitsSeparator::Colon, true);
  EXPECT_EQ(Render(format, 90061.0, kSeconds), Shown("01:01:01"));
}

// ---------------------------------------------------------------------------
// Time types with and without padding and decimals

struct TimeRow {
  DMTimeFormat::FormatType type;
  int width;
  unsigned decimals;
  UnitsSeparator separator;
  bool padded;
  double seconds;
  const char* expected;
};

void PrintTo(const TimeRow& row, std::ostream* out) {
  *out << "type " << row.type << ", width " << row.width << ", decimals " << row.decimals
       << ", separator " << static_cast<unsigned>(row.separator) << ", padded " << row.padded
       << ", " << row.seconds << " s -> \"" << row.expected << "\"";
}

class DMTimeTableTest : public ::testing::TestWithParam<TimeRow> {
 private:
  DefaultLocale locale_{"en_US"};
};

TEST_P(DMTimeTableTest, RendersTheExpectedText) {
  const TimeRow& row = GetParam();
  const DMTimeFormat format(row.type, row.width, row.decimals, row.separator, row.padded);
  EXPECT_EQ(Render(format, row.seconds, kSeconds), Shown(row.expected));
}

constexpr TimeRow kTimes[] = {
    {DMTimeFormat::H_M, 5, 0, UnitsSeparator::Colon, true, 45296.75, "12:34"},
    {DMTimeFormat::H_M, 5, 0, UnitsSeparator::Colon, false, 3723.25, "  1:2"},
    {DMTimeFormat::H_M, 5, 2, UnitsSeparator::Colon, true, 3723.25, "01:02"},
    {DMTimeFormat::H_M, 8, 0, UnitsSeparator::Dash, true, 45296.75, "   12-34"},
    {DMTimeFormat::H_M, -1, 0, UnitsSeparator::None, false, 3723.0, "12"},
    {DMTimeFormat::H_M, 5, 0, UnitsSeparator::Colon, true, 90061.0, "01:01"},
    {DMTimeFormat::H_M_S, 11, 2, UnitsSeparator::Colon, true, 45296.75, "12:34:56.75"},
    // Fractional digits are cut, not rounded, as ICU gives them.
    {DMTimeFormat::H_M_S, 10, 1, UnitsSeparator::Colon, true, 45296.75, "12:34:56.7"},
    {DMTimeFormat::H_M_S, 13, 4, UnitsSeparator::Colon, true, 45296.75, "12:34:56.7500"},
    // ICU shows at most 13 fractional digits however many are asked for.
    {DMTimeFormat::H_M_S, -1, 20, UnitsSeparator::Colon, true, 45296.75, "12:34:56.7500000000000"},
    {DMTimeFormat::H_M_S, -1, 4000000000u, UnitsSeparator::Colon, true, 45296.75,
     "12:34:56.7500000000000"},
    {DMTimeFormat::H_M_S, -1, 1, UnitsSeparator::Period, false, 3723.5, "1.2.3.5"},
    {DMTimeFormat::H_M_S, 10, 0, UnitsSeparator::Colon, false, 3723.0, "     1:2:3"},
    {DMTimeFormat::H_M_S, 8, 0, UnitsSeparator::Space, true, 3723.0, "01 02 03"},
    {DMTimeFormat::H_M_S, 8, 0, UnitsSeparator::Slash, true, 3723.0, "01/02/03"},
    {DMTimeFormat::H_M_S, 8, 0, UnitsSeparator::Comma, true, 3723.0, "01,02,03"},
    {DMTimeFormat::H_M_S, 6, 0, UnitsSeparator::Local, true, 3723.0, "010203"},
    // A time of day is padded but never cut.
    {DMTimeFormat::H_M_S, 3, 0, UnitsSeparator::Colon, true, 90061.0, "01:01:01"},
    {DMTimeFormat::H_M_S, 8, 0, UnitsSeparator::Colon, true, -1.0, "23:59:59"},
    {DMTimeFormat::M_S, 5, 0, UnitsSeparator::Colon, true, 3723.0, "02:03"},
    {DMTimeFormat::M_S, -1, 2, UnitsSeparator::Dash, false, 3723.25, "2-3.25"},
    {DMTimeFormat::M_S, 8, 1, UnitsSeparator::Colon, true, 45296.75, " 34:56.7"},
    {DMTimeFormat::D_H_M_S, 11, 0, UnitsSeparator::Colon, true, 90061.0, " 1 01:01:01"},
    {DMTimeFormat::D_H_M_S, -1, 0, UnitsSeparator::Colon, true, 0.0, "0 00:00:00"},
    {DMTimeFormat::D_H_M_S, -1, 2, UnitsSeparator::Colon, true, 90061.5, "1 01:01:01.50"},
    {DMTimeFormat::D_H_M_S, 10, 0, UnitsSeparator::Space, false, 90061.0, "   1 1 1 1"},
    {DMTimeFormat::D_H_M_S, -1, 3, UnitsSeparator::Colon, false, 90061.25, "1 1:1:1.250"},
    {DMTimeFormat::D_H_M_S, 12, 0, UnitsSeparator::Colon, true, 8730061.0, "101 01:01:01"},
    {DMTimeFormat::D_H_M_S, -1, 0, UnitsSeparator::Colon, true, 400 * 86400.0, "400 00:00:00"},
    {DMTimeFormat::D_H_M_S, -1, 0, UnitsSeparator::Colon, true, -1.0, "-1 23:59:59"},
};

INSTANTIATE_TEST_SUITE_P(Rows, DMTimeTableTest, ::testing::ValuesIn(kTimes));

// ---------------------------------------------------------------------------
// Cutting a duration to its width

struct CutRow {
  unsigned decimals;
  bool padded;
  int width;
  double seconds;
  const char* expected;
};

void PrintTo(const CutRow& row, std::ostream* out) {
  *out << "decimals " << row.decimals << ", padded " << row.padded << ", width " << row.width
       << ", " << row.seconds << " s -> \"" << row.expected << "\"";
}

class DMDurationCutTest : public ::testing::TestWithParam<CutRow> {};

TEST_P(DMDurationCutTest, CutsWholeUnitsFromTheEndThenPads) {
  const CutRow& row = GetParam();
  const DMTimeFormat format(DMTimeFormat::D_H_M_S, row.width, row.decimals, UnitsSeparator::Colon,
                            row.padded);
  EXPECT_EQ(Render(format, row.seconds, kSeconds), Shown(row.expected));
}

constexpr CutRow kCuts[] = {
    // "1 01:01:01.50": 13 characters, 2 decimals.
    {2, true, 13, 90061.5, "1 01:01:01.50"},
    {2, true, 12, 90061.5, "1 01:01:01.5"},  // one too many: one digit goes
    {2, true, 11, 90061.5, " 1 01:01:01"},   // as many as the digits: the whole fraction
    {2, true, 10, 90061.5, "1 01:01:01"},    // one more than the digits: the fraction too
    {2, true, 9, 90061.5, "  1 01:01"},
    {2, true, 7, 90061.5, "1 01:01"},
    {2, true, 6, 90061.5, "  1 01"},
    {2, true, 4, 90061.5, "1 01"},
    {2, true, 3, 90061.5, "  1"},
    {2, true, 1, 90061.5, "1"},
    {2, true, 1, 8730061.5, "*"},
    // "1 01:01:01": 10 characters, no decimals.
    {0, true, 10, 90061.0, "1 01:01:01"},
    {0, true, 9, 90061.0, "  1 01:01"},
    {0, true, 6, 90061.0, "  1 01"},
    {0, true, 4, 90061.0, "1 01"},
    {0, true, 3, 90061.0, "  1"},
    {0, true, 1, 90061.0, "1"},
    {0, true, 3, 8730061.0, "101"},
    // Unpadded units are still taken as three characters each, so a
    // separator may be left at the end, or nothing at all.
    {0, false, 6, 90061.0, "  1 1:"},
    {0, false, 1, 90061.0, "1"},
    {0, false, 1, 867661.0, " "},
};

INSTANTIATE_TEST_SUITE_P(Rows, DMDurationCutTest, ::testing::ValuesIn(kCuts));

// ---------------------------------------------------------------------------
// More time behaviour

TEST_F(DMTimeRenderTest, NullDatumRendersAsADotBeforeAnyCheck) {
  EXPECT_EQ(Render(DMTimeFormat(), DMDatum(), kDays), Shown("."));
}

TEST_F(DMTimeRenderTest, DatumThatIsNotRealIsRefused) {
  const DMTimeFormat format(DMTimeFormat::H_M_S, 8, 0, UnitsSeparator::Colon, true);
  EXPECT_EQ(Render(format, DMDatum(3723LL), kSeconds), Refused());
  EXPECT_EQ(Render(format, DMDatum("01:02:03"), kSeconds), Refused());
}

TEST_F(DMTimeRenderTest, UnknownTypeRendersOnlyThePadding) {
  const DMTimeFormat format(static_cast<DMTimeFormat::FormatType>(4), 3, 0, UnitsSeparator::Colon,
                            true);
  EXPECT_EQ(Render(format, 3723.0, kSeconds), Shown("   "));
}

TEST_F(DMTimeRenderTest, NamesLocalPlaysNoPartInTimes) {
  const DefaultLocale arabic("ar_EG");
  DMDateFormat format(DMDateFormat::Y_M_D, 10, 0, UnitsSeparator::Dash, false, true);
  const DMTimeFormat time(DMTimeFormat::H_M_S, 8, 0, UnitsSeparator::Colon, true);
  format.SetTimeFormat(&time);
  EXPECT_EQ(Render(time, 3723.0, kSeconds), Shown("01:02:03"));
  // The date takes the local digits; the time keeps English ones.
  EXPECT_EQ(Render(format, 3723.0, kSeconds), Shown("١٩٧٠-٠١-٠١ 01:02:03"));
}

TEST_F(DMTimeRenderTest, SettersChangeTheNextText) {
  DMTimeFormat format(DMTimeFormat::H_M_S, 8, 0, UnitsSeparator::Colon, true);
  EXPECT_EQ(Render(format, 3723.5, kSeconds), Shown("01:02:03"));
  format.SetWidthDecimals(12, 2);
  EXPECT_EQ(Render(format, 3723.5, kSeconds), Shown(" 01:02:03.50"));
  format.SetSeparator(UnitsSeparator::Period);
  EXPECT_EQ(Render(format, 3723.5, kSeconds), Shown(" 01.02.03.50"));
  format.Reset(DMTimeFormat::D_H_M_S, 9, 0, UnitsSeparator::Colon, true);
  EXPECT_EQ(Render(format, 3723.5, kSeconds), Shown("  0 01:02"));
}

// ---------------------------------------------------------------------------
// Values ICU cannot hold

constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
constexpr double kInfinity = std::numeric_limits<double>::infinity();
// The last seconds ICU's calendar holds either side of 1970 (Julian days
// -0x7F000000 and +0x7F000000).
constexpr double kLastSeconds = 183882168921600.0;
constexpr double kFirstSeconds = -184303902528000.0;

struct RangeRow {
  const char* what;
  double seconds;
};

void PrintTo(const RangeRow& row, std::ostream* out) { *out << row.what; }

class DMDateTimeRangeTest : public ::testing::TestWithParam<RangeRow> {
 private:
  DefaultLocale locale_{"en_US"};
};

TEST_P(DMDateTimeRangeTest, IsRefusedByEveryDateAndTimeType) {
  const double seconds = GetParam().seconds;
  for (unsigned type = DMDateFormat::D_M_Y; type <= DMDateFormat::W_Y; ++type) {
    const DMDateFormat date(static_cast<DMDateFormat::FormatType>(type), 10, 0,
                            UnitsSeparator::Dash, false, false);
    EXPECT_EQ(Render(date, seconds, kSeconds), Refused()) << "date type " << type;
    EXPECT_EQ(Render(date, seconds / kSecondsPerDay, kDays), Refused()) << "date type " << type;
  }
  for (unsigned type = DMTimeFormat::H_M; type <= DMTimeFormat::D_H_M_S; ++type) {
    const DMTimeFormat time(static_cast<DMTimeFormat::FormatType>(type), 10, 0,
                            UnitsSeparator::Colon, true);
    EXPECT_EQ(Render(time, seconds, kSeconds), Refused()) << "time type " << type;
  }
}

constexpr RangeRow kOutOfRange[] = {
    {"not a number", kNaN},
    {"plus infinity", kInfinity},
    {"minus infinity", -kInfinity},
    {"1e300 seconds", 1e300},
    {"-1e300 seconds", -1e300},
    // Durations are shifted back to Julian day 0, so they reach 2440588 days
    // further than dates.
    {"a day after the last instant of a duration", kLastSeconds + 2440589 * 86400.0},
    {"a day before the first instant", kFirstSeconds - 86400.0},
};

INSTANTIATE_TEST_SUITE_P(Rows, DMDateTimeRangeTest, ::testing::ValuesIn(kOutOfRange));

TEST_F(DMDateRenderTest, TheEdgesOfTheCalendarAreStillShown) {
  const DMDateFormat format(DMDateFormat::Y_M_D, 10, 0, UnitsSeparator::Dash, false, false);
  EXPECT_EQ(Render(format, kLastSeconds, kSeconds), Shown("5828963-12-20"));
  EXPECT_EQ(Render(format, kFirstSeconds, kSeconds), Shown("5838270-09-20"));
  // A second beyond either edge would be pinned to it: refused instead.
  EXPECT_EQ(Render(format, kLastSeconds + 1.0, kSeconds), Refused());
  EXPECT_EQ(Render(format, kFirstSeconds - 1.0, kSeconds), Refused());
}

TEST_F(DMTimeRenderTest, DurationRangeEndsWithTheLastJulianDay) {
  // The shift to Julian day 0 moves the span of a duration by 2440588 days.
  const double lastDuration = kLastSeconds + 2440588 * 86400.0;
  const DMTimeFormat format(DMTimeFormat::D_H_M_S, -1, 0, UnitsSeparator::Colon, true);
  EXPECT_EQ(Render(format, lastDuration, kSeconds), Shown("2130706432 00:00:00"));
  EXPECT_EQ(Render(format, lastDuration + 1.0, kSeconds), Refused());
}

// ---------------------------------------------------------------------------
// Kept formatters give what fresh ones give

TEST(DMDateTimeReuseTest, DatesRenderExactlyAsAFreshlyBuiltFormatter) {
  const double days[] = {0.0, k2021Mar07 + 0.3, k1955Nov05, -141428.0, 1e6, -1e6, 2.5e7};
  for (const char* locale : {"en_US", "de_DE", "ar_EG", "ja_JP", "fr_FR"}) {
    const DefaultLocale pinned(locale);
    for (const bool namesLocal : {false, true}) {
      for (unsigned type = DMDateFormat::D_M_Y; type <= DMDateFormat::W_Y; ++type) {
        const DMDateFormat format(static_cast<DMDateFormat::FormatType>(type), 40, 0,
                                  UnitsSeparator::Slash, type % 2 == 0, namesLocal);
        const icu::Locale names = namesLocal ? icu::Locale::getDefault() : icu::Locale::getUS();
        for (const double day : days) {
          EXPECT_EQ(Render(format, day, kDays),
                    Shown(FreshlyFormatted(format.MakePattern(), names, day * 86400000.0)))
              << locale << ", names local " << namesLocal << ", type " << type << ", day " << day;
        }
      }
    }
  }
}

TEST(DMDateTimeReuseTest, TimesRenderExactlyAsAFreshlyBuiltFormatter) {
  const double seconds[] = {0.0, 0.001, 59.999, 3723.25, 90061.5, -1.0, 8730061.0, -8e8};
  for (const char* locale : {"en_US", "ar_EG"}) {
    const DefaultLocale pinned(locale);
    for (unsigned type = DMTimeFormat::H_M; type <= DMTimeFormat::D_H_M_S; ++type) {
      for (const bool padded : {false, true}) {
        for (const unsigned decimals : {0u, 3u}) {
          const DMTimeFormat format(static_cast<DMTimeFormat::FormatType>(type), -1, decimals,
                                    UnitsSeparator::Colon, padded);
          bool duration = false;
          const std::string pattern = format.MakePattern(duration);
          for (const double value : seconds) {
            const double millis = value * 1000.0 + (duration ? -210866803200000.0 : 0.0);
            EXPECT_EQ(Render(format, value, kSeconds),
                      Shown(FreshlyFormatted(pattern, icu::Locale::getUS(), millis)))
                << locale << ", type " << type << ", padded " << padded << ", decimals " << decimals
                << ", " << value << " s";
          }
        }
      }
    }
  }
}

TEST(DMDateTimeReuseTest, MoreFormatsThanAreKeptStillRenderRightInAnyOrder) {
  const DefaultLocale pinned("en_US");
  const std::pair<UnitsSeparator, const char*> separators[] = {
      {UnitsSeparator::None, ""},   {UnitsSeparator::Period, "."}, {UnitsSeparator::Comma, ","},
      {UnitsSeparator::Space, " "}, {UnitsSeparator::Colon, ":"},  {UnitsSeparator::Dash, "-"},
      {UnitsSeparator::Slash, "/"},
  };
  std::vector<DMTimeFormat> formats;
  std::vector<std::string> expected;
  for (const auto& [separator, text] : separators) {
    for (unsigned decimals = 0; decimals < 6; ++decimals) {
      formats.emplace_back(DMTimeFormat::H_M_S, -1, decimals, separator, true);
      std::string shown = std::string("01") + text + "02" + text + "03";
      if (decimals > 0) shown += "." + std::string("5") + std::string(decimals - 1, '0');
      expected.push_back(shown);
    }
  }
  const std::size_t count = formats.size();
  for (int round = 0; round < 3; ++round) {
    for (std::size_t i = 0; i < count; ++i) {
      // Forward, backward, then alternating ends, so that formats are found
      // at every place in the cache and evicted from it.
      const std::size_t at = round == 0   ? i
                             : round == 1 ? count - 1 - i
                                          : (i % 2 == 0 ? i / 2 : count - 1 - i / 2);
      EXPECT_EQ(Render(formats[at], 3723.5, kSeconds), Shown(expected[at])) << at;
    }
  }
}

TEST(DMDateTimeReuseTest, AnotherThreadRendersTheSameText) {
  const DefaultLocale pinned("en_US");
  DMDateFormat format(DMDateFormat::D_monthName_Y, 11, 0, UnitsSeparator::Dash, false, false);
  const DMTimeFormat time(DMTimeFormat::H_M_S, 8, 0, UnitsSeparator::Colon, true);
  format.SetTimeFormat(&time);
  const Rendered here = Render(format, k1955Nov05 + 0.5, kDays);
  Rendered there{DM_FORMAT_FAILED, ""};
  // The thread gets its own copy: a format object is never used by two
  // threads at once, but formats on different threads must not meet.
  std::thread worker(
      [copy = DMDateFormat(format), &there] { there = Render(copy, k1955Nov05 + 0.5, kDays); });
  worker.join();
  EXPECT_EQ(here, Shown("05-Nov-1955 12:00:00"));
  EXPECT_EQ(there, here);
}

}  // namespace
