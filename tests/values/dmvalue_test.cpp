#include "dmcommon/values/dmvalue.h"

#include <cstdlib>
#include <initializer_list>
#include <limits>
#include <memory>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "dmcommon/values/dmdatum.h"
#include "dmcommon/xml/dmxmlwrapper.h"
#include "tests/support/xmltest.h"

namespace {

using DmExtension::DMXMLWrapper;

using DMValueXmlTest = dmtest::XmlTest;

constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();

// A null datum of `type`.
DMDatum NullOf(DMDatum::DataType type) {
  DMDatum datum;
  datum.SetNull(type);
  return datum;
}

// Whether `actual` is `expected`: the same nullness and type and, when set,
// the same value (reals compared exactly).
::testing::AssertionResult SameDatum(const DMDatum& actual, const DMDatum& expected) {
  if (actual.IsNull() != expected.IsNull() || actual.GetType() != expected.GetType()) {
    return ::testing::AssertionFailure()
           << "null " << actual.IsNull() << " type " << actual.GetType() << ", expected null "
           << expected.IsNull() << " type " << expected.GetType();
  }
  if (!actual.IsNull() && actual.Compare(expected) != 0) {
    std::string actualText;
    std::string expectedText;
    actual.ToString(actualText, 0);
    expected.ToString(expectedText, 0);
    return ::testing::AssertionFailure() << "value " << actualText << ", expected " << expectedText;
  }
  return ::testing::AssertionSuccess();
}

std::vector<DMValue> ListOf(std::initializer_list<DMDatum> datums) {
  std::vector<DMValue> list;
  for (const DMDatum& datum : datums) list.emplace_back(datum);
  return list;
}

// ---------------------------------------------------------------------------
// Construction and accessors

TEST(DMValueTest, DefaultIsANullIntegerWithNothingElse) {
  const DMValue value;
  EXPECT_TRUE(SameDatum(value.GetDatum(), DMDatum()));
  EXPECT_EQ(value.GetLabel(), "");
  EXPECT_EQ(value.GetFlag(), 0U);
  EXPECT_EQ(value.GetPartition(), 0U);
  EXPECT_EQ(value.GetValueText(), "");
}

TEST(DMValueTest, DatumConstructorTakesLabelFlagAndPartition) {
  const DMValue value(DMDatum("yes"), "Yes", 1, 3);
  EXPECT_TRUE(SameDatum(value.GetDatum(), DMDatum("yes")));
  EXPECT_EQ(value.GetLabel(), "Yes");
  EXPECT_EQ(value.GetFlag(), 1U);
  EXPECT_EQ(value.GetPartition(), 3U);
  EXPECT_EQ(value.GetValueText(), "");
}

TEST(DMValueTest, DatumConstructorDefaultsTheRest) {
  const DMValue value(DMDatum(2.5));
  EXPECT_TRUE(SameDatum(value.GetDatum(), DMDatum(2.5)));
  EXPECT_EQ(value.GetLabel(), "");
  EXPECT_EQ(value.GetFlag(), 0U);
  EXPECT_EQ(value.GetPartition(), 0U);
  EXPECT_EQ(value.GetValueText(), "");
}

TEST(DMValueTest, SettersReplaceLabelFlagAndPartition) {
  DMValue value(DMDatum(1LL), "old", 1, 1);
  value.SetLabel("new");
  value.SetFlag(2);
  value.SetPartition(3);
  EXPECT_EQ(value.GetLabel(), "new");
  EXPECT_EQ(value.GetFlag(), 2U);
  EXPECT_EQ(value.GetPartition(), 3U);
  EXPECT_TRUE(SameDatum(value.GetDatum(), DMDatum(1LL)));
}

TEST(DMValueTest, CopyTakesEveryFieldWithADeepText) {
  auto original = std::make_unique<DMValue>(DMDatum("abc"), "Label", 2, 1);
  const DMValue copy(*original);
  EXPECT_NE(copy.GetDatum().GetString(), original->GetDatum().GetString());
  // The copy outlives the original.
  original.reset();
  EXPECT_TRUE(SameDatum(copy.GetDatum(), DMDatum("abc")));
  EXPECT_EQ(copy.GetDatum().GetSize(), 4U);
  EXPECT_EQ(copy.GetLabel(), "Label");
  EXPECT_EQ(copy.GetFlag(), 2U);
  EXPECT_EQ(copy.GetPartition(), 1U);
}

TEST_F(DMValueXmlTest, CopyKeepsTheValueTextReadFromXml) {
  DMValue original(Parse("<Value value=\"1.50\" displayLabel=\"L\"/>"), DMDatum::RealType);
  ASSERT_EQ(original.GetValueText(), "1.50");
  const DMValue copy(original);
  original.SetLabel("changed");
  EXPECT_EQ(copy.GetValueText(), "1.50");
  EXPECT_TRUE(SameDatum(copy.GetDatum(), DMDatum(1.5)));
  EXPECT_EQ(copy.GetLabel(), "L");
}

TEST(DMValueTest, AssignmentReplacesEveryFieldWithADeepText) {
  DMValue target(DMDatum(3LL), "three", 1, 2);
  const DMValue source(DMDatum("text"), "", 0, 3);
  target = source;
  EXPECT_TRUE(SameDatum(target.GetDatum(), DMDatum("text")));
  EXPECT_NE(target.GetDatum().GetString(), source.GetDatum().GetString());
  EXPECT_EQ(target.GetLabel(), "");
  EXPECT_EQ(target.GetFlag(), 0U);
  EXPECT_EQ(target.GetPartition(), 3U);
}

TEST(DMValueTest, PartitionTableHoldsTheThreePartitionsInOrder) {
  ASSERT_EQ(DMEnumDict::Size(gPartitionDict), 3);
  EXPECT_EQ(gPartitionDict[0].value, 1U);
  EXPECT_STREQ(gPartitionDict[0].text, "training");
  EXPECT_EQ(gPartitionDict[1].value, 2U);
  EXPECT_STREQ(gPartitionDict[1].text, "testing");
  EXPECT_EQ(gPartitionDict[2].value, 3U);
  EXPECT_STREQ(gPartitionDict[2].text, "validation");
  EXPECT_EQ(gPartitionDict[3].value, 0U);
  EXPECT_EQ(gPartitionDict[3].text, nullptr);
}

// ---------------------------------------------------------------------------
// Reading from XML

struct ReadCase {
  const char* element;
  DMDatum::DataType type;
  DMDatum datum;
  const char* label;
  unsigned flag;
  unsigned partition;
  const char* valueText;
};

// An element that cannot be read gives this datum.
const DMDatum kEmpty = NullOf(DMDatum::IntegerType);

TEST_F(DMValueXmlTest, ReadsValueElements) {
  const ReadCase kCases[] = {
      // Values of each type.
      {"<Value value=\"5\"/>", DMDatum::IntegerType, DMDatum(5LL), "", 0, 0, ""},
      {"<Value value=\"-9223372036854775808\"/>", DMDatum::IntegerType,
       DMDatum(std::numeric_limits<long long>::min()), "", 0, 0, ""},
      // The integer read takes a leading number and ignores what follows.
      {"<Value value=\" 12abc\"/>", DMDatum::IntegerType, DMDatum(12LL), "", 0, 0, ""},
      {"<Value value=\"2.5\"/>", DMDatum::RealType, DMDatum(2.5), "", 0, 0, "2.5"},
      {"<Value value=\"1.50\"/>", DMDatum::RealType, DMDatum(1.5), "", 0, 0, "1.50"},
      {"<Value value=\"1e3\"/>", DMDatum::RealType, DMDatum(1000.0), "", 0, 0, "1e3"},
      {"<Value value=\"-0\"/>", DMDatum::RealType, DMDatum(-0.0), "", 0, 0, "-0"},
      {"<Value value=\"7\"/>", DMDatum::RealType, DMDatum(7.0), "", 0, 0, "7"},
      {"<Value value=\"abc\"/>", DMDatum::StringType, DMDatum("abc"), "", 0, 0, ""},
      {"<Value value=\"1.50\"/>", DMDatum::StringType, DMDatum("1.50"), "", 0, 0, ""},
      {"<Value value=\"\"/>", DMDatum::StringType, DMDatum(""), "", 0, 0, ""},
      {"<Value value=\"a &amp; b\"/>", DMDatum::StringType, DMDatum("a & b"), "", 0, 0, ""},
      // Infinities and not-a-number are not values.
      {"<Value value=\"INF\"/>", DMDatum::RealType, kEmpty, "", 0, 0, ""},
      {"<Value value=\"-INF\"/>", DMDatum::RealType, kEmpty, "", 0, 0, ""},
      {"<Value value=\"NaN\"/>", DMDatum::RealType, kEmpty, "", 0, 0, ""},
      {"<Value value=\"INF\" displayLabel=\"Inf\" flagValue=\"true\"/>", DMDatum::RealType, kEmpty,
       "", 0, 0, ""},
      // Absent values.
      {"<Value/>", DMDatum::IntegerType, kEmpty, "", 0, 0, ""},
      {"<Value/>", DMDatum::RealType, kEmpty, "", 0, 0, ""},
      {"<Value displayLabel=\"x\"/>", DMDatum::StringType, kEmpty, "", 0, 0, ""},
      // Unparsable values.
      {"<Value value=\"abc\"/>", DMDatum::IntegerType, kEmpty, "", 0, 0, ""},
      {"<Value value=\"\"/>", DMDatum::IntegerType, kEmpty, "", 0, 0, ""},
      {"<Value value=\"INF\"/>", DMDatum::IntegerType, kEmpty, "", 0, 0, ""},
      {"<Value value=\"abc\"/>", DMDatum::RealType, kEmpty, "", 0, 0, ""},
      {"<Value value=\"1,5\"/>", DMDatum::RealType, kEmpty, "", 0, 0, ""},
      {"<Value value=\"\"/>", DMDatum::RealType, kEmpty, "", 0, 0, ""},
      // Flags.
      {"<Value value=\"1\" flagValue=\"true\"/>", DMDatum::IntegerType, DMDatum(1LL), "", 1, 0, ""},
      {"<Value value=\"0\" flagValue=\"false\"/>", DMDatum::IntegerType, DMDatum(0LL), "", 2, 0,
       ""},
      {"<Value value=\"Y\" flagValue=\"true\"/>", DMDatum::StringType, DMDatum("Y"), "", 1, 0, ""},
      {"<Value value=\"1\" flagValue=\"TRUE\"/>", DMDatum::IntegerType, kEmpty, "", 0, 0, ""},
      {"<Value value=\"1\" flagValue=\"yes\"/>", DMDatum::IntegerType, kEmpty, "", 0, 0, ""},
      {"<Value value=\"1\" flagValue=\"\"/>", DMDatum::IntegerType, kEmpty, "", 0, 0, ""},
      {"<Value value=\"1\" flagValue=\" true\"/>", DMDatum::IntegerType, kEmpty, "", 0, 0, ""},
      // Partitions.
      {"<Value value=\"1\" definePartition=\"training\"/>", DMDatum::IntegerType, DMDatum(1LL), "",
       0, 1, ""},
      {"<Value value=\"2\" definePartition=\"testing\"/>", DMDatum::IntegerType, DMDatum(2LL), "",
       0, 2, ""},
      {"<Value value=\"3\" definePartition=\"validation\"/>", DMDatum::IntegerType, DMDatum(3LL),
       "", 0, 3, ""},
      {"<Value value=\"4\" definePartition=\"Training\"/>", DMDatum::IntegerType, kEmpty, "", 0, 0,
       ""},
      {"<Value value=\"4\" definePartition=\"test\"/>", DMDatum::IntegerType, kEmpty, "", 0, 0, ""},
      {"<Value value=\"4\" definePartition=\"\"/>", DMDatum::IntegerType, kEmpty, "", 0, 0, ""},
      // Labels.
      {"<Value value=\"1\" displayLabel=\"One\"/>", DMDatum::IntegerType, DMDatum(1LL), "One", 0, 0,
       ""},
      {"<Value value=\"1\" displayLabel=\"\"/>", DMDatum::IntegerType, DMDatum(1LL), "", 0, 0, ""},
      {"<Value value=\"1.0\" displayLabel=\"\xC3\xA9t\xC3\xA9\"/>", DMDatum::RealType, DMDatum(1.0),
       "\xC3\xA9t\xC3\xA9", 0, 0, "1.0"},
      // Everything at once.
      {"<Value value=\"0.25\" flagValue=\"false\" definePartition=\"testing\" "
       "displayLabel=\"Quarter\"/>",
       DMDatum::RealType, DMDatum(0.25), "Quarter", 2, 2, "0.25"},
      // A later failure keeps the flag and the partition read before it and
      // clears everything else.
      {"<Value value=\"1\" flagValue=\"true\" definePartition=\"bad\" displayLabel=\"L\"/>",
       DMDatum::IntegerType, kEmpty, "", 1, 0, ""},
      {"<Value value=\"1.50\" flagValue=\"false\" definePartition=\"other\" "
       "displayLabel=\"L\"/>",
       DMDatum::RealType, kEmpty, "", 2, 0, ""},
      {"<Value value=\"x\" flagValue=\"true\" definePartition=\"TESTING\"/>", DMDatum::StringType,
       kEmpty, "", 1, 0, ""},
      // A bad flag stops before the partition is read.
      {"<Value value=\"1\" flagValue=\"bad\" definePartition=\"training\" displayLabel=\"L\"/>",
       DMDatum::IntegerType, kEmpty, "", 0, 0, ""},
  };
  for (const ReadCase& row : kCases) {
    const DMValue value(Parse(row.element), row.type);
    EXPECT_TRUE(SameDatum(value.GetDatum(), row.datum)) << row.element;
    EXPECT_EQ(value.GetLabel(), row.label) << row.element;
    EXPECT_EQ(value.GetFlag(), row.flag) << row.element;
    EXPECT_EQ(value.GetPartition(), row.partition) << row.element;
    EXPECT_EQ(value.GetValueText(), row.valueText) << row.element;
  }
}

TEST_F(DMValueXmlTest, RealValueKeepsItsTextExactlyAsRead) {
  const DMValue value(Parse("<Value value=\"0.10000\"/>"), DMDatum::RealType);
  EXPECT_EQ(value.GetValueText(), "0.10000");
  EXPECT_EQ(value.GetDatum().GetReal(), 0.1);
  std::string written;
  ASSERT_TRUE(value.GetDatum().ToString(written, 0));
  EXPECT_EQ(written, "0.1");
}

TEST_F(DMValueXmlTest, ReadTextIsAnOwnedCopyWithItsTerminator) {
  const DMValue value(Parse("<Value value=\"abcd\"/>"), DMDatum::StringType);
  EXPECT_STREQ(value.GetDatum().GetString(), "abcd");
  EXPECT_EQ(value.GetDatum().GetSize(), 5U);
}

TEST_F(DMValueXmlTest, AnyOtherTypeReadsTheValueAsAReal) {
  // The text is kept only when a real was asked for.
  const auto otherType = static_cast<DMDatum::DataType>(7);
  const DMValue value(Parse("<Value value=\"1.50\" displayLabel=\"L\"/>"), otherType);
  EXPECT_TRUE(SameDatum(value.GetDatum(), DMDatum(1.5)));
  EXPECT_EQ(value.GetLabel(), "L");
  EXPECT_EQ(value.GetValueText(), "");
  const DMValue infinite(Parse("<Value value=\"INF\"/>"), otherType);
  EXPECT_TRUE(SameDatum(infinite.GetDatum(), kEmpty));
}

TEST(DMValueXmlReadTest, HandleWithoutAnElementGivesAnEmptyValue) {
  const DMXMLWrapper handle;
  for (const DMDatum::DataType type :
       {DMDatum::IntegerType, DMDatum::RealType, DMDatum::StringType}) {
    const DMValue value(handle, type);
    EXPECT_TRUE(SameDatum(value.GetDatum(), kEmpty)) << type;
    EXPECT_EQ(value.GetLabel(), "") << type;
    EXPECT_EQ(value.GetFlag(), 0U) << type;
    EXPECT_EQ(value.GetPartition(), 0U) << type;
    EXPECT_EQ(value.GetValueText(), "") << type;
  }
}

// ---------------------------------------------------------------------------
// Searching lists

struct IndexCase {
  const char* name;
  DMDatum datum;
  std::vector<DMValue> list;
  int expected;
};

TEST(DMValueGetIndexTest, FindsADatumInAList) {
  const DMDatum nullInteger;
  const DMDatum nullText(static_cast<const char*>(nullptr));
  const IndexCase kCases[] = {
      // A null datum cannot be searched for.
      {"null integer", nullInteger, ListOf({DMDatum(1LL)}), -2},
      {"null integer, empty list", nullInteger, {}, -2},
      {"null text", nullText, ListOf({DMDatum("a")}), -2},
      {"null text, empty list", nullText, {}, -2},
      // Texts.
      {"text, empty list", DMDatum("a"), {}, -1},
      {"text, integer first", DMDatum("a"), ListOf({DMDatum(1LL), DMDatum("a")}), -2},
      {"text, real first", DMDatum("a"), ListOf({DMDatum(1.0)}), -2},
      {"text, null integer first", DMDatum("a"), ListOf({DMDatum(), DMDatum("a")}), -2},
      {"text found first", DMDatum("a"), ListOf({DMDatum("a"), DMDatum("b")}), 0},
      {"text found later", DMDatum("b"), ListOf({DMDatum("a"), DMDatum("b"), DMDatum("b")}), 1},
      {"text not found", DMDatum("c"), ListOf({DMDatum("a"), DMDatum("b")}), -1},
      {"text is exact", DMDatum("A"), ListOf({DMDatum("a"), DMDatum("a ")}), -1},
      {"empty text found", DMDatum(""), ListOf({DMDatum("a"), DMDatum("")}), 1},
      {"text passes a null text", DMDatum("b"), ListOf({DMDatum("a"), nullText, DMDatum("b")}), 2},
      // Integers.
      {"integer, empty list", DMDatum(1LL), {}, -1},
      {"integer found first", DMDatum(1LL), ListOf({DMDatum(1LL), DMDatum(2LL)}), 0},
      {"integer found later", DMDatum(3LL), ListOf({DMDatum(1LL), DMDatum(2LL), DMDatum(3LL)}), 2},
      {"integer not found", DMDatum(4LL), ListOf({DMDatum(1LL), DMDatum(2LL)}), -1},
      {"integer, null first", DMDatum(1LL), ListOf({nullInteger, DMDatum(1LL)}), -2},
      {"integer, null second stops", DMDatum(3LL),
       ListOf({DMDatum(1LL), nullInteger, DMDatum(3LL)}), -2},
      {"integer found before a null", DMDatum(1LL), ListOf({DMDatum(1LL), nullInteger}), 0},
      {"integer, real in the list", DMDatum(3LL), ListOf({DMDatum(1LL), DMDatum(3.0)}), -2},
      {"integer, text in the list", DMDatum(3LL), ListOf({DMDatum("3")}), -2},
      {"integer found before a real", DMDatum(1LL), ListOf({DMDatum(1LL), DMDatum(2.0)}), 0},
      // Reals.
      {"real, empty list", DMDatum(1.0), {}, -1},
      {"real found", DMDatum(2.5), ListOf({DMDatum(1.5), DMDatum(2.5)}), 1},
      {"real equal only when exact", DMDatum(0.3), ListOf({DMDatum(0.1 + 0.2)}), -1},
      {"real minus zero equals zero", DMDatum(-0.0), ListOf({DMDatum(1.0), DMDatum(0.0)}), 1},
      {"real NaN never found", DMDatum(kNaN), ListOf({DMDatum(kNaN)}), -1},
      {"real passes a NaN", DMDatum(1.0), ListOf({DMDatum(kNaN), DMDatum(1.0)}), 1},
      {"real, integer in the list", DMDatum(1.0), ListOf({DMDatum(1LL)}), -2},
      {"real, null real second stops", DMDatum(2.0),
       ListOf({DMDatum(1.0), NullOf(DMDatum::RealType), DMDatum(2.0)}), -2},
  };
  for (const IndexCase& row : kCases) {
    EXPECT_EQ(DMValue::GetIndex(row.datum, row.list), row.expected) << row.name;
    const int mapped = row.expected >= 0 ? 1 : (row.expected == -1 ? 0 : 2);
    EXPECT_EQ(DMValue::SearchList(row.datum, row.list), mapped) << row.name;
  }
}

struct TextIndexCase {
  const char* name;
  const char* text;
  std::vector<DMValue> list;
  int expected;
};

TEST(DMValueGetIndexTest, FindsATextInAList) {
  const TextIndexCase kCases[] = {
      {"null text", nullptr, ListOf({DMDatum("a")}), -2},
      {"null text, empty list", nullptr, {}, -2},
      {"empty list", "a", {}, -1},
      {"integer first", "1", ListOf({DMDatum(1LL)}), -2},
      {"real first", "1", ListOf({DMDatum(1.0), DMDatum("1")}), -2},
      {"found first", "a", ListOf({DMDatum("a")}), 0},
      {"found later", "c", ListOf({DMDatum("a"), DMDatum("b"), DMDatum("c")}), 2},
      {"first of two equal", "b", ListOf({DMDatum("a"), DMDatum("b"), DMDatum("b")}), 1},
      {"not found", "d", ListOf({DMDatum("a"), DMDatum("b")}), -1},
      {"exact bytes", "ab", ListOf({DMDatum("abc"), DMDatum("a"), DMDatum("AB")}), -1},
      {"high bytes", "\xC3\xA9", ListOf({DMDatum("e"), DMDatum("\xC3\xA9")}), 1},
      {"empty text", "", ListOf({DMDatum(" "), DMDatum("")}), 1},
  };
  for (const TextIndexCase& row : kCases) {
    EXPECT_EQ(DMValue::GetIndex(row.text, row.list), row.expected) << row.name;
    const int mapped = row.expected >= 0 ? 1 : (row.expected == -1 ? 0 : 2);
    EXPECT_EQ(DMValue::SearchList(row.text, row.list), mapped) << row.name;
  }
}

TEST(DMValueGetIndexTest, ListWhoseSecondElementIsNullStopsEvenIfALaterOneMatches) {
  const std::vector<DMValue> list = ListOf({DMDatum(1LL), DMDatum(), DMDatum(5LL)});
  EXPECT_EQ(DMValue::GetIndex(DMDatum(5LL), list), -2);
  EXPECT_EQ(DMValue::SearchList(DMDatum(5LL), list), 2);
}

TEST(DMValueGetIndexTest, TextSearchPassesALaterElementThatIsNotAText) {
  // Only the first element's type is checked; a later number has no text and
  // so equals no text. Run in a child process so that a crash fails this test
  // alone instead of ending the whole run.
  const std::vector<DMValue> list = ListOf({DMDatum("a"), DMDatum(5LL), DMDatum("b")});
  EXPECT_EXIT(
      {
        const bool ok = DMValue::GetIndex("b", list) == 2 &&
                        DMValue::GetIndex(DMDatum("b"), list) == 2 &&
                        DMValue::GetIndex("z", list) == -1 && DMValue::SearchList("z", list) == 0;
        std::exit(ok ? 0 : 1);
      },
      ::testing::ExitedWithCode(0), "");
}

TEST(DMValueSearchListTest, MapsTheIndexToFoundNotFoundAndNotComparable) {
  const std::vector<DMValue> integers = ListOf({DMDatum(1LL), DMDatum(2LL)});
  EXPECT_EQ(DMValue::SearchList(DMDatum(2LL), integers), 1);
  EXPECT_EQ(DMValue::SearchList(DMDatum(3LL), integers), 0);
  EXPECT_EQ(DMValue::SearchList(DMDatum(2.0), integers), 2);
  EXPECT_EQ(DMValue::SearchList(DMDatum(), integers), 2);
  const std::vector<DMValue> texts = ListOf({DMDatum("x"), DMDatum("y")});
  EXPECT_EQ(DMValue::SearchList("y", texts), 1);
  EXPECT_EQ(DMValue::SearchList("z", texts), 0);
  EXPECT_EQ(DMValue::SearchList(static_cast<const char*>(nullptr), texts), 2);
  EXPECT_EQ(DMValue::SearchList("x", integers), 2);
}

}  // namespace
