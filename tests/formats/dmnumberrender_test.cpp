// Rendering of the number, decorated and string formats: the fixed-width
// printing with its fall-backs, the decimal and grouping symbols with the
// padding rule, the default locale's symbols, the scientific type through
// ICU and the reuse of its formatter, affixes, and the variable width.

#include <climits>
#include <cmath>
#include <cstdint>
#include <limits>
#include <memory>
#include <ostream>
#include <string>
#include <vector>

#include <gtest/gtest.h>
#include <unicode/decimfmt.h>
#include <unicode/locid.h>
#include <unicode/unistr.h>
#include <unicode/utypes.h>

#include "dmcommon/formats/dmdecoratedformat.h"
#include "dmcommon/formats/dmformat.h"
#include "dmcommon/formats/dmformatutils.h"
#include "dmcommon/formats/dmnumberformat.h"
#include "dmcommon/formats/dmstringformat.h"
#include "dmcommon/values/dmdatum.h"

namespace {

using DecimalSymbol = DMFormat::DecimalSymbol;
using GroupingSymbol = DMFormat::GroupingSymbol;
constexpr DMFormat::ValueUnits kNone = DMFormat::UnitsNone;

constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
constexpr double kInf = std::numeric_limits<double>::infinity();
constexpr int kMaxWidth = DMFormatUtils::kMaxNumberWidth;

// The separators of some locales, in UTF-8.
constexpr char kNarrowNoBreakSpace[] = "\u202F";  // French grouping
constexpr char kRightQuote[] = "\u2019";          // Swiss grouping
constexpr char kArabicDecimal[] = "\u066B";
constexpr char kArabicGrouping[] = "\u066C";
constexpr char kInfinitySign[] = "\u221E";

// What a rendering gave: its result and the text it left.
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

Rendered Render(const DMFormat& format, const DMDatum& datum) {
  Rendered rendered{DM_FORMAT_OK, "stale"};
  rendered.result = format.Format(datum, kNone, rendered.text);
  return rendered;
}

Rendered RenderStandard(const DMDatum& datum, int width, unsigned decimals,
                        DecimalSymbol decimalSymbol, GroupingSymbol groupingSymbol) {
  icu::UnicodeString text(u"stale");
  const int result =
      DMFormatUtils::FormatStandard(datum, text, width, decimals, decimalSymbol, groupingSymbol);
  std::string utf8;
  text.toUTF8String(utf8);
  return {result, utf8};
}

std::string Spaces(int count) { return std::string(static_cast<std::size_t>(count), ' '); }

// Makes `name` ICU's default locale for the life of the object, then
// restores the one before.
class DefaultLocale {
 public:
  explicit DefaultLocale(const char* name) : saved_(icu::Locale::getDefault()) {
    Set(icu::Locale(name));
  }
  ~DefaultLocale() { Set(saved_); }
  DefaultLocale(const DefaultLocale&) = delete;
  DefaultLocale& operator=(const DefaultLocale&) = delete;

  static void Set(const icu::Locale& locale) {
    UErrorCode status = U_ZERO_ERROR;
    icu::Locale::setDefault(locale, status);
    EXPECT_TRUE(U_SUCCESS(status)) << u_errorName(status);
  }

