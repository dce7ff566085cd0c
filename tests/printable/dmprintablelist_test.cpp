#include "dmcommon/printable/dmprintablelist.h"

#include <memory>
#include <ostream>
#include <string>
#include <vector>

#include <gtest/gtest.h>
#include <unicode/locid.h>

#include "dmcommon/printable/dmprintable.h"
#include "dmcommon/printable/dmprintableutil.h"
#include "dmcommon/printable/dmprintablevalue.h"
#include "dmcommon/xml/dmxmlwrapper.h"
#include "tests/formats/formattest.h"
#include "tests/printable/printabletest.h"
#include "tests/support/xmltest.h"

namespace {

using dmtest::TextItem;

DMPrintableList ListOf(const std::string& pattern, const std::vector<std::string>& items) {
  DMPrintableList list(pattern, false, 0);
  for (const std::string& item : items) list.AppendToList(TextItem(item));
  return list;
}

// ---------------------------------------------------------------------------
// Printing

TEST(DMPrintableListTest, ValueArgumentFillsItsPlaceholder) {
  DMPrintableList list("Total: {0}", false, 0);
  list.AppendToList(dmtest::IntegerItem(42, 2));
  EXPECT_EQ(list.Print(), "Total: 42");
}

TEST(DMPrintableListTest, WithoutArgumentsThePatternPrintsUnchanged) {
  EXPECT_EQ(DMPrintableList("Total: {0}", false, 0).Print(), "Total: {0}");
  EXPECT_EQ(DMPrintableList("It's {unbalanced", false, 0).Print(), "It's {unbalanced");
  EXPECT_EQ(DMPrintableList("", false, 0).Print(), "");
}

struct PrintRow {
  const char* what;
  const char* pattern;
  std::vector<std::string> items;
  const char* expected;
};

void PrintTo(const PrintRow& row, std::ostream* out) { *out << row.what; }

class DMPrintableListPrintTest : public ::testing::TestWithParam<PrintRow> {
 private:
  // Plain string arguments format alike in every locale; a fixed one keeps
  // the test apart from the machine's anyway.
  class DefaultLocale {
   public:
    DefaultLocale() : previous_(icu::Locale::getDefault()) { Set(icu::Locale("en_US")); }
    ~DefaultLocale() { Set(previous_); }
    DefaultLocale(const DefaultLocale&) = delete;
    DefaultLocale& operator=(const DefaultLocale&) = delete;

