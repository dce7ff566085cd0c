#include "dmcommon/values/dmrange.h"

#include <limits>
#include <memory>
#include <string>

#include <gtest/gtest.h>

#include "dmcommon/values/dmdatum.h"
#include "dmcommon/xml/dmxmlwrapper.h"
#include "tests/support/xmltest.h"

namespace {

using DmExtension::DMXMLWrapper;

using DMRangeXmlTest = dmtest::XmlTest;

constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();

DMDatum NullOf(DMDatum::DataType type) {
  DMDatum datum;
  datum.SetNull(type);
  return datum;
}

// Whether `actual` is `expected`: the same nullness and, when set, the same
// type and value (reals compared exactly). With `checkNullType` a null must
// also have the expected type.
::testing::AssertionResult SameDatum(const DMDatum& actual, const DMDatum& expected,
                                     bool checkNullType = true) {
  if (actual.IsNull() != expected.IsNull()) {
    return ::testing::AssertionFailure()
           << "null " << actual.IsNull() << ", expected " << expected.IsNull();
  }
  if ((!actual.IsNull() || checkNullType) && actual.GetType() != expected.GetType()) {
    return ::testing::AssertionFailure()
           << "type " << actual.GetType() << ", expected " << expected.GetType();
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

// Whether `range` has the limits `lower` and `upper`.
::testing::AssertionResult HasLimits(const DMRange& range, const DMDatum& lower,
                                     const DMDatum& upper, bool checkNullType = true) {
  const auto limits = range.GetLimits();
  if (auto same = SameDatum(limits.first, lower, checkNullType); !same) {
    return ::testing::AssertionFailure() << "lower limit: " << same.message();
  }
  if (auto same = SameDatum(limits.second, upper, checkNullType); !same) {
    return ::testing::AssertionFailure() << "upper limit: " << same.message();
  }
  return ::testing::AssertionSuccess();
}

::testing::AssertionResult IsDefault(const DMRange& range) {
  return HasLimits(range, DMDatum(1LL), DMDatum(0LL));
}

// The text that `range` writes under a new root element, or "" when it
// writes nothing (then `created` must be null).
std::string Written(const DMRange& range) {
  DMXMLWrapper document;
  document.createNew("Root");
  DMXMLWrapper* created = &document;
  range.AddToTree(document, created);
  std::string text = dmtest::XmlTest::WithoutDeclaration(document);
  if (text == "<Root/>") {
    EXPECT_EQ(created, nullptr);
    return "";
  }
  EXPECT_NE(created, nullptr);
  if (created != nullptr) {
    EXPECT_EQ(dmtest::XmlTest::NameOf(*created), "Range");
  }
  return text;
}

void ExpectEqualRanges(const DMRange& written, const DMRange& read) {
  const auto limits = written.GetLimits();
  EXPECT_TRUE(HasLimits(read, limits.first, limits.second, false));
}

// ---------------------------------------------------------------------------
// Construction

TEST(DMRangeTest, DefaultIsTheEmptyRangeOneToZero) {
  const DMRange range;
  EXPECT_TRUE(IsDefault(range));
  EXPECT_TRUE(range.IsEmpty());
  EXPECT_EQ(range.CheckInRange(DMDatum(5LL)), 0);
  EXPECT_EQ(range.CheckInRange(DMDatum(1LL)), 0);
  EXPECT_EQ(range.CheckInRange(DMDatum(0LL)), 0);
}

TEST(DMRangeTest, DefaultWritesNothingAndLeavesCreatedNull) {
  DMXMLWrapper document;
  document.createNew("Root");
  DMXMLWrapper* created = &document;
  DMRange().AddToTree(document, created, true);
  EXPECT_EQ(created, nullptr);
  EXPECT_EQ(dmtest::XmlTest::WithoutDeclaration(document), "<Root/>");
}

struct ConstructCase {
  const char* name;
  DMDatum lower;
  DMDatum upper;
  DMDatum expectedLower;
  DMDatum expectedUpper;
};

TEST(DMRangeTest, ConstructorKeepsOrderedLimitsAndEmptiesTheOthers) {
  const DMDatum nullInteger;
  const DMDatum nullReal = NullOf(DMDatum::RealType);
  const DMDatum nullText = NullOf(DMDatum::StringType);
  const ConstructCase kCases[] = {
      {"integers in order", DMDatum(1LL), DMDatum(10LL), DMDatum(1LL), DMDatum(10LL)},
      {"equal integers", DMDatum(5LL), DMDatum(5LL), DMDatum(5LL), DMDatum(5LL)},
      {"integers reversed", DMDatum(10LL), DMDatum(5LL), DMDatum(1LL), DMDatum(0LL)},
      {"reals in order", DMDatum(-1.5), DMDatum(2.5), DMDatum(-1.5), DMDatum(2.5)},
      {"equal reals", DMDatum(2.5), DMDatum(2.5), DMDatum(2.5), DMDatum(2.5)},
      {"reals reversed", DMDatum(2.5), DMDatum(-1.5), DMDatum(1LL), DMDatum(0LL)},
      {"NaN lower", DMDatum(kNaN), DMDatum(1.0), DMDatum(1LL), DMDatum(0LL)},
      {"NaN upper", DMDatum(1.0), DMDatum(kNaN), DMDatum(1LL), DMDatum(0LL)},
      {"texts in order", DMDatum("a"), DMDatum("b"), DMDatum("a"), DMDatum("b")},
      {"texts far apart in order", DMDatum("a"), DMDatum("z"), DMDatum("a"), DMDatum("z")},
      {"equal texts", DMDatum("m"), DMDatum("m"), DMDatum("m"), DMDatum("m")},
      {"texts reversed", DMDatum("b"), DMDatum("a"), DMDatum(1LL), DMDatum(0LL)},
      // For texts every positive byte difference reverses, 2 included.
      {"texts reversed by 2", DMDatum("c"), DMDatum("a"), DMDatum(1LL), DMDatum(0LL)},
      {"integer and real", DMDatum(1LL), DMDatum(2.0), DMDatum(1LL), DMDatum(0LL)},
      {"real and integer", DMDatum(1.0), DMDatum(2LL), DMDatum(1LL), DMDatum(0LL)},
      {"integer and text", DMDatum(1LL), DMDatum("2"), DMDatum(1LL), DMDatum(0LL)},
      {"text and real", DMDatum("1"), DMDatum(2.0), DMDatum(1LL), DMDatum(0LL)},
      {"null lower", nullInteger, DMDatum(5LL), nullInteger, DMDatum(5LL)},
      {"null upper", DMDatum(5LL), nullInteger, DMDatum(5LL), nullInteger},
      {"both null", nullInteger, nullInteger, nullInteger, nullInteger},
      {"null real lower", nullReal, DMDatum(5.0), nullReal, DMDatum(5.0)},
      {"null text upper", DMDatum("a"), nullText, DMDatum("a"), nullText},
      {"null of another type", nullText, DMDatum(5LL), nullText, DMDatum(5LL)},
  };
  for (const ConstructCase& row : kCases) {
    EXPECT_TRUE(HasLimits(DMRange(row.lower, row.upper), row.expectedLower, row.expectedUpper))
        << row.name;
  }
}

TEST(DMRangeTest, RangeOfFiveToFiveContainsExactlyFive) {
  const DMRange range(DMDatum(5LL), DMDatum(5LL));
  EXPECT_FALSE(range.IsEmpty());
  EXPECT_EQ(range.CheckInRange(DMDatum(4LL)), 0);
  EXPECT_EQ(range.CheckInRange(DMDatum(5LL)), 1);
  EXPECT_EQ(range.CheckInRange(DMDatum(6LL)), 0);
}

TEST(DMRangeTest, ReversedRangeBecomesTheEmptyDefault) {
  const DMRange range(DMDatum(10LL), DMDatum(5LL));
  EXPECT_TRUE(IsDefault(range));
  EXPECT_TRUE(range.IsEmpty());
  EXPECT_EQ(range.CheckInRange(DMDatum(7LL)), 0);
  EXPECT_EQ(Written(range), "");
}

TEST(DMRangeTest, TextLimitsAreDeepCopies) {
  DMDatum lower("a");
  const DMRange range(lower, DMDatum("b"));
  lower.SetString("z");
  const auto limits = range.GetLimits();
  EXPECT_STREQ(limits.first.GetString(), "a");
  EXPECT_EQ(limits.first.GetSize(), 2U);
  EXPECT_STREQ(limits.second.GetString(), "b");
}

TEST(DMRangeTest, CopyAndAssignmentTakeBothLimits) {
  auto source = std::make_unique<DMRange>(DMDatum("a"), DMDatum("q"));
  const DMRange copy(*source);
  DMRange assigned(DMDatum(1.0), DMDatum(2.0));
  assigned = *source;
  // The copies outlive the source.
  source.reset();
  EXPECT_TRUE(HasLimits(copy, DMDatum("a"), DMDatum("q")));
  EXPECT_TRUE(HasLimits(assigned, DMDatum("a"), DMDatum("q")));
  DMRange& alias = assigned;
  assigned = alias;
  EXPECT_TRUE(HasLimits(assigned, DMDatum("a"), DMDatum("q")));
}

// ---------------------------------------------------------------------------
// IsEmpty

struct EmptyCase {
  const char* name;
  DMRange range;
  bool expected;
};

TEST(DMRangeTest, IsEmptyOnlyForNoLimitsOrReversedLimits) {
  const DMDatum nullInteger;
  const EmptyCase kCases[] = {
      {"default", DMRange(), true},
      {"both null", DMRange(nullInteger, nullInteger), true},
      {"both null of other types", DMRange(NullOf(DMDatum::RealType), NullOf(DMDatum::StringType)),
       true},
      {"only lower", DMRange(DMDatum(1LL), nullInteger), false},
      {"only upper", DMRange(nullInteger, DMDatum(1LL)), false},
      {"integers", DMRange(DMDatum(1LL), DMDatum(2LL)), false},
      {"single integer", DMRange(DMDatum(1LL), DMDatum(1LL)), false},
      {"reals", DMRange(DMDatum(1.0), DMDatum(2.0)), false},
      {"texts", DMRange(DMDatum("a"), DMDatum("b")), false},
  };
  for (const EmptyCase& row : kCases) {
    EXPECT_EQ(row.range.IsEmpty(), row.expected) << row.name;
  }
}

// ---------------------------------------------------------------------------
// CheckInRange

struct InRangeCase {
  const char* name;
  DMRange range;
  DMDatum value;
  int expected;
};

TEST(DMRangeTest, CheckInRangeAnswersEveryBranch) {
  const DMDatum nullInteger;
  const DMDatum nullReal = NullOf(DMDatum::RealType);
  const DMDatum nullText = NullOf(DMDatum::StringType);
  const DMRange integers(DMDatum(1LL), DMDatum(10LL));
  const DMRange reals(DMDatum(-1.5), DMDatum(2.5));
  const DMRange fromThree(DMDatum(3LL), nullInteger);
  const DMRange upToThree(nullInteger, DMDatum(3LL));
  const DMRange realsFromZero(DMDatum(0.0), nullReal);
  const DMRange realsUpToZero(nullReal, DMDatum(0.0));
  const DMRange aToC(DMDatum("a"), DMDatum("c"));
  const DMRange bToC(DMDatum("b"), DMDatum("c"));
  const DMRange cToD(DMDatum("c"), DMDatum("d"));
  const DMRange bToD(DMDatum("b"), DMDatum("d"));
  const DMRange fromB(DMDatum("b"), nullText);
  const DMRange upToB(nullText, DMDatum("b"));
  const InRangeCase kCases[] = {
      // A null value cannot be placed.
      {"null integer", integers, nullInteger, 2},
      {"null real", reals, nullReal, 2},
      {"null text", aToC, nullText, 2},
      {"null value in the default range", DMRange(), nullInteger, 2},
      // Empty ranges contain nothing.
      {"default range", DMRange(), DMDatum(5LL), 0},
      {"default range, real", DMRange(), DMDatum(0.5), 0},
      {"default range, text", DMRange(), DMDatum("a"), 0},
      {"both limits null", DMRange(nullInteger, nullInteger), DMDatum(5LL), 0},
      // Integers; both limits are inclusive.
      {"integer below", integers, DMDatum(0LL), 0},
      {"integer at lower", integers, DMDatum(1LL), 1},
      {"integer inside", integers, DMDatum(5LL), 1},
      {"integer at upper", integers, DMDatum(10LL), 1},
      {"integer above", integers, DMDatum(11LL), 0},
      {"integer against a real range", reals, DMDatum(1LL), 2},
      {"integer against texts", aToC, DMDatum(1LL), 2},
      {"integer, open upper, below", fromThree, DMDatum(2LL), 0},
      {"integer, open upper, far above", fromThree, DMDatum(std::numeric_limits<long long>::max()),
       1},
      {"integer, open lower, far below", upToThree, DMDatum(std::numeric_limits<long long>::min()),
       1},
      {"integer, open lower, above", upToThree, DMDatum(4LL), 0},
      {"real against an integer open upper", fromThree, DMDatum(5.0), 2},
      {"real against an integer open lower", upToThree, DMDatum(1.0), 2},
      // Reals.
      {"real below", reals, DMDatum(-1.6), 0},
      {"real at lower", reals, DMDatum(-1.5), 1},
      {"real inside", reals, DMDatum(0.0), 1},
      {"real at upper", reals, DMDatum(2.5), 1},
      {"real above", reals, DMDatum(2.6), 0},
      {"real NaN is neither below nor above", reals, DMDatum(kNaN), 1},
      {"real against an integer range", integers, DMDatum(5.0), 2},
      {"real, open upper, huge", realsFromZero, DMDatum(1e300), 1},
      {"real, open upper, below", realsFromZero, DMDatum(-1e-300), 0},
      {"real, open lower, very small", realsUpToZero, DMDatum(-1e300), 1},
      {"real, open lower, above", realsUpToZero, DMDatum(1e-300), 0},
      {"minus zero at a zero limit", realsFromZero, DMDatum(-0.0), 1},
      // Texts: only a byte difference of exactly 1 is below or above.
      {"text b in a..c", aToC, DMDatum("b"), 1},
      {"text a at lower", aToC, DMDatum("a"), 1},
      {"text c at upper b..c", bToC, DMDatum("c"), 1},
      {"text c at upper a..c, lower diff 2", aToC, DMDatum("c"), 2},
      {"text a below b..c by 1", bToC, DMDatum("a"), 0},
      {"text a against c..d, lower diff -2", cToD, DMDatum("a"), 1},
      {"text 0 against c..d, lower diff far below", cToD, DMDatum("0"), 1},
      {"text d above a..c by 1", aToC, DMDatum("d"), 0},
      {"text d against b..c, lower diff 2", bToC, DMDatum("d"), 2},
      {"text e against b..c, upper diff 2", bToC, DMDatum("e"), 2},
      {"text z against b..c, upper diff far above", bToC, DMDatum("z"), 1},
      {"text c in b..d", bToD, DMDatum("c"), 1},
      {"text longer than the lower", bToD, DMDatum("ba"), 1},
      {"text prefix of the lower", DMRange(DMDatum("ba"), DMDatum("c")), DMDatum("b"), 1},
      {"text a below open upper b..", fromB, DMDatum("a"), 0},
      {"text z above open upper b..", fromB, DMDatum("z"), 1},
      {"text c above ..b by 1", upToB, DMDatum("c"), 0},
      {"text a below ..b", upToB, DMDatum("a"), 1},
      {"text d against ..b, upper diff 2", upToB, DMDatum("d"), 2},
      {"text against integers", integers, DMDatum("5"), 2},
      {"text against open integer upper", fromThree, DMDatum("5"), 2},
  };
  for (const InRangeCase& row : kCases) {
    EXPECT_EQ(row.range.CheckInRange(row.value), row.expected) << row.name;
  }
}

TEST(DMRangeTest, IntegerAgainstARealRangeIsNotComparable) {
  const DMRange range(DMDatum(0.0), DMDatum(10.0));
  EXPECT_EQ(range.CheckInRange(DMDatum(5LL)), 2);
  EXPECT_EQ(range.CheckInRange(DMDatum(5.0)), 1);
}

// ---------------------------------------------------------------------------
// Reading from XML

struct ReadCase {
  const char* element;
  DMDatum::DataType type;
  DMDatum lower;
  DMDatum upper;
};

TEST_F(DMRangeXmlTest, ReadsRangeElements) {
  // The type of a null (open) limit read from XML is left open; only its
  // nullness is checked.
  const DMDatum open;
  const DMDatum defaultLower(1LL);
  const DMDatum defaultUpper(0LL);
  const ReadCase kCases[] = {
      // Integers.
      {"<Range minValue=\"1\" maxValue=\"10\"/>", DMDatum::IntegerType, DMDatum(1LL),
       DMDatum(10LL)},
      {"<Range minValue=\"-5\" maxValue=\"-5\"/>", DMDatum::IntegerType, DMDatum(-5LL),
       DMDatum(-5LL)},
      {"<Range minValue=\"3 units\" maxValue=\" 7\"/>", DMDatum::IntegerType, DMDatum(3LL),
       DMDatum(7LL)},
      {"<Range maxValue=\"10\"/>", DMDatum::IntegerType, open, DMDatum(10LL)},
      {"<Range minValue=\"1\"/>", DMDatum::IntegerType, DMDatum(1LL), open},
      {"<Range/>", DMDatum::IntegerType, open, open},
      {"<Range minValue=\"10\" maxValue=\"5\"/>", DMDatum::IntegerType, defaultLower, defaultUpper},
      {"<Range minValue=\"abc\" maxValue=\"5\"/>", DMDatum::IntegerType, defaultLower,
       defaultUpper},
      {"<Range minValue=\"1\" maxValue=\"abc\"/>", DMDatum::IntegerType, defaultLower,
       defaultUpper},
      {"<Range minValue=\"\" maxValue=\"5\"/>", DMDatum::IntegerType, defaultLower, defaultUpper},
      // An integer read knows no infinities.
      {"<Range minValue=\"-INF\" maxValue=\"5\"/>", DMDatum::IntegerType, defaultLower,
       defaultUpper},
      // Reals.
      {"<Range minValue=\"0.5\" maxValue=\"2.5\"/>", DMDatum::RealType, DMDatum(0.5), DMDatum(2.5)},
      {"<Range minValue=\"1.50\" maxValue=\"1.5\"/>", DMDatum::RealType, DMDatum(1.5),
       DMDatum(1.5)},
      {"<Range minValue=\"-INF\" maxValue=\"10\"/>", DMDatum::RealType, open, DMDatum(10.0)},
      {"<Range minValue=\"0\" maxValue=\"INF\"/>", DMDatum::RealType, DMDatum(0.0), open},
      {"<Range minValue=\"NaN\" maxValue=\"2\"/>", DMDatum::RealType, open, DMDatum(2.0)},
      {"<Range minValue=\"2\" maxValue=\"NaN\"/>", DMDatum::RealType, DMDatum(2.0), open},
      {"<Range minValue=\"-INF\" maxValue=\"INF\"/>", DMDatum::RealType, open, open},
      // Infinities are not ordered: a minimum of "INF" is open too.
      {"<Range minValue=\"INF\" maxValue=\"-INF\"/>", DMDatum::RealType, open, open},
      {"<Range maxValue=\"1e300\"/>", DMDatum::RealType, open, DMDatum(1e300)},
      {"<Range minValue=\"3\" maxValue=\"-1\"/>", DMDatum::RealType, defaultLower, defaultUpper},
      {"<Range minValue=\"0.1\" maxValue=\"0.09999\"/>", DMDatum::RealType, defaultLower,
       defaultUpper},
      {"<Range minValue=\"1,5\" maxValue=\"2\"/>", DMDatum::RealType, defaultLower, defaultUpper},
      {"<Range minValue=\"1\" maxValue=\"two\"/>", DMDatum::RealType, defaultLower, defaultUpper},
      {"<Range minValue=\"-inf\" maxValue=\"2\"/>", DMDatum::RealType, defaultLower, defaultUpper},
      // Texts are never read.
      {"<Range minValue=\"a\" maxValue=\"b\"/>", DMDatum::StringType, defaultLower, defaultUpper},
      {"<Range minValue=\"1\" maxValue=\"2\"/>", DMDatum::StringType, defaultLower, defaultUpper},
      {"<Range/>", DMDatum::StringType, defaultLower, defaultUpper},
      // Any other type reads as real.
      {"<Range minValue=\"1.5\" maxValue=\"2\"/>", static_cast<DMDatum::DataType>(7), DMDatum(1.5),
       DMDatum(2.0)},
  };
  for (const ReadCase& row : kCases) {
    const DMRange range(Parse(row.element), row.type);
    EXPECT_TRUE(HasLimits(range, row.lower, row.upper, false)) << row.element << " " << row.type;
  }
}

TEST_F(DMRangeXmlTest, MinusInfinityMinimumLeavesTheLowerSideOpen) {
  const DMRange range(Parse("<Range minValue=\"-INF\" maxValue=\"10\"/>"), DMDatum::RealType);
  EXPECT_TRUE(range.GetLimits().first.IsNull());
  EXPECT_FALSE(range.IsEmpty());
  EXPECT_EQ(range.CheckInRange(DMDatum(-1e300)), 1);
  EXPECT_EQ(range.CheckInRange(DMDatum(10.0)), 1);
  EXPECT_EQ(range.CheckInRange(DMDatum(10.5)), 0);
  EXPECT_EQ(Written(range), "<Root><Range maxValue=\"10\"/></Root>");
}

TEST(DMRangeXmlReadTest, HandleWithoutAnElementGivesTheEmptyDefault) {
  const DMXMLWrapper handle;
  EXPECT_TRUE(IsDefault(DMRange(handle, DMDatum::IntegerType)));
  EXPECT_TRUE(IsDefault(DMRange(handle, DMDatum::RealType)));
}

// ---------------------------------------------------------------------------
// Writing. The serialiser orders an element's attributes by name, so
// maxValue comes out before minValue.

struct WriteCase {
  const char* name;
  DMRange range;
  const char* expected;
};

TEST(DMRangeWriteTest, WritesTheLimitsThatAreSet) {
  const DMDatum nullInteger;
  const DMDatum nullReal = NullOf(DMDatum::RealType);
  const DMDatum nullText = NullOf(DMDatum::StringType);
  const WriteCase kCases[] = {
      {"integers", DMRange(DMDatum(1LL), DMDatum(10LL)),
       "<Root><Range maxValue=\"10\" minValue=\"1\"/></Root>"},
      {"integer extremes",
       DMRange(DMDatum(std::numeric_limits<long long>::min()),
               DMDatum(std::numeric_limits<long long>::max())),
       "<Root><Range maxValue=\"9223372036854775807\" minValue=\"-9223372036854775808\"/></Root>"},
      {"single integer", DMRange(DMDatum(5LL), DMDatum(5LL)),
       "<Root><Range maxValue=\"5\" minValue=\"5\"/></Root>"},
      {"reals", DMRange(DMDatum(0.1), DMDatum(1e20)),
       "<Root><Range maxValue=\"1e+20\" minValue=\"0.1\"/></Root>"},
      {"reals with 15 significant digits",
       DMRange(DMDatum(-1.0 / 3.0), DMDatum(1.2345678901234567e17)),
       "<Root><Range maxValue=\"1.23456789012346e+17\" minValue=\"-0.333333333333333\"/></Root>"},
      {"whole reals", DMRange(DMDatum(-2.0), DMDatum(3.0)),
       "<Root><Range maxValue=\"3\" minValue=\"-2\"/></Root>"},
      {"texts", DMRange(DMDatum("a&b"), DMDatum("z<")),
       "<Root><Range maxValue=\"z&lt;\" minValue=\"a&amp;b\"/></Root>"},
      {"open lower", DMRange(nullReal, DMDatum(10.0)), "<Root><Range maxValue=\"10\"/></Root>"},
      {"open upper", DMRange(DMDatum(2LL), nullInteger), "<Root><Range minValue=\"2\"/></Root>"},
      {"open text upper", DMRange(DMDatum("m"), nullText), "<Root><Range minValue=\"m\"/></Root>"},
      {"both open", DMRange(nullInteger, nullInteger), ""},
      {"default", DMRange(), ""},
      {"reversed", DMRange(DMDatum(3.0), DMDatum(1.0)), ""},
  };
  for (const WriteCase& row : kCases) {
    EXPECT_EQ(Written(row.range), row.expected) << row.name;
  }
}

TEST(DMRangeWriteTest, AppendsTheRangeAsTheParentsLastChild) {
  DMXMLWrapper document;
  document.createNew("Field");
  DMXMLWrapper* first = nullptr;
  ASSERT_EQ(document.addElement("Other", &first), DmExtension::DM_XML_OK);
  DMXMLWrapper* created = nullptr;
  DMRange(DMDatum(1LL), DMDatum(2LL)).AddToTree(document, created, false);
  ASSERT_NE(created, nullptr);
  EXPECT_EQ(dmtest::XmlTest::WithoutDeclaration(document),
            "<Field><Other/><Range maxValue=\"2\" minValue=\"1\"/></Field>");
}

TEST(DMRangeWriteTest, ParentWithoutAnElementGetsNothing) {
  DMXMLWrapper parent;
  DMXMLWrapper* created = &parent;
  DMRange(DMDatum(1LL), DMDatum(2LL)).AddToTree(parent, created);
  EXPECT_EQ(created, nullptr);
}

TEST(DMRangeWriteTest, LimitThatCannotBeWrittenLeavesTheParentAlone) {
  // A lone byte 0xFF is not UTF-8 and cannot become attribute text.
  DMXMLWrapper document;
  document.createNew("Root");
  DMXMLWrapper* created = &document;
  DMRange(DMDatum("a"), DMDatum("\xFF")).AddToTree(document, created);
  EXPECT_EQ(created, nullptr);
  EXPECT_EQ(dmtest::XmlTest::WithoutDeclaration(document), "<Root/>");
}

TEST(DMRangeWriteTest, RoundTripsIntegerRanges) {
  EXPECT_EQ(dmtest::ExpectXmlRoundTrip(DMRange(DMDatum(-3LL), DMDatum(40LL)), ExpectEqualRanges,
                                       DMDatum::IntegerType),
            "<Root><Range maxValue=\"40\" minValue=\"-3\"/></Root>");
  EXPECT_EQ(dmtest::ExpectXmlRoundTrip(DMRange(DMDatum(), DMDatum(7LL)), ExpectEqualRanges,
                                       DMDatum::IntegerType),
            "<Root><Range maxValue=\"7\"/></Root>");
  EXPECT_EQ(dmtest::ExpectXmlRoundTrip(DMRange(DMDatum(7LL), DMDatum()), ExpectEqualRanges,
                                       DMDatum::IntegerType),
            "<Root><Range minValue=\"7\"/></Root>");
}

TEST(DMRangeWriteTest, RoundTripsRealRanges) {
  EXPECT_EQ(dmtest::ExpectXmlRoundTrip(DMRange(DMDatum(2.5e-7), DMDatum(0.1)), ExpectEqualRanges,
                                       DMDatum::RealType),
            "<Root><Range maxValue=\"0.1\" minValue=\"2.5e-07\"/></Root>");
  EXPECT_EQ(dmtest::ExpectXmlRoundTrip(DMRange(NullOf(DMDatum::RealType), DMDatum(1e20)),
                                       ExpectEqualRanges, DMDatum::RealType),
            "<Root><Range maxValue=\"1e+20\"/></Root>");
  EXPECT_EQ(dmtest::ExpectXmlRoundTrip(DMRange(DMDatum(-0.5), NullOf(DMDatum::RealType)),
                                       ExpectEqualRanges, DMDatum::RealType),
            "<Root><Range minValue=\"-0.5\"/></Root>");
}

}  // namespace
