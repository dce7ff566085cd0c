#include "dmcommon/formats/dmnumberformat.h"

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
using DecimalSymbol = DMFormat::DecimalSymbol;
using GroupingSymbol = DMFormat::GroupingSymbol;

void ExpectSameNumberFormat(const DMNumberFormat& expected, const DMNumberFormat& actual) {
  EXPECT_EQ(actual.GetWidth(), expected.GetWidth());
  EXPECT_EQ(actual.GetAlignment(), expected.GetAlignment());
  EXPECT_EQ(actual.GetName(), expected.GetName());
  EXPECT_EQ(actual.GetFormatType(), expected.GetFormatType());
  EXPECT_EQ(actual.GetDecimals(), expected.GetDecimals());
  DecimalSymbol expectedDecimal = DecimalSymbol::Period;
  GroupingSymbol expectedGrouping = GroupingSymbol::None;
  expected.GetSeparators(expectedDecimal, expectedGrouping);
  DecimalSymbol actualDecimal = DecimalSymbol::Local;
  GroupingSymbol actualGrouping = GroupingSymbol::Local;
  actual.GetSeparators(actualDecimal, actualGrouping);
  EXPECT_EQ(actualDecimal, expectedDecimal);
  EXPECT_EQ(actualGrouping, expectedGrouping);
  EXPECT_EQ(actual.GetFormatClass(), DMFormat::Number);
}

void ExpectDefaultNumberFormat(const DMNumberFormat& format) {
  EXPECT_EQ(format.GetWidth(), 0);
  ExpectSameNumberFormat(DMNumberFormat(), format);
  EXPECT_EQ(format.GetAlignment(), DMFormat::Auto);
  EXPECT_EQ(format.GetName(), "");
  EXPECT_EQ(format.GetFormatType(), DMNumberFormat::Standard);
  EXPECT_EQ(format.GetDecimals(), 0u);
  EXPECT_EQ(dmtest::WrittenXml(format), "");
}

// A number format with a value other than the default in every field.
DMNumberFormat Sample() {
  DMNumberFormat format(DMNumberFormat::Scientific, 12, 3);
  format.SetName("price");
  format.SetAlignment(DMFormat::Right);
  format.SetSeparators(DecimalSymbol::Comma, GroupingSymbol::Space);
  return format;
}

// ---------------------------------------------------------------------------
// Construction and state

TEST(DMNumberFormatTest, DefaultFormatIsInvalidWithEveryDefault) {
  const DMNumberFormat format;
  ExpectDefaultNumberFormat(format);
  DecimalSymbol decimal = DecimalSymbol::Local;
  GroupingSymbol grouping = GroupingSymbol::Local;
  format.GetSeparators(decimal, grouping);
  EXPECT_EQ(decimal, DecimalSymbol::Period);
  EXPECT_EQ(grouping, GroupingSymbol::None);
}

TEST(DMNumberFormatTest, ArgumentConstructorSetsTypeWidthDecimalsAndDefaultsTheRest) {
  const DMNumberFormat format(DMNumberFormat::Packed, 9, 4);
  EXPECT_EQ(format.GetFormatType(), DMNumberFormat::Packed);
  EXPECT_EQ(format.GetWidth(), 9);
  EXPECT_EQ(format.GetDecimals(), 4u);
  EXPECT_EQ(format.GetAlignment(), DMFormat::Auto);
  EXPECT_EQ(format.GetName(), "");
  DecimalSymbol decimal = DecimalSymbol::Local;
  GroupingSymbol grouping = GroupingSymbol::Local;
  format.GetSeparators(decimal, grouping);
  EXPECT_EQ(decimal, DecimalSymbol::Period);
  EXPECT_EQ(grouping, GroupingSymbol::None);
  EXPECT_EQ(format.GetFormatClass(), DMFormat::Number);
}

TEST(DMNumberFormatTest, GuardedGettersAnswerDefaultsWhileTheWidthIsZero) {
  const DMNumberFormat format(DMNumberFormat::Scientific, 0, 4);
  EXPECT_EQ(format.GetWidth(), 0);
  EXPECT_EQ(format.GetFormatType(), DMNumberFormat::Standard);
  EXPECT_EQ(format.GetDecimals(), 0u);
}

