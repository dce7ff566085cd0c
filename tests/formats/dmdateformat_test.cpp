#include "dmcommon/formats/dmdateformat.h"

#include <memory>
#include <ostream>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "dmcommon/formats/dmformat.h"
#include "dmcommon/formats/dmtimeformat.h"
#include "dmcommon/values/dmdatum.h"
#include "dmcommon/xml/dmxmlwrapper.h"
#include "tests/formats/formattest.h"
#include "tests/support/xmltest.h"

namespace {

using DmExtension::DMXMLWrapper;
using UnitsSeparator = DMFormat::UnitsSeparator;

template <typename Format>
UnitsSeparator SeparatorOf(const Format& format) {
  UnitsSeparator separator = UnitsSeparator::Local;
  format.GetSeparator(separator);
  return separator;
}

void ExpectSameTimeFormat(const DMTimeFormat& expected, const DMTimeFormat& actual) {
  EXPECT_EQ(actual.GetWidth(), expected.GetWidth());
  EXPECT_EQ(actual.GetAlignment(), expected.GetAlignment());
  EXPECT_EQ(actual.GetName(), expected.GetName());
  EXPECT_EQ(actual.GetFormatType(), expected.GetFormatType());
  EXPECT_EQ(actual.GetDecimals(), expected.GetDecimals());
  EXPECT_EQ(SeparatorOf(actual), SeparatorOf(expected));
  EXPECT_EQ(actual.GetPaddedHMS(), expected.GetPaddedHMS());
}

// Compares every getter, and the time formats by content: both absent, or
// both present with equal settings.
void ExpectSameDateFormat(const DMDateFormat& expected, const DMDateFormat& actual) {
  EXPECT_EQ(actual.GetWidth(), expected.GetWidth());
  EXPECT_EQ(actual.GetAlignment(), expected.GetAlignment());
  EXPECT_EQ(actual.GetName(), expected.GetName());
  EXPECT_EQ(actual.GetFormatType(), expected.GetFormatType());
  EXPECT_EQ(actual.GetDecimals(), expected.GetDecimals());
  EXPECT_EQ(SeparatorOf(actual), SeparatorOf(expected));
  EXPECT_EQ(actual.GetTwoDigitYear(), expected.GetTwoDigitYear());
  EXPECT_EQ(actual.GetNamesLocal(), expected.GetNamesLocal());
  EXPECT_EQ(actual.GetFormatClass(), DMFormat::Date);
  ASSERT_EQ(actual.GetTimeFormat() == nullptr, expected.GetTimeFormat() == nullptr);
  if (expected.GetTimeFormat() != nullptr) {
    ExpectSameTimeFormat(*expected.GetTimeFormat(), *actual.GetTimeFormat());
  }
}

void ExpectDefaultDateFormat(const DMDateFormat& format) {
  EXPECT_EQ(format.GetWidth(), 0);
  ExpectSameDateFormat(DMDateFormat(), format);
  EXPECT_EQ(format.GetAlignment(), DMFormat::Auto);
  EXPECT_EQ(format.GetName(), "");
  EXPECT_EQ(format.GetFormatType(), DMDateFormat::Y_M_D);
  EXPECT_EQ(format.GetDecimals(), 0u);
  EXPECT_EQ(SeparatorOf(format), UnitsSeparator::None);
  EXPECT_FALSE(format.GetTwoDigitYear());
  EXPECT_FALSE(format.GetNamesLocal());
  EXPECT_EQ(format.GetTimeFormat(), nullptr);
  EXPECT_EQ(dmtest::WrittenXml(format), dmtest::WrittenXml(DMDateFormat()));
}

DMTimeFormat SampleTime() {
  DMTimeFormat time(DMTimeFormat::H_M, 5, 1, UnitsSeparator::Dash, false);
  time.SetName("clock");
  time.SetAlignment(DMFormat::Right);
  return time;
}

// A date format with a value other than the default in every field,
// including a time format.
DMDateFormat Sample() {
  DMDateFormat format(DMDateFormat::D_monthName_Y, 20, 2, UnitsSeparator::Slash, true, true);
  format.SetName("when");
  format.SetAlignment(DMFormat::Center);
  const DMTimeFormat time = SampleTime();
  format.SetTimeFormat(&time);
  return format;
}

// ---------------------------------------------------------------------------
// Construction and state

TEST(DMDateFormatTest, DefaultFormatIsInvalidWithoutATimeFormat) {
  ExpectDefaultDateFormat(DMDateFormat());
}

TEST(DMDateFormatTest, ArgumentConstructorSetsEverySetting) {
  const DMDateFormat format(DMDateFormat::W_Y, 9, 3, UnitsSeparator::Space, true, true);
  EXPECT_EQ(format.GetFormatType(), DMDateFormat::W_Y);
  EXPECT_EQ(format.GetWidth(), 9);
  EXPECT_EQ(format.GetDecimals(), 3u);
  EXPECT_EQ(SeparatorOf(format), UnitsSeparator::Space);
  EXPECT_TRUE(format.GetTwoDigitYear());
  EXPECT_TRUE(format.GetNamesLocal());
  EXPECT_EQ(format.GetAlignment(), DMFormat::Auto);
  EXPECT_EQ(format.GetName(), "");
  EXPECT_EQ(format.GetTimeFormat(), nullptr);
}

TEST(DMDateFormatTest, GuardedGettersAnswerDefaultsWhileTheWidthIsZero) {
  const DMDateFormat format(DMDateFormat::DayName, 0, 3, UnitsSeparator::Dash, true, true);
  EXPECT_EQ(format.GetFormatType(), DMDateFormat::Y_M_D);
  EXPECT_EQ(format.GetDecimals(), 0u);
  EXPECT_EQ(SeparatorOf(format), UnitsSeparator::None);
  EXPECT_FALSE(format.GetTwoDigitYear());
  EXPECT_FALSE(format.GetNamesLocal());
}

TEST(DMDateFormatTest, SettersDoNothingWhileTheWidthIsZero) {
  DMDateFormat format;
  const DMTimeFormat time = SampleTime();
  format.SetName("d");
  format.SetAlignment(DMFormat::Left);
  format.SetSeparator(UnitsSeparator::Dash);
  format.SetWidthDecimals(8, 2);
  format.SetTimeFormat(&time);
  ExpectDefaultDateFormat(format);
}

TEST(DMDateFormatTest, SetWidthDecimalsRefusesWidthZeroAndChangesOtherwise) {
  DMDateFormat format = Sample();
  format.SetWidthDecimals(0, 5);
  EXPECT_EQ(format.GetWidth(), 20);
  EXPECT_EQ(format.GetDecimals(), 2u);
  format.SetWidthDecimals(-1, 0);
  EXPECT_EQ(format.GetWidth(), -1);
  EXPECT_EQ(format.GetDecimals(), 0u);
}

TEST(DMDateFormatTest, SetTimeFormatCopiesTheGivenFormat) {
  DMDateFormat format(DMDateFormat::Y_M_D, 10, 0, UnitsSeparator::Dash, false, false);
  const DMTimeFormat time = SampleTime();
  format.SetTimeFormat(&time);
  ASSERT_NE(format.GetTimeFormat(), nullptr);
  EXPECT_NE(format.GetTimeFormat(), &time);
  ExpectSameTimeFormat(time, *format.GetTimeFormat());
}

TEST(DMDateFormatTest, SetTimeFormatAssignsIntoTheOwnedFormat) {
  DMDateFormat format = Sample();
  const DMTimeFormat* owned = format.GetTimeFormat();
  const DMTimeFormat other(DMTimeFormat::D_H_M_S, 12, 0, UnitsSeparator::Colon, true);
  format.SetTimeFormat(&other);
  EXPECT_EQ(format.GetTimeFormat(), owned);
  ExpectSameTimeFormat(other, *format.GetTimeFormat());
}

TEST(DMDateFormatTest, SetTimeFormatWithItsOwnFormatChangesNothing) {
  DMDateFormat format = Sample();
  format.SetTimeFormat(format.GetTimeFormat());
  ExpectSameDateFormat(Sample(), format);
}

TEST(DMDateFormatTest, SetTimeFormatWithNullDestroysTheOwnedFormat) {
  DMDateFormat format = Sample();
  format.SetTimeFormat(nullptr);
  EXPECT_EQ(format.GetTimeFormat(), nullptr);
  EXPECT_EQ(format.GetWidth(), 20);
}

TEST(DMDateFormatTest, ResetMakesWhatTheArgumentConstructorMakesAndDestroysTheTimeFormat) {
  DMDateFormat format = Sample();
  format.Reset(DMDateFormat::M_D_Y, 10, 0, UnitsSeparator::Period, false, false);
  ExpectSameDateFormat(
      DMDateFormat(DMDateFormat::M_D_Y, 10, 0, UnitsSeparator::Period, false, false), format);
  EXPECT_EQ(format.GetTimeFormat(), nullptr);
}

TEST(DMDateFormatTest, ResetWithWidthZeroLeavesTheFormatAndItsTimeFormatUntouched) {
  DMDateFormat format = Sample();
  const DMTimeFormat* owned = format.GetTimeFormat();
  format.Reset(DMDateFormat::M_D_Y, 0, 0, UnitsSeparator::Period, false, false);
  ExpectSameDateFormat(Sample(), format);
  EXPECT_EQ(format.GetTimeFormat(), owned);
}

// ---------------------------------------------------------------------------
// Deep copies

TEST(DMDateFormatCopyTest, CopyConstructionCopiesTheTimeFormat) {
  const DMDateFormat original = Sample();
  // The copy is what is under test.
  const DMDateFormat copy(original);  // NOLINT(performance-unnecessary-copy-initialization)
  ExpectSameDateFormat(original, copy);
  ASSERT_NE(copy.GetTimeFormat(), nullptr);
  EXPECT_NE(copy.GetTimeFormat(), original.GetTimeFormat());
}

TEST(DMDateFormatCopyTest, AssignmentCopiesTheTimeFormat) {
  const DMDateFormat original = Sample();
  DMDateFormat assigned(DMDateFormat::Y_M_D, 10, 0, UnitsSeparator::Dash, false, false);
  const DMTimeFormat other(DMTimeFormat::M_S, 5, 0, UnitsSeparator::Colon, true);
  assigned.SetTimeFormat(&other);
  assigned = original;
  ExpectSameDateFormat(original, assigned);
  ASSERT_NE(assigned.GetTimeFormat(), nullptr);
  EXPECT_NE(assigned.GetTimeFormat(), original.GetTimeFormat());
}

TEST(DMDateFormatCopyTest, AssigningAFormatWithoutTimeDropsTheTimeFormat) {
  DMDateFormat format = Sample();
  format = DMDateFormat(DMDateFormat::Y_M_D, 10, 0, UnitsSeparator::Dash, false, false);
  EXPECT_EQ(format.GetTimeFormat(), nullptr);
}

TEST(DMDateFormatCopyTest, SelfAssignmentKeepsEverything) {
  DMDateFormat format = Sample();
  const DMDateFormat& self = format;
  format = self;
  ExpectSameDateFormat(Sample(), format);
}

TEST(DMDateFormatCopyTest, CloneCopiesTheTimeFormat) {
  const DMDateFormat original = Sample();
  const std::unique_ptr<DMDateFormat> clone(original.Clone());
  ExpectSameDateFormat(original, *clone);
  EXPECT_NE(clone->GetTimeFormat(), original.GetTimeFormat());
  const std::unique_ptr<DMFormat> base(static_cast<const DMFormat&>(original).Clone());
  EXPECT_EQ(base->GetFormatClass(), DMFormat::Date);
}

TEST(DMDateFormatCopyTest, CopiesOutliveTheOriginal) {
  auto original = std::make_unique<DMDateFormat>(Sample());
  const DMDateFormat copy(*original);
  const std::unique_ptr<DMDateFormat> clone(original->Clone());
  original.reset();
  ExpectSameDateFormat(Sample(), copy);
  ExpectSameDateFormat(Sample(), *clone);
}

TEST(DMDateFormatTest, InvalidFormatRefusesToRender) {
  std::string out = "stale";
  EXPECT_EQ(DMDateFormat().Format(DMDatum(0.0), DMFormat::UnitsDays, out), DM_FORMAT_FAILED);
  EXPECT_EQ(out, "");
}

// ---------------------------------------------------------------------------
// Writing

// The serializer puts attributes in alphabetical order; the format adds them
// as name, width, alignment, separator, decimal places, format type, two-digit
// year, local names, then the time format.
TEST(DMDateFormatXmlTest, WritesEveryAttributeAndTheTimeFormat) {
  EXPECT_EQ(dmtest::WrittenXml(Sample()),
            R"(<DateFormat alignment="center" decimalPlaces="2" formatType="d_monthName_Y" )"
            R"(name="when" namesLocal="true" separator="slash" twoDigitYear="true" width="20">)"
            R"(<TimeFormat alignment="right" decimalPlaces="1" formatType="h_M" name="clock" )"
            R"(paddedHMS="false" separator="dash" width="5"/></DateFormat>)");
}

TEST(DMDateFormatXmlTest, InvalidFormatIsWrittenWithWidthMinusOne) {
  EXPECT_EQ(dmtest::WrittenXml(DMDateFormat()),
            R"(<DateFormat alignment="auto" decimalPlaces="0" formatType="y_M_D" name="" )"
            R"(namesLocal="false" separator="none" twoDigitYear="false" width="-1"/>)");
}

TEST(DMDateFormatXmlTest, UnknownTypeIsWrittenAsDayMonthYear) {
  const DMDateFormat format(static_cast<DMDateFormat::FormatType>(10), 8, 0, UnitsSeparator::Dash,
                            false, false);
  EXPECT_NE(dmtest::WrittenXml(format).find(R"(formatType="d_M_Y")"), std::string::npos);
}

TEST(DMDateFormatXmlTest, RoundTripsEveryFieldAndTheTimeFormat) {
  dmtest::ExpectXmlRoundTrip(Sample(), ExpectSameDateFormat);
}

TEST(DMDateFormatXmlTest, RoundTripsWithoutATimeFormat) {
  DMDateFormat format = Sample();
  format.SetTimeFormat(nullptr);
  dmtest::ExpectXmlRoundTrip(format, ExpectSameDateFormat);
}

class DMDateFormatTypeTest : public ::testing::TestWithParam<unsigned> {};

TEST_P(DMDateFormatTypeTest, EveryTypeRoundTrips) {
  const DMDateFormat format(static_cast<DMDateFormat::FormatType>(GetParam()), 10, 0,
                            UnitsSeparator::Dash, false, false);
  dmtest::ExpectXmlRoundTrip(format, ExpectSameDateFormat);
}

INSTANTIATE_TEST_SUITE_P(AllTypes, DMDateFormatTypeTest, ::testing::Range(0u, 10u));

// ---------------------------------------------------------------------------
// Reading

constexpr char kTag[] = "DateFormat";

const std::vector<dmtest::Attribute>& ValidAttributes() {
  static const std::vector<dmtest::Attribute> kAttributes = {
      {"name", "d"},
      {"width", "10"},
      {"alignment", "left"},
      {"formatType", "m_D_Y"},
      {"decimalPlaces", "0"},
      {"separator", "period"},
      {"twoDigitYear", "true"},
      {"namesLocal", "false"},
  };
  return kAttributes;
}

constexpr char kValidTime[] =
    R"(<TimeFormat name="t" width="5" formatType="h_M" decimalPlaces="0" separator="colon" )"
    R"(paddedHMS="true"/>)";

DMDateFormat Read(const dmtest::Change& change, const std::string& content = "") {
  return dmtest::ReadXml<DMDateFormat>(
      dmtest::ElementText(kTag, ValidAttributes(), change, content));
}

const dmtest::Change kUnchanged{"unchanged", "none", nullptr};

TEST(DMDateFormatXmlTest, ReadsAValidElementWithoutTimeFormat) {
  const DMDateFormat format = Read(kUnchanged);
  EXPECT_EQ(format.GetName(), "d");
  EXPECT_EQ(format.GetWidth(), 10);
  EXPECT_EQ(format.GetAlignment(), DMFormat::Left);
  EXPECT_EQ(format.GetFormatType(), DMDateFormat::M_D_Y);
  EXPECT_EQ(format.GetDecimals(), 0u);
  EXPECT_EQ(SeparatorOf(format), UnitsSeparator::Period);
  EXPECT_TRUE(format.GetTwoDigitYear());
  EXPECT_FALSE(format.GetNamesLocal());
  EXPECT_EQ(format.GetTimeFormat(), nullptr);
}

TEST(DMDateFormatXmlTest, ReadsItsTimeFormatChild) {
  const DMDateFormat format = Read(kUnchanged, kValidTime);
  EXPECT_EQ(format.GetWidth(), 10);
  ASSERT_NE(format.GetTimeFormat(), nullptr);
  EXPECT_EQ(format.GetTimeFormat()->GetName(), "t");
  EXPECT_EQ(format.GetTimeFormat()->GetWidth(), 5);
  EXPECT_EQ(format.GetTimeFormat()->GetFormatType(), DMTimeFormat::H_M);
  EXPECT_EQ(SeparatorOf(*format.GetTimeFormat()), UnitsSeparator::Colon);
}

TEST(DMDateFormatXmlTest, ReadsOnlyTheFirstTimeFormatChild) {
  const std::string second =
      R"(<TimeFormat name="second" width="7" formatType="m_S" decimalPlaces="0" )"
      R"(separator="colon" paddedHMS="true"/>)";
  const DMDateFormat format = Read(kUnchanged, std::string("<Other/>") + kValidTime + second);
  ASSERT_NE(format.GetTimeFormat(), nullptr);
  EXPECT_EQ(format.GetTimeFormat()->GetName(), "t");
}

TEST(DMDateFormatXmlTest, IgnoresATimeFormatDeeperDown) {
  const DMDateFormat format = Read(kUnchanged, std::string("<Other>") + kValidTime + "</Other>");
  EXPECT_EQ(format.GetWidth(), 10);
  EXPECT_EQ(format.GetTimeFormat(), nullptr);
}

TEST(DMDateFormatXmlTest, LocalSeparatorIsReadAsColonAndWrittenAsColon) {
  const DMDateFormat format = Read({"local separator", "separator", "local"});
  EXPECT_EQ(SeparatorOf(format), UnitsSeparator::Colon);
  EXPECT_NE(dmtest::WrittenXml(format).find(R"(separator="colon")"), std::string::npos);
}

TEST(DMDateFormatXmlTest, NegativeWidthIsReadAsMinusOneAndWrittenBackSo) {
  const DMDateFormat format = Read({"width -7", "width", "-7"});
  EXPECT_EQ(format.GetWidth(), -1);
  EXPECT_NE(dmtest::WrittenXml(format).find(R"(width="-1")"), std::string::npos);
}

TEST(DMDateFormatXmlTest, UnknownAlignmentIsAcceptedAsAuto) {
  const DMDateFormat format = Read({"alignment", "alignment", "both"});
  EXPECT_EQ(format.GetWidth(), 10);
  EXPECT_EQ(format.GetAlignment(), DMFormat::Auto);
}

// {change to the date element, content inside it}
struct BadDate {
  dmtest::Change change;
  std::string content;
};

std::ostream& operator<<(std::ostream& out, const BadDate& row) { return out << row.change.what; }

class DMDateFormatBadXmlTest : public ::testing::TestWithParam<BadDate> {};

TEST_P(DMDateFormatBadXmlTest, GivesTheDefaultInvalidFormat) {
  SCOPED_TRACE(dmtest::ElementText(kTag, ValidAttributes(), GetParam().change, GetParam().content));
  ExpectDefaultDateFormat(Read(GetParam().change, GetParam().content));
}

std::vector<BadDate> BadDates() {
  return {
      {{"absent width", "width", nullptr}, kValidTime},
      {{"width 0", "width", "0"}, ""},
      {{"empty width", "width", ""}, ""},
      {{"width not a number", "width", "ten"}, ""},
      {{"absent name", "name", nullptr}, kValidTime},
      {{"absent type", "formatType", nullptr}, ""},
      {{"empty type", "formatType", ""}, ""},
      {{"type of the time format", "formatType", "h_M"}, ""},
      {{"type in the wrong case", "formatType", "M_D_Y"}, ""},
      {{"absent decimals", "decimalPlaces", nullptr}, ""},
      {{"negative decimals", "decimalPlaces", "-3"}, ""},
      {{"absent separator", "separator", nullptr}, ""},
      {{"empty separator", "separator", ""}, ""},
      {{"unknown separator", "separator", "tab"}, ""},
      {{"absent two-digit year", "twoDigitYear", nullptr}, ""},
      {{"two-digit year not a flag", "twoDigitYear", "2"}, ""},
      {{"absent local names", "namesLocal", nullptr}, ""},
      {{"local names not a flag", "namesLocal", "False"}, ""},
      {{"time child without width", "none", nullptr},
       R"(<TimeFormat name="t" formatType="h_M" decimalPlaces="0" separator="colon" )"
       R"(paddedHMS="true"/>)"},
      {{"time child with width 0", "none", nullptr},
       R"(<TimeFormat name="t" width="0" formatType="h_M" decimalPlaces="0" separator="colon" )"
       R"(paddedHMS="true"/>)"},
      {{"time child with unknown type", "none", nullptr},
       R"(<TimeFormat name="t" width="5" formatType="d_M_Y" decimalPlaces="0" )"
       R"(separator="colon" paddedHMS="true"/>)"},
      // Only the first time child counts, even when a later one is valid.
      {{"first time child invalid", "none", nullptr},
       std::string(R"(<TimeFormat name="t"/>)") + kValidTime},
  };
}

INSTANTIATE_TEST_SUITE_P(Table, DMDateFormatBadXmlTest, ::testing::ValuesIn(BadDates()));

}  // namespace
