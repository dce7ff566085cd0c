#include "dmcommon/formats/dmstringformat.h"

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

void ExpectSameStringFormat(const DMStringFormat& expected, const DMStringFormat& actual) {
  EXPECT_EQ(actual.GetWidth(), expected.GetWidth());
  EXPECT_EQ(actual.GetHexRep(), expected.GetHexRep());
  EXPECT_EQ(actual.GetAlignment(), expected.GetAlignment());
  EXPECT_EQ(actual.GetName(), expected.GetName());
  EXPECT_EQ(actual.GetFormatClass(), DMFormat::String);
}

void ExpectDefaultStringFormat(const DMStringFormat& format) {
  EXPECT_EQ(format.GetWidth(), 0);
  ExpectSameStringFormat(DMStringFormat(), format);
  EXPECT_FALSE(format.GetHexRep());
  EXPECT_EQ(format.GetAlignment(), DMFormat::Auto);
  EXPECT_EQ(format.GetName(), "");
  EXPECT_EQ(dmtest::WrittenXml(format), "");
}

// A string format with a value other than the default in every field.
DMStringFormat Sample() {
  DMStringFormat format(32, true);
  format.SetName("code");
  format.SetAlignment(DMFormat::Right);
  return format;
}

// ---------------------------------------------------------------------------
// Construction and state

TEST(DMStringFormatTest, DefaultFormatIsInvalid) { ExpectDefaultStringFormat(DMStringFormat()); }

TEST(DMStringFormatTest, ArgumentConstructorSetsWidthAndFlag) {
  const DMStringFormat format(-1, true);
  EXPECT_EQ(format.GetWidth(), -1);
  EXPECT_TRUE(format.GetHexRep());
  EXPECT_EQ(format.GetAlignment(), DMFormat::Auto);
  EXPECT_EQ(format.GetName(), "");
  EXPECT_EQ(format.GetFormatClass(), DMFormat::String);
}

TEST(DMStringFormatTest, HexadecimalFlagIsAnsweredAsStoredEvenWhileInvalid) {
  EXPECT_TRUE(DMStringFormat(0, true).GetHexRep());
}

TEST(DMStringFormatTest, SettersDoNothingWhileTheWidthIsZero) {
  DMStringFormat format;
  format.SetName("s");
  format.SetAlignment(DMFormat::Left);
  ExpectDefaultStringFormat(format);
}

TEST(DMStringFormatTest, ResetMakesWhatTheArgumentConstructorMakes) {
  DMStringFormat format = Sample();
  format.Reset(7, false);
  ExpectSameStringFormat(DMStringFormat(7, false), format);
}

TEST(DMStringFormatTest, ResetWithWidthZeroLeavesTheFormatUntouched) {
  DMStringFormat format = Sample();
  format.Reset(0, false);
  ExpectSameStringFormat(Sample(), format);
}

TEST(DMStringFormatTest, CopiesAssignmentAndCloneKeepEveryField) {
  const DMStringFormat original = Sample();
  ExpectSameStringFormat(original, DMStringFormat(original));
  DMStringFormat assigned;
  assigned = original;
  ExpectSameStringFormat(original, assigned);
  const std::unique_ptr<DMStringFormat> clone(original.Clone());
  ExpectSameStringFormat(original, *clone);
}

TEST(DMStringFormatTest, FormatShowsTextOnlyInVariableWidth) {
  std::string out = "stale";
  EXPECT_EQ(DMStringFormat(-1, false).Format(DMDatum("text"), DMFormat::UnitsNone, out),
            DM_FORMAT_OK);
  EXPECT_EQ(out, "text");
  EXPECT_NE(Sample().Format(DMDatum("text"), DMFormat::UnitsNone, out), DM_FORMAT_OK);
  EXPECT_EQ(out, "");
}

// ---------------------------------------------------------------------------
// Writing

