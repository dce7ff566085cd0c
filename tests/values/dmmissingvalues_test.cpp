#include "dmcommon/values/dmmissingvalues.h"

#include <cstdlib>
#include <initializer_list>
#include <limits>
#include <memory>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "dmcommon/values/dmdatum.h"
#include "dmcommon/values/dmrange.h"
#include "dmcommon/values/dmvalue.h"

namespace {

constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();

DMDatum NullOf(DMDatum::DataType type) {
  DMDatum datum;
  datum.SetNull(type);
  return datum;
}

std::vector<DMValue> ListOf(std::initializer_list<DMDatum> datums) {
  std::vector<DMValue> list;
  for (const DMDatum& datum : datums) list.emplace_back(datum);
  return list;
}

// Missing values of texts: a list, no range, nulls missing, white space
// missing when `whiteSpace`.
DMMissingValues TextMissing(const std::vector<DMValue>& list, bool whiteSpace) {
  return DMMissingValues(DMRange(), list, true, whiteSpace);
}

// ---------------------------------------------------------------------------
// Construction and accessors

TEST(DMMissingValuesTest, DefaultHasAnEmptyRangeNoValuesAndNullsMissing) {
  const DMMissingValues missing;
  const auto limits = missing.GetMissingRange().GetLimits();
  EXPECT_EQ(limits.first.GetType(), DMDatum::IntegerType);
  EXPECT_EQ(limits.first.GetInteger(), 1);
  EXPECT_EQ(limits.second.GetType(), DMDatum::IntegerType);
  EXPECT_EQ(limits.second.GetInteger(), 0);
  EXPECT_TRUE(missing.GetMissingRange().IsEmpty());
  EXPECT_TRUE(missing.GetMissingValueList().empty());
  EXPECT_TRUE(missing.IsNullMissing());
  EXPECT_FALSE(missing.IsWhiteSpMissing());
  EXPECT_TRUE(missing.IsValid());
}

TEST(DMMissingValuesTest, ConstructorCopiesAllFour) {
  std::vector<DMValue> list = ListOf({DMDatum("NA"), DMDatum("-")});
  DMDatum lower("a");
  const DMMissingValues missing(DMRange(lower, DMDatum("b")), list, false, true);
  list.clear();
  lower.SetString("z");
  const auto limits = missing.GetMissingRange().GetLimits();
  EXPECT_STREQ(limits.first.GetString(), "a");
  EXPECT_STREQ(limits.second.GetString(), "b");
  ASSERT_EQ(missing.GetMissingValueList().size(), 2U);
  EXPECT_STREQ(missing.GetMissingValueList()[0].GetDatum().GetString(), "NA");
  EXPECT_STREQ(missing.GetMissingValueList()[1].GetDatum().GetString(), "-");
  EXPECT_FALSE(missing.IsNullMissing());
  EXPECT_TRUE(missing.IsWhiteSpMissing());
}

TEST(DMMissingValuesTest, CopyAndAssignmentAreDeep) {
  auto source = std::make_unique<DMMissingValues>(DMRange(DMDatum("a"), DMDatum("b")),
                                                  ListOf({DMDatum("x")}), false, true);
  const DMMissingValues copy(*source);
  DMMissingValues assigned;
  assigned = *source;
  // The copies outlive the source.
  source.reset();
  EXPECT_STREQ(copy.GetMissingRange().GetLimits().first.GetString(), "a");
  EXPECT_STREQ(copy.GetMissingRange().GetLimits().second.GetString(), "b");
  ASSERT_EQ(copy.GetMissingValueList().size(), 1U);
  EXPECT_STREQ(copy.GetMissingValueList()[0].GetDatum().GetString(), "x");
  EXPECT_FALSE(copy.IsNullMissing());
  EXPECT_TRUE(copy.IsWhiteSpMissing());
  EXPECT_EQ(assigned.CheckForMissing("x"), 1);
  EXPECT_EQ(assigned.CheckForMissing(static_cast<const char*>(nullptr)), 0);
  EXPECT_EQ(assigned.CheckForMissing(" "), 1);
}

// ---------------------------------------------------------------------------
// IsValid

struct ValidCase {
  const char* name;
  DMRange range;
  std::vector<DMValue> list;
  bool expected;
};

TEST(DMMissingValuesTest, IsValidChecksTheListAgainstTheRequiredType) {
  const DMDatum nullInteger;
  const DMDatum nullReal = NullOf(DMDatum::RealType);
  const DMDatum nullText = NullOf(DMDatum::StringType);
  const DMRange integers(DMDatum(1LL), DMDatum(10LL));
  const DMRange reals(DMDatum(1.0), DMDatum(10.0));
  const ValidCase kCases[] = {
      // An empty list is valid whatever the range.
      {"empty list", DMRange(), {}, true},
      {"empty list, integer range", integers, {}, true},
      // A range that is not empty decides the type.
      {"integer range, integers", integers, ListOf({DMDatum(1LL), DMDatum(2LL)}), true},
      {"integer range, a real", integers, ListOf({DMDatum(1.5)}), false},
      {"integer range, a real after integers", integers, ListOf({DMDatum(1LL), DMDatum(2.0)}),
       false},
      {"real range, reals", reals, ListOf({DMDatum(0.5)}), true},
      {"real range, an integer first", reals, ListOf({DMDatum(1LL), DMDatum(2.0)}), false},
      {"text range, texts", DMRange(DMDatum("a"), DMDatum("b")), ListOf({DMDatum("x")}), true},
      {"text range, an integer", DMRange(DMDatum("a"), DMDatum("b")), ListOf({DMDatum(1LL)}),
       false},
      // Through the lower limit, also when it is the open side.
      {"open lower real range, reals", DMRange(nullReal, DMDatum(5.0)), ListOf({DMDatum(1.0)}),
       true},
      {"open lower integer-typed, reals", DMRange(nullInteger, DMDatum(5.0)),
       ListOf({DMDatum(1.0)}), false},
      {"open lower text-typed, texts", DMRange(nullText, DMDatum(5LL)), ListOf({DMDatum("a")}),
       true},
      {"open lower text-typed, integers", DMRange(nullText, DMDatum(5LL)), ListOf({DMDatum(1LL)}),
       false},
      {"open upper real range, reals", DMRange(DMDatum(5.0), nullInteger), ListOf({DMDatum(9.0)}),
       true},
      // An empty range leaves the type to the first listed value.
      {"default range, integers", DMRange(), ListOf({DMDatum(1LL), DMDatum(2LL)}), true},
      {"default range, reals", DMRange(), ListOf({DMDatum(1.0), DMDatum(2.0)}), true},
      {"default range, texts", DMRange(), ListOf({DMDatum("a"), DMDatum("")}), true},
      {"default range, real then integer", DMRange(), ListOf({DMDatum(1.0), DMDatum(2LL)}), false},
      {"default range, integer then real", DMRange(), ListOf({DMDatum(1LL), DMDatum(2.0)}), false},
      {"default range, text then integer", DMRange(), ListOf({DMDatum("1"), DMDatum(1LL)}), false},
      {"both limits null, reals", DMRange(nullInteger, nullInteger), ListOf({DMDatum(1.0)}), true},
      // Null values are never valid.
      {"null only", DMRange(), ListOf({nullInteger}), false},
      {"null first", DMRange(), ListOf({nullInteger, DMDatum(1LL)}), false},
      {"null last", DMRange(), ListOf({DMDatum(1LL), nullInteger}), false},
      {"null in the middle", DMRange(), ListOf({DMDatum(1LL), nullInteger, DMDatum(2LL)}), false},
      {"null text among texts", DMRange(), ListOf({DMDatum("a"), nullText}), false},
      {"null of the range's type", integers, ListOf({DMDatum(1LL), nullInteger}), false},
  };
  for (const ValidCase& row : kCases) {
    EXPECT_EQ(DMMissingValues(row.range, row.list, true, false).IsValid(), row.expected)
        << row.name;
  }
}

TEST(DMMissingValuesTest, IntegerRangeWithARealInTheListIsInvalid) {
  const DMMissingValues missing(DMRange(DMDatum(-9LL), DMDatum(-1LL)),
                                ListOf({DMDatum(99LL), DMDatum(99.5)}), true, false);
  EXPECT_FALSE(missing.IsValid());
}

// ---------------------------------------------------------------------------
// CheckForMissing of a datum

struct DatumCase {
  const char* name;
  DMMissingValues missing;
  DMDatum value;
  int expected;
};

TEST(DMMissingValuesTest, CheckForMissingOfADatum) {
  const DMDatum nullInteger;
  const DMDatum nullReal = NullOf(DMDatum::RealType);
  const DMDatum nullText = NullOf(DMDatum::StringType);
  const DMRange integers(DMDatum(90LL), DMDatum(99LL));
  const DMRange reals(DMDatum(-1.0), DMDatum(0.0));
  const std::vector<DMValue> integerList = ListOf({DMDatum(-1LL), DMDatum(-2LL)});
  const DMMissingValues defaults;
  const DMMissingValues nullsNotMissing(DMRange(), {}, false, false);
  const DMMissingValues integerMissing(integers, integerList, true, false);
  const DMMissingValues realMissing(reals, ListOf({DMDatum(999.0)}), false, false);
  const DMMissingValues textMissing = TextMissing(ListOf({DMDatum("NA")}), true);
  const DatumCase kCases[] = {
      // Nulls follow the null switch.
      {"null, default", defaults, nullInteger, 1},
      {"null real, default", defaults, nullReal, 1},
      {"null, nulls not missing", nullsNotMissing, nullInteger, 0},
      {"null real, nulls not missing", realMissing, nullReal, 0},
      {"null with a list and range", integerMissing, nullInteger, 1},
      // Texts, null ones included, go to the text form.
      {"null text, default", defaults, nullText, 1},
      {"null text, nulls not missing", nullsNotMissing, nullText, 0},
      {"text in the list", textMissing, DMDatum("NA"), 1},
      {"blank text", textMissing, DMDatum("  "), 1},
      {"other text", textMissing, DMDatum("x"), 0},
      {"text against an integer list", integerMissing, DMDatum("-1"), 2},
      {"text with an empty list, default", defaults, DMDatum("x"), 0},
      {"text with an empty list, default, empty text", defaults, DMDatum(""), 0},
      // The list.
      {"integer in the list", integerMissing, DMDatum(-2LL), 1},
      {"real in the list", realMissing, DMDatum(999.0), 1},
      {"real against the integer list", integerMissing, DMDatum(-1.0), 2},
      {"integer against a text list", textMissing, DMDatum(1LL), 2},
      {"integer, list with a null second",
       DMMissingValues(DMRange(), ListOf({DMDatum(1LL), nullInteger, DMDatum(5LL)}), true, false),
       DMDatum(5LL), 2},
      // Not in the list: the range answers.
      {"integer in the range", integerMissing, DMDatum(95LL), 1},
      {"integer at the range's upper limit", integerMissing, DMDatum(99LL), 1},
      {"integer outside the range", integerMissing, DMDatum(5LL), 0},
      {"real in the range", realMissing, DMDatum(-0.5), 1},
      {"real outside the range", realMissing, DMDatum(0.5), 0},
      {"integer, default range", defaults, DMDatum(1LL), 0},
      {"integer, no list, real range", DMMissingValues(reals, {}, true, false), DMDatum(0LL), 2},
      {"real NaN in the range", realMissing, DMDatum(kNaN), 1},
  };
  for (const DatumCase& row : kCases) {
    EXPECT_EQ(row.missing.CheckForMissing(row.value), row.expected) << row.name;
  }
}

TEST(DMMissingValuesTest, NullDatumWithTheDefaultNullSwitchIsMissing) {
  const DMMissingValues missing;
  ASSERT_TRUE(missing.IsNullMissing());
  EXPECT_EQ(missing.CheckForMissing(DMDatum()), 1);
}

// ---------------------------------------------------------------------------
// CheckForMissing of a text

struct TextCase {
  const char* name;
  DMMissingValues missing;
  const char* text;
  int expected;
};

TEST(DMMissingValuesTest, CheckForMissingOfAText) {
  const DMMissingValues defaults;
  const DMMissingValues nullsNotMissing(DMRange(), {}, false, true);
  const DMMissingValues blanks = TextMissing({}, true);
  const DMMissingValues noBlanks = TextMissing(ListOf({DMDatum("NA"), DMDatum("")}), false);
  const DMMissingValues listAndBlanks = TextMissing(ListOf({DMDatum("NA"), DMDatum("?")}), true);
  const DMMissingValues integerList(DMRange(), ListOf({DMDatum(1LL)}), true, true);
  const DMMissingValues textRange(DMRange(DMDatum("a"), DMDatum("z")), {}, true, false);
  const TextCase kCases[] = {
      // A null text follows the null switch.
      {"null, default", defaults, nullptr, 1},
      {"null, nulls not missing", nullsNotMissing, nullptr, 0},
      {"null, integer list", integerList, nullptr, 1},
      // The list.
      {"in the list", listAndBlanks, "?", 1},
      {"in the list without white space", noBlanks, "NA", 1},
      {"empty text listed", noBlanks, "", 1},
      {"list compares exactly", noBlanks, "na", 0},
      {"list of integers", integerList, "1", 2},
      {"list of integers, blank text", integerList, " ", 2},
      // The range is not consulted for texts.
      {"inside a text range", textRange, "m", 0},
      {"at a text range's limit", textRange, "a", 0},
      // White space switched off.
      {"blank, white space not missing", noBlanks, "  ", 0},
      {"default, empty text", defaults, "", 0},
      {"default, blank", defaults, " ", 0},
      // White space switched on.
      {"empty text", blanks, "", 1},
      {"two blanks", blanks, "  ", 1},
      {"blank then x", blanks, " x", 0},
      {"x then blank", blanks, "x ", 0},
      {"not listed, not blank", listAndBlanks, "n/a", 0},
      {"blank with a list", listAndBlanks, " ", 1},
      {"tab and newline", blanks, "\t\n", 1},
      {"vertical tab, form feed, carriage return", blanks, "\v\f\r", 1},
      {"ideographic space U+3000", blanks, "\xE3\x80\x80", 1},
      {"line separator U+2028", blanks, "\xE2\x80\xA8", 1},
      {"ideographic space between blanks", blanks, " \xE3\x80\x80 ", 1},
      // ICU's u_isspace counts the no-break space U+00A0 as white space
      // (unlike u_isWhitespace); checked against ICU 72.
      {"no-break space U+00A0", blanks, "\xC2\xA0", 1},
      {"zero-width space U+200B is not white space", blanks, "\xE2\x80\x8B", 0},
      {"lone lead byte 0xC3", blanks, "\xC3", 0},
      {"blank then lone lead byte 0xC3", blanks, " \xC3", 0},
      {"truncated three-byte sequence", blanks, "\xE3\x80", 0},
      {"lone trail byte", blanks, "\x80", 0},
      {"overlong blank", blanks, "\xC0\xA0", 0},
      {"letter", blanks, "x", 0},
  };
  for (const TextCase& row : kCases) {
    EXPECT_EQ(row.missing.CheckForMissing(row.text), row.expected) << row.name;
  }
}

TEST(DMMissingValuesTest, TextListWithWhiteSpaceMissingJudgesBlanksAndBadBytes) {
  const DMMissingValues missing = TextMissing(ListOf({DMDatum("NA"), DMDatum("n/a")}), true);
  EXPECT_EQ(missing.CheckForMissing("  "), 1);
  EXPECT_EQ(missing.CheckForMissing(" x"), 0);
  EXPECT_EQ(missing.CheckForMissing(""), 1);
  EXPECT_EQ(missing.CheckForMissing("\xC3"), 0);
  EXPECT_EQ(missing.CheckForMissing("n/a"), 1);
  EXPECT_EQ(missing.CheckForMissing(DMDatum("  ")), 1);
  EXPECT_EQ(missing.CheckForMissing(DMDatum("\xC3")), 0);
}

TEST(DMMissingValuesTest, TextListPassesALaterElementThatIsNotAText) {
  // Only the first element's type is checked; a later number equals no text.
  // Run in a child process so that a crash fails this test alone instead of
  // ending the whole run.
  const DMMissingValues missing(DMRange(), ListOf({DMDatum("NA"), DMDatum(9LL)}), true, true);
  EXPECT_EXIT(
      {
        const bool ok = missing.CheckForMissing("x") == 0 && missing.CheckForMissing(" ") == 1 &&
                        missing.CheckForMissing(DMDatum("x")) == 0;
        std::exit(ok ? 0 : 1);
      },
      ::testing::ExitedWithCode(0), "");
}

}  // namespace
