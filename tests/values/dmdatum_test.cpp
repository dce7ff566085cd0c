#include "dmcommon/values/dmdatum.h"

#include <cmath>
#include <cstring>
#include <limits>
#include <string>

#include <gtest/gtest.h>

namespace {

constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
constexpr long long kMinInteger = std::numeric_limits<long long>::min();
constexpr long long kMaxInteger = std::numeric_limits<long long>::max();

// The difference of two bytes taken as unsigned char, as a text comparison
// reports it.
int ByteDiff(char left, char right) {
  return static_cast<int>(static_cast<unsigned char>(left)) -
         static_cast<int>(static_cast<unsigned char>(right));
}

DMDatum NullOf(DMDatum::DataType type) {
  DMDatum datum;
  datum.SetNull(type);
  return datum;
}

// ---------------------------------------------------------------------------
// Construction and accessors

TEST(DMDatumTest, DefaultIsANullIntegerHoldingZero) {
  const DMDatum datum;
  EXPECT_TRUE(datum.IsNull());
  EXPECT_EQ(datum.GetType(), DMDatum::IntegerType);
  EXPECT_EQ(datum.GetInteger(), 0);
  EXPECT_EQ(datum.GetReal(), 0.0);
  EXPECT_EQ(datum.GetString(), nullptr);
  EXPECT_EQ(datum.GetSize(), 0U);
}

TEST(DMDatumTest, DataTypesHaveTheirNumbers) {
  EXPECT_EQ(static_cast<int>(DMDatum::IntegerType), 0);
  EXPECT_EQ(static_cast<int>(DMDatum::RealType), 1);
  EXPECT_EQ(static_cast<int>(DMDatum::StringType), 2);
}

TEST(DMDatumTest, IntegerConstructorHoldsTheIntegerWithSizeZero) {
  const DMDatum datum(kMinInteger);
  EXPECT_FALSE(datum.IsNull());
  EXPECT_EQ(datum.GetType(), DMDatum::IntegerType);
  EXPECT_EQ(datum.GetInteger(), kMinInteger);
  EXPECT_EQ(datum.GetReal(), 0.0);
  EXPECT_EQ(datum.GetString(), nullptr);
  EXPECT_EQ(datum.GetSize(), 0U);
}

TEST(DMDatumTest, RealConstructorHoldsTheRealWithSizeZero) {
  const DMDatum datum(-2.5);
  EXPECT_FALSE(datum.IsNull());
  EXPECT_EQ(datum.GetType(), DMDatum::RealType);
  EXPECT_EQ(datum.GetReal(), -2.5);
  EXPECT_EQ(datum.GetInteger(), 0);
  EXPECT_EQ(datum.GetString(), nullptr);
  EXPECT_EQ(datum.GetSize(), 0U);
}

TEST(DMDatumTest, TextConstructorOwnsACopyWithItsTerminator) {
  char source[] = "abc";
  const DMDatum datum(source);
  source[0] = 'x';
  EXPECT_FALSE(datum.IsNull());
  EXPECT_EQ(datum.GetType(), DMDatum::StringType);
  ASSERT_NE(datum.GetString(), nullptr);
  EXPECT_NE(datum.GetString(), source);
  EXPECT_STREQ(datum.GetString(), "abc");
  EXPECT_EQ(datum.GetSize(), 4U);
  EXPECT_EQ(datum.GetInteger(), 0);
  EXPECT_EQ(datum.GetReal(), 0.0);
}

TEST(DMDatumTest, NullTextPointerGivesANullText) {
  const DMDatum datum(static_cast<const char*>(nullptr));
  EXPECT_TRUE(datum.IsNull());
  EXPECT_EQ(datum.GetType(), DMDatum::StringType);
  EXPECT_EQ(datum.GetString(), nullptr);
  EXPECT_EQ(datum.GetSize(), 0U);
}

TEST(DMDatumTest, EmptyTextIsNotNullAndHasSizeOne) {
  const DMDatum datum("");
  EXPECT_FALSE(datum.IsNull());
  EXPECT_EQ(datum.GetType(), DMDatum::StringType);
  EXPECT_STREQ(datum.GetString(), "");
  EXPECT_EQ(datum.GetSize(), 1U);
}

TEST(DMDatumTest, StdStringConstructorCopiesTheText) {
  const std::string text = "\xC3\xA9t\xC3\xA9";
  const DMDatum datum(text);
  EXPECT_EQ(datum.GetType(), DMDatum::StringType);
  EXPECT_EQ(std::string(datum.GetString()), text);
  EXPECT_EQ(datum.GetSize(), text.size() + 1);
}

// ---------------------------------------------------------------------------
// Copying

TEST(DMDatumTest, CopyOfATextIsDeep) {
  DMDatum original("hello");
  const DMDatum copy(original);
  ASSERT_NE(copy.GetString(), nullptr);
  EXPECT_NE(copy.GetString(), original.GetString());
  EXPECT_STREQ(copy.GetString(), "hello");
  EXPECT_EQ(copy.GetSize(), 6U);
  original.SetString("other");
  EXPECT_STREQ(copy.GetString(), "hello");
}

TEST(DMDatumTest, CopyKeepsNullnessTypeAndValue) {
  // Each original is changed after copying: the copy must not follow.
  DMDatum integer(kMaxInteger);
  DMDatum real(0.25);
  DMDatum nullReal = NullOf(DMDatum::RealType);
  DMDatum nullText(static_cast<const char*>(nullptr));
  const DMDatum integerCopy(integer);
  const DMDatum realCopy(real);
  const DMDatum nullRealCopy(nullReal);
  const DMDatum nullTextCopy(nullText);
  integer.SetInteger(1);
  real.SetString("x");
  nullReal.SetReal(1.0);
  nullText.SetString("y");

  EXPECT_FALSE(integerCopy.IsNull());
  EXPECT_EQ(integerCopy.GetType(), DMDatum::IntegerType);
  EXPECT_EQ(integerCopy.GetInteger(), kMaxInteger);

  EXPECT_FALSE(realCopy.IsNull());
  EXPECT_EQ(realCopy.GetType(), DMDatum::RealType);
  EXPECT_EQ(realCopy.GetReal(), 0.25);

  EXPECT_TRUE(nullRealCopy.IsNull());
  EXPECT_EQ(nullRealCopy.GetType(), DMDatum::RealType);

  EXPECT_TRUE(nullTextCopy.IsNull());
  EXPECT_EQ(nullTextCopy.GetType(), DMDatum::StringType);
  EXPECT_EQ(nullTextCopy.GetString(), nullptr);
  EXPECT_EQ(nullTextCopy.GetSize(), 0U);
}

TEST(DMDatumTest, AssigningATextOverATextReplacesItDeeply) {
  DMDatum target("a much longer text than the source");
  const DMDatum source("xy");
  target = source;
  EXPECT_NE(target.GetString(), source.GetString());
  EXPECT_STREQ(target.GetString(), "xy");
  EXPECT_EQ(target.GetSize(), 3U);
}

TEST(DMDatumTest, AssigningANumberOverATextDropsTheText) {
  DMDatum target("text");
  target = DMDatum(7LL);
  EXPECT_EQ(target.GetType(), DMDatum::IntegerType);
  EXPECT_EQ(target.GetInteger(), 7);
  EXPECT_EQ(target.GetString(), nullptr);
  EXPECT_EQ(target.GetSize(), 0U);
}

TEST(DMDatumTest, AssigningATextOverANumberCopiesTheText) {
  DMDatum target(1.5);
  const DMDatum source("abc");
  target = source;
  EXPECT_EQ(target.GetType(), DMDatum::StringType);
  EXPECT_STREQ(target.GetString(), "abc");
  EXPECT_NE(target.GetString(), source.GetString());
  EXPECT_EQ(target.GetSize(), 4U);
}

TEST(DMDatumTest, AssigningANullTextOverATextLeavesANullText) {
  DMDatum target("abc");
  target = DMDatum(static_cast<const char*>(nullptr));
  EXPECT_TRUE(target.IsNull());
  EXPECT_EQ(target.GetType(), DMDatum::StringType);
  EXPECT_EQ(target.GetString(), nullptr);
  EXPECT_EQ(target.GetSize(), 0U);
}

TEST(DMDatumTest, SelfAssignmentOfATextKeepsIt) {
  DMDatum datum("self");
  const DMDatum& alias = datum;
  datum = alias;
  EXPECT_FALSE(datum.IsNull());
  EXPECT_STREQ(datum.GetString(), "self");
  EXPECT_EQ(datum.GetSize(), 5U);
}

// ---------------------------------------------------------------------------
// Setters

TEST(DMDatumTest, SetStringWithAPointerIntoItsOwnText) {
  DMDatum datum("prefix-suffix");
  datum.SetString(datum.GetString() + 7);
  EXPECT_STREQ(datum.GetString(), "suffix");
  EXPECT_EQ(datum.GetSize(), 7U);
  datum.SetString(datum.GetString());
  EXPECT_STREQ(datum.GetString(), "suffix");
  EXPECT_EQ(datum.GetSize(), 7U);
}

TEST(DMDatumTest, SetStringToNullMakesANullText) {
  DMDatum datum(3LL);
  datum.SetString(nullptr);
  EXPECT_TRUE(datum.IsNull());
  EXPECT_EQ(datum.GetType(), DMDatum::StringType);
  EXPECT_EQ(datum.GetString(), nullptr);
  EXPECT_EQ(datum.GetSize(), 0U);
}

TEST(DMDatumTest, SettersReplaceTypeAndValue) {
  DMDatum datum("text");
  datum.SetInteger(-4);
  EXPECT_FALSE(datum.IsNull());
  EXPECT_EQ(datum.GetType(), DMDatum::IntegerType);
  EXPECT_EQ(datum.GetInteger(), -4);
  EXPECT_EQ(datum.GetString(), nullptr);
  EXPECT_EQ(datum.GetSize(), 0U);

  datum.SetReal(6.75);
  EXPECT_EQ(datum.GetType(), DMDatum::RealType);
  EXPECT_EQ(datum.GetReal(), 6.75);
  EXPECT_EQ(datum.GetInteger(), 0);

  datum.SetString("again");
  EXPECT_EQ(datum.GetType(), DMDatum::StringType);
  EXPECT_STREQ(datum.GetString(), "again");
  EXPECT_EQ(datum.GetSize(), 6U);
  EXPECT_EQ(datum.GetReal(), 0.0);
}

TEST(DMDatumTest, SetNullKeepsTheType) {
  DMDatum text("abc");
  text.SetNull();
  EXPECT_TRUE(text.IsNull());
  EXPECT_EQ(text.GetType(), DMDatum::StringType);
  EXPECT_EQ(text.GetString(), nullptr);
  EXPECT_EQ(text.GetSize(), 0U);

  DMDatum real(2.0);
  real.SetNull();
  EXPECT_TRUE(real.IsNull());
  EXPECT_EQ(real.GetType(), DMDatum::RealType);
  EXPECT_EQ(real.GetReal(), 0.0);

  DMDatum integer(9LL);
  integer.SetNull();
  EXPECT_TRUE(integer.IsNull());
  EXPECT_EQ(integer.GetType(), DMDatum::IntegerType);
  EXPECT_EQ(integer.GetInteger(), 0);
}

TEST(DMDatumTest, SetNullWithATypeSetsThatType) {
  DMDatum datum("abc");
  datum.SetNull(DMDatum::RealType);
  EXPECT_TRUE(datum.IsNull());
  EXPECT_EQ(datum.GetType(), DMDatum::RealType);
  EXPECT_EQ(datum.GetString(), nullptr);
  EXPECT_EQ(datum.GetSize(), 0U);

  datum.SetNull(DMDatum::StringType);
  EXPECT_TRUE(datum.IsNull());
  EXPECT_EQ(datum.GetType(), DMDatum::StringType);
  EXPECT_EQ(datum.GetString(), nullptr);

  datum.SetNull(DMDatum::IntegerType);
  EXPECT_EQ(datum.GetType(), DMDatum::IntegerType);
  EXPECT_EQ(datum.GetInteger(), 0);
}

// ---------------------------------------------------------------------------
// Compare

struct CompareCase {
  const char* name;
  DMDatum left;
  DMDatum right;
  int expected;
};

TEST(DMDatumCompareTest, AnswersEveryPairingExactly) {
  const CompareCase kCases[] = {
      // A null on either side is not comparable, whatever the types.
      {"null integer vs integer", DMDatum(), DMDatum(1LL), 2},
      {"integer vs null integer", DMDatum(1LL), DMDatum(), 2},
      {"null vs null", DMDatum(), DMDatum(), 2},
      {"null real vs real", NullOf(DMDatum::RealType), DMDatum(1.0), 2},
      {"real vs null real", DMDatum(1.0), NullOf(DMDatum::RealType), 2},
      {"null text vs text", DMDatum(static_cast<const char*>(nullptr)), DMDatum("a"), 2},
      {"text vs null text", DMDatum("a"), DMDatum(static_cast<const char*>(nullptr)), 2},
      // Integers.
      {"integer less", DMDatum(-5LL), DMDatum(3LL), -1},
      {"integer equal", DMDatum(3LL), DMDatum(3LL), 0},
      {"integer greater", DMDatum(4LL), DMDatum(3LL), 1},
      {"integer extremes less", DMDatum(kMinInteger), DMDatum(kMaxInteger), -1},
      {"integer extremes greater", DMDatum(kMaxInteger), DMDatum(kMinInteger), 1},
      // Reals.
      {"real less", DMDatum(1.5), DMDatum(2.5), -1},
      {"real equal", DMDatum(2.5), DMDatum(2.5), 0},
      {"real greater", DMDatum(3.5), DMDatum(2.5), 1},
      {"minus zero vs zero", DMDatum(-0.0), DMDatum(0.0), 0},
      {"zero vs minus zero", DMDatum(0.0), DMDatum(-0.0), 0},
      {"NaN on the left", DMDatum(kNaN), DMDatum(1.0), 1},
      {"NaN on the right", DMDatum(1.0), DMDatum(kNaN), 1},
      {"NaN on both sides", DMDatum(kNaN), DMDatum(kNaN), 1},
      {"minus infinity vs real", DMDatum(-HUGE_VAL), DMDatum(0.0), -1},
      // Texts give the raw byte difference.
      {"texts equal", DMDatum("abc"), DMDatum("abc"), 0},
      {"empty texts equal", DMDatum(""), DMDatum(""), 0},
      {"text b vs a", DMDatum("b"), DMDatum("a"), 1},
      {"text a vs b", DMDatum("a"), DMDatum("b"), -1},
      {"text c vs a", DMDatum("c"), DMDatum("a"), 2},
      {"text a vs c", DMDatum("a"), DMDatum("c"), -2},
      {"text z vs a", DMDatum("z"), DMDatum("a"), 'z' - 'a'},
      {"first differing byte decides", DMDatum("abX"), DMDatum("abA"), 'X' - 'A'},
      {"prefix vs longer", DMDatum("ab"), DMDatum("abc"), -'c'},
      {"longer vs prefix", DMDatum("abc"), DMDatum("ab"), 'c'},
      {"empty vs text", DMDatum(""), DMDatum("a"), -'a'},
      {"high byte vs a", DMDatum("\xC3"), DMDatum("a"), 0xC3 - 'a'},
      {"a vs high byte", DMDatum("a"), DMDatum("\xC3"), 'a' - 0xC3},
      {"high bytes", DMDatum("\xFF"), DMDatum("\x80"), 0xFF - 0x80},
      // Types never mix.
      {"integer 3 vs real 3.0", DMDatum(3LL), DMDatum(3.0), 2},
      {"real 3.0 vs integer 3", DMDatum(3.0), DMDatum(3LL), 2},
      {"integer vs text", DMDatum(3LL), DMDatum("3"), 2},
      {"text vs integer", DMDatum("3"), DMDatum(3LL), 2},
      {"real vs text", DMDatum(3.0), DMDatum("3"), 2},
      {"text vs real", DMDatum("3"), DMDatum(3.0), 2},
  };
  for (const CompareCase& row : kCases) {
    EXPECT_EQ(row.left.Compare(row.right), row.expected) << row.name;
  }
}

TEST(DMDatumCompareTest, TextDifferenceIsTheUnsignedByteDifference) {
  // Holds in sanitizer builds too, whose runtime answers strcmp with -1 and 1.
  for (const char* text : {"\x01", "A", "a", "~", "\x7F", "\x80", "\xC3", "\xFF"}) {
    const DMDatum left(text);
    const DMDatum right("a");
    EXPECT_EQ(left.Compare(right), ByteDiff(text[0], 'a')) << static_cast<int>(text[0]);
    EXPECT_EQ(right.Compare(left), ByteDiff('a', text[0])) << static_cast<int>(text[0]);
  }
}

TEST(DMDatumCompareTest, ComparesADatumWithItself) {
  const DMDatum text("same");
  EXPECT_EQ(text.Compare(text), 0);
  const DMDatum nan(kNaN);
  EXPECT_EQ(nan.Compare(nan), 1);
  const DMDatum null;
  EXPECT_EQ(null.Compare(null), 2);
}

// ---------------------------------------------------------------------------
// ToString

struct ToStringCase {
  const char* name;
  DMDatum datum;
  int infinitySign;
  bool expectedResult;
  const char* expectedText;
};

TEST(DMDatumToStringTest, WritesEveryKindOfDatum) {
  const ToStringCase kCases[] = {
      {"zero", DMDatum(0LL), 0, true, "0"},
      {"negative integer", DMDatum(-42LL), 0, true, "-42"},
      {"smallest integer", DMDatum(kMinInteger), 0, true, "-9223372036854775808"},
      {"largest integer", DMDatum(kMaxInteger), 0, true, "9223372036854775807"},
      {"integer ignores the sign", DMDatum(5LL), -1, true, "5"},
      {"real zero", DMDatum(0.0), 0, true, "0"},
      {"real minus zero", DMDatum(-0.0), 0, true, "-0"},
      {"real one tenth", DMDatum(0.1), 0, true, "0.1"},
      {"real one and a half", DMDatum(1.5), 0, true, "1.5"},
      {"real negative", DMDatum(-2.25), 0, true, "-2.25"},
      {"real 1e20", DMDatum(1e20), 0, true, "1e+20"},
      {"real 1e-7", DMDatum(1e-7), 0, true, "1e-07"},
      {"real with 17 digits", DMDatum(1.2345678901234567e17), 0, true, "1.23456789012346e+17"},
      {"real with 15 digits", DMDatum(123456789012345.0), 0, true, "123456789012345"},
      {"real one third", DMDatum(1.0 / 3.0), 0, true, "0.333333333333333"},
      {"real ignores the sign", DMDatum(2.0), 1, true, "2"},
      {"text", DMDatum("a b&c"), 0, true, "a b&c"},
      {"empty text", DMDatum(""), 0, true, ""},
      {"text with high bytes", DMDatum("\xC3\xA9"), 0, true, "\xC3\xA9"},
      {"text ignores the sign", DMDatum("x"), 1, true, "x"},
      {"null with sign -1", DMDatum(), -1, true, "-INF"},
      {"null with sign -7", DMDatum(), -7, true, "-INF"},
      {"null with sign 0", DMDatum(), 0, false, ""},
      {"null with sign +1", DMDatum(), 1, true, "INF"},
      {"null with sign +9", DMDatum(), 9, true, "INF"},
      {"null real with sign -1", NullOf(DMDatum::RealType), -1, true, "-INF"},
      {"null text with sign 0", DMDatum(static_cast<const char*>(nullptr)), 0, false, ""},
      {"null text with sign +1", DMDatum(static_cast<const char*>(nullptr)), 1, true, "INF"},
  };
  for (const ToStringCase& row : kCases) {
    std::string text = "stale";
    EXPECT_EQ(row.datum.ToString(text, row.infinitySign), row.expectedResult) << row.name;
    EXPECT_EQ(text, row.expectedText) << row.name;
  }
}

}  // namespace