   private:
    static void Set(const icu::Locale& locale) {
      UErrorCode status = U_ZERO_ERROR;
      icu::Locale::setDefault(locale, status);
    }
    icu::Locale previous_;
  };
  DefaultLocale locale_;
};

TEST_P(DMPrintableListPrintTest, FormatsTheArgumentsIntoThePattern) {
  const PrintRow& row = GetParam();
  EXPECT_EQ(ListOf(row.pattern, row.items).Print(), row.expected);
}

INSTANTIATE_TEST_SUITE_P(
    Rows, DMPrintableListPrintTest,
    ::testing::Values(
        PrintRow{"arguments in order", "{0} and {1}", {"a", "b"}, "a and b"},
        PrintRow{"arguments in any order", "{1} before {0}", {"a", "b"}, "b before a"},
        PrintRow{"one argument twice", "{0}{0}", {"ab"}, "abab"},
        PrintRow{"unused arguments", "only {0}", {"a", "b", "c"}, "only a"},
        PrintRow{"placeholder without an argument stays", "{0} {1}", {"a"}, "a {1}"},
        PrintRow{"apostrophes follow the message syntax", "It''s '{0}' {0}", {"x"}, "It's {0} x"},
        PrintRow{"argument texts are not parsed", "[{0}]", {"{1} 'q'"}, "[{1} 'q']"},
        PrintRow{"UTF-8 in pattern and arguments",
                 "caf\xC3\xA9 {0}",
                 {"\xE2\x82\xAC"},
                 "caf\xC3\xA9 \xE2\x82\xAC"},
        PrintRow{"unbalanced brace", "Total: {0", {"a"}, ""},
        PrintRow{"bad argument type", "Total: {0,nosuchtype}", {"a"}, ""}));

TEST(DMPrintableListTest, NestedListPrintsAsAnArgument) {
  DMPrintableList inner = ListOf("({0})", {"x"});
  DMPrintableList outer("[{0}|{1}]", false, 0);
  outer.AppendToList(inner);
  outer.AppendToList(DMPrintableList("no {args}", false, 0));
  EXPECT_EQ(outer.Print(), "[(x)|no {args}]");
}

// ---------------------------------------------------------------------------
// Resource keys

TEST(DMPrintableListTest, KeyWithoutALookupPrintsAsTheEmptyText) {
  DMPrintableList list("key.total", true, 3);
  EXPECT_EQ(list.Print(), "");
  list.AppendToList(TextItem("a"));
  EXPECT_EQ(list.Print(), "");
}

TEST(DMPrintableListTest, KeyIsLookedUpOnceAndCachedUntilSetPattern) {
  dmtest::CountingLookUp lookUp;
  lookUp.texts = {{"key.total", "Total: {0}"}, {"key.sum", "Sum {0}"}};
  DMPrintableList list("key.total", true, 3);
  list.AppendToList(TextItem("7"));
  EXPECT_EQ(list.Print(), "");
  EXPECT_EQ(lookUp.calls, 0);

  list.SetResLookUp(&lookUp);
  EXPECT_EQ(list.Print(), "Total: 7");
  EXPECT_EQ(lookUp.calls, 1);
  EXPECT_EQ(lookUp.lastMapId, 3);
  EXPECT_EQ(list.Print(), "Total: 7");
  EXPECT_EQ(list.GetCommonImpl().GetPattern(), "Total: {0}");
  EXPECT_EQ(lookUp.calls, 1);

  // A new table is not consulted while the cached text stands.
  lookUp.texts["key.total"] = "Changed {0}";
  EXPECT_EQ(list.Print(), "Total: 7");
  EXPECT_EQ(lookUp.calls, 1);

  list.SetPattern("key.sum", true, 4);
  EXPECT_EQ(list.Print(), "Sum 7");
  EXPECT_EQ(lookUp.calls, 2);
  EXPECT_EQ(lookUp.lastMapId, 4);
  EXPECT_EQ(list.Print(), "Sum 7");
  EXPECT_EQ(lookUp.calls, 2);

  // Setting the same key again still forgets the cached text.
  list.SetPattern("key.total", true, 3);
  EXPECT_EQ(list.Print(), "Changed 7");
  EXPECT_EQ(lookUp.calls, 3);
}

TEST(DMPrintableListTest, PatternThatIsNoKeyNeverCallsTheLookup) {
  dmtest::CountingLookUp lookUp;
  lookUp.texts = {{"plain {0}", "looked up"}};
  DMPrintableList list = ListOf("plain {0}", {"a"});
  list.SetResLookUp(&lookUp);
  EXPECT_EQ(list.Print(), "plain a");
  EXPECT_EQ(lookUp.calls, 0);
}

TEST(DMPrintableListTest, RefusedLookupPrintsEmptyAndAsksAgain) {
  dmtest::CountingLookUp lookUp;
  DMPrintableList list("missing", true, 0);
  list.SetResLookUp(&lookUp);
  EXPECT_EQ(list.Print(), "");
  EXPECT_EQ(lookUp.calls, 1);
  EXPECT_EQ(list.Print(), "");
  EXPECT_EQ(lookUp.calls, 2);
  lookUp.texts["missing"] = "found";
  EXPECT_EQ(list.Print(), "found");
  EXPECT_EQ(lookUp.calls, 3);
}

TEST(DMPrintableListTest, LookupIsNotPassedOnToArguments) {
  dmtest::CountingLookUp lookUp;
  lookUp.texts = {{"outer", "<{0}>"}, {"inner", "inner text"}};
  DMPrintableList outer("outer", true, 0);
  outer.AppendToList(DMPrintableList("inner", true, 0));
  outer.SetResLookUp(&lookUp);
  EXPECT_EQ(outer.Print(), "<>");
  EXPECT_EQ(lookUp.calls, 1);

  // A caller that wants nested keys resolved sets the lookup on each.
  DMPrintableList inner("inner", true, 0);
  inner.SetResLookUp(&lookUp);
  outer.SetList({&inner});
  EXPECT_EQ(outer.Print(), "<inner text>");
}

TEST(DMPrintableListTest, LookupCanBeRemoved) {
  dmtest::CountingLookUp lookUp;
  lookUp.texts = {{"key", "text"}};
  DMPrintableList list("key", true, 0);
  list.SetResLookUp(&lookUp);
  EXPECT_EQ(list.Print(), "text");
  list.SetResLookUp(nullptr);
  // The text looked up before stays until the pattern changes.
  EXPECT_EQ(list.Print(), "text");
  list.SetPattern("key", true, 0);
  EXPECT_EQ(list.Print(), "");
}

// ---------------------------------------------------------------------------
// Arguments and copies

TEST(DMPrintableListTest, AppendToListKeepsAClone) {
  DMPrintableList list("{0}", false, 0);
  DMPrintableValue item = TextItem("before");
  list.AppendToList(item);
  item.SetLabel("changed");
  ASSERT_EQ(list.GetCommonImpl().GetList().size(), 1u);
  EXPECT_NE(list.GetCommonImpl().GetList()[0], &item);
  EXPECT_EQ(list.Print(), "before");
}

TEST(DMPrintableListTest, SetListReplacesTheArgumentsWithClonesSkippingNulls) {
  DMPrintableList list = ListOf("{0}-{1}-{2}", {"x", "y", "z"});
  const DMPrintableValue a = TextItem("a");
  const DMPrintableValue b = TextItem("b");
  list.SetList({&a, nullptr, &b});
  const std::vector<const DMPrintable*> arguments = list.GetCommonImpl().GetList();
  ASSERT_EQ(arguments.size(), 2u);
  EXPECT_NE(arguments[0], &a);
  EXPECT_NE(arguments[1], &b);
  EXPECT_EQ(list.Print(), "a-b-{2}");
  list.SetList({});
  EXPECT_TRUE(list.GetCommonImpl().GetList().empty());
  EXPECT_EQ(list.Print(), "{0}-{1}-{2}");
}

TEST(DMPrintableListTest, CloneIsADeepCopyOfTheSameClass) {
  dmtest::CountingLookUp lookUp;
  DMPrintableList list = ListOf("{0}+{1}", {"a", "b"});
  list.SetResLookUp(&lookUp);
  const std::unique_ptr<DMPrintable> clone(list.Clone());
  const auto* copy = dynamic_cast<const DMPrintableList*>(clone.get());
  ASSERT_NE(copy, nullptr);
  EXPECT_EQ(copy->Print(), "a+b");
  EXPECT_EQ(copy->GetCommonImpl().GetResLookUp(), &lookUp);
  const std::vector<const DMPrintable*> original = list.GetCommonImpl().GetList();
  const std::vector<const DMPrintable*> copied = copy->GetCommonImpl().GetList();
  ASSERT_EQ(copied.size(), 2u);
  EXPECT_NE(copied[0], original[0]);
  EXPECT_NE(copied[1], original[1]);
  list.SetPattern("changed", false, 0);
  list.AppendToList(TextItem("c"));
  EXPECT_EQ(copy->Print(), "a+b");
  EXPECT_EQ(copy->GetCommonImpl().GetList().size(), 2u);
}

TEST(DMPrintableListTest, CopyKeepsTheLookedUpText) {
  dmtest::CountingLookUp lookUp;
  lookUp.texts = {{"key", "text"}};
  DMPrintableList list("key", true, 0);
  list.SetResLookUp(&lookUp);
  EXPECT_EQ(list.Print(), "text");
  const DMPrintableList copy(list);
  EXPECT_EQ(copy.Print(), "text");
  EXPECT_EQ(lookUp.calls, 1);
}

TEST(DMPrintableListTest, AssignmentCopiesDeeplyAndSurvivesSelfAssignment) {
  DMPrintableList source = ListOf("{0}", {"s"});
  DMPrintableList target = ListOf("other {0} {1}", {"t", "u"});
  target = source;
  source.SetList({});
  EXPECT_EQ(target.Print(), "s");
  EXPECT_EQ(target.GetCommonImpl().GetList().size(), 1u);
  const DMPrintableList& self = target;
  target = self;
  EXPECT_EQ(target.Print(), "s");
}

TEST(DMPrintableListTest, GettersReportTheRawPatternKeyAndMapId) {
  dmtest::CountingLookUp lookUp;
  lookUp.texts = {{"the.key", "text"}};
  DMPrintableList list("the.key", true, -5);
  list.SetResLookUp(&lookUp);
  const DMPrintableUtil::CommonImpl& common = list.GetCommonImpl();
  EXPECT_EQ(common.GetRawPattern(), "the.key");
  EXPECT_TRUE(common.GetIsKey());
  EXPECT_EQ(common.GetMapId(), -5);
  EXPECT_EQ(common.GetPattern(), "text");
  EXPECT_EQ(common.GetRawPattern(), "the.key");
}

// ---------------------------------------------------------------------------
// XML

TEST(DMPrintableListXmlTest, WritesThePatternAndTheArguments) {
  const DMPrintableList list = ListOf("{0} & {1}", {"a", "b"});
  const std::string item = R"(<StringFormat alignment="auto" hexadecimal="false" name="" )"
                           R"(width="-1"/>)";
  EXPECT_EQ(dmtest::WrittenXml(list), R"(<PrintableList pattern="{0} &amp; {1}">)"
                                      R"(<PrintableValue storage="string" value="a">)" +
                                          item + "</PrintableValue>" +
                                          R"(<PrintableValue storage="string" value="b">)" + item +
                                          "</PrintableValue></PrintableList>");
}

TEST(DMPrintableListXmlTest, WritesKeyAndMapIdOnlyWhenSet) {
  EXPECT_EQ(dmtest::WrittenXml(DMPrintableList("p", false, 0)), R"(<PrintableList pattern="p"/>)");
  EXPECT_EQ(dmtest::WrittenXml(DMPrintableList("p", true, 0)),
            R"(<PrintableList isKey="true" pattern="p"/>)");
  EXPECT_EQ(dmtest::WrittenXml(DMPrintableList("p", false, -12)),
            R"(<PrintableList mapId="-12" pattern="p"/>)");
  EXPECT_EQ(dmtest::WrittenXml(DMPrintableList("", true, 7)),
            R"(<PrintableList isKey="true" mapId="7" pattern=""/>)");
}

TEST(DMPrintableListXmlTest, WritesTheKeyNeverTheLookedUpText) {
  dmtest::CountingLookUp lookUp;
  lookUp.texts = {{"key", "looked up"}};
  DMPrintableList list("key", true, 2);
  list.SetResLookUp(&lookUp);
  EXPECT_EQ(list.Print(), "looked up");
  EXPECT_EQ(dmtest::WrittenXml(list), R"(<PrintableList isKey="true" mapId="2" pattern="key"/>)");
}

TEST(DMPrintableListXmlTest, ArgumentThatWritesNothingAbandonsTheList) {
  DMPrintableList list = ListOf("{0} {1}", {"a"});
  list.AppendToList(DMPrintableValue(DMDatum(1LL), DMPrintableValue::Real, DMNumberFormat()));
  EXPECT_EQ(dmtest::WrittenXml(list), "");
  // The failure is passed up through every level.
  DMPrintableList outer("[{0}]", false, 0);
  outer.AppendToList(list);
  EXPECT_EQ(dmtest::WrittenXml(outer), "");
}

TEST(DMPrintableListXmlTest, RoundTripThroughTheConstructorFromAnElement) {
  DMPrintableList list = ListOf("caf\xC3\xA9 {0}, {1}", {"\xE2\x82\xAC", "'b'"});
  list.SetPattern("caf\xC3\xA9 {0}, {1}", false, 9);
  const std::string text = dmtest::ExpectXmlRoundTrip(
      list, [](const DMPrintableList& written, const DMPrintableList& read) {
        EXPECT_EQ(read.Print(), written.Print());
        EXPECT_EQ(read.GetCommonImpl().GetRawPattern(), written.GetCommonImpl().GetRawPattern());
        EXPECT_EQ(read.GetCommonImpl().GetIsKey(), false);
        EXPECT_EQ(read.GetCommonImpl().GetMapId(), 9);
        EXPECT_EQ(read.GetCommonImpl().GetList().size(), 2u);
      });
  EXPECT_NE(text.find(R"(mapId="9")"), std::string::npos) << text;
}

TEST(DMPrintableListXmlTest, ReadsKeyAndMapId) {
  dmtest::ReadResult read = dmtest::ReadPrintable(
      R"(<PrintableList pattern="k" isKey="true" mapId="31"><PrintableList pattern="x"/>)"
      R"(</PrintableList>)");
  const auto* list = dynamic_cast<const DMPrintableList*>(read.printable.get());
  ASSERT_NE(list, nullptr);
  EXPECT_EQ(list->GetCommonImpl().GetRawPattern(), "k");
  EXPECT_TRUE(list->GetCommonImpl().GetIsKey());
  EXPECT_EQ(list->GetCommonImpl().GetMapId(), 31);
  EXPECT_EQ(list->GetCommonImpl().GetList().size(), 1u);
  EXPECT_EQ(list->Print(), "");
}

TEST(DMPrintableListXmlTest, ExplicitFalseKeyReadsAsAPattern) {
  dmtest::ReadResult read =
      dmtest::ReadPrintable(R"(<PrintableList pattern="p {0}" isKey="false" mapId="1">)"
                            R"(<PrintableList pattern="x"/></PrintableList>)");
  ASSERT_NE(read.printable, nullptr);
  EXPECT_EQ(read.printable->Print(), "p x");
}

TEST(DMPrintableListXmlTest, ElementWithoutAPatternIsAnEmptyList) {
  // Nothing after the missing pattern is read, not even a malformed child.
  dmtest::ReadResult read = dmtest::ReadPrintable(
      R"(<PrintableList isKey="true" mapId="x"><Unknown/><PrintableList pattern="a"/>)"
      R"(</PrintableList>)");
  const auto* list = dynamic_cast<const DMPrintableList*>(read.printable.get());
  ASSERT_NE(list, nullptr);
  EXPECT_TRUE(read.recognised);
  EXPECT_EQ(list->GetCommonImpl().GetRawPattern(), "");
  EXPECT_FALSE(list->GetCommonImpl().GetIsKey());
  EXPECT_EQ(list->GetCommonImpl().GetMapId(), 0);
  EXPECT_TRUE(list->GetCommonImpl().GetList().empty());
  EXPECT_EQ(list->Print(), "");
  EXPECT_EQ(dmtest::WrittenXml(*list), R"(<PrintableList pattern=""/>)");
}

TEST(DMPrintableListXmlTest, UnknownKeySwitchStopsReadingWithoutAnError) {
  // The map id and the children, malformed as they are, are never read.
  dmtest::ReadResult read =
      dmtest::ReadPrintable(R"(<PrintableList pattern="p {0}" isKey="yes" mapId="x">)"
                            R"(<Unknown/></PrintableList>)");
  const auto* list = dynamic_cast<const DMPrintableList*>(read.printable.get());
  ASSERT_NE(list, nullptr);
  EXPECT_EQ(list->GetCommonImpl().GetRawPattern(), "p {0}");
  EXPECT_FALSE(list->GetCommonImpl().GetIsKey());
  EXPECT_EQ(list->GetCommonImpl().GetMapId(), 0);
  EXPECT_TRUE(list->GetCommonImpl().GetList().empty());
  EXPECT_EQ(list->Print(), "p {0}");
}

TEST(DMPrintableListXmlTest, TextBetweenChildrenIsIgnored) {
  dmtest::ReadResult read = dmtest::ReadPrintable(
      R"(<PrintableList pattern="{0}{1}">text<PrintableList pattern="a"/> more )"
      R"(<!-- note --><PrintableList pattern="b"/></PrintableList>)");
  ASSERT_NE(read.printable, nullptr);
  EXPECT_EQ(read.printable->Print(), "ab");
}

struct MalformedRow {
  const char* what;
  const char* text;
};

void PrintTo(const MalformedRow& row, std::ostream* out) { *out << row.what; }

class DMPrintableListMalformedTest : public ::testing::TestWithParam<MalformedRow> {};

TEST_P(DMPrintableListMalformedTest, ThrowsFromTheConstructorAndIsNullFromTheFactory) {
  const MalformedRow& row = GetParam();
  DmExtension::DMXMLWrapper document;
  document.loadFromContents(row.text);
  ASSERT_NE(document.getElement(), nullptr) << row.text;
  EXPECT_THROW(DMPrintableList{document}, DMPrintable::FailExcp);
  dmtest::ReadResult read = dmtest::ReadPrintable(row.text);
  EXPECT_EQ(read.printable, nullptr);
  EXPECT_TRUE(read.recognised);
}

INSTANTIATE_TEST_SUITE_P(
    Rows, DMPrintableListMalformedTest,
    ::testing::Values(
        MalformedRow{"map id that is no integer", R"(<PrintableList pattern="p" mapId="x"/>)"},
        MalformedRow{"map id with a fraction", R"(<PrintableList pattern="p" mapId="1.5"/>)"},
        MalformedRow{"child of an unknown name",
                     R"(<PrintableList pattern="p"><PrintableList pattern="a"/><Unknown/>)"
                     R"(<PrintableList pattern="b"/></PrintableList>)"},
        MalformedRow{"format as a child",
                     R"(<PrintableList pattern="p"><StringFormat name="" width="-1"/>)"
                     R"(</PrintableList>)"},
        MalformedRow{"malformed value child",
                     R"(<PrintableList pattern="p"><PrintableList pattern="a"/>)"
                     R"(<PrintableValue isNull="maybe" storage="integer" value="1"/>)"
                     R"(</PrintableList>)"},
        MalformedRow{"malformed grandchild",
                     R"(<PrintableList pattern="p"><PrintableVList pattern="a">)"
                     R"(<PrintableValue storage="integer"/></PrintableVList></PrintableList>)"}));

}  // namespace
