#include "dmcommon/formats/dmdecoratedformat.h"

#include <memory>
#include <ostream>
#include <string>
#include <vector>

#include <gtest/gtest.h>
#include <unicode/locid.h>
#include <unicode/utypes.h>

#include "dmcommon/formats/dmformat.h"
#include "dmcommon/values/dmdatum.h"
#include "dmcommon/xml/dmxmlwrapper.h"
#include "tests/formats/formattest.h"
#include "tests/support/xmltest.h"

namespace {

using DmExtension::DMXMLWrapper;
using DecimalSymbol = DMFormat::DecimalSymbol;
using GroupingSymbol = DMFormat::GroupingSymbol;

struct AffixPair {
  std::string prefix;
  std::string suffix;
};

AffixPair Affixes(const DMDecoratedFormat& format) {
  AffixPair pair{"stale", "stale"};
  format.GetAffixes(pair.prefix, pair.suffix);
  return pair;
}

AffixPair NegAffixes(const DMDecoratedFormat& format) {
  AffixPair pair{"stale", "stale"};
  format.GetNegAffixes(pair.prefix, pair.suffix);
  return pair;
}

void ExpectSameDecoratedFormat(const DMDecoratedFormat& expected, const DMDecoratedFormat& actual) {
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
  EXPECT_EQ(Affixes(actual).prefix, Affixes(expected).prefix);
  EXPECT_EQ(Affixes(actual).suffix, Affixes(expected).suffix);
  EXPECT_EQ(NegAffixes(actual).prefix, NegAffixes(expected).prefix);
  EXPECT_EQ(NegAffixes(actual).suffix, NegAffixes(expected).suffix);
  EXPECT_EQ(actual.GetCustomCurrencyID(), expected.GetCustomCurrencyID());
  EXPECT_EQ(actual.GetFormatClass(), DMFormat::Decorated);
}

void ExpectDefaultDecoratedFormat(const DMDecoratedFormat& format) {
  EXPECT_EQ(format.GetWidth(), 0);
  ExpectSameDecoratedFormat(DMDecoratedFormat(), format);
  EXPECT_EQ(format.GetAlignment(), DMFormat::Auto);
  EXPECT_EQ(format.GetName(), "");
  EXPECT_EQ(format.GetFormatType(), DMDecoratedFormat::Currency);
  EXPECT_EQ(format.GetDecimals(), 0u);
  EXPECT_EQ(Affixes(format).prefix, "");
  EXPECT_EQ(Affixes(format).suffix, "");
  EXPECT_EQ(NegAffixes(format).prefix, "");
  EXPECT_EQ(NegAffixes(format).suffix, "");
  EXPECT_EQ(format.GetCustomCurrencyID(), 0u);
  EXPECT_EQ(dmtest::WrittenXml(format), "");
}

// A decorated format with a value other than the default in every field.
DMDecoratedFormat Sample() {
  DMDecoratedFormat format(DMDecoratedFormat::Percentage, 14, 2);
  format.SetName("share");
  format.SetAlignment(DMFormat::Center);
  format.SetSeparators(DecimalSymbol::Local, GroupingSymbol::Period);
  format.SetAffixes("EUR ", " %");
  format.SetNegAffixes("(", ")");
  format.SetCustomCurrencyID(5);
  return format;
}

// ---------------------------------------------------------------------------
// Construction and state

TEST(DMDecoratedFormatTest, DefaultFormatIsInvalidWithEveryAffixEmpty) {
  ExpectDefaultDecoratedFormat(DMDecoratedFormat());
}

TEST(DMDecoratedFormatTest, ArgumentConstructorGivesTheNegativePrefixMinus) {
  const DMDecoratedFormat format(DMDecoratedFormat::Percentage, 9, 1);
  EXPECT_EQ(format.GetFormatType(), DMDecoratedFormat::Percentage);
  EXPECT_EQ(format.GetWidth(), 9);
  EXPECT_EQ(format.GetDecimals(), 1u);
  EXPECT_EQ(format.GetAlignment(), DMFormat::Auto);
  EXPECT_EQ(format.GetName(), "");
  EXPECT_EQ(Affixes(format).prefix, "");
  EXPECT_EQ(Affixes(format).suffix, "");
  EXPECT_EQ(NegAffixes(format).prefix, "-");
  EXPECT_EQ(NegAffixes(format).suffix, "");
  EXPECT_EQ(format.GetCustomCurrencyID(), 0u);
  DecimalSymbol decimal = DecimalSymbol::Local;
  GroupingSymbol grouping = GroupingSymbol::Local;
  format.GetSeparators(decimal, grouping);
  EXPECT_EQ(decimal, DecimalSymbol::Period);
  EXPECT_EQ(grouping, GroupingSymbol::None);
}

TEST(DMDecoratedFormatTest, GuardedGettersAnswerDefaultsWhileTheWidthIsZero) {
  const DMDecoratedFormat format(DMDecoratedFormat::Percentage, 0, 3);
  EXPECT_EQ(format.GetFormatType(), DMDecoratedFormat::Currency);
  EXPECT_EQ(format.GetDecimals(), 0u);
  // The negative prefix "-" is stored, but not shown while invalid.
  EXPECT_EQ(NegAffixes(format).prefix, "");
  EXPECT_EQ(NegAffixes(format).suffix, "");
  EXPECT_EQ(Affixes(format).prefix, "");
  EXPECT_EQ(Affixes(format).suffix, "");
}

TEST(DMDecoratedFormatTest, SettersDoNothingWhileTheWidthIsZero) {
  DMDecoratedFormat format;
  format.SetName("n");
  format.SetAlignment(DMFormat::Left);
  format.SetSeparators(DecimalSymbol::Comma, GroupingSymbol::Comma);
  format.SetWidthDecimals(8, 2);
  format.SetAffixes("$", "");
  format.SetNegAffixes("(", ")");
  format.SetCustomCurrencyID(2);
  ExpectDefaultDecoratedFormat(format);
}

TEST(DMDecoratedFormatTest, SetWidthDecimalsRefusesWidthZeroAndChangesOtherwise) {
  DMDecoratedFormat format(DMDecoratedFormat::Currency, 8, 2);
  format.SetWidthDecimals(0, 5);
  EXPECT_EQ(format.GetWidth(), 8);
  EXPECT_EQ(format.GetDecimals(), 2u);
  format.SetWidthDecimals(11, 0);
  EXPECT_EQ(format.GetWidth(), 11);
  EXPECT_EQ(format.GetDecimals(), 0u);
}

struct AffixCase {
  const char* prefix;
  const char* suffix;
  bool stored;
};

std::ostream& operator<<(std::ostream& out, const AffixCase& c) {
  return out << '"' << c.prefix << "\", \"" << c.suffix << '"';
}

class SetAffixesTest : public ::testing::TestWithParam<AffixCase> {};

// Both affixes are stored only when both or neither begin with '0'.
TEST_P(SetAffixesTest, StoresBothOrNeither) {
  const AffixCase& c = GetParam();
  DMDecoratedFormat format(DMDecoratedFormat::Currency, 10, 2);
  format.SetAffixes("old", "old");
  format.SetAffixes(c.prefix, c.suffix);
  EXPECT_EQ(Affixes(format).prefix, c.stored ? c.prefix : "old");
  EXPECT_EQ(Affixes(format).suffix, c.stored ? c.suffix : "old");
}

INSTANTIATE_TEST_SUITE_P(Table, SetAffixesTest,
                         ::testing::Values(AffixCase{"0", "", false}, AffixCase{"", "0", false},
                                           AffixCase{"0$", "kr", false}, AffixCase{"0.", "0", true},
                                           AffixCase{"$", "", true}, AffixCase{"", "", true},
                                           AffixCase{"", "%", true}, AffixCase{"a0", "", true},
                                           AffixCase{"00", "0x", true}));

TEST(DMDecoratedFormatTest, SetNegAffixesStoresBothAsGiven) {
  DMDecoratedFormat format(DMDecoratedFormat::Currency, 10, 2);
  format.SetNegAffixes("0", "");
  EXPECT_EQ(NegAffixes(format).prefix, "0");
  EXPECT_EQ(NegAffixes(format).suffix, "");
  format.SetNegAffixes("", "-");
  EXPECT_EQ(NegAffixes(format).prefix, "");
  EXPECT_EQ(NegAffixes(format).suffix, "-");
}

TEST(DMDecoratedFormatTest, SetCustomCurrencyIdStoresOnlyIdsBelowSix) {
  DMDecoratedFormat format(DMDecoratedFormat::Currency, 10, 2);
  for (unsigned id = 0; id <= 5; ++id) {
    format.SetCustomCurrencyID(id);
    EXPECT_EQ(format.GetCustomCurrencyID(), id);
  }
  format.SetCustomCurrencyID(6);
  EXPECT_EQ(format.GetCustomCurrencyID(), 5u);
  format.SetCustomCurrencyID(0xFFFFFFFFu);
  EXPECT_EQ(format.GetCustomCurrencyID(), 5u);
}

TEST(DMDecoratedFormatTest, ResetGivesTheNegativePrefixMinusAndClearsTheRest) {
  DMDecoratedFormat format = Sample();
  format.Reset(DMDecoratedFormat::Currency, 6, 0);
  ExpectSameDecoratedFormat(DMDecoratedFormat(DMDecoratedFormat::Currency, 6, 0), format);
  EXPECT_EQ(NegAffixes(format).prefix, "-");
  EXPECT_EQ(format.GetCustomCurrencyID(), 0u);
}

TEST(DMDecoratedFormatTest, ResetWithWidthZeroLeavesTheFormatUntouched) {
  DMDecoratedFormat format = Sample();
  format.Reset(DMDecoratedFormat::Currency, 0, 0);
  ExpectSameDecoratedFormat(Sample(), format);
}

TEST(DMDecoratedFormatTest, CopiesAssignmentAndCloneKeepEveryField) {
  const DMDecoratedFormat original = Sample();
  ExpectSameDecoratedFormat(original, DMDecoratedFormat(original));
  DMDecoratedFormat assigned;
  assigned = original;
  ExpectSameDecoratedFormat(original, assigned);
  const std::unique_ptr<DMDecoratedFormat> clone(original.Clone());
  ExpectSameDecoratedFormat(original, *clone);
}

TEST(DMDecoratedFormatTest, FormatWrapsANegativeSampleInBothPairsOfAffixes) {
  // The sample's decimal symbol is the default locale's.
  const icu::Locale saved = icu::Locale::getDefault();
  UErrorCode status = U_ZERO_ERROR;
  icu::Locale::setDefault(icu::Locale::getGermany(), status);
  ASSERT_TRUE(U_SUCCESS(status));
  std::string out = "stale";
  EXPECT_EQ(Sample().Format(DMDatum(-12.5), DMFormat::UnitsNone, out), DM_FORMAT_OK);
  EXPECT_EQ(out, " (EUR 12,50 %)");
  icu::Locale::setDefault(saved, status);
}

// ---------------------------------------------------------------------------
// Writing

// The serializer puts attributes in alphabetical order; the format adds them
// as name, width, alignment, decimal symbol, grouping symbol, decimal places,
// format type, prefix, suffix, negative prefix, negative suffix, currency.
TEST(DMDecoratedFormatXmlTest, WritesEveryAttribute) {
  EXPECT_EQ(dmtest::WrittenXml(Sample()),
            R"(<DecoratedFormat alignment="center" customCurrType="5" decimalPlaces="2" )"
            R"(decimalSymbol="local" formatType="percentage" groupingSymbol="period" )"
            R"x(name="share" negPrefix="(" negSuffix=")" prefix="EUR " suffix=" %" )x"
            R"(width="14"/>)");
}

TEST(DMDecoratedFormatXmlTest, WritesOnlyTheAffixesThatAreSetAndNoCurrencyIdZero) {
  EXPECT_EQ(dmtest::WrittenXml(DMDecoratedFormat(DMDecoratedFormat::Currency, 8, 2)),
            R"(<DecoratedFormat alignment="auto" decimalPlaces="2" decimalSymbol="period" )"
            R"(formatType="currency" groupingSymbol="none" name="" negPrefix="-" width="8"/>)");
}

TEST(DMDecoratedFormatXmlTest, InvalidFormatWritesNothing) {
  EXPECT_EQ(dmtest::WrittenXml(DMDecoratedFormat()), "");
  EXPECT_EQ(dmtest::WrittenXml(DMDecoratedFormat(DMDecoratedFormat::Percentage, 0, 2)), "");
}

TEST(DMDecoratedFormatXmlTest, EveryNonZeroTypeIsWrittenAsPercentage) {
  for (const unsigned type : {1u, 2u, 99u}) {
    const DMDecoratedFormat format(static_cast<DMDecoratedFormat::FormatType>(type), 5, 0);
    EXPECT_NE(dmtest::WrittenXml(format).find(R"(formatType="percentage")"), std::string::npos)
        << type;
  }
}

TEST(DMDecoratedFormatXmlTest, RoundTripsEveryField) {
  dmtest::ExpectXmlRoundTrip(Sample(), ExpectSameDecoratedFormat);
}

TEST(DMDecoratedFormatXmlTest, RoundTripsTheFreshFormatWithItsNegativePrefix) {
  dmtest::ExpectXmlRoundTrip(DMDecoratedFormat(DMDecoratedFormat::Currency, 8, 2),
                             ExpectSameDecoratedFormat);
}

// ---------------------------------------------------------------------------
// Reading

constexpr char kTag[] = "DecoratedFormat";

const std::vector<dmtest::Attribute>& ValidAttributes() {
  static const std::vector<dmtest::Attribute> kAttributes = {
      {"name", "d"},
      {"width", "10"},
      {"alignment", "right"},
      {"formatType", "percentage"},
      {"decimalPlaces", "1"},
      {"decimalSymbol", "period"},
      {"groupingSymbol", "comma"},
  };
  return kAttributes;
}

DMDecoratedFormat Read(const dmtest::Change& change) {
  return dmtest::ReadXml<DMDecoratedFormat>(dmtest::ElementText(kTag, ValidAttributes(), change));
}

TEST(DMDecoratedFormatXmlTest, ReadsWithoutAffixesAsEmptyOnesAndTheNegativePrefixEmptyToo) {
  const DMDecoratedFormat format = Read({"unchanged", "none", nullptr});
  EXPECT_EQ(format.GetName(), "d");
  EXPECT_EQ(format.GetWidth(), 10);
  EXPECT_EQ(format.GetAlignment(), DMFormat::Right);
  EXPECT_EQ(format.GetFormatType(), DMDecoratedFormat::Percentage);
  EXPECT_EQ(format.GetDecimals(), 1u);
  EXPECT_EQ(Affixes(format).prefix, "");
  EXPECT_EQ(Affixes(format).suffix, "");
  // Unlike the argument constructor and Reset, which give "-".
  EXPECT_EQ(NegAffixes(format).prefix, "");
  EXPECT_EQ(NegAffixes(format).suffix, "");
  EXPECT_EQ(format.GetCustomCurrencyID(), 0u);
}

TEST(DMDecoratedFormatXmlTest, ReadsEveryAffix) {
  const DMDecoratedFormat format = dmtest::ReadXml<DMDecoratedFormat>(
      R"(<DecoratedFormat name="d" width="10" formatType="currency" decimalPlaces="2" )"
      R"(decimalSymbol="comma" groupingSymbol="space" prefix="0" suffix="x" negPrefix="[" )"
      R"(negSuffix="]"/>)");
  EXPECT_EQ(format.GetWidth(), 10);
  // Read as written: the leading-zero rule belongs to the setter only.
  EXPECT_EQ(Affixes(format).prefix, "0");
  EXPECT_EQ(Affixes(format).suffix, "x");
  EXPECT_EQ(NegAffixes(format).prefix, "[");
  EXPECT_EQ(NegAffixes(format).suffix, "]");
}

TEST(DMDecoratedFormatXmlTest, ReadsAnyNonNegativeCurrencyId) {
  for (const unsigned id : {0u, 5u, 6u, 42u, 2147483647u}) {
    const std::string text = std::to_string(id);
    const DMDecoratedFormat format = Read({"currency", "customCurrType", text.c_str()});
    EXPECT_EQ(format.GetWidth(), 10) << id;
    EXPECT_EQ(format.GetCustomCurrencyID(), id);
  }
}

TEST(DMDecoratedFormatXmlTest, CurrencyIdAboveFiveRoundTrips) {
  const DMDecoratedFormat format = Read({"currency 6", "customCurrType", "6"});
  const std::string text = dmtest::ExpectXmlRoundTrip(format, ExpectSameDecoratedFormat);
  EXPECT_NE(text.find(R"(customCurrType="6")"), std::string::npos);
}

TEST(DMDecoratedFormatXmlTest, NegativeWidthIsReadAsMinusOne) {
  EXPECT_EQ(Read({"width -7", "width", "-7"}).GetWidth(), -1);
}

TEST(DMDecoratedFormatXmlTest, UnknownAlignmentIsAcceptedAsAuto) {
  const DMDecoratedFormat format = Read({"alignment", "alignment", "justify"});
  EXPECT_EQ(format.GetWidth(), 10);
  EXPECT_EQ(format.GetAlignment(), DMFormat::Auto);
}

class DMDecoratedFormatBadXmlTest : public ::testing::TestWithParam<dmtest::Change> {};

TEST_P(DMDecoratedFormatBadXmlTest, GivesTheDefaultInvalidFormat) {
  SCOPED_TRACE(dmtest::ElementText(kTag, ValidAttributes(), GetParam()));
  ExpectDefaultDecoratedFormat(Read(GetParam()));
}

INSTANTIATE_TEST_SUITE_P(
    Table, DMDecoratedFormatBadXmlTest,
    ::testing::Values(dmtest::Change{"absent width", "width", nullptr},
                      dmtest::Change{"width 0", "width", "0"},
                      dmtest::Change{"empty width", "width", ""},
                      dmtest::Change{"width not a number", "width", "ten"},
                      dmtest::Change{"absent name", "name", nullptr},
                      dmtest::Change{"absent type", "formatType", nullptr},
                      dmtest::Change{"empty type", "formatType", ""},
                      dmtest::Change{"type of another class", "formatType", "standard"},
                      dmtest::Change{"type in the wrong case", "formatType", "Percentage"},
                      dmtest::Change{"absent decimals", "decimalPlaces", nullptr},
                      dmtest::Change{"negative decimals", "decimalPlaces", "-2"},
                      dmtest::Change{"decimals not a number", "decimalPlaces", "x"},
                      dmtest::Change{"absent decimal symbol", "decimalSymbol", nullptr},
                      dmtest::Change{"unknown decimal symbol", "decimalSymbol", "space"},
                      dmtest::Change{"absent grouping symbol", "groupingSymbol", nullptr},
                      dmtest::Change{"empty grouping symbol", "groupingSymbol", ""},
                      dmtest::Change{"negative currency id", "customCurrType", "-1"},
                      dmtest::Change{"empty currency id", "customCurrType", ""},
                      dmtest::Change{"currency id not a number", "customCurrType", "usd"}));

}  // namespace
