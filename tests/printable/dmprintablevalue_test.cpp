#include "dmcommon/printable/dmprintablevalue.h"

#include <memory>
#include <ostream>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "dmcommon/formats/dmdateformat.h"
#include "dmcommon/formats/dmdecoratedformat.h"
#include "dmcommon/formats/dmformat.h"
#include "dmcommon/formats/dmnumberformat.h"
#include "dmcommon/formats/dmstringformat.h"
#include "dmcommon/formats/dmtimeformat.h"
#include "dmcommon/printable/dmprintable.h"
#include "dmcommon/values/dmdatum.h"
#include "tests/fields/fieldtest.h"
#include "tests/formats/formattest.h"
#include "tests/printable/printabletest.h"

namespace {

using UnitsSeparator = DMFormat::UnitsSeparator;

const DMNumberFormat kNumber(DMNumberFormat::Standard, 6, 2);
const DMDecoratedFormat kDecorated(DMDecoratedFormat::Currency, 8, 2);
const DMDateFormat kDate(DMDateFormat::Y_M_D, 10, 0, UnitsSeparator::Dash, false, false);
const DMTimeFormat kTime(DMTimeFormat::H_M_S, 8, 0, UnitsSeparator::Colon, true);
const DMStringFormat kString(-1, false);

// ---------------------------------------------------------------------------
// Datum, subtype and format combinations

struct Combination {
  DMDatum::DataType type;
  DMPrintableValue::StorageSubType subType;
  DMFormat::FormatClass formatClass;
};

bool operator==(const Combination& left, const Combination& right) {
  return left.type == right.type && left.subType == right.subType &&
         left.formatClass == right.formatClass;
}

void PrintTo(const Combination& row, std::ostream* out) {
  *out << "datum type " << row.type << ", subtype " << row.subType << ", format class "
       << row.formatClass;
}

// Every combination a value accepts; all others throw.
const std::vector<Combination> kValidCombinations = {
    {DMDatum::IntegerType, DMPrintableValue::Real, DMFormat::Number},
    {DMDatum::IntegerType, DMPrintableValue::Real, DMFormat::Decorated},
    {DMDatum::RealType, DMPrintableValue::Real, DMFormat::Number},
    {DMDatum::RealType, DMPrintableValue::Real, DMFormat::Decorated},
    {DMDatum::RealType, DMPrintableValue::Date, DMFormat::Date},
    {DMDatum::RealType, DMPrintableValue::Date, DMFormat::Time},
    {DMDatum::RealType, DMPrintableValue::Time, DMFormat::Date},
    {DMDatum::RealType, DMPrintableValue::Time, DMFormat::Time},
    {DMDatum::RealType, DMPrintableValue::Timestamp, DMFormat::Date},
    {DMDatum::RealType, DMPrintableValue::Timestamp, DMFormat::Time},
    {DMDatum::StringType, DMPrintableValue::Real, DMFormat::String},
};

DMDatum DatumOf(DMDatum::DataType type) {
  switch (type) {
    case DMDatum::IntegerType:
      return DMDatum(7LL);
    case DMDatum::RealType:
      return DMDatum(7.0);
    case DMDatum::StringType:
      return DMDatum("seven");
  }
  return DMDatum();
}

const DMFormat& FormatOf(DMFormat::FormatClass formatClass) {
  switch (formatClass) {
    case DMFormat::Decorated:
      return kDecorated;
    case DMFormat::Date:
      return kDate;
    case DMFormat::Number:
      return kNumber;
    case DMFormat::String:
      return kString;
    case DMFormat::Time:
      return kTime;
  }
  return kNumber;
}

bool Builds(const DMDatum& datum, DMPrintableValue::StorageSubType subType,
            const DMFormat& format) {
  try {
    const DMPrintableValue value(datum, subType, format);
    return true;
  } catch (const DMPrintable::FailExcp&) {
    return false;
  }
}

TEST(DMPrintableValueTest, AcceptsExactlyTheValidCombinations) {
  int accepted = 0;
  for (const auto type : {DMDatum::IntegerType, DMDatum::RealType, DMDatum::StringType}) {
    for (const auto subType : {DMPrintableValue::Real, DMPrintableValue::Date,
                               DMPrintableValue::Time, DMPrintableValue::Timestamp}) {
      for (const auto formatClass : {DMFormat::Decorated, DMFormat::Date, DMFormat::Number,
                                     DMFormat::String, DMFormat::Time}) {
        const Combination row{type, subType, formatClass};
        bool valid = false;
        for (const Combination& validRow : kValidCombinations) valid = valid || validRow == row;
        EXPECT_EQ(Builds(DatumOf(type), subType, FormatOf(formatClass)), valid)
            << ::testing::PrintToString(row);
        accepted += valid ? 1 : 0;
      }
    }
  }
  EXPECT_EQ(accepted, 11);
}

TEST(DMPrintableValueTest, StringDatumWithANumberFormatThrows) {
  EXPECT_THROW(DMPrintableValue(DMDatum("text"), DMPrintableValue::Real, kNumber),
               DMPrintable::FailExcp);
}

TEST(DMPrintableValueTest, NullDatumIsCheckedByItsType) {
  DMDatum nullText;
  nullText.SetNull(DMDatum::StringType);
  EXPECT_TRUE(Builds(nullText, DMPrintableValue::Real, kString));
  EXPECT_FALSE(Builds(nullText, DMPrintableValue::Real, kNumber));
  EXPECT_TRUE(Builds(DMDatum(), DMPrintableValue::Real, kNumber));
}

TEST(DMPrintableValueTest, SubTypeOutsideTheEnumerationThrows) {
  const auto unknown = static_cast<DMPrintableValue::StorageSubType>(4);
  EXPECT_FALSE(Builds(DMDatum(1.0), unknown, kDate));
  EXPECT_FALSE(Builds(DMDatum(1.0), unknown, kNumber));
}

TEST(DMPrintableValueTest, KeepsACopyOfTheDatumAndACloneOfTheFormat) {
  DMDatum datum("first");
  DMStringFormat format(-1, false);
  const DMPrintableValue value(datum, DMPrintableValue::Real, format);
  datum.SetString("second");
  format.SetName("renamed");
  EXPECT_TRUE(dmtest::SameDatum(value.GetDatum(), DMDatum("first")));
  EXPECT_EQ(value.GetSubType(), DMPrintableValue::Real);
  ASSERT_NE(value.GetFormat(), nullptr);
  EXPECT_NE(value.GetFormat(), &format);
  EXPECT_EQ(value.GetFormat()->GetName(), "");
  EXPECT_EQ(value.GetLabel(), "");
  EXPECT_EQ(value.Print(), "first");
}

// ---------------------------------------------------------------------------
// Printing

struct PrintRow {
  const char* what;
  DMDatum datum;
  DMPrintableValue::StorageSubType subType;
  const DMFormat* format;
  const char* expected;
};

void PrintTo(const PrintRow& row, std::ostream* out) { *out << row.what; }

class DMPrintableValuePrintTest : public ::testing::TestWithParam<PrintRow> {};

TEST_P(DMPrintableValuePrintTest, PrintsWhatTheFormatGivesInTheUnitsOfTheSubType) {
  const PrintRow& row = GetParam();
  const DMPrintableValue value(row.datum, row.subType, *row.format);
  EXPECT_EQ(value.Print(), row.expected);
}

const DMNumberFormat kInvalidNumber;
const DMStringFormat kFixedString(8, false);
const DMNumberFormat kInteger(DMNumberFormat::Standard, 3, 0);

DMDecoratedFormat Dollars() {
  DMDecoratedFormat format(DMDecoratedFormat::Currency, 8, 2);
  format.SetAffixes("$", "");
  return format;
}
const DMDecoratedFormat kDollars = Dollars();

INSTANTIATE_TEST_SUITE_P(
    Rows, DMPrintableValuePrintTest,
    ::testing::Values(
        PrintRow{"integer, number format", DMDatum(42LL), DMPrintableValue::Real, &kInteger, " 42"},
        PrintRow{"real, number format", DMDatum(1.5), DMPrintableValue::Real, &kNumber, "  1.50"},
        PrintRow{"integer, decorated format", DMDatum(3LL), DMPrintableValue::Real, &kDollars,
                 "   $3.00"},
        PrintRow{"real, decorated format", DMDatum(-2.25), DMPrintableValue::Real, &kDollars,
                 "  -$2.25"},
        PrintRow{"date counts days", DMDatum(1.0), DMPrintableValue::Date, &kDate, "1970-01-02"},
        PrintRow{"timestamp counts seconds", DMDatum(86400.0), DMPrintableValue::Timestamp, &kDate,
                 "1970-01-02"},
        PrintRow{"time counts seconds", DMDatum(3661.0), DMPrintableValue::Time, &kTime,
                 "01:01:01"},
        PrintRow{"time in a date format counts seconds", DMDatum(172800.0), DMPrintableValue::Time,
                 &kDate, "1970-01-03"},
        PrintRow{"failed format: a time format refuses days", DMDatum(0.5), DMPrintableValue::Date,
                 &kTime, ""},
        PrintRow{"text, string format", DMDatum("caf\xC3\xA9"), DMPrintableValue::Real, &kString,
                 "caf\xC3\xA9"},
        PrintRow{"null number", DMDatum(), DMPrintableValue::Real, &kInteger, "."},
        PrintRow{"failed format: invalid number format", DMDatum(42LL), DMPrintableValue::Real,
                 &kInvalidNumber, ""},
        PrintRow{"failed format: fixed string width", DMDatum("text"), DMPrintableValue::Real,
                 &kFixedString, ""}));

TEST(DMPrintableValueTest, LabelIsNotPrinted) {
  DMPrintableValue value = dmtest::TextItem("shown");
  value.SetLabel("hidden");
  EXPECT_EQ(value.GetLabel(), "hidden");
  EXPECT_EQ(value.Print(), "shown");
}

TEST(DMPrintableValueTest, SetResLookUpDoesNothing) {
  DMPrintableValue value = dmtest::TextItem("text");
  dmtest::CountingLookUp lookUp;
  value.SetResLookUp(&lookUp);
  EXPECT_EQ(value.Print(), "text");
  EXPECT_EQ(lookUp.calls, 0);
  value.SetResLookUp(nullptr);
  EXPECT_EQ(value.Print(), "text");
}

// ---------------------------------------------------------------------------
// Copies

TEST(DMPrintableValueTest, CloneIsADeepCopyOfTheSameClass) {
  DMPrintableValue value(DMDatum(2.5), DMPrintableValue::Real, kNumber);
  value.SetLabel("label");
  const std::unique_ptr<DMPrintable> clone(value.Clone());
  const auto* copy = dynamic_cast<const DMPrintableValue*>(clone.get());
  ASSERT_NE(copy, nullptr);
  EXPECT_TRUE(dmtest::SameDatum(copy->GetDatum(), DMDatum(2.5)));
  EXPECT_EQ(copy->GetLabel(), "label");
  ASSERT_NE(copy->GetFormat(), nullptr);
  EXPECT_NE(copy->GetFormat(), value.GetFormat());
  EXPECT_EQ(copy->Print(), "  2.50");
  EXPECT_EQ(dmtest::WrittenXml(*copy), dmtest::WrittenXml(value));
}

TEST(DMPrintableValueTest, AssignmentCopiesDeeplyAndLeavesTheSourceAlone) {
  DMPrintableValue source(DMDatum(4LL), DMPrintableValue::Real, kInteger);
  source.SetLabel("four");
  DMPrintableValue target = dmtest::TextItem("other");
  target = source;
  source.SetLabel("changed");
  EXPECT_EQ(target.GetLabel(), "four");
  EXPECT_EQ(target.Print(), "  4");
  EXPECT_NE(target.GetFormat(), source.GetFormat());
  const DMPrintableValue& self = target;
  target = self;
  EXPECT_EQ(target.Print(), "  4");
}

// ---------------------------------------------------------------------------
// Writing

std::string ValueXml(const std::string& attributes, const DMFormat& format) {
  return "<PrintableValue " + attributes + ">" + dmtest::WrittenXml(format) + "</PrintableValue>";
}

TEST(DMPrintableValueXmlTest, WritesTheStorageOfEachDatumTypeAndSubType) {
  EXPECT_EQ(dmtest::WrittenXml(DMPrintableValue(DMDatum(-12LL), DMPrintableValue::Real, kInteger)),
            ValueXml(R"(storage="integer" value="-12")", kInteger));
  EXPECT_EQ(dmtest::WrittenXml(DMPrintableValue(DMDatum(0.1), DMPrintableValue::Real, kNumber)),
            ValueXml(R"(storage="real" value="0.1")", kNumber));
  EXPECT_EQ(dmtest::WrittenXml(DMPrintableValue(DMDatum(1e20), DMPrintableValue::Date, kDate)),
            ValueXml(R"(storage="date" value="1e+20")", kDate));
  EXPECT_EQ(dmtest::WrittenXml(DMPrintableValue(DMDatum(2.5), DMPrintableValue::Time, kTime)),
            ValueXml(R"(storage="time" value="2.5")", kTime));
  EXPECT_EQ(dmtest::WrittenXml(DMPrintableValue(DMDatum(3.0), DMPrintableValue::Timestamp, kDate)),
            ValueXml(R"(storage="timestamp" value="3")", kDate));
  EXPECT_EQ(dmtest::WrittenXml(dmtest::TextItem("a <b> & \"c\"")),
            ValueXml(R"(storage="string" value="a &lt;b> &amp; &quot;c&quot;")", kString));
}

TEST(DMPrintableValueXmlTest, NullDatumIsWrittenWithIsNullAndAnEmptyValue) {
  DMDatum nullReal;
  nullReal.SetNull(DMDatum::RealType);
  EXPECT_EQ(dmtest::WrittenXml(DMPrintableValue(nullReal, DMPrintableValue::Date, kDate)),
            ValueXml(R"(isNull="true" storage="date" value="")", kDate));
}

TEST(DMPrintableValueXmlTest, LabelIsWrittenOnlyWhenSet) {
  DMPrintableValue value = dmtest::TextItem("x");
  value.SetLabel("name of x");
  EXPECT_EQ(dmtest::WrittenXml(value),
            ValueXml(R"(label="name of x" storage="string" value="x")", kString));
  value.SetLabel("");
  EXPECT_EQ(dmtest::WrittenXml(value), ValueXml(R"(storage="string" value="x")", kString));
}

TEST(DMPrintableValueXmlTest, FormatThatWritesNothingAbandonsTheValue) {
  const DMPrintableValue value(DMDatum(1LL), DMPrintableValue::Real, kInvalidNumber);
  EXPECT_EQ(dmtest::WrittenXml(value), "");
}

// ---------------------------------------------------------------------------
// Reading

TEST(DMPrintableValueXmlTest, EachStorageReadsBackAsItsDatumTypeAndSubType) {
  struct Row {
    DMPrintableValue value;
    DMDatum::DataType type;
  };
  const std::vector<Row> rows = {
      {DMPrintableValue(DMDatum(-12LL), DMPrintableValue::Real, kInteger), DMDatum::IntegerType},
      {DMPrintableValue(DMDatum(1.25), DMPrintableValue::Real, kNumber), DMDatum::RealType},
      {DMPrintableValue(DMDatum(18693.0), DMPrintableValue::Date, kDate), DMDatum::RealType},
      {DMPrintableValue(DMDatum(45296.0), DMPrintableValue::Time, kTime), DMDatum::RealType},
      {DMPrintableValue(DMDatum(86400.0), DMPrintableValue::Timestamp, kDate), DMDatum::RealType},
      {dmtest::TextItem("text"), DMDatum::StringType},
  };
  for (const Row& row : rows) {
    const std::unique_ptr<DMPrintable> read = dmtest::XmlRoundTrip(row.value);
    const auto* value = dynamic_cast<const DMPrintableValue*>(read.get());
    ASSERT_NE(value, nullptr);
    EXPECT_EQ(value->GetDatum().GetType(), row.type);
    EXPECT_TRUE(dmtest::SameDatum(value->GetDatum(), row.value.GetDatum()));
    EXPECT_EQ(value->GetSubType(), row.value.GetSubType());
    EXPECT_EQ(value->Print(), row.value.Print());
    EXPECT_NE(value->Print(), "");
  }
}

TEST(DMPrintableValueXmlTest, ValueWrittenWithALabelReadsBackWithoutIt) {
  DMPrintableValue value = dmtest::TextItem("x");
  value.SetLabel("label");
  const std::string written = dmtest::WrittenXml(value);
  dmtest::ReadResult read = dmtest::ReadPrintable(written);
  const auto* readBack = dynamic_cast<const DMPrintableValue*>(read.printable.get());
  ASSERT_NE(readBack, nullptr);
  EXPECT_EQ(readBack->GetLabel(), "");
  EXPECT_EQ(readBack->Print(), "x");
  EXPECT_EQ(dmtest::WrittenXml(*readBack), ValueXml(R"(storage="string" value="x")", kString));
}

TEST(DMPrintableValueXmlTest, NullValueReadsBackAsANullDatumOfItsStorage) {
  DMDatum nullText;
  nullText.SetNull(DMDatum::StringType);
  const std::unique_ptr<DMPrintable> read =
      dmtest::XmlRoundTrip(DMPrintableValue(nullText, DMPrintableValue::Real, kString));
  const auto* value = dynamic_cast<const DMPrintableValue*>(read.get());
  ASSERT_NE(value, nullptr);
  EXPECT_TRUE(value->GetDatum().IsNull());
  EXPECT_EQ(value->GetDatum().GetType(), DMDatum::StringType);
}

TEST(DMPrintableValueXmlTest, NullValueNeedsNoValueAttribute) {
  DmExtension::DMXMLWrapper document;
  document.loadFromContents(R"(<PrintableValue isNull="true" storage="integer" value="9"/>)");
  const DMPrintableValue read(document);
  // The value's text is not looked at once the value is null.
  EXPECT_TRUE(read.GetDatum().IsNull());
  EXPECT_EQ(read.GetDatum().GetType(), DMDatum::IntegerType);
  EXPECT_EQ(read.GetFormat(), nullptr);
  document.loadFromContents(R"(<PrintableValue isNull="true" storage="time"/>)");
  const DMPrintableValue time(document);
  EXPECT_TRUE(time.GetDatum().IsNull());
  EXPECT_EQ(time.GetDatum().GetType(), DMDatum::RealType);
  EXPECT_EQ(time.GetSubType(), DMPrintableValue::Time);
}

TEST(DMPrintableValueXmlTest, ExplicitFalseIsNullReadsTheValue) {
  DmExtension::DMXMLWrapper document;
  document.loadFromContents(R"(<PrintableValue isNull="false" storage="real" value="2.5"/>)");
  const DMPrintableValue read(document);
  EXPECT_TRUE(dmtest::SameDatum(read.GetDatum(), DMDatum(2.5)));
  EXPECT_EQ(read.GetSubType(), DMPrintableValue::Real);
}

TEST(DMPrintableValueXmlTest, ValueWithoutAFormatChildPrintsNothingAndWritesNoChild) {
  const char* text = R"(<PrintableValue storage="integer" value="5"/>)";
  dmtest::ReadResult read = dmtest::ReadPrintable(text);
  const auto* value = dynamic_cast<const DMPrintableValue*>(read.printable.get());
  ASSERT_NE(value, nullptr);
  EXPECT_EQ(value->GetFormat(), nullptr);
  EXPECT_EQ(value->Print(), "");
  EXPECT_EQ(dmtest::WrittenXml(*value), text);
  const std::unique_ptr<DMPrintable> clone(value->Clone());
  EXPECT_EQ(clone->Print(), "");
}

TEST(DMPrintableValueXmlTest, CombinationIsNotCheckedWhenReading) {
  // A text shown through a number format: refused by the constructor, read
  // from XML all the same, and printed as the empty text the format gives.
  const std::string text = ValueXml(R"(storage="string" value="abc")", kNumber);
  dmtest::ReadResult read = dmtest::ReadPrintable(text);
  ASSERT_NE(read.printable, nullptr);
  EXPECT_EQ(read.printable->Print(), "");
  EXPECT_EQ(dmtest::WrittenXml(*read.printable), text);
}

TEST(DMPrintableValueXmlTest, OnlyTheFirstChildIsReadAsTheFormat) {
  const std::string text = "<PrintableValue storage=\"integer\" value=\"5\">" +
                           dmtest::WrittenXml(kInteger) + "<Anything/></PrintableValue>";
  dmtest::ReadResult read = dmtest::ReadPrintable(text);
  ASSERT_NE(read.printable, nullptr);
  EXPECT_EQ(read.printable->Print(), "  5");
}

struct MalformedRow {
  const char* what;
  std::string text;
};

void PrintTo(const MalformedRow& row, std::ostream* out) { *out << row.what; }

class DMPrintableValueMalformedTest : public ::testing::TestWithParam<MalformedRow> {};

TEST_P(DMPrintableValueMalformedTest, ThrowsFromTheConstructorAndIsNullFromTheFactory) {
  const MalformedRow& row = GetParam();
  DmExtension::DMXMLWrapper document;
  document.loadFromContents(row.text.c_str());
  ASSERT_NE(document.getElement(), nullptr) << row.text;
  EXPECT_THROW(DMPrintableValue{document}, DMPrintable::FailExcp);
  bool recognised = false;
  EXPECT_EQ(DMPrintableValue::CreateFromElmt(document, recognised), nullptr);
  EXPECT_TRUE(recognised);
  dmtest::ReadResult read = dmtest::ReadPrintable(row.text);
  EXPECT_EQ(read.printable, nullptr);
  EXPECT_TRUE(read.recognised);
}

// The element of `kInteger`, spelled out: the rows are made before the XML
// layer starts.
constexpr char kIntegerXml[] =
    R"(<NumberFormat alignment="auto" decimalPlaces="0" decimalSymbol="period" )"
    R"(formatType="standard" groupingSymbol="none" name="" width="3"/>)";

INSTANTIATE_TEST_SUITE_P(
    Rows, DMPrintableValueMalformedTest,
    ::testing::Values(
        MalformedRow{"isNull neither true nor false",
                     R"(<PrintableValue isNull="yes" storage="integer" value="1"/>)"},
        MalformedRow{"isNull in capitals",
                     R"(<PrintableValue isNull="TRUE" storage="integer" value="1"/>)"},
        MalformedRow{"isNull empty", R"(<PrintableValue isNull="" storage="integer" value="1"/>)"},
        MalformedRow{"storage missing", R"(<PrintableValue value="1"/>)"},
        MalformedRow{"storage unknown", R"(<PrintableValue storage="unknown" value="1"/>)"},
        MalformedRow{"storage of no entity", R"(<PrintableValue storage="number" value="1"/>)"},
        MalformedRow{"storage empty", R"(<PrintableValue storage="" value="1"/>)"},
        MalformedRow{"value missing", R"(<PrintableValue storage="string"/>)"},
        MalformedRow{"value missing with isNull false",
                     R"(<PrintableValue isNull="false" storage="real"/>)"},
        MalformedRow{"integer value unreadable",
                     R"(<PrintableValue storage="integer" value="abc"/>)"},
        MalformedRow{"real value unreadable", R"(<PrintableValue storage="date" value="1.2.3"/>)"},
        MalformedRow{"real value infinite", R"(<PrintableValue storage="real" value="INF"/>)"},
        MalformedRow{"child that is no format",
                     R"(<PrintableValue storage="integer" value="1"><Other/></PrintableValue>)"},
        MalformedRow{"child format that reads as invalid",
                     R"(<PrintableValue storage="integer" value="1"><NumberFormat/>)"
                     R"(</PrintableValue>)"},
        MalformedRow{"malformed before a valid format",
                     std::string("<PrintableValue isNull=\"1\" storage=\"integer\" value=\"1\">") +
                         kIntegerXml + "</PrintableValue>"}));

}  // namespace