// The serializer puts attributes in alphabetical order; the format adds them
// as name, width, alignment, hexadecimal.
TEST(DMStringFormatXmlTest, WritesEveryAttribute) {
  EXPECT_EQ(dmtest::WrittenXml(Sample()),
            R"(<StringFormat alignment="right" hexadecimal="true" name="code" width="32"/>)");
}

TEST(DMStringFormatXmlTest, WritesTheFlagAlsoWhenFalse) {
  EXPECT_EQ(dmtest::WrittenXml(DMStringFormat(-1, false)),
            R"(<StringFormat alignment="auto" hexadecimal="false" name="" width="-1"/>)");
}

TEST(DMStringFormatXmlTest, InvalidFormatWritesNothing) {
  EXPECT_EQ(dmtest::WrittenXml(DMStringFormat()), "");
  EXPECT_EQ(dmtest::WrittenXml(DMStringFormat(0, true)), "");
}

TEST(DMStringFormatXmlTest, RoundTripsEveryField) {
  dmtest::ExpectXmlRoundTrip(Sample(), ExpectSameStringFormat);
}

// ---------------------------------------------------------------------------
// Reading

constexpr char kTag[] = "StringFormat";

const std::vector<dmtest::Attribute>& ValidAttributes() {
  static const std::vector<dmtest::Attribute> kAttributes = {
      {"name", "s"}, {"width", "16"}, {"alignment", "left"}, {"hexadecimal", "true"}};
  return kAttributes;
}

DMStringFormat Read(const dmtest::Change& change) {
  return dmtest::ReadXml<DMStringFormat>(dmtest::ElementText(kTag, ValidAttributes(), change));
}

TEST(DMStringFormatXmlTest, ReadsAValidElement) {
  const DMStringFormat format = Read({"unchanged", "none", nullptr});
  EXPECT_EQ(format.GetName(), "s");
  EXPECT_EQ(format.GetWidth(), 16);
  EXPECT_EQ(format.GetAlignment(), DMFormat::Left);
  EXPECT_TRUE(format.GetHexRep());
}

TEST(DMStringFormatXmlTest, AbsentHexadecimalFlagIsFalse) {
  const DMStringFormat format = Read({"no flag", "hexadecimal", nullptr});
  EXPECT_EQ(format.GetWidth(), 16);
  EXPECT_FALSE(format.GetHexRep());
}

TEST(DMStringFormatXmlTest, NegativeWidthIsReadAsMinusOne) {
  EXPECT_EQ(Read({"width -7", "width", "-7"}).GetWidth(), -1);
}

TEST(DMStringFormatXmlTest, UnknownAlignmentIsAcceptedAsAuto) {
  const DMStringFormat format = Read({"alignment", "alignment", "top"});
  EXPECT_EQ(format.GetWidth(), 16);
  EXPECT_EQ(format.GetAlignment(), DMFormat::Auto);
}

class DMStringFormatBadXmlTest : public ::testing::TestWithParam<dmtest::Change> {};

TEST_P(DMStringFormatBadXmlTest, GivesTheDefaultInvalidFormat) {
  SCOPED_TRACE(dmtest::ElementText(kTag, ValidAttributes(), GetParam()));
  ExpectDefaultStringFormat(Read(GetParam()));
}

INSTANTIATE_TEST_SUITE_P(Table, DMStringFormatBadXmlTest,
                         ::testing::Values(dmtest::Change{"absent width", "width", nullptr},
                                           dmtest::Change{"width 0", "width", "0"},
                                           dmtest::Change{"empty width", "width", ""},
                                           dmtest::Change{"width not a number", "width", "x"},
                                           dmtest::Change{"absent name", "name", nullptr},
                                           dmtest::Change{"empty flag", "hexadecimal", ""},
                                           dmtest::Change{"flag in capitals", "hexadecimal",
                                                          "TRUE"},
                                           dmtest::Change{"flag not a flag", "hexadecimal", "1"}));

}  // namespace
