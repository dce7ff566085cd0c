#include "dmcommon/printable/dmprintablevlist.h"

#include <cstdint>
#include <memory>
#include <ostream>
#include <string>
#include <vector>

#include <gtest/gtest.h>
#include <unicode/unistr.h>

#include "dmcommon/printable/dmprintable.h"
#include "dmcommon/printable/dmprintablelist.h"
#include "dmcommon/printable/dmprintableutil.h"
#include "dmcommon/xml/dmxmlwrapper.h"
#include "tests/formats/formattest.h"
#include "tests/printable/printabletest.h"
#include "tests/support/xmltest.h"

namespace {

using dmtest::TextItem;

constexpr std::uint32_t kNone = 0xFFFFFFFF;
constexpr char kSeries[] = "{0}/, {0}/ and {0}";

DMPrintableVList VListOf(const std::string& pattern, const std::vector<std::string>& items) {
  DMPrintableVList list(pattern, false, 0);
  for (const std::string& item : items) list.AppendToList(TextItem(item));
  return list;
}

std::string Utf8(const icu::UnicodeString& text) {
  std::string bytes;
  return text.toUTF8String(bytes);
}

// ---------------------------------------------------------------------------
// Splitting the pattern

struct SplitRow {
  const char* what;
  const char* pattern;
  std::vector<std::string> subPatterns;
  std::vector<std::uint32_t> counts;
};

void PrintTo(const SplitRow& row, std::ostream* out) { *out << row.what; }

class DMPrintableVListSplitTest : public ::testing::TestWithParam<SplitRow> {};

TEST_P(DMPrintableVListSplitTest, SplitsIntoHeadMiddleAndTailAndCountsThePlaceholders) {
  const SplitRow& row = GetParam();
  const DMPrintableVList list(row.pattern, false, 0);
  list.MakeParts();
  std::vector<std::string> subPatterns;
  for (const icu::UnicodeString& part : list.GetSubPatterns()) subPatterns.push_back(Utf8(part));
  EXPECT_EQ(subPatterns, row.subPatterns);
  EXPECT_EQ(list.GetArgCounts(), row.counts);
}

INSTANTIATE_TEST_SUITE_P(
    Rows, DMPrintableVListSplitTest,
    ::testing::Values(
        SplitRow{"three pieces", kSeries, {"{0}", ", {0}", " and {0}"}, {0, 0, 0}},
        SplitRow{"no slash is all head", "{0} {1} {2}", {"{0} {1} {2}", "", ""}, {2, kNone, kNone}},
        SplitRow{
            "fourth piece ignored", "{0}/-{0}/+{0}/{0}{1}{2}", {"{0}", "-{0}", "+{0}"}, {0, 0, 0}},
        SplitRow{"trailing slash after the tail", "a/b/c/", {"a", "b", "c"}, {kNone, kNone, kNone}},
        SplitRow{"slash as the last character stops", "{0}/", {"{0}", "", ""}, {0, kNone, kNone}},
        SplitRow{"two pieces", "{0}/, {0}", {"{0}", ", {0}", ""}, {0, 0, kNone}},
        SplitRow{"empty middle", "{0}// and {0}", {"{0}", "", " and {0}"}, {0, kNone, 0}},
        SplitRow{"empty head", "/[{0}]", {"", "[{0}]", ""}, {kNone, 0, kNone}},
        SplitRow{"only slashes", "///", {"", "", ""}, {kNone, kNone, kNone}},
        SplitRow{"empty pattern", "", {"", "", ""}, {kNone, kNone, kNone}},
        SplitRow{"each placeholder counts, repeated or not",
                 "{0}{0}/{1}{0}/{0}{2}{1}",
                 {"{0}{0}", "{1}{0}", "{0}{2}{1}"},
                 {1, 1, 2}},
        SplitRow{"quoted braces are no placeholders",
                 "'{0}' {0}/x",
                 {"'{0}' {0}", "x", ""},
                 {0, kNone, kNone}}));

TEST(DMPrintableVListTest, PartsAreEmptyUntilBuilt) {
  const DMPrintableVList list = VListOf(kSeries, {"a"});
  EXPECT_TRUE(list.GetSubPatterns().empty());
  EXPECT_TRUE(list.GetArgCounts().empty());
  EXPECT_EQ(Utf8(list.PrintPart(0, 0, 1)), "");
  EXPECT_EQ(list.Print(), "a");
  EXPECT_EQ(list.GetSubPatterns().size(), 3u);
}

TEST(DMPrintableVListTest, InvalidSubPatternLeavesThePartsEmptyAndPrintsNothing) {
  for (const char* pattern : {"{0/, {0}/ and {0}", "{0}/, {0/ and {0}", "{0}/, {0}/ and {0"}) {
    const DMPrintableVList list = VListOf(pattern, {"a", "b", "c", "d"});
    list.MakeParts();
    EXPECT_TRUE(list.GetSubPatterns().empty()) << pattern;
    EXPECT_TRUE(list.GetArgCounts().empty()) << pattern;
    EXPECT_EQ(list.Print(), "") << pattern;
    EXPECT_EQ(Utf8(list.PrintPart(0, 0, 1)), "") << pattern;
  }
}

// ---------------------------------------------------------------------------
// Printing parts

TEST(DMPrintableVListTest, PrintPartFillsHeadAndMiddleInOrder) {
  const DMPrintableVList list = VListOf("{0}<{1}/[{0}|{1}]", {"a", "b", "c", "d"});
  list.MakeParts();
  EXPECT_EQ(Utf8(list.PrintPart(0, 0, 2)), "a<b");
  EXPECT_EQ(Utf8(list.PrintPart(0, 2, 2)), "c<d");
  EXPECT_EQ(Utf8(list.PrintPart(1, 1, 2)), "[b|c]");
}

TEST(DMPrintableVListTest, PrintPartFillsTheTailFromTheEnd) {
  const DMPrintableVList list = VListOf("//{0}<{1}<{2}", {"a", "b", "c", "d"});
  list.MakeParts();
  EXPECT_EQ(Utf8(list.PrintPart(2, 1, 3)), "d<c<b");
  EXPECT_EQ(Utf8(list.PrintPart(2, 0, 1)), "a<{1}<{2}");
}

TEST(DMPrintableVListTest, PrintPartRefusesWhatItCannotTake) {
  const DMPrintableVList list = VListOf("{0}/{0}/{0}", {"a", "b"});
  list.MakeParts();
  EXPECT_EQ(Utf8(list.PrintPart(0, 0, 0)), "");
  EXPECT_EQ(Utf8(list.PrintPart(0, 1, 2)), "");
  EXPECT_EQ(Utf8(list.PrintPart(0, 2, 1)), "");
  EXPECT_EQ(Utf8(list.PrintPart(0, 0xFFFFFFFF, 2)), "");
  EXPECT_EQ(Utf8(list.PrintPart(3, 0, 1)), "");
  EXPECT_EQ(Utf8(list.PrintPart(0, 1, 1)), "b");
}

// ---------------------------------------------------------------------------
// Printing the whole list

struct PrintRow {
  const char* what;
  const char* pattern;
  std::vector<std::string> items;
  const char* expected;
};

void PrintTo(const PrintRow& row, std::ostream* out) { *out << row.what; }

class DMPrintableVListPrintTest : public ::testing::TestWithParam<PrintRow> {};

TEST_P(DMPrintableVListPrintTest, PrintsHeadWholeMiddleGroupsAndTail) {
  const PrintRow& row = GetParam();
  EXPECT_EQ(VListOf(row.pattern, row.items).Print(), row.expected);
}

INSTANTIATE_TEST_SUITE_P(
    Rows, DMPrintableVListPrintTest,
    ::testing::Values(
        PrintRow{"series of four", kSeries, {"a", "b", "c", "d"}, "a, b, c and d"},
        PrintRow{"series of two", kSeries, {"a", "b"}, "a and b"},
        PrintRow{"series of one is the head alone", kSeries, {"a"}, "a"},
        PrintRow{"no items", kSeries, {}, ""},
        PrintRow{"fewer items than the head takes", "{0} and {1}/, {0}/ and {0}", {"a"}, ""},
        PrintRow{
            "tail cannot take its items: the head alone", "{0}/, {0}/ {1}-{0}", {"a", "b"}, "a"},
        PrintRow{"tail puts the last item in {0}",
                 "{0}/, {0}/; {0} after {1}",
                 {"h", "x", "y", "z"},
                 "h, x; z after y"},
        PrintRow{"tail of two after the head", "{0}/, {0}/ {0}|{1}", {"h", "y", "z"}, "h z|y"},
        PrintRow{"middle in whole groups only",
                 "{0}/; {0},{1}/ + {0}",
                 {"a", "b", "c", "d", "e"},
                 "a; b,c + e"},
        PrintRow{"middle of two groups",
                 "{0}/; {0},{1}/ + {0}",
                 {"a", "b", "c", "d", "e", "f"},
                 "a; b,c; d,e + f"},
        PrintRow{
            "fourth piece ignored", "{0}/, {0}/ and {0}/ ZZZ {0}", {"a", "b", "c"}, "a, b and c"},
        PrintRow{"no slash: the head alone", "{0}", {"a", "b", "c"}, "a"},
        PrintRow{"head of two", "{0}+{1}/, {0}/ & {0}", {"a", "b", "c", "d"}, "a+b, c & d"},
        PrintRow{"empty middle never repeats", "{0}// and {0}", {"a", "b", "c", "d"}, "a and d"},
        PrintRow{"empty tail", "{0}/, {0}", {"a", "b", "c"}, "a, b, c"},
        PrintRow{"empty head takes no items", "/[{0}]", {"a", "b"}, "[a][b]"},
        PrintRow{
            "parts without placeholders take no items and print nothing", "(/-/)", {"a", "b"}, ""},
        PrintRow{"sub-patterns keep the message syntax",
                 "'{'{0}/, {0}/ and {0}'}'",
                 {"a", "b"},
                 "{a and b}"},
        PrintRow{"UTF-8 items",
                 "{0}/ \xC2\xB7 {0}/",
                 {"\xC3\xA9", "\xE2\x82\xAC"},
                 "\xC3\xA9 \xC2\xB7 \xE2\x82\xAC"}));

TEST(DMPrintableVListTest, ItemsMayBeAnyPrintable) {
  DMPrintableVList list(kSeries, false, 0);
  list.AppendToList(dmtest::IntegerItem(1, 1));
  DMPrintableList inner("({0})", false, 0);
  inner.AppendToList(TextItem("two"));
  list.AppendToList(inner);
  list.AppendToList(DMPrintableVList("{0}/+{0}/", false, 0));
  EXPECT_EQ(list.Print(), "1, (two) and ");
}

// ---------------------------------------------------------------------------
// Changing the pattern, keys and lookups

TEST(DMPrintableVListTest, SetPatternRebuildsThePartsOnTheNextPrint) {
  DMPrintableVList list = VListOf(kSeries, {"a", "b", "c"});
  EXPECT_EQ(list.Print(), "a, b and c");
  list.SetPattern("{0}/; {0}/ or {0}", false, 0);
  EXPECT_TRUE(list.GetSubPatterns().empty());
  EXPECT_EQ(list.Print(), "a; b or c");
  ASSERT_EQ(list.GetSubPatterns().size(), 3u);
  EXPECT_EQ(Utf8(list.GetSubPatterns()[2]), " or {0}");
}

TEST(DMPrintableVListTest, ItemsAddedAfterPrintingAreUsed) {
  DMPrintableVList list = VListOf(kSeries, {"a", "b"});
  EXPECT_EQ(list.Print(), "a and b");
  list.AppendToList(TextItem("c"));
  EXPECT_EQ(list.Print(), "a, b and c");
  list.SetList({});
  EXPECT_EQ(list.Print(), "");
}

TEST(DMPrintableVListTest, KeyIsLookedUpWhenThePartsAreBuilt) {
  dmtest::CountingLookUp lookUp;
  lookUp.texts = {{"series", kSeries}};
  DMPrintableVList list("series", true, 6);
  list.AppendToList(TextItem("a"));
  list.AppendToList(TextItem("b"));
  list.SetResLookUp(&lookUp);
  EXPECT_EQ(list.Print(), "a and b");
  EXPECT_EQ(lookUp.calls, 1);
  EXPECT_EQ(lookUp.lastMapId, 6);
  EXPECT_EQ(list.Print(), "a and b");
  EXPECT_EQ(lookUp.calls, 1);
}

TEST(DMPrintableVListTest, LookupSetAfterAKeyWasPrintedKeepsTheEarlierParts) {
  dmtest::CountingLookUp lookUp;
  lookUp.texts = {{"series", kSeries}};
  DMPrintableVList list = VListOf("", {"a", "b"});
  list.SetPattern("series", true, 0);
  EXPECT_EQ(list.Print(), "");
  list.SetResLookUp(&lookUp);
  // The parts were built from the empty text of the unresolved key.
  EXPECT_EQ(list.Print(), "");
  EXPECT_EQ(lookUp.calls, 0);
  list.SetPattern("series", true, 0);
  EXPECT_EQ(list.Print(), "a and b");
  EXPECT_EQ(lookUp.calls, 1);
}

// ---------------------------------------------------------------------------
// Copies

TEST(DMPrintableVListTest, CopyCarriesTheBuiltParts) {
  const DMPrintableVList list = VListOf(kSeries, {"a", "b", "c"});
  EXPECT_EQ(list.Print(), "a, b and c");
  const std::unique_ptr<DMPrintable> clone(list.Clone());
  const auto* copy = dynamic_cast<const DMPrintableVList*>(clone.get());
  ASSERT_NE(copy, nullptr);
  EXPECT_EQ(copy->GetSubPatterns(), list.GetSubPatterns());
  EXPECT_EQ(copy->GetArgCounts(), list.GetArgCounts());
  EXPECT_EQ(Utf8(copy->PrintPart(2, 2, 1)), " and c");
  EXPECT_EQ(copy->Print(), "a, b and c");
  EXPECT_NE(copy->GetCommonImpl().GetList()[0], list.GetCommonImpl().GetList()[0]);
}

TEST(DMPrintableVListTest, CopyOfAnUnbuiltListBuildsItsOwnParts) {
  const DMPrintableVList list = VListOf(kSeries, {"a", "b"});
  // NOLINTNEXTLINE(performance-unnecessary-copy-initialization): the copy is under test
  const DMPrintableVList copy(list);
  EXPECT_TRUE(copy.GetSubPatterns().empty());
  EXPECT_EQ(copy.Print(), "a and b");
  EXPECT_TRUE(list.GetSubPatterns().empty());
}

TEST(DMPrintableVListTest, AssignmentCopiesDeeplyAndSurvivesSelfAssignment) {
  DMPrintableVList source = VListOf(kSeries, {"a", "b"});
  EXPECT_EQ(source.Print(), "a and b");
  DMPrintableVList target = VListOf("{0}", {"x"});
  target = source;
  source.SetPattern("{0}", false, 0);
  source.SetList({});
  EXPECT_EQ(target.Print(), "a and b");
  const DMPrintableVList& self = target;
  target = self;
  EXPECT_EQ(target.Print(), "a and b");
}

// ---------------------------------------------------------------------------
// XML

TEST(DMPrintableVListXmlTest, WritesAValueListElement) {
  DMPrintableVList list("series", true, 2);
  list.AppendToList(DMPrintableList("x", false, 0));
  EXPECT_EQ(dmtest::WrittenXml(list), R"(<PrintableVList isKey="true" mapId="2" pattern="series">)"
                                      R"(<PrintableList pattern="x"/></PrintableVList>)");
}

TEST(DMPrintableVListXmlTest, RoundTripPrintsTheSameText) {
  const DMPrintableVList list = VListOf(kSeries, {"a", "b", "c", "d"});
  const std::unique_ptr<DMPrintable> read = dmtest::XmlRoundTrip(list);
  const auto* copy = dynamic_cast<const DMPrintableVList*>(read.get());
  ASSERT_NE(copy, nullptr);
  EXPECT_EQ(copy->Print(), "a, b, c and d");
}

TEST(DMPrintableVListXmlTest, ConstructorFromAnElementThrowsForABadChild) {
  DmExtension::DMXMLWrapper document;
  document.loadFromContents(R"(<PrintableVList pattern="p"><Other/></PrintableVList>)");
  EXPECT_THROW(DMPrintableVList{document}, DMPrintable::FailExcp);
  bool recognised = false;
  EXPECT_EQ(DMPrintableVList::CreateFromElmt(document, recognised), nullptr);
  EXPECT_TRUE(recognised);
}

}  // namespace