TEST(DMNumberFormatTest, SettersDoNothingWhileTheWidthIsZero) {
  DMNumberFormat format;
  format.SetName("n");
  format.SetAlignment(DMFormat::Left);
  format.SetSeparators(DecimalSymbol::Comma, GroupingSymbol::Comma);
  format.SetWidthDecimals(8, 2);
  ExpectDefaultNumberFormat(format);
}

TEST(DMNumberFormatTest, SettersChangeAValidFormat) {
  const DMNumberFormat format = Sample();
  EXPECT_EQ(format.GetName(), "price");
  EXPECT_EQ(format.GetAlignment(), DMFormat::Right);
  DecimalSymbol decimal = DecimalSymbol::Period;
  GroupingSymbol grouping = GroupingSymbol::None;
  format.GetSeparators(decimal, grouping);
  EXPECT_EQ(decimal, DecimalSymbol::Comma);
  EXPECT_EQ(grouping, GroupingSymbol::Space);
}

TEST(DMNumberFormatTest, SetWidthDecimalsChangesBothOnAValidFormat) {
  DMNumberFormat format(DMNumberFormat::Standard, 8, 2);
  format.SetWidthDecimals(-1, 5);
  EXPECT_EQ(format.GetWidth(), -1);
  EXPECT_EQ(format.GetDecimals(), 5u);
}

TEST(DMNumberFormatTest, SetWidthDecimalsRefusesWidthZero) {
  DMNumberFormat format(DMNumberFormat::Standard, 8, 2);
  format.SetWidthDecimals(0, 5);
  EXPECT_EQ(format.GetWidth(), 8);
  EXPECT_EQ(format.GetDecimals(), 2u);
}

TEST(DMNumberFormatTest, ResetMakesWhatTheArgumentConstructorMakes) {
  DMNumberFormat format = Sample();
  format.Reset(DMNumberFormat::General, 7, 1);
  ExpectSameNumberFormat(DMNumberFormat(DMNumberFormat::General, 7, 1), format);
  EXPECT_EQ(format.GetName(), "");
  EXPECT_EQ(format.GetAlignment(), DMFormat::Auto);
}

TEST(DMNumberFormatTest, ResetWithWidthZeroLeavesTheFormatUntouched) {
  DMNumberFormat format = Sample();
  format.Reset(DMNumberFormat::General, 0, 1);
  ExpectSameNumberFormat(Sample(), format);
}

TEST(DMNumberFormatTest, ResetWithWidthZeroDoesNotMakeAnInvalidFormatValid) {
  DMNumberFormat format;
  format.Reset(DMNumberFormat::General, 0, 1);
  ExpectDefaultNumberFormat(format);
}

TEST(DMNumberFormatTest, CopiesAssignmentAndCloneKeepEveryField) {
  const DMNumberFormat original = Sample();
  const DMNumberFormat copy(original);
  ExpectSameNumberFormat(original, copy);
  DMNumberFormat assigned;
  assigned = original;
  ExpectSameNumberFormat(original, assigned);
  const std::unique_ptr<DMNumberFormat> clone(original.Clone());
  ExpectSameNumberFormat(original, *clone);
  const std::unique_ptr<DMFormat> base(static_cast<const DMFormat&>(original).Clone());
  EXPECT_EQ(base->GetFormatClass(), DMFormat::Number);
  EXPECT_EQ(base->GetName(), "price");
}

TEST(DMNumberFormatTest, FormatRendersTheSampleInScientificFormWithGermanSymbols) {
  const DMNumberFormat format = Sample();
  std::string out = "stale";
  EXPECT_EQ(format.Format(DMDatum(12.5), DMFormat::UnitsNone, out), DM_FORMAT_OK);
  EXPECT_EQ(out, "  1,250E+001");
}

// ---------------------------------------------------------------------------
// Writing

// The serializer puts attributes in alphabetical order; the format adds them
// as name, width, alignment, decimal symbol, grouping symbol, decimal places,
// format type.
TEST(DMNumberFormatXmlTest, WritesEveryAttribute) {
  EXPECT_EQ(dmtest::WrittenXml(Sample()),
            R"(<NumberFormat alignment="right" decimalPlaces="3" decimalSymbol="comma" )"
            R"(formatType="scientific" groupingSymbol="space" name="price" width="12"/>)");
}

