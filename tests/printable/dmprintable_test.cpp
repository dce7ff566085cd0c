#include "dmcommon/printable/dmprintable.h"

#include <memory>
#include <ostream>
#include <string>
#include <vector>

#include <gtest/gtest.h>
#include <unicode/unistr.h>

#include "dmcommon/formats/dmdateformat.h"
#include "dmcommon/formats/dmdecoratedformat.h"
#include "dmcommon/formats/dmformat.h"
#include "dmcommon/formats/dmnumberformat.h"
#include "dmcommon/formats/dmstringformat.h"
#include "dmcommon/formats/dmtimeformat.h"
#include "dmcommon/printable/dmprintablelist.h"
#include "dmcommon/printable/dmprintableutil.h"
#include "dmcommon/printable/dmprintablevalue.h"
#include "dmcommon/printable/dmprintablevlist.h"
#include "dmcommon/values/dmdatum.h"
#include "dmcommon/xml/dmxmlwrapper.h"
#include "tests/formats/formattest.h"
#include "tests/printable/printabletest.h"
#include "tests/support/xmltest.h"

namespace {

using DMPrintableUtil::CommonImpl;
using dmtest::TextItem;
using UnitsSeparator = DMFormat::UnitsSeparator;

// ---------------------------------------------------------------------------
// The factory

TEST(DMPrintableFactoryTest, EachElementNameMakesItsKind) {
  dmtest::ReadResult list = dmtest::ReadPrintable(R"(<PrintableList pattern="l"/>)");
  EXPECT_TRUE(list.recognised);
  EXPECT_NE(dynamic_cast<DMPrintableList*>(list.printable.get()), nullptr);
  EXPECT_EQ(list.printable->Print(), "l");

  dmtest::ReadResult value =
      dmtest::ReadPrintable(R"(<PrintableValue storage="integer" value="3"/>)");
  EXPECT_TRUE(value.recognised);
  EXPECT_NE(dynamic_cast<DMPrintableValue*>(value.printable.get()), nullptr);

  dmtest::ReadResult vlist = dmtest::ReadPrintable(R"(<PrintableVList pattern="v"/>)");
  EXPECT_TRUE(vlist.recognised);
  EXPECT_NE(dynamic_cast<DMPrintableVList*>(vlist.printable.get()), nullptr);
}

TEST(DMPrintableFactoryTest, ElementOfAnyOtherNameIsNotRecognised) {
  for (const char* text :
       {R"(<Printable pattern="p"/>)", R"(<printableList pattern="p"/>)",
        R"(<PrintableLists pattern="p"/>)", R"(<NumberFormat name="" width="3"/>)",
        R"(<PrintableValues storage="integer" value="1"/>)"}) {
    dmtest::ReadResult read = dmtest::ReadPrintable(text);
    EXPECT_EQ(read.printable, nullptr) << text;
    EXPECT_FALSE(read.recognised) << text;
  }
}

TEST(DMPrintableFactoryTest, HandleWithoutAnElementIsNotRecognised) {
  const DmExtension::DMXMLWrapper empty;
  bool recognised = true;
  EXPECT_EQ(DMPrintable::CreateFromElmt(empty, recognised), nullptr);
  EXPECT_FALSE(recognised);
}

TEST(DMPrintableFactoryTest, EachKindAnswersOnlyToItsOwnName) {
  DmExtension::DMXMLWrapper document;
  document.loadFromContents(R"(<PrintableValue storage="integer" value="3"/>)");
  bool recognised = true;
  EXPECT_EQ(DMPrintableList::CreateFromElmt(document, recognised), nullptr);
  EXPECT_FALSE(recognised);
  recognised = true;
  EXPECT_EQ(DMPrintableVList::CreateFromElmt(document, recognised), nullptr);
  EXPECT_FALSE(recognised);
  const std::unique_ptr<DMPrintableValue> value(
      DMPrintableValue::CreateFromElmt(document, recognised));
  EXPECT_NE(value, nullptr);
  EXPECT_TRUE(recognised);
}

struct MalformedRow {
  const char* what;
  const char* text;
};

void PrintTo(const MalformedRow& row, std::ostream* out) { *out << row.what; }

class DMPrintableMalformedTest : public ::testing::TestWithParam<MalformedRow> {};

// Run under the address sanitizer, these rows also show that whatever was
// read before the failure is released.
TEST_P(DMPrintableMalformedTest, IsNullAndRecognised) {
  const MalformedRow& row = GetParam();
  dmtest::ReadResult read = dmtest::ReadPrintable(row.text);
  EXPECT_EQ(read.printable, nullptr);
  EXPECT_TRUE(read.recognised);
}

INSTANTIATE_TEST_SUITE_P(
    Rows, DMPrintableMalformedTest,
    ::testing::Values(
        MalformedRow{"value: bad isNull",
                     R"(<PrintableValue isNull="no" storage="integer" value="1"/>)"},
        MalformedRow{"value: unknown storage", R"(<PrintableValue storage="money" value="1"/>)"},
        MalformedRow{"value: missing value", R"(<PrintableValue storage="real"/>)"},
        MalformedRow{"value: unreadable child",
                     R"(<PrintableValue storage="string" value="s"><StringFormat/>)"
                     R"(</PrintableValue>)"},
        MalformedRow{"list: bad isNull in an argument",
                     R"(<PrintableList pattern="{0}{1}"><PrintableList pattern="a"/>)"
                     R"(<PrintableValue isNull="1" storage="integer" value="1"/></PrintableList>)"},
        MalformedRow{"list: unknown storage in an argument",
                     R"(<PrintableList pattern="{0}"><PrintableValue storage="bool" value="1"/>)"
                     R"(</PrintableList>)"},
        MalformedRow{"list: missing value in an argument",
                     R"(<PrintableList pattern="{0}"><PrintableValue storage="date"/>)"
                     R"(</PrintableList>)"},
        MalformedRow{"list: unreadable child",
                     R"(<PrintableList pattern="{0}"><PrintableList pattern="a"/><Other/>)"
                     R"(</PrintableList>)"},
        MalformedRow{"list: map id not a number", R"(<PrintableList pattern="p" mapId="one"/>)"},
        MalformedRow{"value list: unreadable child",
                     R"(<PrintableVList pattern="p"><PrintableList pattern="a"/>)"
                     R"(<PrintableList pattern="b"><Other/></PrintableList></PrintableVList>)"},
        MalformedRow{"value list: malformed value deep down",
                     R"(<PrintableVList pattern="p"><PrintableList pattern="a">)"
                     R"(<PrintableList pattern="b"><PrintableValue isNull="x" storage="real"/>)"
                     R"(</PrintableList></PrintableList></PrintableVList>)"},
        MalformedRow{"value list: map id not a number",
                     R"(<PrintableVList pattern="p" mapId=""/>)"}));

// ---------------------------------------------------------------------------
// Nested printables with every format class

DMDecoratedFormat Dollars() {
  DMDecoratedFormat format(DMDecoratedFormat::Currency, 8, 2);
  format.SetAffixes("$", "");
  return format;
}

DMDateFormat DateWithTime() {
  DMDateFormat format(DMDateFormat::Y_M_D, 16, 0, UnitsSeparator::Dash, false, false);
  const DMTimeFormat time(DMTimeFormat::H_M, 5, 0, UnitsSeparator::Colon, true);
  format.SetTimeFormat(&time);
  return format;
}

// 2021-03-07 12:34:56 as days and as seconds from 1970.
constexpr double kDays = 18693.0;
constexpr double kSecondOfDay = 45296.0;

DMPrintableList NestedReport() {
  const DMDateFormat date(DMDateFormat::Y_M_D, 10, 0, UnitsSeparator::Dash, false, false);
  const DMTimeFormat time(DMTimeFormat::H_M_S, 8, 0, UnitsSeparator::Colon, true);

  DMPrintableList report("Report {0}: {1} | {2} | {3} | {4} | {5} | {6} | {7}", false, 0);
  report.AppendToList(TextItem("caf\xC3\xA9"));
  report.AppendToList(dmtest::IntegerItem(42, 2));
  report.AppendToList(DMPrintableValue(DMDatum(1234.5), DMPrintableValue::Real, Dollars()));
  report.AppendToList(DMPrintableValue(DMDatum(kDays), DMPrintableValue::Date, date));
  report.AppendToList(DMPrintableValue(DMDatum(kSecondOfDay), DMPrintableValue::Time, time));
  report.AppendToList(DMPrintableValue(DMDatum(kDays * 86400.0 + kSecondOfDay),
                                       DMPrintableValue::Timestamp, DateWithTime()));

  DMPrintableList inner("({0} of {1})", false, 5);
  inner.AppendToList(DMPrintableValue(DMDatum(0.25), DMPrintableValue::Real,
                                      DMNumberFormat(DMNumberFormat::Standard, 4, 2)));
  inner.AppendToList(DMPrintableList("{plain}", false, 0));
  report.AppendToList(inner);

  DMPrintableVList series("{0}/, {0}/ and {0}", false, 0);
  for (const char* item : {"x", "y", "z"}) series.AppendToList(TextItem(item));
  report.AppendToList(series);
  return report;
}

constexpr char kNestedText[] =
    "Report caf\xC3\xA9: 42 | $1234.50 | 2021-03-07 | 12:34:56 | 2021-03-07 12:34 | "
    "(0.25 of {plain}) | x, y and z";

TEST(DMPrintableNestedTest, PrintsTheExpectedText) {
  EXPECT_EQ(NestedReport().Print(), kNestedText);
}

TEST(DMPrintableNestedTest, RoundTripThroughXmlPrintsTheSameText) {
  const DMPrintableList report = NestedReport();
  const std::unique_ptr<DMPrintable> read = dmtest::XmlRoundTrip(report);
  ASSERT_NE(read, nullptr);
  EXPECT_EQ(read->Print(), kNestedText);
  const auto* list = dynamic_cast<const DMPrintableList*>(read.get());
  ASSERT_NE(list, nullptr);
  const std::vector<const DMPrintable*> arguments = list->GetCommonImpl().GetList();
  ASSERT_EQ(arguments.size(), 8u);
  const auto* inner = dynamic_cast<const DMPrintableList*>(arguments[6]);
  ASSERT_NE(inner, nullptr);
  EXPECT_EQ(inner->GetCommonImpl().GetMapId(), 5);
  EXPECT_NE(dynamic_cast<const DMPrintableVList*>(arguments[7]), nullptr);
  const auto* timestamp = dynamic_cast<const DMPrintableValue*>(arguments[5]);
  ASSERT_NE(timestamp, nullptr);
  EXPECT_EQ(timestamp->GetSubType(), DMPrintableValue::Timestamp);
  ASSERT_NE(timestamp->GetFormat(), nullptr);
  EXPECT_EQ(timestamp->GetFormat()->GetFormatClass(), DMFormat::Date);
}

TEST(DMPrintableNestedTest, WrittenElementsNestInOrder) {
  const std::string text = dmtest::WrittenXml(NestedReport());
  std::vector<std::string::size_type> at;
  for (const char* name :
       {"<PrintableList pattern=\"Report", "<StringFormat", "<NumberFormat", "<DecoratedFormat",
        "<DateFormat", "<TimeFormat", "storage=\"timestamp\"", "<PrintableList mapId=\"5\"",
        "<PrintableList pattern=\"{plain}\"/>", "<PrintableVList"}) {
    at.push_back(text.find(name));
    EXPECT_NE(at.back(), std::string::npos) << name << " in " << text;
  }
  for (std::size_t i = 1; i < at.size(); ++i) EXPECT_LT(at[i - 1], at[i]) << i << " in " << text;
}

TEST(DMPrintableNestedTest, CloneOfTheWholeTreePrintsTheSameText) {
  const DMPrintableList report = NestedReport();
  const std::unique_ptr<DMPrintable> clone(report.Clone());
  EXPECT_EQ(clone->Print(), kNestedText);
  EXPECT_EQ(dmtest::WrittenXml(*clone), dmtest::WrittenXml(report));
}

// ---------------------------------------------------------------------------
// The shared machinery

TEST(DMPrintableCommonImplTest, StartsWithThePatternAndNothingElse) {
  const CommonImpl common("pattern {0}", false, 0);
  EXPECT_EQ(common.GetRawPattern(), "pattern {0}");
  EXPECT_EQ(common.GetPattern(), "pattern {0}");
  EXPECT_FALSE(common.GetIsKey());
  EXPECT_EQ(common.GetMapId(), 0);
  EXPECT_EQ(common.GetResLookUp(), nullptr);
  EXPECT_TRUE(common.GetList().empty());
}

TEST(DMPrintableCommonImplTest, CountingLookupRunsOnceAndItsTextIsCachedUntilSetPattern) {
  dmtest::CountingLookUp lookUp;
  lookUp.texts = {{"k", "first"}};
  CommonImpl common("k", true, 11);
  EXPECT_EQ(common.GetPattern(), "");
  EXPECT_EQ(lookUp.calls, 0);
  common.SetResLookUp(&lookUp);
  EXPECT_EQ(common.GetResLookUp(), &lookUp);
  for (int i = 0; i < 3; ++i) EXPECT_EQ(common.GetPattern(), "first");
  EXPECT_EQ(lookUp.calls, 1);
  EXPECT_EQ(lookUp.lastMapId, 11);

  lookUp.texts["k"] = "second";
  EXPECT_EQ(common.GetPattern(), "first");
  EXPECT_EQ(lookUp.calls, 1);
  common.SetPattern("k", true, 12);
  for (int i = 0; i < 3; ++i) EXPECT_EQ(common.GetPattern(), "second");
  EXPECT_EQ(lookUp.calls, 2);
  EXPECT_EQ(lookUp.lastMapId, 12);

  // Once the pattern is no key, the lookup is left alone.
  common.SetPattern("plain", false, 0);
  EXPECT_EQ(common.GetPattern(), "plain");
  EXPECT_EQ(lookUp.calls, 2);
}

TEST(DMPrintableCommonImplTest, EmptyResourceTextIsAskedForAgain) {
  dmtest::CountingLookUp lookUp;
  lookUp.texts = {{"k", ""}};
  CommonImpl common("k", true, 0);
  common.SetResLookUp(&lookUp);
  EXPECT_EQ(common.GetPattern(), "");
  EXPECT_EQ(common.GetPattern(), "");
  EXPECT_EQ(lookUp.calls, 2);
}

TEST(DMPrintableCommonImplTest, RefusedLookupLeavesNoText) {
  dmtest::CountingLookUp lookUp;
  CommonImpl common("absent", true, 0);
  common.SetResLookUp(&lookUp);
  // The lookup wrote "stale" and answered false.
  EXPECT_EQ(common.GetPattern(), "");
}

TEST(DMPrintableCommonImplTest, ConvertsBetweenUtf8AndUtf16) {
  const CommonImpl common("", false, 0);
  const std::string text = "caf\xC3\xA9 \xF0\x9F\x98\x80";
  EXPECT_EQ(common.ToUTF16(text), icu::UnicodeString(u"caf\u00E9 \U0001F600"));
  EXPECT_EQ(common.ToUTF8(common.ToUTF16(text)), text);
  const std::string longText(300, 'x');
  EXPECT_EQ(common.ToUTF8(common.ToUTF16(longText)), longText);
  const CommonImpl copy(common);  // NOLINT(performance-unnecessary-copy-initialization): under test
  EXPECT_EQ(copy.ToUTF8(copy.ToUTF16(text)), text);
}

TEST(DMPrintableCommonImplTest, CopiesCloneTheArguments) {
  CommonImpl common("{0}{1}", false, 4);
  common.AppendToList(TextItem("a"));
  common.AppendToList(TextItem("b"));
  const CommonImpl copy(common);
  ASSERT_EQ(copy.GetList().size(), 2u);
  EXPECT_NE(copy.GetList()[0], common.GetList()[0]);
  EXPECT_EQ(copy.GetList()[1]->Print(), "b");
  EXPECT_EQ(copy.GetMapId(), 4);

  CommonImpl assigned("other", true, 1);
  assigned = common;
  common.SetList({});
  EXPECT_EQ(assigned.GetList().size(), 2u);
  EXPECT_EQ(assigned.GetRawPattern(), "{0}{1}");
  EXPECT_FALSE(assigned.GetIsKey());
  const CommonImpl& self = assigned;
  assigned = self;
  EXPECT_EQ(assigned.GetList().size(), 2u);
}

TEST(DMPrintableCommonImplTest, WritesAnElementOfTheGivenName) {
  CommonImpl common("p", true, 3);
  common.AppendToList(DMPrintableList("a", false, 0));
  DmExtension::DMXMLWrapper document;
  document.createNew("Root");
  DmExtension::DMXMLWrapper* created = &document;
  common.AddToTree(document, created, "Custom");
  ASSERT_NE(created, nullptr);
  EXPECT_EQ(dmtest::XmlTest::WithoutDeclaration(document),
            R"(<Root><Custom isKey="true" mapId="3" pattern="p">)"
            R"(<PrintableList pattern="a"/></Custom></Root>)");
}

TEST(DMPrintableCommonImplTest, InvalidElementNameWritesNothing) {
  const CommonImpl common("p", false, 0);
  DmExtension::DMXMLWrapper document;
  document.createNew("Root");
  DmExtension::DMXMLWrapper* created = &document;
  common.AddToTree(document, created, "not a name");
  EXPECT_EQ(created, nullptr);
  EXPECT_EQ(dmtest::XmlTest::WithoutDeclaration(document), "<Root/>");
}

TEST(DMPrintableCommonImplTest, ParentWithoutAnElementGetsNothing) {
  const DMPrintableList list("p", false, 0);
  DmExtension::DMXMLWrapper empty;
  DmExtension::DMXMLWrapper* created = &empty;
  list.AddToTree(empty, created);
  EXPECT_EQ(created, nullptr);
}

TEST(DMPrintableCommonImplTest, ReadsFromAnElementOfAnyName) {
  DmExtension::DMXMLWrapper document;
  document.loadFromContents(
      R"(<Anything pattern="p" isKey="true" mapId="-2"><PrintableList pattern="a"/></Anything>)");
  const CommonImpl common(document);
  EXPECT_EQ(common.GetRawPattern(), "p");
  EXPECT_TRUE(common.GetIsKey());
  EXPECT_EQ(common.GetMapId(), -2);
  ASSERT_EQ(common.GetList().size(), 1u);
  EXPECT_EQ(common.GetList()[0]->Print(), "a");
}

TEST(DMPrintableCommonImplTest, ThrowsForAChildThatIsNoPrintable) {
  DmExtension::DMXMLWrapper document;
  document.loadFromContents(R"(<Anything pattern="p"><Other/></Anything>)");
  EXPECT_THROW(CommonImpl{document}, DMPrintable::FailExcp);
}

}  // namespace
