#include "dmcommon/values/dmenumdict.h"

#include <set>
#include <string>

#include <gtest/gtest.h>

#include "dmcommon/values/dmvalue.h"
#include "dmcommon/xml/vocabulary/xmlvocabulary.h"

namespace {

namespace XMLEntities = DmCppHelperV1::XMLEntities;

// A local table with a repeated value: reading by value gives the first row.
constexpr DMEnumDictEntry kColours[] = {
    {7, "red"}, {9, "green"}, {7, "crimson"}, {0, "none"}, {0, nullptr},
};

constexpr DMEnumDictEntry kNoRows[] = {
    {0, nullptr},
};

// The helpers are usable in constant expressions. The partition table is
// checked at run time only: its texts are the vocabulary arrays, and g++ does
// not take their addresses as non-null in a constant expression when built
// with -fsanitize=null (part of the sanitizer build), so a static_assert over
// it would not compile there. Texts that are string literals have no such
// problem.
static_assert(DMEnumDict::Size(kColours) == 4);
static_assert(DMEnumDict::IndexOfText(kColours, "red") == 0);
static_assert(DMEnumDict::IndexOfText(kColours, "crimson") == 2);
static_assert(DMEnumDict::IndexOfText(kColours, "Red") == -1);
static_assert(DMEnumDict::IndexOfText(kColours, nullptr) == -1);
static_assert(DMEnumDict::TextOfValue(kColours, 9) == kColours[1].text);
static_assert(DMEnumDict::TextOfValue(kColours, 8) == nullptr);
static_assert(DMEnumDict::Size(kNoRows) == 0);
static_assert(DMEnumDict::IndexOfText(kNoRows, "") == -1);

TEST(DMEnumDictTest, PartitionTableMapsEveryRowBothWays) {
  const int size = DMEnumDict::Size(gPartitionDict);
  ASSERT_EQ(size, 3);
  std::set<std::string> texts;
  std::set<unsigned> values;
  for (int i = 0; i < size; ++i) {
    const DMEnumDictEntry& row = gPartitionDict[i];
    ASSERT_NE(row.text, nullptr) << i;
    EXPECT_EQ(DMEnumDict::IndexOfText(gPartitionDict, row.text), i) << row.text;
    EXPECT_STREQ(DMEnumDict::TextOfValue(gPartitionDict, row.value), row.text) << row.text;
    EXPECT_TRUE(texts.insert(row.text).second) << "repeated text " << row.text;
    EXPECT_TRUE(values.insert(row.value).second) << "repeated value " << row.value;
  }
}

TEST(DMEnumDictTest, PartitionTableNamesTheThreePartitions) {
  EXPECT_EQ(DMEnumDict::IndexOfText(gPartitionDict, XMLEntities::Training), 0);
  EXPECT_EQ(DMEnumDict::IndexOfText(gPartitionDict, XMLEntities::Testing), 1);
  EXPECT_EQ(DMEnumDict::IndexOfText(gPartitionDict, XMLEntities::Validation), 2);
  EXPECT_STREQ(DMEnumDict::TextOfValue(gPartitionDict, 1), "training");
  EXPECT_STREQ(DMEnumDict::TextOfValue(gPartitionDict, 2), "testing");
  EXPECT_STREQ(DMEnumDict::TextOfValue(gPartitionDict, 3), "validation");
}

TEST(DMEnumDictTest, PartitionTableHasNoTextForOtherValues) {
  // The terminating row's 0 is not a value of the table.
  EXPECT_EQ(DMEnumDict::TextOfValue(gPartitionDict, 0), nullptr);
  EXPECT_EQ(DMEnumDict::TextOfValue(gPartitionDict, 4), nullptr);
  EXPECT_EQ(DMEnumDict::TextOfValue(gPartitionDict, 0xFFFFFFFFU), nullptr);
}

TEST(DMEnumDictTest, TextsCompareByContentAndCase) {
  // A text read from a document never shares storage with the table.
  const std::string copy = "testing";
  EXPECT_NE(copy.c_str(), XMLEntities::Testing);
  EXPECT_EQ(DMEnumDict::IndexOfText(gPartitionDict, copy.c_str()), 1);
  for (const char* text : {"Training", "TESTING", "test", "testing ", " testing", "", "validatio",
                           "validations", "trainingtesting"}) {
    EXPECT_EQ(DMEnumDict::IndexOfText(gPartitionDict, text), -1) << '"' << text << '"';
  }
}

TEST(DMEnumDictTest, NullTextIsNotFound) {
  EXPECT_EQ(DMEnumDict::IndexOfText(gPartitionDict, nullptr), -1);
  EXPECT_EQ(DMEnumDict::IndexOfText(kColours, nullptr), -1);
  EXPECT_EQ(DMEnumDict::IndexOfText(kNoRows, nullptr), -1);
}

TEST(DMEnumDictTest, LocalTableIsReadInBothDirections) {
  EXPECT_EQ(DMEnumDict::Size(kColours), 4);
  EXPECT_EQ(DMEnumDict::IndexOfText(kColours, "red"), 0);
  EXPECT_EQ(DMEnumDict::IndexOfText(kColours, "green"), 1);
  EXPECT_EQ(DMEnumDict::IndexOfText(kColours, "crimson"), 2);
  EXPECT_EQ(DMEnumDict::IndexOfText(kColours, "none"), 3);
  EXPECT_EQ(DMEnumDict::IndexOfText(kColours, "blue"), -1);
  // A repeated value gives its first row's text.
  EXPECT_STREQ(DMEnumDict::TextOfValue(kColours, 7), "red");
  EXPECT_STREQ(DMEnumDict::TextOfValue(kColours, 9), "green");
  // A row may hold 0 as long as its text is set.
  EXPECT_STREQ(DMEnumDict::TextOfValue(kColours, 0), "none");
  EXPECT_EQ(DMEnumDict::TextOfValue(kColours, 8), nullptr);
}

TEST(DMEnumDictTest, TableWithNoRowsFindsNothing) {
  EXPECT_EQ(DMEnumDict::Size(kNoRows), 0);
  EXPECT_EQ(DMEnumDict::IndexOfText(kNoRows, "anything"), -1);
  EXPECT_EQ(DMEnumDict::IndexOfText(kNoRows, ""), -1);
  EXPECT_EQ(DMEnumDict::TextOfValue(kNoRows, 0), nullptr);
}

}  // namespace