TEST(DMNumberFormatXmlTest, WritesAFreshFormatWithItsDefaults) {
  EXPECT_EQ(dmtest::WrittenXml(DMNumberFormat(DMNumberFormat::Standard, 5, 0)),
            R"(<NumberFormat alignment="auto" decimalPlaces="0" decimalSymbol="period" )"
            R"(formatType="standard" groupingSymbol="none" name="" width="5"/>)");
}

TEST(DMNumberFormatXmlTest, InvalidFormatWritesNothing) {
  EXPECT_EQ(dmtest::WrittenXml(DMNumberFormat()), "");
  EXPECT_EQ(dmtest::WrittenXml(DMNumberFormat(DMNumberFormat::Zoned, 0, 2)), "");
}

TEST(DMNumberFormatXmlTest, UnknownTypeIsWrittenAsStandard) {
  const DMNumberFormat format(static_cast<DMNumberFormat::FormatType>(42), 5, 0);
  EXPECT_NE(dmtest::WrittenXml(format).find(R"(formatType="standard")"), std::string::npos);
}

TEST(DMNumberFormatXmlTest, WritingUnderAnEmptyHandleHandsOutNothing) {
  DMXMLWrapper empty;
  DMXMLWrapper* created = &empty;
  Sample().AddToTree(empty, created);
  EXPECT_EQ(created, nullptr);
}

TEST(DMNumberFormatXmlTest, RoundTripsEveryField) {
  dmtest::ExpectXmlRoundTrip(Sample(), ExpectSameNumberFormat);
}

class DMNumberFormatTypeTest : public ::testing::TestWithParam<unsigned> {};

TEST_P(DMNumberFormatTypeTest, EveryTypeRoundTrips) {
  const DMNumberFormat format(static_cast<DMNumberFormat::FormatType>(GetParam()), 10, 2);
  dmtest::ExpectXmlRoundTrip(format, ExpectSameNumberFormat);
}

INSTANTIATE_TEST_SUITE_P(AllTypes, DMNumberFormatTypeTest, ::testing::Range(0u, 12u));

// ---------------------------------------------------------------------------
// Reading

constexpr char kTag[] = "NumberFormat";

const std::vector<dmtest::Attribute>& ValidAttributes() {
  static const std::vector<dmtest::Attribute> kAttributes = {
      {"name", "n"},
      {"width", "8"},
      {"alignment", "left"},
      {"formatType", "restricted"},
      {"decimalPlaces", "2"},
      {"decimalSymbol", "comma"},
      {"groupingSymbol", "period"},
  };
  return kAttributes;
}

TEST(DMNumberFormatXmlTest, ReadsAValidElement) {
  const auto format = dmtest::ReadXml<DMNumberFormat>(
      dmtest::ElementText(kTag, ValidAttributes(), {"unchanged", "none", nullptr}));
  EXPECT_EQ(format.GetName(), "n");
  EXPECT_EQ(format.GetWidth(), 8);
  EXPECT_EQ(format.GetAlignment(), DMFormat::Left);
  EXPECT_EQ(format.GetFormatType(), DMNumberFormat::Restricted);
  EXPECT_EQ(format.GetDecimals(), 2u);
  DecimalSymbol decimal = DecimalSymbol::Period;
  GroupingSymbol grouping = GroupingSymbol::None;
  format.GetSeparators(decimal, grouping);
  EXPECT_EQ(decimal, DecimalSymbol::Comma);
  EXPECT_EQ(grouping, GroupingSymbol::Period);
}

TEST(DMNumberFormatXmlTest, NegativeWidthIsReadAsMinusOneAndWrittenBackSo) {
  const auto format = dmtest::ReadXml<DMNumberFormat>(
      dmtest::ElementText(kTag, ValidAttributes(), {"width -7", "width", "-7"}));
  EXPECT_EQ(format.GetWidth(), -1);
  EXPECT_NE(dmtest::WrittenXml(format).find(R"(width="-1")"), std::string::npos);
}

