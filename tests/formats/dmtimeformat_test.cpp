#include "dmcommon/formats/dmtimeformat.h"

#include <memory>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "dmcommon/formats/dmformat.h"
#include "dmcommon/values/dmdatum.h"
#include "dmcommon/xml/dmxmlwrapper.h"
#include "tests/formats/formattest.h"
#include "tests/support/xmltest.h"

namespace {

using DmExtension::DMXMLWrapper;
using UnitsSeparator = DMFormat::UnitsSeparator;

UnitsSeparator SeparatorOf(const DMTimeFormat& format) {
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
  EXPECT_EQ(actual.GetFormatClass(), DMFormat::Time);
}

// The default state, including what only the written element shows: the
// padding flag stored as true.
void ExpectDefaultTimeFormat(const DMTimeFormat& format) {
  EXPECT_EQ(format.GetWidth(), 0);
  ExpectSameTimeFormat(DMTimeFormat(), format);
  EXPECT_EQ(format.GetAlignment(), DMFormat::Auto);
  EXPECT_EQ(format.GetName(), "");
  EXPECT_EQ(format.GetFormatType(), DMTimeFormat::H_M_S);
  EXPECT_EQ(format.GetDecimals(), 0u);
  EXPECT_EQ(SeparatorOf(format), UnitsSeparator::None);
  EXPECT_FALSE(format.GetPaddedHMS());
  EXPECT_EQ(dmtest::WrittenXml(format), dmtest::WrittenXml(DMTimeFormat()));
}

// A time format with a value other than the default in every field.
DMTimeFormat Sample() {
  DMTimeFormat format(DMTimeFormat::D_H_M_S, 11, 2, UnitsSeparator::Period, false);
  format.SetName("elapsed");
  format.SetAlignment(DMFormat::Left);
  return format;
}

// ---------------------------------------------------------------------------
// Construction and state

TEST(DMTimeFormatTest, DefaultFormatIsInvalid) { ExpectDefaultTimeFormat(DMTimeFormat()); }

TEST(DMTimeFormatTest, ArgumentConstructorSetsEverySetting) {
  const DMTimeFormat format(DMTimeFormat::M_S, 6, 1, UnitsSeparator::Colon, true);
  EXPECT_EQ(format.GetFormatType(), DMTimeFormat::M_S);
  EXPECT_EQ(format.GetWidth(), 6);
  EXPECT_EQ(format.GetDecimals(), 1u);
  EXPECT_EQ(SeparatorOf(format), UnitsSeparator::Colon);
  EXPECT_TRUE(format.GetPaddedHMS());
  EXPECT_EQ(format.GetAlignment(), DMFormat::Auto);
  EXPECT_EQ(format.GetName(), "");
}

TEST(DMTimeFormatTest, PaddingReadsFalseWhileTheWidthIsZeroAlthoughTrueIsStored) {
  const DMTimeFormat format;
  EXPECT_FALSE(format.GetPaddedHMS());
  EXPECT_NE(dmtest::WrittenXml(format).find(R"(paddedHMS="true")"), std::string::npos);
}

TEST(DMTimeFormatTest, GuardedGettersAnswerDefaultsWhileTheWidthIsZero) {
  const DMTimeFormat format(DMTimeFormat::H_M, 0, 3, UnitsSeparator::Dash, true);
  EXPECT_EQ(format.GetFormatType(), DMTimeFormat::H_M_S);
  EXPECT_EQ(format.GetDecimals(), 0u);
  EXPECT_EQ(SeparatorOf(format), UnitsSeparator::None);
  EXPECT_FALSE(format.GetPaddedHMS());
}

TEST(DMTimeFormatTest, SettersDoNothingWhileTheWidthIsZero) {
  DMTimeFormat format;
  format.SetName("t");
  format.SetAlignment(DMFormat::Right);
  format.SetSeparator(UnitsSeparator::Colon);
  format.SetWidthDecimals(8, 2);
  ExpectDefaultTimeFormat(format);
}

TEST(DMTimeFormatTest, SettersChangeAValidFormat) {
  DMTimeFormat format = Sample();
  format.SetSeparator(UnitsSeparator::Slash);
  format.SetWidthDecimals(-1, 3);
  EXPECT_EQ(SeparatorOf(format), UnitsSeparator::Slash);
  EXPECT_EQ(format.GetWidth(), -1);
  EXPECT_EQ(format.GetDecimals(), 3u);
  EXPECT_EQ(format.GetName(), "elapsed");
  EXPECT_EQ(format.GetAlignment(), DMFormat::Left);
}

TEST(DMTimeFormatTest, SetWidthDecimalsRefusesWidthZero) {
  DMTimeFormat format = Sample();
  format.SetWidthDecimals(0, 5);
  EXPECT_EQ(format.GetWidth(), 11);
  EXPECT_EQ(format.GetDecimals(), 2u);
}

TEST(DMTimeFormatTest, ResetMakesWhatTheArgumentConstructorMakes) {
  DMTimeFormat format = Sample();
  format.Reset(DMTimeFormat::H_M, 5, 0, UnitsSeparator::Colon, true);
  ExpectSameTimeFormat(DMTimeFormat(DMTimeFormat::H_M, 5, 0, UnitsSeparator::Colon, true), format);
}

TEST(DMTimeFormatTest, ResetWithWidthZeroLeavesTheFormatUntouched) {
  DMTimeFormat format = Sample();
  format.Reset(DMTimeFormat::H_M, 0, 0, UnitsSeparator::Colon, true);
  ExpectSameTimeFormat(Sample(), format);
}

TEST(DMTimeFormatTest, CopiesAssignmentAndCloneKeepEveryField) {
  const DMTimeFormat original = Sample();
  ExpectSameTimeFormat(original, DMTimeFormat(original));
  DMTimeFormat assigned;
  assigned = original;
  ExpectSameTimeFormat(original, assigned);
  const std::unique_ptr<DMTimeFormat> clone(original.Clone());
  ExpectSameTimeFormat(original, *clone);
}

TEST(DMTimeFormatTest, InvalidFormatRefusesToRender) {
  std::string out = "stale";
  EXPECT_EQ(DMTimeFormat().Format(DMDatum(90061.0), DMFormat::UnitsSeconds, out), DM_FORMAT_FAILED);
  EXPECT_EQ(out, "");
}

// ---------------------------------------------------------------------------
// Writing

// The serializer puts attributes in alphabetical order; the format adds them
// as name, width, alignment, separator, decimal places, format type, padding.
TEST(DMTimeFormatXmlTest, WritesEveryAttribute) {
  EXPECT_EQ(dmtest::WrittenXml(Sample()),
            R"(<TimeFormat alignment="left" decimalPlaces="2" formatType="d_H_M_S" )"
            R"(name="elapsed" paddedHMS="false" separator="period" width="11"/>)");
}

TEST(DMTimeFormatXmlTest, InvalidFormatIsWrittenWithWidthMinusOne) {
  EXPECT_EQ(dmtest::WrittenXml(DMTimeFormat()),
            R"(<TimeFormat alignment="auto" decimalPlaces="0" formatType="h_M_S" name="" )"
            R"(paddedHMS="true" separator="none" width="-1"/>)");
}

TEST(DMTimeFormatXmlTest, WrittenInvalidFormatReadsBackWithVariableWidth) {
  DMXMLWrapper document;
  document.createNew("Root");
  DMXMLWrapper* created = nullptr;
  DMTimeFormat().AddToTree(document, created);
  ASSERT_NE(created, nullptr);
  const DMTimeFormat readBack(*created);
  EXPECT_EQ(readBack.GetWidth(), -1);
  EXPECT_TRUE(readBack.GetPaddedHMS());
}

TEST(DMTimeFormatXmlTest, UnknownTypeIsWrittenAsHoursMinutesSeconds) {
  const DMTimeFormat format(static_cast<DMTimeFormat::FormatType>(4), 8, 0, UnitsSeparator::Colon,
                            true);
  EXPECT_NE(dmtest::WrittenXml(format).find(R"(formatType="h_M_S")"), std::string::npos);
}

TEST(DMTimeFormatXmlTest, RoundTripsEveryField) {
  dmtest::ExpectXmlRoundTrip(Sample(), ExpectSameTimeFormat);
}

class DMTimeFormatTypeTest : public ::testing::TestWithParam<unsigned> {};

TEST_P(DMTimeFormatTypeTest, EveryTypeRoundTrips) {
  const DMTimeFormat format(static_cast<DMTimeFormat::FormatType>(GetParam()), 10, 1,
                            UnitsSeparator::Colon, true);
  dmtest::ExpectXmlRoundTrip(format, ExpectSameTimeFormat);
}

INSTANTIATE_TEST_SUITE_P(AllTypes, DMTimeFormatTypeTest, ::testing::Range(0u, 4u));

// ---------------------------------------------------------------------------
// Reading

constexpr char kTag[] = "TimeFormat";

const std::vector<dmtest::Attribute>& ValidAttributes() {
  static const std::vector<dmtest::Attribute> kAttributes = {
      {"name", "t"},          {"width", "8"},        {"alignment", "center"}, {"formatType", "m_S"},
      {"decimalPlaces", "1"}, {"separator", "dash"}, {"paddedHMS", "false"},
  };
  return kAttributes;
}

DMTimeFormat Read(const dmtest::Change& change) {
  return dmtest::ReadXml<DMTimeFormat>(dmtest::ElementText(kTag, ValidAttributes(), change));
}

TEST(DMTimeFormatXmlTest, ReadsAValidElement) {
  const DMTimeFormat format = Read({"unchanged", "none", nullptr});
  EXPECT_EQ(format.GetName(), "t");
  EXPECT_EQ(format.GetWidth(), 8);
  EXPECT_EQ(format.GetAlignment(), DMFormat::Center);
  EXPECT_EQ(format.GetFormatType(), DMTimeFormat::M_S);
  EXPECT_EQ(format.GetDecimals(), 1u);
  EXPECT_EQ(SeparatorOf(format), UnitsSeparator::Dash);
  EXPECT_FALSE(format.GetPaddedHMS());
}

TEST(DMTimeFormatXmlTest, LocalSeparatorIsReadAsColonAndWrittenAsColon) {
  const DMTimeFormat format = Read({"local separator", "separator", "local"});
  EXPECT_EQ(SeparatorOf(format), UnitsSeparator::Colon);
  EXPECT_NE(dmtest::WrittenXml(format).find(R"(separator="colon")"), std::string::npos);
}

TEST(DMTimeFormatXmlTest, NegativeWidthIsReadAsMinusOneAndWrittenBackSo) {
  const DMTimeFormat format = Read({"width -7", "width", "-7"});
  EXPECT_EQ(format.GetWidth(), -1);
  EXPECT_NE(dmtest::WrittenXml(format).find(R"(width="-1")"), std::string::npos);
}

TEST(DMTimeFormatXmlTest, UnknownAlignmentIsAcceptedAsAuto) {
  const DMTimeFormat format = Read({"alignment", "alignment", "centre"});
  EXPECT_EQ(format.GetWidth(), 8);
  EXPECT_EQ(format.GetAlignment(), DMFormat::Auto);
}

class DMTimeFormatBadXmlTest : public ::testing::TestWithParam<dmtest::Change> {};

TEST_P(DMTimeFormatBadXmlTest, GivesTheDefaultInvalidFormat) {
  SCOPED_TRACE(dmtest::ElementText(kTag, ValidAttributes(), GetParam()));
  ExpectDefaultTimeFormat(Read(GetParam()));
}

INSTANTIATE_TEST_SUITE_P(
    Table, DMTimeFormatBadXmlTest,
    ::testing::Values(dmtest::Change{"absent width", "width", nullptr},
                      dmtest::Change{"width 0", "width", "0"},
                      dmtest::Change{"empty width", "width", ""},
                      dmtest::Change{"width not a number", "width", "8s"},
                      dmtest::Change{"absent name", "name", nullptr},
                      dmtest::Change{"absent type", "formatType", nullptr},
                      dmtest::Change{"empty type", "formatType", ""},
                      dmtest::Change{"type of the date format", "formatType", "y_M_D"},
                      dmtest::Change{"type in the wrong case", "formatType", "M_S"},
                      dmtest::Change{"absent decimals", "decimalPlaces", nullptr},
                      dmtest::Change{"negative decimals", "decimalPlaces", "-1"},
                      dmtest::Change{"empty decimals", "decimalPlaces", ""},
                      dmtest::Change{"absent separator", "separator", nullptr},
                      dmtest::Change{"empty separator", "separator", ""},
                      dmtest::Change{"unknown separator", "separator", ":"},
                      dmtest::Change{"absent padding", "paddedHMS", nullptr},
                      dmtest::Change{"empty padding", "paddedHMS", ""},
                      dmtest::Change{"padding not a flag", "paddedHMS", "yes"}));

}  // namespace