 private:
  icu::Locale saved_;
};

// ---------------------------------------------------------------------------
// EncodeStandard

struct EncodeRow {
  const char* what;
  double value;
  int width;
  int decimals;
  std::string expected;
};

void PrintTo(const EncodeRow& row, std::ostream* out) { *out << row.what; }

class DMEncodeStandardTest : public ::testing::TestWithParam<EncodeRow> {};

TEST_P(DMEncodeStandardTest, PrintsTheValueIntoTheWidth) {
  const EncodeRow& row = GetParam();
  EXPECT_EQ(DMFormatUtils::EncodeStandard(row.value, row.width, row.decimals), row.expected);
}

INSTANTIATE_TEST_SUITE_P(
    Rows, DMEncodeStandardTest,
    ::testing::Values(
        EncodeRow{"all decimals fit", 1234.5, 10, 2, "   1234.50"},
        EncodeRow{"decimals are given up before integer digits", 1234567.891, 8, 2, " 1234568"},
        EncodeRow{"one decimal is given up", 123.456, 5, 2, "123.5"},
        EncodeRow{"rounding into another digit costs the decimal", 999.96, 5, 1, " 1000"},
        EncodeRow{"rounding to the edge of the room costs a decimal", 99.995, 5, 2, "100.0"},
        EncodeRow{"nothing fits and the exponent has no room", 123456, 5, 0, "*"},
        EncodeRow{"exponent form with the digits that fit", 1e15, 12, 0, " 1.00000E+15"},
        EncodeRow{"negative exponent form keeps a digit for the sign", -1e15, 12, 0,
                  " -1.0000E+15"},
        EncodeRow{"exponent form with no digit after the point", 1e10, 7, 0, "  1E+10"},
        EncodeRow{"one character short of the exponent form", 1e10, 6, 0, "*"},
        EncodeRow{"largest double in a small width", 1e308, 12, 2, "1.00000E+308"},
        EncodeRow{"most negative double in a small width", -1e308, 12, 2, "-1.0000E+308"},
        EncodeRow{"value below 1 retried with one decimal fewer", 0.5, 3, 2, "0.5"},
        EncodeRow{"value below 1 retried down to no decimals", 0.5, 2, 1, " 0"},
        EncodeRow{"negative value below 1 retried", -0.25, 4, 2, "-0.2"},
        EncodeRow{"value below 1 with every decimal", 0.001234, 8, 4, "  0.0012"},
        EncodeRow{"tiny value rounds to zero", 1e-300, 10, 2, "      0.00"},
        EncodeRow{"zero", 0.0, 5, 2, " 0.00"},
        EncodeRow{"negative zero keeps its sign", -0.0, 6, 2, " -0.00"},
        EncodeRow{"negative value in the variable width", -3.5, 23, 2, "                  -3.50"},
        EncodeRow{"negative decimals go to the exponent form", 1234.5, 12, -1, " 1.23450E+03"},
        EncodeRow{"negative decimals without room for an exponent", 1234.5, 6, -1, "*"},
        EncodeRow{"more decimals than the width", 1.5, 10, INT_MAX, "1.50000000"},
        EncodeRow{"not-a-number takes the exponent spelling", kNaN, 12, 2, "         NAN"},
        EncodeRow{"not-a-number without room", kNaN, 6, 2, "*"},
        EncodeRow{"negative not-a-number", -kNaN, 8, 0, "    -NAN"},
        EncodeRow{"infinity", kInf, 12, 2, "         INF"},
        EncodeRow{"minus infinity", -kInf, 12, 2, "        -INF"},
        EncodeRow{"minus infinity without room", -kInf, 7, 0, "*"},
        EncodeRow{"width 0", 0.4, 0, 0, "*"}, EncodeRow{"negative width", 1.0, -5, 2, "*"},
        EncodeRow{"the widest width", 1.0, kMaxWidth, 0, Spaces(kMaxWidth - 1) + "1"},
        EncodeRow{"a width above the bound", 1.0, kMaxWidth + 1, 0, ""},
        EncodeRow{"a width from a careless document", 1.0, 100000, 2, ""},
        EncodeRow{"the largest width", 1.0, INT_MAX, 2, ""},
        EncodeRow{"the most negative width", 1.0, INT_MIN, 2, "*"}));

TEST(DMEncodeStandardTest, LargestDoubleInTheWidestWidthIsPrintedInFull) {
  const std::string text = DMFormatUtils::EncodeStandard(1e308, kMaxWidth, 2);
  ASSERT_EQ(text.size(), static_cast<std::size_t>(kMaxWidth));
  // 309 integer digits, the point and two decimals, right-aligned.
  EXPECT_EQ(text.substr(0, kMaxWidth - 312), Spaces(kMaxWidth - 312));
  EXPECT_EQ(text.substr(kMaxWidth - 312, 4), "1000");
  EXPECT_EQ(text.substr(kMaxWidth - 3), ".00");
}

// ---------------------------------------------------------------------------
// FormatStandard

struct StandardRow {
  const char* what;
  DMDatum datum;
  int width;
  unsigned decimals;
  DecimalSymbol decimalSymbol;
  GroupingSymbol groupingSymbol;
  Rendered expected;
};

void PrintTo(const StandardRow& row, std::ostream* out) { *out << row.what; }

class DMFormatStandardTest : public ::testing::TestWithParam<StandardRow> {};

TEST_P(DMFormatStandardTest, RendersTheNumberWithItsSymbols) {
  const StandardRow& row = GetParam();
  EXPECT_EQ(
      RenderStandard(row.datum, row.width, row.decimals, row.decimalSymbol, row.groupingSymbol),
      row.expected);
}

constexpr DecimalSymbol kPoint = DecimalSymbol::Period;
constexpr DecimalSymbol kDecimalComma = DecimalSymbol::Comma;
constexpr GroupingSymbol kUngrouped = GroupingSymbol::None;
constexpr GroupingSymbol kCommas = GroupingSymbol::Comma;
constexpr GroupingSymbol kPeriods = GroupingSymbol::Period;
constexpr GroupingSymbol kSpaces = GroupingSymbol::Space;

INSTANTIATE_TEST_SUITE_P(
    Rows, DMFormatStandardTest,
    ::testing::Values(
        // Decimals given up; grouping with too little padding.
        StandardRow{"decimals given up", DMDatum(1234567.891), 8, 2, kPoint, kUngrouped,
                    Shown(" 1234568")},
        StandardRow{"two separators do not fit one space of padding", DMDatum(1234567.891), 8,
                    2, kPoint, kCommas, Shown(" 1234568")},
        // Symbols replaced and inserted.
        StandardRow{"decimal comma and grouping period", DMDatum(1234.5), 10, 2, kDecimalComma,
                    kPeriods, Shown("  1.234,50")},
        StandardRow{"decimal point and grouping comma", DMDatum(1234567.891), 15, 2, kPoint,
                    kCommas, Shown("   1,234,567.89")},
        StandardRow{"negative number grouped after its sign", DMDatum(-1234567.891), 15, 2,
                    kPoint, kCommas, Shown("  -1,234,567.89")},
        StandardRow{"padding exactly as long as the separators", DMDatum(1234.5), 8, 2, kPoint,
                    kCommas, Shown("1,234.50")},
        StandardRow{"negative number without padding stays ungrouped", DMDatum(-1234.5), 8, 2,
                    kPoint, kCommas, Shown("-1234.50")},
        StandardRow{"grouping by spaces without decimals", DMDatum(1234567LL), 12, 0, kPoint,
                    kSpaces, Shown("   1 234 567")},
        StandardRow{"the same symbol for both", DMDatum(1234.5), 10, 2, kPoint, kPeriods,
                    Shown("  1.234.50")},
        StandardRow{"commas for both", DMDatum(1234.5), 10, 2, kDecimalComma, kCommas,
                    Shown("  1,234,50")},
        StandardRow{"three digits need no separator", DMDatum(999.0), 8, 1, kPoint, kCommas,
                    Shown("   999.0")},
        StandardRow{"four digits need one", DMDatum(1000.0), 8, 1, kPoint, kCommas,
                    Shown(" 1,000.0")},
        // Fall-backs.
        StandardRow{"nothing fits", DMDatum(123456.0), 5, 0, kPoint, kUngrouped, Shown("*")},
        StandardRow{"nothing fits, grouped", DMDatum(123456.0), 5, 0, kDecimalComma, kCommas,
                    Shown("*")},
        StandardRow{"exponent form", DMDatum(1e15), 12, 0, kPoint, kUngrouped,
                    Shown(" 1.00000E+15")},
        StandardRow{"exponent form with a decimal comma", DMDatum(1e15), 12, 0, kDecimalComma,
                    kUngrouped, Shown(" 1,00000E+15")},
        StandardRow{"exponent form is never grouped", DMDatum(1e15), 12, 0, kPoint, kCommas,
                    Shown(" 1.00000E+15")},
        StandardRow{"value below 1 with one decimal fewer", DMDatum(0.5), 3, 2, kPoint,
                    kUngrouped, Shown("0.5")},
        // Variable width.
        StandardRow{"variable width trims", DMDatum(-3.5), -1, 2, kPoint, kUngrouped,
                    Shown("-3.50")},
        StandardRow{"variable width grouped", DMDatum(1234567.891), -1, 2, kPoint, kCommas,
                    Shown("1,234,567.89")},
        StandardRow{"variable width, negative, European symbols", DMDatum(-1234567.891), -7, 3,
                    kDecimalComma, kPeriods, Shown("-1.234.567,891")},
        StandardRow{"variable width, value below 1", DMDatum(0.0456), -1, 3, kDecimalComma,
                    kUngrouped, Shown("0,046")},
        StandardRow{"variable width, largest double", DMDatum(1e308), -1, 2, kPoint, kCommas,
                    Shown("1.0000000000000000E+308")},
        StandardRow{"variable width, largest double, decimal comma", DMDatum(1e308), -1, 2,
                    kDecimalComma, kUngrouped, Shown("1,0000000000000000E+308")},
        StandardRow{"variable width filled: no padding to group into", DMDatum(1e22), -1, 0,
                    kPoint, kCommas, Shown("10000000000000000000000")},
        StandardRow{"variable width nearly filled", DMDatum(1e21), -1, 0, kPoint, kCommas,
                    Shown("1000000000000000000000")},
        StandardRow{"most negative width is variable", DMDatum(2.5), INT_MIN, 1, kPoint,
                    kUngrouped, Shown("2.5")},
        // Integers.
        StandardRow{"integer", DMDatum(42LL), 5, 0, kPoint, kUngrouped, Shown("   42")},
        StandardRow{"integer with a decimal", DMDatum(42LL), 6, 1, kPoint, kUngrouped,
                    Shown("  42.0")},
        StandardRow{"negative integer", DMDatum(-42LL), 5, 0, kPoint, kCommas, Shown("  -42")},
        StandardRow{"integer beyond 2^53 converts plainly", DMDatum(9007199254740993LL), -1, 0,
                    kPoint, kUngrouped, Shown("9007199254740992")},
        StandardRow{"integer beyond 2^53, grouped", DMDatum(9007199254740993LL), -1, 0, kPoint,
                    kCommas, Shown("9,007,199,254,740,992")},
        StandardRow{"largest integer", DMDatum(std::numeric_limits<long long>::max()), -1, 0,
                    kPoint, kUngrouped, Shown("9223372036854775808")},
        StandardRow{"smallest integer", DMDatum(std::numeric_limits<long long>::min()), -1, 0,
                    kPoint, kUngrouped, Shown("-9223372036854775808")},
        // Zero and signs.
        StandardRow{"zero", DMDatum(0.0), 6, 2, kPoint, kCommas, Shown("  0.00")},
        StandardRow{"integer zero", DMDatum(0LL), 3, 0, kPoint, kCommas, Shown("  0")},
        StandardRow{"negative zero", DMDatum(-0.0), 6, 2, kDecimalComma, kUngrouped,
                    Shown(" -0,00")},
        StandardRow{"negative value that rounds to zero", DMDatum(-0.001), -1, 2, kPoint,
                    kUngrouped, Shown("-0.00")},
        // Not-a-number and infinities take no symbols.
        StandardRow{"not-a-number", DMDatum(kNaN), 12, 2, kDecimalComma, kPeriods,
                    Shown("         NAN")},
        StandardRow{"negative not-a-number is not grouped", DMDatum(-kNaN), -1, 0, kPoint,
                    kCommas, Shown("-NAN")},
        StandardRow{"infinity", DMDatum(kInf), -1, 2, kPoint, kCommas, Shown("INF")},
        StandardRow{"minus infinity", DMDatum(-kInf), 12, 2, kDecimalComma, kCommas,
                    Shown("        -INF")},
        StandardRow{"infinity without room", DMDatum(kInf), 5, 2, kPoint, kCommas, Shown("*")},
        // Decimals beyond any width.
        StandardRow{"the most decimals a program can ask for", DMDatum(1.5), 10, UINT_MAX,
                    kPoint, kUngrouped, Shown("1.50000000")},
        // Refusals.
        StandardRow{"width 0", DMDatum(1.5), 0, 2, kPoint, kUngrouped, Refused()},
        StandardRow{"null datum", DMDatum(), 10, 2, kPoint, kUngrouped, Refused()},
        StandardRow{"null real datum", [] {
                      DMDatum datum(1.5);
                      datum.SetNull();
                      return datum;
                    }(),
                    10, 2, kPoint, kUngrouped, Refused()},
        StandardRow{"text datum", DMDatum("12.5"), 10, 2, kPoint, kUngrouped, Refused()},
        StandardRow{"a width above the bound", DMDatum(1.5), kMaxWidth + 1, 2, kPoint,
                    kUngrouped, Refused()},
        StandardRow{"a width from a careless document", DMDatum(1.5), 100000, 2, kPoint,
                    kCommas, Refused()},
        StandardRow{"the largest width", DMDatum(1.5), INT_MAX, 2, kPoint, kCommas,
                    Refused()}));

TEST(DMFormatStandardTest, WidestWidthIsRenderedInFull) {
  const Rendered rendered =
      RenderStandard(DMDatum(1234567.0), kMaxWidth, 0, kPoint, GroupingSymbol::Comma);
  EXPECT_EQ(rendered, Shown(Spaces(kMaxWidth - 9) + "1,234,567"));
}

TEST(DMFormatStandardTest, GroupingNeverChangesTheWidth) {
  for (const double value : {1.0, 12.0, 1234.0, -1234.0, 123456.0, -1234567.0, 12345678.9}) {
    for (int width = 4; width <= 14; ++width) {
      const Rendered rendered =
          RenderStandard(DMDatum(value), width, 1, kPoint, GroupingSymbol::Comma);
      ASSERT_EQ(rendered.result, DM_FORMAT_OK);
      if (rendered.text != "*") {
        EXPECT_EQ(rendered.text.size(), static_cast<std::size_t>(width)) << value << " " << width;
      }
    }
  }
}

// ---------------------------------------------------------------------------
// The default locale's symbols

struct LocalRow {
  const char* what;
  const char* locale;
  double value;
  int width;
  DecimalSymbol decimalSymbol;
  GroupingSymbol groupingSymbol;
  Rendered expected;
};

void PrintTo(const LocalRow& row, std::ostream* out) { *out << row.what; }

class DMLocalSymbolsTest : public ::testing::TestWithParam<LocalRow> {};

TEST_P(DMLocalSymbolsTest, TakesTheSymbolsOfTheDefaultLocale) {
  const LocalRow& row = GetParam();
  const DefaultLocale locale(row.locale);
  EXPECT_EQ(RenderStandard(DMDatum(row.value), row.width, 2, row.decimalSymbol, row.groupingSymbol),
            row.expected);
}

constexpr DecimalSymbol kLocalDecimal = DecimalSymbol::Local;
constexpr GroupingSymbol kLocalGrouping = GroupingSymbol::Local;

INSTANTIATE_TEST_SUITE_P(
    Rows, DMLocalSymbolsTest,
    ::testing::Values(
        LocalRow{"German", "de_DE", 1234567.891, 15, kLocalDecimal, kLocalGrouping,
                 Shown("   1.234.567,89")},
        LocalRow{"American", "en_US", 1234567.891, 15, kLocalDecimal, kLocalGrouping,
                 Shown("   1,234,567.89")},
        LocalRow{
            "French, narrow spaces", "fr_FR", 1234567.891, -1, kLocalDecimal, kLocalGrouping,
            Shown(std::string("1") + kNarrowNoBreakSpace + "234" + kNarrowNoBreakSpace + "567,89")},
        LocalRow{"Swiss, quotes", "de_CH", -1234567.891, -1, kLocalDecimal, kLocalGrouping,
                 Shown(std::string("-1") + kRightQuote + "234" + kRightQuote + "567.89")},
        LocalRow{"Arabic symbols around ASCII digits", "ar_EG", 1234.5, -1, kLocalDecimal,
                 kLocalGrouping,
                 Shown(std::string("1") + kArabicGrouping + "234" + kArabicDecimal + "50")},
        LocalRow{"only the decimal symbol local", "de_DE", 1234.5, -1, kLocalDecimal,
                 GroupingSymbol::Space, Shown("1 234,50")},
        LocalRow{"only the grouping symbol local", "de_DE", 1234.5, -1, DecimalSymbol::Period,
                 kLocalGrouping, Shown("1.234.50")},
        LocalRow{"local decimal, no grouping", "fr_FR", -0.5, 6, kLocalDecimal,
                 GroupingSymbol::None, Shown(" -0,50")},
        LocalRow{"exponent form takes the local decimal", "de_DE", 1e15, 12, kLocalDecimal,
                 kLocalGrouping, Shown(" 1,00000E+15")},
        LocalRow{"a locale that numbers by rules keeps its symbols but no grouping",
                 "en@numbers=roman", 1234567.891, -1, kLocalDecimal, kLocalGrouping,
                 Shown("1234567.89")},
        LocalRow{"a locale whose formatter groups nothing", "en_US_POSIX", 1234567.891, -1,
                 kLocalDecimal, kLocalGrouping, Shown("1234567.89")},
        LocalRow{"not-a-number takes no local symbols", "ar_EG", kNaN, -1, kLocalDecimal,
                 kLocalGrouping, Shown("NAN")}));

TEST(DMLocalSymbolsTest, FollowTheDefaultLocaleFromCallToCall) {
  const DMDatum datum(1234.5);
  const DefaultLocale restore("en_US");
  DefaultLocale::Set(icu::Locale("de_DE"));
  EXPECT_EQ(RenderStandard(datum, -1, 2, kLocalDecimal, kLocalGrouping), Shown("1.234,50"));
  DefaultLocale::Set(icu::Locale("en_US"));
  EXPECT_EQ(RenderStandard(datum, -1, 2, kLocalDecimal, kLocalGrouping), Shown("1,234.50"));
  DefaultLocale::Set(icu::Locale("de_DE"));
  EXPECT_EQ(RenderStandard(datum, -1, 2, kLocalDecimal, kLocalGrouping), Shown("1.234,50"));
}

// ---------------------------------------------------------------------------
// MakeDecimalFormat

std::string FormattedBy(const icu::DecimalFormat& formatter, double value) {
  icu::UnicodeString text;
  formatter.format(value, text);
  std::string utf8;
  text.toUTF8String(utf8);
  return utf8;
}

TEST(DMMakeDecimalFormatTest, MakesAFormatterForTheGivenLocale) {
  const std::unique_ptr<icu::DecimalFormat> formatter(
      DMFormatUtils::MakeDecimalFormat(&icu::Locale::getGermany()));
  ASSERT_NE(formatter, nullptr);
  EXPECT_EQ(formatter->getDynamicClassID(), icu::DecimalFormat::getStaticClassID());
  EXPECT_EQ(FormattedBy(*formatter, 1234.5), "1.234,5");
}

TEST(DMMakeDecimalFormatTest, MakesAFormatterForTheDefaultLocaleWithoutOne) {
  const DefaultLocale locale("en_US");
  const std::unique_ptr<icu::DecimalFormat> formatter(DMFormatUtils::MakeDecimalFormat(nullptr));
  ASSERT_NE(formatter, nullptr);
  EXPECT_EQ(FormattedBy(*formatter, 1234.5), "1,234.5");
}

TEST(DMMakeDecimalFormatTest, GivesNullForALocaleThatNumbersByRules) {
  const icu::Locale roman("en@numbers=roman");
  EXPECT_EQ(DMFormatUtils::MakeDecimalFormat(&roman), nullptr);
  const DefaultLocale locale("en@numbers=roman");
  EXPECT_EQ(DMFormatUtils::MakeDecimalFormat(nullptr), nullptr);
}

// ---------------------------------------------------------------------------
// DMNumberFormat

struct NumberSettings {
  DMNumberFormat::FormatType type;
  int width;
  unsigned decimals;
  DecimalSymbol decimalSymbol;
  GroupingSymbol groupingSymbol;
};

DMNumberFormat MakeNumberFormat(const NumberSettings& settings) {
  DMNumberFormat format(settings.type, settings.width, settings.decimals);
  format.SetSeparators(settings.decimalSymbol, settings.groupingSymbol);
  return format;
}

struct NumberRow {
  const char* what;
  NumberSettings settings;
  DMDatum datum;
  Rendered expected;
};

void PrintTo(const NumberRow& row, std::ostream* out) { *out << row.what; }

class DMNumberRenderTest : public ::testing::TestWithParam<NumberRow> {};

TEST_P(DMNumberRenderTest, RendersTheDatum) {
  const NumberRow& row = GetParam();
  EXPECT_EQ(Render(MakeNumberFormat(row.settings), row.datum), row.expected);
}

constexpr DMNumberFormat::FormatType kStandard = DMNumberFormat::Standard;
constexpr DMNumberFormat::FormatType kScientific = DMNumberFormat::Scientific;

INSTANTIATE_TEST_SUITE_P(
    Standard, DMNumberRenderTest,
    ::testing::Values(
        NumberRow{"grouped into its padding",
                  {kStandard, 12, 2, kPoint, kCommas},
                  DMDatum(1234567.891),
                  Shown("1,234,567.89")},
        NumberRow{"European symbols",
                  {kStandard, 10, 2, kDecimalComma, kPeriods},
                  DMDatum(1234.5),
                  Shown("  1.234,50")},
        NumberRow{"too little padding to group",
                  {kStandard, 8, 2, kPoint, kCommas},
                  DMDatum(1234567.891),
                  Shown(" 1234568")},
        NumberRow{"exponent form",
                  {kStandard, 12, 0, kPoint, kUngrouped},
                  DMDatum(1e15),
                  Shown(" 1.00000E+15")},
        NumberRow{
            "nothing fits", {kStandard, 5, 0, kPoint, kUngrouped}, DMDatum(123456.0), Shown("*")},
        NumberRow{
            "value below 1", {kStandard, 3, 2, kPoint, kUngrouped}, DMDatum(0.5), Shown("0.5")},
        NumberRow{"variable width",
                  {kStandard, -1, 2, kPoint, kUngrouped},
                  DMDatum(-3.5),
                  Shown("-3.50")},
        NumberRow{"integer", {kStandard, 6, 0, kPoint, kCommas}, DMDatum(-1234LL), Shown("-1,234")},
        NumberRow{
            "zero", {kStandard, 4, 1, kDecimalComma, kUngrouped}, DMDatum(0.0), Shown(" 0,0")},
        NumberRow{
            "huge", {kStandard, 12, 2, kPoint, kCommas}, DMDatum(1e300), Shown("1.00000E+300")},
        NumberRow{
            "not-a-number", {kStandard, 8, 2, kPoint, kCommas}, DMDatum(kNaN), Shown("     NAN")},
        NumberRow{
            "minus infinity", {kStandard, -1, 2, kPoint, kCommas}, DMDatum(-kInf), Shown("-INF")},
        NumberRow{"null datum", {kStandard, 8, 2, kPoint, kUngrouped}, DMDatum(), Shown(".")},
        NumberRow{"null datum of an invalid format",
                  {kStandard, 0, 2, kPoint, kUngrouped},
                  DMDatum(),
                  Shown(".")},
        NumberRow{"null text datum",
                  {kStandard, 8, 2, kPoint, kUngrouped},
                  DMDatum(static_cast<const char*>(nullptr)),
                  Shown(".")},
        NumberRow{"text datum", {kStandard, 8, 2, kPoint, kUngrouped}, DMDatum("12"), Refused()},
        NumberRow{"invalid format", {kStandard, 0, 2, kPoint, kUngrouped}, DMDatum(1.0), Refused()},
        NumberRow{"a width above the bound",
                  {kStandard, kMaxWidth + 1, 2, kPoint, kUngrouped},
                  DMDatum(1.0),
                  Refused()},
        NumberRow{"a width from a careless document",
                  {kStandard, 100000, 2, kPoint, kCommas},
                  DMDatum(1.0),
                  Refused()}));

INSTANTIATE_TEST_SUITE_P(
    Scientific, DMNumberRenderTest,
    ::testing::Values(
        NumberRow{"three exponent digits, sign shown",
                  {kScientific, -1, 2, kPoint, kUngrouped},
                  DMDatum(1234.5),
                  Shown("1.23E+003")},
        NumberRow{"padded to the width",
                  {kScientific, 12, 2, kPoint, kUngrouped},
                  DMDatum(1234.5),
                  Shown("   1.23E+003")},
        NumberRow{"German symbols for the decimal comma",
                  {kScientific, 12, 3, kDecimalComma, kUngrouped},
                  DMDatum(12.5),
                  Shown("  1,250E+001")},
        NumberRow{"never cut to the width",
                  {kScientific, 4, 2, kPoint, kUngrouped},
                  DMDatum(1234.5),
                  Shown("1.23E+003")},
        NumberRow{"grouping plays no part",
                  {kScientific, -1, 2, kPoint, kCommas},
                  DMDatum(1234567.0),
                  Shown("1.23E+006")},
        NumberRow{"rounds half to even",
                  {kScientific, -1, 3, kPoint, kUngrouped},
                  DMDatum(1234.5),
                  Shown("1.234E+003")},
        NumberRow{"no decimals",
                  {kScientific, -1, 0, kPoint, kUngrouped},
                  DMDatum(1234.5),
                  Shown("1E+003")},
        NumberRow{"negative value below 1",
                  {kScientific, -1, 2, kPoint, kUngrouped},
                  DMDatum(-0.000123),
                  Shown("-1.23E-004")},
        NumberRow{
            "zero", {kScientific, -1, 2, kPoint, kUngrouped}, DMDatum(0.0), Shown("0.00E+000")},
        NumberRow{
            "integer", {kScientific, 8, 1, kPoint, kUngrouped}, DMDatum(42LL), Shown("4.2E+001")},
        NumberRow{"largest double",
                  {kScientific, -1, 2, kPoint, kUngrouped},
                  DMDatum(1e308),
                  Shown("1.00E+308")},
        NumberRow{"smallest double",
                  {kScientific, -1, 2, kPoint, kUngrouped},
                  DMDatum(5e-324),
                  Shown("5.00E-324")},
        NumberRow{
            "not-a-number", {kScientific, 5, 2, kPoint, kUngrouped}, DMDatum(kNaN), Shown("  NaN")},
        NumberRow{"infinity",
                  {kScientific, -1, 2, kPoint, kUngrouped},
                  DMDatum(kInf),
                  Shown(kInfinitySign)},
        NumberRow{"minus infinity",
                  {kScientific, 3, 2, kDecimalComma, kUngrouped},
                  DMDatum(-kInf),
                  Shown(std::string(" -") + kInfinitySign)},
        NumberRow{"null datum", {kScientific, 12, 2, kPoint, kUngrouped}, DMDatum(), Shown(".")},
        NumberRow{"text datum", {kScientific, 12, 2, kPoint, kUngrouped}, DMDatum("1"), Refused()},
        NumberRow{
            "invalid format", {kScientific, 0, 2, kPoint, kUngrouped}, DMDatum(1.0), Refused()},
        NumberRow{"a width above the bound",
                  {kScientific, kMaxWidth + 1, 2, kPoint, kUngrouped},
                  DMDatum(1.0),
                  Refused()}));

TEST(DMNumberRenderTest, EveryTypeButScientificRendersAsStandard) {
  const DMDatum datum(-1234567.891);
  const std::string expected = "-1.234.567,89";
  for (unsigned type = DMNumberFormat::Standard; type <= DMNumberFormat::PosRealBin; ++type) {
    if (type == DMNumberFormat::Scientific) continue;
    const NumberSettings settings{static_cast<DMNumberFormat::FormatType>(type), 14, 2,
                                  kDecimalComma, kPeriods};
    EXPECT_EQ(Render(MakeNumberFormat(settings), datum), Shown(" " + expected)) << type;
  }
}

TEST(DMNumberRenderTest, WidestScientificFormatIsPaddedInFull) {
  const DMNumberFormat format = MakeNumberFormat({kScientific, kMaxWidth, 2, kPoint, kUngrouped});
  EXPECT_EQ(Render(format, DMDatum(1234.5)), Shown(Spaces(kMaxWidth - 9) + "1.23E+003"));
}

TEST(DMNumberRenderTest, ScientificDecimalsStopAtWhatIcuShows) {
  const std::string most =
      Render(MakeNumberFormat({kScientific, -1, 999, kPoint, kUngrouped}), DMDatum(1.5)).text;
  EXPECT_EQ(most, "1.5" + std::string(998, '0') + "E+000");
  EXPECT_EQ(Render(MakeNumberFormat({kScientific, -1, 1000, kPoint, kUngrouped}), DMDatum(1.5)),
            Shown(most));
  EXPECT_EQ(Render(MakeNumberFormat({kScientific, -1, UINT_MAX, kPoint, kUngrouped}), DMDatum(1.5)),
            Shown(most));
}

TEST(DMNumberRenderTest, FormatLeavesNoStaleTextOnFailure) {
  const DMNumberFormat format = MakeNumberFormat({kStandard, 8, 2, kPoint, kUngrouped});
  std::string out = "stale";
  EXPECT_EQ(format.Format(DMDatum("x"), kNone, out), DM_FORMAT_FAILED);
  EXPECT_EQ(out, "");
}

// ---------------------------------------------------------------------------
// The scientific type in the default locale, and its kept formatter

struct ScientificLocalRow {
  const char* what;
  const char* locale;
  double value;
  Rendered expected;
};

void PrintTo(const ScientificLocalRow& row, std::ostream* out) { *out << row.what; }

class DMScientificLocalTest : public ::testing::TestWithParam<ScientificLocalRow> {};

TEST_P(DMScientificLocalTest, TakesTheDefaultLocalesSymbols) {
  const ScientificLocalRow& row = GetParam();
  const DefaultLocale locale(row.locale);
  const DMNumberFormat format = MakeNumberFormat({kScientific, 11, 2, kLocalDecimal, kCommas});
  EXPECT_EQ(Render(format, DMDatum(row.value)), row.expected);
}

INSTANTIATE_TEST_SUITE_P(
    Rows, DMScientificLocalTest,
    ::testing::Values(ScientificLocalRow{"German", "de_DE", -1234.5, Shown(" -1,23E+003")},
                      ScientificLocalRow{"American", "en_US", -1234.5, Shown(" -1.23E+003")},
                      ScientificLocalRow{"French", "fr_FR", 0.5, Shown("  5,00E-001")},
                      ScientificLocalRow{"a locale that numbers by rules", "en@numbers=roman", 1.0,
                                         Refused()}));

TEST(DMScientificCacheTest, FollowsTheDefaultLocaleFromCallToCall) {
  const DefaultLocale restore("en_US");
  const DMNumberFormat format = MakeNumberFormat({kScientific, -1, 2, kLocalDecimal, kCommas});
  DefaultLocale::Set(icu::Locale("de_DE"));
  EXPECT_EQ(Render(format, DMDatum(1234.5)), Shown("1,23E+003"));
  DefaultLocale::Set(icu::Locale("en_US"));
  EXPECT_EQ(Render(format, DMDatum(1234.5)), Shown("1.23E+003"));
  DefaultLocale::Set(icu::Locale("en@numbers=roman"));
  EXPECT_EQ(Render(format, DMDatum(1234.5)), Refused());
  DefaultLocale::Set(icu::Locale("de_DE"));
  EXPECT_EQ(Render(format, DMDatum(1234.5)), Shown("1,23E+003"));
}

TEST(DMScientificCacheTest, FixedSymbolsIgnoreTheDefaultLocale) {
  const DMNumberFormat format = MakeNumberFormat({kScientific, -1, 2, kPoint, kUngrouped});
  EXPECT_EQ(Render(format, DMDatum(1234.5)), Shown("1.23E+003"));
  const DefaultLocale locale("de_DE");
  EXPECT_EQ(Render(format, DMDatum(1234.5)), Shown("1.23E+003"));
}

TEST(DMScientificCacheTest, SettersChangeTheNextText) {
  DMNumberFormat format = MakeNumberFormat({kScientific, -1, 2, kPoint, kUngrouped});
  EXPECT_EQ(Render(format, DMDatum(1234.5)), Shown("1.23E+003"));
  format.SetWidthDecimals(12, 4);
  EXPECT_EQ(Render(format, DMDatum(1234.5)), Shown(" 1.2345E+003"));
  format.SetSeparators(kDecimalComma, kUngrouped);
  EXPECT_EQ(Render(format, DMDatum(1234.5)), Shown(" 1,2345E+003"));
  format.Reset(kScientific, -1, 1);
  EXPECT_EQ(Render(format, DMDatum(1234.5)), Shown("1.2E+003"));
  format.Reset(kStandard, -1, 1);
  EXPECT_EQ(Render(format, DMDatum(1234.5)), Shown("1234.5"));
}

TEST(DMScientificCacheTest, CopiesKeepTheirOwnFormatter) {
  const DMNumberFormat original = MakeNumberFormat({kScientific, -1, 2, kPoint, kUngrouped});
  EXPECT_EQ(Render(original, DMDatum(1234.5)), Shown("1.23E+003"));
  DMNumberFormat copy(original);
  copy.SetWidthDecimals(-1, 4);
  EXPECT_EQ(Render(copy, DMDatum(1234.5)), Shown("1.2345E+003"));
  EXPECT_EQ(Render(original, DMDatum(1234.5)), Shown("1.23E+003"));

  const std::unique_ptr<DMNumberFormat> clone(original.Clone());
  clone->SetSeparators(kDecimalComma, kUngrouped);
  EXPECT_EQ(Render(*clone, DMDatum(1234.5)), Shown("1,23E+003"));
  EXPECT_EQ(Render(original, DMDatum(1234.5)), Shown("1.23E+003"));
}

TEST(DMScientificCacheTest, AssignmentTakesTheSettingsNotTheFormatter) {
  DMNumberFormat target = MakeNumberFormat({kScientific, -1, 2, kPoint, kUngrouped});
  const DMNumberFormat source = MakeNumberFormat({kScientific, -1, 3, kDecimalComma, kPeriods});
  EXPECT_EQ(Render(target, DMDatum(1234.5)), Shown("1.23E+003"));
  EXPECT_EQ(Render(source, DMDatum(1234.5)), Shown("1,234E+003"));
  target = source;
  EXPECT_EQ(Render(target, DMDatum(1234.5)), Shown("1,234E+003"));
  target.SetWidthDecimals(-1, 1);
  EXPECT_EQ(Render(target, DMDatum(1234.5)), Shown("1,2E+003"));
  EXPECT_EQ(Render(source, DMDatum(1234.5)), Shown("1,234E+003"));
}

TEST(DMScientificCacheTest, KeptFormatterGivesWhatAFreshOneGives) {
  const DMNumberFormat kept = MakeNumberFormat({kScientific, 12, 3, kDecimalComma, kUngrouped});
  for (const double value : {1234.5, -0.000123, 0.0, 1e308, -5e-324, 99999.95, kNaN, -kInf}) {
    const DMNumberFormat fresh = MakeNumberFormat({kScientific, 12, 3, kDecimalComma, kUngrouped});
    EXPECT_EQ(Render(kept, DMDatum(value)), Render(fresh, DMDatum(value))) << value;
  }
}

// ---------------------------------------------------------------------------
// DMDecoratedFormat

struct DecoratedSettings {
  DMDecoratedFormat::FormatType type;
  int width;
  unsigned decimals;
  DecimalSymbol decimalSymbol;
  GroupingSymbol groupingSymbol;
  const char* prefix;
  const char* suffix;
  const char* negPrefix;
  const char* negSuffix;
};

DMDecoratedFormat MakeDecoratedFormat(const DecoratedSettings& settings) {
  DMDecoratedFormat format(settings.type, settings.width, settings.decimals);
  format.SetSeparators(settings.decimalSymbol, settings.groupingSymbol);
  format.SetAffixes(settings.prefix, settings.suffix);
  format.SetNegAffixes(settings.negPrefix, settings.negSuffix);
  return format;
}

struct DecoratedRow {
  const char* what;
  DecoratedSettings settings;
  DMDatum datum;
  Rendered expected;
};

void PrintTo(const DecoratedRow& row, std::ostream* out) { *out << row.what; }

class DMDecoratedRenderTest : public ::testing::TestWithParam<DecoratedRow> {};

TEST_P(DMDecoratedRenderTest, RendersTheDatumWithItsAffixes) {
  const DecoratedRow& row = GetParam();
  EXPECT_EQ(Render(MakeDecoratedFormat(row.settings), row.datum), row.expected);
}

constexpr DMDecoratedFormat::FormatType kCurrency = DMDecoratedFormat::Currency;
constexpr DMDecoratedFormat::FormatType kPercentage = DMDecoratedFormat::Percentage;

INSTANTIATE_TEST_SUITE_P(
    Rows, DMDecoratedRenderTest,
    ::testing::Values(DecoratedRow{"prefix fits once the decimal is given up",
                                   {kCurrency, 6, 1, kPoint, kUngrouped, "$", "", "-", ""},
                                   DMDatum(12345.6),
                                   Shown("$12346")},
                      DecoratedRow{"prefix dropped when it does not fit",
                                   {kCurrency, 5, 1, kPoint, kUngrouped, "$", "", "-", ""},
                                   DMDatum(12345.6),
                                   Shown("12346")},
                      DecoratedRow{"minus before the currency",
                                   {kCurrency, -1, 2, kPoint, kUngrouped, "$", "", "-", ""},
                                   DMDatum(-12.5),
                                   Shown("-$12.50")},
                      DecoratedRow{"padded to the width",
                                   {kCurrency, 10, 2, kPoint, kUngrouped, "$", "", "-", ""},
                                   DMDatum(12.5),
                                   Shown("    $12.50")},
                      DecoratedRow{"percentage shows the value as stored",
                                   {kPercentage, 8, 1, kPoint, kUngrouped, "", "%", "-", ""},
                                   DMDatum(12.34),
                                   Shown("   12.3%")},
                      DecoratedRow{"negative affixes wrap the positive ones",
                                   {kCurrency, -1, 2, kPoint, kUngrouped, "$", "", "(", ")"},
                                   DMDatum(-5.0),
                                   Shown("($5.00)")},
                      DecoratedRow{"negative suffix after the suffix",
                                   {kPercentage, -1, 0, kPoint, kUngrouped, "", " %", "", "-"},
                                   DMDatum(-40LL),
                                   Shown("40 %-")},
                      DecoratedRow{"negative affixes dropped, the minus kept",
                                   {kCurrency, 5, 0, kPoint, kUngrouped, "$", "", "-", ""},
                                   DMDatum(-1234.0),
                                   Shown("-1234")},
                      DecoratedRow{"no negative prefix loses the minus",
                                   {kCurrency, -1, 2, kPoint, kUngrouped, "$", "", "", ""},
                                   DMDatum(-12.5),
                                   Shown("$12.50")},
                      DecoratedRow{"grouped number without room for the prefix",
                                   {kCurrency, 12, 2, kPoint, kCommas, "$", "", "-", ""},
                                   DMDatum(1234567.891),
                                   Shown("1,234,567.89")},
                      DecoratedRow{"grouped number with room for the prefix",
                                   {kCurrency, 14, 2, kPoint, kCommas, "$", "", "-", ""},
                                   DMDatum(1234567.891),
                                   Shown(" $1,234,567.89")},
                      DecoratedRow{"European symbols",
                                   {kCurrency, -1, 2, kDecimalComma, kPeriods, "", " EUR", "-", ""},
                                   DMDatum(-1234.5),
                                   Shown("-1.234,50 EUR")},
                      DecoratedRow{"width counts characters, not bytes",
                                   {kCurrency, 6, 2, kPoint, kUngrouped, "\u20AC", "", "-", ""},
                                   DMDatum(12.5),
                                   Shown("\u20AC12.50")},
                      DecoratedRow{"a multibyte prefix that does not fit",
                                   {kCurrency, 5, 2, kPoint, kUngrouped, "\u20AC", "", "-", ""},
                                   DMDatum(12.5),
                                   Shown("12.50")},
                      DecoratedRow{"nothing fits",
                                   {kCurrency, 5, 0, kPoint, kUngrouped, "$", "", "-", ""},
                                   DMDatum(123456.0),
                                   Shown("   $*")},
                      DecoratedRow{"zero",
                                   {kCurrency, -1, 2, kPoint, kUngrouped, "$", "", "-", ""},
                                   DMDatum(0.0),
                                   Shown("$0.00")},
                      DecoratedRow{"negative zero reads as negative",
                                   {kCurrency, -1, 2, kPoint, kUngrouped, "$", "", "-", ""},
                                   DMDatum(-0.0),
                                   Shown("-$0.00")},
                      DecoratedRow{"a value that rounds to minus zero",
                                   {kCurrency, 8, 2, kPoint, kUngrouped, "$", "", "-", ""},
                                   DMDatum(-0.001),
                                   Shown("  -$0.00")},
                      DecoratedRow{"integer",
                                   {kCurrency, 7, 0, kPoint, kCommas, "$", "", "-", ""},
                                   DMDatum(1234LL),
                                   Shown(" $1,234")},
                      DecoratedRow{"huge",
                                   {kCurrency, -1, 2, kPoint, kCommas, "$", "", "-", ""},
                                   DMDatum(1e308),
                                   Shown("$1.0000000000000000E+308")},
                      DecoratedRow{"not-a-number",
                                   {kCurrency, -1, 2, kPoint, kCommas, "$", "", "-", ""},
                                   DMDatum(kNaN),
                                   Shown("$NAN")},
                      DecoratedRow{"minus infinity",
                                   {kCurrency, 12, 2, kPoint, kCommas, "$", "", "-", ""},
                                   DMDatum(-kInf),
                                   Shown("       -$INF")},
                      DecoratedRow{"null datum",
                                   {kCurrency, 8, 2, kPoint, kUngrouped, "$", "", "-", ""},
                                   DMDatum(),
                                   Shown(".")},
                      DecoratedRow{"text datum",
                                   {kCurrency, 8, 2, kPoint, kUngrouped, "$", "", "-", ""},
                                   DMDatum("12"),
                                   Refused()},
                      DecoratedRow{
                          "a width above the bound",
                          {kCurrency, kMaxWidth + 1, 2, kPoint, kUngrouped, "$", "", "-", ""},
                          DMDatum(1.0),
                          Refused()}));

TEST(DMDecoratedRenderTest, InvalidFormatRendersOnlyTheNullDatum) {
  const DMDecoratedFormat format;
  EXPECT_EQ(Render(format, DMDatum(1.0)), Refused());
  EXPECT_EQ(Render(format, DMDatum()), Shown("."));
}

TEST(DMDecoratedRenderTest, TypeAndCurrencyIdChangeNothing) {
  const DecoratedSettings settings{kCurrency, 12, 2, kPoint, kCommas, "$", "", "-", ""};
  DMDecoratedFormat percentage = MakeDecoratedFormat(settings);
  percentage.Reset(kPercentage, 12, 2);
  percentage.SetSeparators(kPoint, kCommas);
  percentage.SetAffixes("$", "");
  percentage.SetCustomCurrencyID(3);
  for (const double value : {-1234.5, 0.0, 98765.4321}) {
    EXPECT_EQ(Render(percentage, DMDatum(value)),
              Render(MakeDecoratedFormat(settings), DMDatum(value)))
        << value;
  }
}

TEST(DMDecoratedRenderTest, LocalSymbolsComeFromTheDefaultLocale) {
  const DefaultLocale locale("de_DE");
  const DecoratedSettings settings{kCurrency, 12,  2, kLocalDecimal, kLocalGrouping, "",
                                   " \u20AC", "-", ""};
  EXPECT_EQ(Render(MakeDecoratedFormat(settings), DMDatum(-1234.5)), Shown(" -1.234,50 \u20AC"));
}

// ---------------------------------------------------------------------------
// DMStringFormat

struct StringRow {
  const char* what;
  int width;
  DMDatum datum;
  Rendered expected;
};

void PrintTo(const StringRow& row, std::ostream* out) { *out << row.what; }

class DMStringRenderTest : public ::testing::TestWithParam<StringRow> {};

TEST_P(DMStringRenderTest, RendersOnlyInVariableWidth) {
  const StringRow& row = GetParam();
  EXPECT_EQ(Render(DMStringFormat(row.width, false), row.datum), row.expected);
  // The hexadecimal flag is not applied when rendering.
  EXPECT_EQ(Render(DMStringFormat(row.width, true), row.datum), row.expected);
}

INSTANTIATE_TEST_SUITE_P(
    Rows, DMStringRenderTest,
    ::testing::Values(
        StringRow{"text as it is", -1, DMDatum("  some text "), Shown("  some text ")},
        StringRow{"UTF-8 text as it is", -1, DMDatum("Z\u00FCrich"), Shown("Z\u00FCrich")},
        StringRow{"empty text", -1, DMDatum(""), Shown("")},
        StringRow{"null datum", -1, DMDatum(), Shown("")},
        StringRow{"null text datum", -1, DMDatum(static_cast<const char*>(nullptr)), Shown("")},
        StringRow{"integer", -1, DMDatum(12LL), Refused()},
        StringRow{"real", -1, DMDatum(1.5), Refused()},
        StringRow{"invalid format with text", 0, DMDatum("text"), Shown("")},
        StringRow{"invalid format with a number", 0, DMDatum(1.5), Shown("")},
        StringRow{"fixed width with text", 5, DMDatum("text"), Refused()},
        StringRow{"fixed width with a null datum", 5, DMDatum(), Refused()}));

}  // namespace