TEST(DMNumberFormatXmlTest, UnknownAlignmentIsAcceptedAsAuto) {
  for (const char* alignment : {"middle", "", "LEFT"}) {
    const auto format = dmtest::ReadXml<DMNumberFormat>(
        dmtest::ElementText(kTag, ValidAttributes(), {"alignment", "alignment", alignment}));
    EXPECT_EQ(format.GetWidth(), 8) << alignment;
    EXPECT_EQ(format.GetAlignment(), DMFormat::Auto) << alignment;
  }
}

TEST(DMNumberFormatXmlTest, AbsentAlignmentIsAuto) {
  const auto format = dmtest::ReadXml<DMNumberFormat>(
      dmtest::ElementText(kTag, ValidAttributes(), {"no alignment", "alignment", nullptr}));
  EXPECT_EQ(format.GetWidth(), 8);
  EXPECT_EQ(format.GetAlignment(), DMFormat::Auto);
}

TEST(DMNumberFormatXmlTest, EmptyNameIsAName) {
  const auto format = dmtest::ReadXml<DMNumberFormat>(
      dmtest::ElementText(kTag, ValidAttributes(), {"empty name", "name", ""}));
  EXPECT_EQ(format.GetWidth(), 8);
  EXPECT_EQ(format.GetName(), "");
}

TEST(DMNumberFormatXmlTest, ExtraAttributesAndChildrenAreIgnored) {
  const auto format = dmtest::ReadXml<DMNumberFormat>(dmtest::ElementText(
      kTag, ValidAttributes(), {"extra attribute", "colour", "red"}, "<Child/>"));
  EXPECT_EQ(format.GetWidth(), 8);
}

class DMNumberFormatBadXmlTest : public ::testing::TestWithParam<dmtest::Change> {};

TEST_P(DMNumberFormatBadXmlTest, GivesTheDefaultInvalidFormat) {
  const std::string text = dmtest::ElementText(kTag, ValidAttributes(), GetParam());
  SCOPED_TRACE(text);
  ExpectDefaultNumberFormat(dmtest::ReadXml<DMNumberFormat>(text));
}

INSTANTIATE_TEST_SUITE_P(
    Table, DMNumberFormatBadXmlTest,
    ::testing::Values(dmtest::Change{"absent width", "width", nullptr},
                      dmtest::Change{"width 0", "width", "0"},
                      dmtest::Change{"empty width", "width", ""},
                      dmtest::Change{"width not a number", "width", "eight"},
                      dmtest::Change{"width with a unit", "width", "8px"},
                      dmtest::Change{"absent name", "name", nullptr},
                      dmtest::Change{"absent type", "formatType", nullptr},
                      dmtest::Change{"empty type", "formatType", ""},
                      dmtest::Change{"type in the wrong case", "formatType", "Restricted"},
                      dmtest::Change{"type of another class", "formatType", "currency"},
                      dmtest::Change{"absent decimals", "decimalPlaces", nullptr},
                      dmtest::Change{"empty decimals", "decimalPlaces", ""},
                      dmtest::Change{"negative decimals", "decimalPlaces", "-1"},
                      dmtest::Change{"decimals not a number", "decimalPlaces", "two"},
                      dmtest::Change{"fractional decimals", "decimalPlaces", "2.5"},
                      // Required here, although the symbol reader alone takes
                      // an absent symbol as Period.
                      dmtest::Change{"absent decimal symbol", "decimalSymbol", nullptr},
                      dmtest::Change{"empty decimal symbol", "decimalSymbol", ""},
                      dmtest::Change{"unknown decimal symbol", "decimalSymbol", "dot"},
                      dmtest::Change{"absent grouping symbol", "groupingSymbol", nullptr},
                      dmtest::Change{"empty grouping symbol", "groupingSymbol", ""},
                      dmtest::Change{"unknown grouping symbol", "groupingSymbol", "tab"}));

TEST(DMNumberFormatXmlTest, AnEmptyHandleGivesTheDefaultInvalidFormat) {
  const DMXMLWrapper empty;
  ExpectDefaultNumberFormat(DMNumberFormat(empty));
}

}  // namespace
