#include "dmcommon/fields/dmfield.h"

#include <initializer_list>
#include <limits>
#include <memory>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "dmcommon/fields/dmgeo.h"
#include "dmcommon/fields/dmmodelfield.h"
#include "dmcommon/formats/dmdateformat.h"
#include "dmcommon/formats/dmdecoratedformat.h"
#include "dmcommon/formats/dmformat.h"
#include "dmcommon/formats/dmnumberformat.h"
#include "dmcommon/formats/dmstringformat.h"
#include "dmcommon/formats/dmtimeformat.h"
#include "dmcommon/stats/dmcatstatsimp.h"
#include "dmcommon/stats/dmcontstats.h"
#include "dmcommon/values/dmdatum.h"
#include "dmcommon/values/dmenumdict.h"
#include "dmcommon/values/dmmissingvalues.h"
#include "dmcommon/values/dmrange.h"
#include "dmcommon/values/dmvalue.h"
#include "tests/fields/fieldtest.h"

namespace {

using Storage = DMField::StorageType;
using Type = DMField::FieldType;
using Role = DMField::RoleType;
using Structure = DMField::StructureType;

// The enumerations' numbers are part of the interface.
static_assert(static_cast<unsigned>(Storage::Unknown) == 0);
static_assert(static_cast<unsigned>(Storage::Integer) == 1);
static_assert(static_cast<unsigned>(Storage::Real) == 2);
static_assert(static_cast<unsigned>(Storage::String) == 3);
static_assert(static_cast<unsigned>(Storage::Date) == 4);
static_assert(static_cast<unsigned>(Storage::Time) == 5);
static_assert(static_cast<unsigned>(Storage::Timestamp) == 6);
static_assert(static_cast<unsigned>(Type::Continuous) == 0);
static_assert(static_cast<unsigned>(Type::Nominal) == 1);
static_assert(static_cast<unsigned>(Type::Ordinal) == 2);
static_assert(static_cast<unsigned>(Type::Flag) == 3);
static_assert(static_cast<unsigned>(Type::Discrete) == 4);
static_assert(static_cast<unsigned>(Type::Typeless) == 5);
static_assert(static_cast<unsigned>(Type::Unknown) == 6);
static_assert(static_cast<unsigned>(Role::Input) == 0);
static_assert(static_cast<unsigned>(Role::Target) == 1);
static_assert(static_cast<unsigned>(Role::Both) == 2);
static_assert(static_cast<unsigned>(Role::Partition) == 3);
static_assert(static_cast<unsigned>(Role::Split) == 4);
static_assert(static_cast<unsigned>(Role::FreqWeight) == 5);
static_assert(static_cast<unsigned>(Role::RecordId) == 6);
static_assert(static_cast<unsigned>(Role::None) == 7);
static_assert(static_cast<unsigned>(Structure::List) == 0);
static_assert(static_cast<unsigned>(Structure::Primitive) == 1);

constexpr Type kAllTypes[] = {Type::Continuous, Type::Nominal,  Type::Ordinal, Type::Flag,
                              Type::Discrete,   Type::Typeless, Type::Unknown};

DMDatum Int(long long value) { return DMDatum(value); }
DMDatum Real(double value) { return DMDatum(value); }
DMDatum Text(const char* text) { return DMDatum(text); }
DMDatum NullOf(DMDatum::DataType type) {
  DMDatum datum;
  datum.SetNull(type);
  return datum;
}

std::vector<DMValue> ListOf(std::initializer_list<DMDatum> datums) {
  std::vector<DMValue> list;
  for (const DMDatum& datum : datums) list.emplace_back(datum, "label");
  return list;
}

DMField Named(Type type, Storage storage) { return DMField("age", type, storage, Role::Input); }

using dmtest::ExpectSameField;
using dmtest::SameDatum;
using dmtest::SameMissingValues;
using dmtest::SameRange;
using dmtest::SameValues;

// The members as both constructors leave them, name, type, storage and role
// aside.
void ExpectDefaultsBeyondTheFour(const DMField& field) {
  EXPECT_EQ(field.GetStructure(), Structure::Primitive);
  EXPECT_EQ(field.GetStructureStorage(), Storage::Unknown);
  EXPECT_EQ(field.GetSubRole(), "");
  EXPECT_EQ(field.GetMaxStringLength(), 0U);
  EXPECT_EQ(field.GetDepth(), -1);
  EXPECT_EQ(field.GetElementCount(), -1);
  EXPECT_EQ(field.GetLabel(), "");
  EXPECT_TRUE(SameRange(field.GetRange(), DMRange()));
  EXPECT_TRUE(field.GetRange().IsEmpty());
  EXPECT_TRUE(field.GetValues().empty());
  EXPECT_TRUE(SameMissingValues(field.GetMissingValues(), DMMissingValues()));
  EXPECT_TRUE(field.GetMissingValues().IsNullMissing());
  EXPECT_FALSE(field.GetMissingValues().IsWhiteSpMissing());
  EXPECT_TRUE(field.GetValueLabels().empty());
  EXPECT_EQ(field.GetFormatReference(), "");
  EXPECT_EQ(field.GetModelField(), nullptr);
  EXPECT_EQ(field.GetGeo(), nullptr);
  EXPECT_EQ(field.GetPrivateFormat(), nullptr);
  EXPECT_EQ(field.GetCatStats(), nullptr);
  EXPECT_EQ(field.GetContStats(), nullptr);
  EXPECT_EQ(field.GetBaseField(), nullptr);
}

// One format of each class.
std::unique_ptr<DMFormat> FormatOfClass(DMFormat::FormatClass formatClass) {
  switch (formatClass) {
    case DMFormat::Decorated:
      return std::make_unique<DMDecoratedFormat>(DMDecoratedFormat::Currency, 10, 2);
    case DMFormat::Date:
      return std::make_unique<DMDateFormat>();
    case DMFormat::Number:
      return std::make_unique<DMNumberFormat>(DMNumberFormat::Standard, 8, 2);
    case DMFormat::String:
      return std::make_unique<DMStringFormat>(12, false);
    case DMFormat::Time:
      return std::make_unique<DMTimeFormat>();
  }
  return nullptr;
}

// ---------------------------------------------------------------------------
// Tables

struct DictCase {
  const char* name;
  const DMEnumDictEntry* table;
  std::vector<std::pair<unsigned, std::string>> rows;
};

TEST(DMFieldTest, EnumerationTablesMapEveryValueBothWaysWithoutRepeats) {
  const DictCase cases[] = {
      {"storage",
       gStorageDict,
       {{0, "unknown"},
        {1, "integer"},
        {2, "real"},
        {3, "string"},
        {4, "date"},
        {5, "time"},
        {6, "timestamp"}}},
      {"measure",
       gMeasureDict,
       {{0, "continuous"},
        {1, "nominal"},
        {2, "ordinal"},
        {3, "flag"},
        {4, "discrete"},
        {5, "typeless"},
        {6, "unknown"}}},
      {"role",
       gRoleDict,
       {{0, "input"},
        {1, "target"},
        {2, "both"},
        {3, "partition"},
        {4, "split"},
        {5, "freqWeight"},
        {6, "recordId"},
        {7, "none"}}},
      {"structure", gStructureDict, {{0, "list"}, {1, "primitive"}}},
  };
  for (const DictCase& dict : cases) {
    SCOPED_TRACE(dict.name);
    ASSERT_EQ(DMEnumDict::Size(dict.table), static_cast<int>(dict.rows.size()));
    std::set<std::string> texts;
    std::set<unsigned> values;
    for (size_t i = 0; i < dict.rows.size(); ++i) {
      const auto& [value, text] = dict.rows[i];
      EXPECT_EQ(dict.table[i].value, value);
      EXPECT_STREQ(dict.table[i].text, text.c_str());
      EXPECT_STREQ(DMEnumDict::TextOfValue(dict.table, value), text.c_str());
      EXPECT_EQ(DMEnumDict::IndexOfText(dict.table, text.c_str()), static_cast<int>(i));
      EXPECT_TRUE(texts.insert(text).second) << "repeated text " << text;
      EXPECT_TRUE(values.insert(value).second) << "repeated value " << value;
    }
    EXPECT_EQ(DMEnumDict::TextOfValue(dict.table, static_cast<unsigned>(dict.rows.size())),
              nullptr);
  }
}

TEST(DMFieldTest, EnumerationTablesMatchTextsExactly) {
  EXPECT_EQ(DMEnumDict::IndexOfText(gStorageDict, "Integer"), -1);
  EXPECT_EQ(DMEnumDict::IndexOfText(gMeasureDict, "nominal "), -1);
  EXPECT_EQ(DMEnumDict::IndexOfText(gRoleDict, ""), -1);
  EXPECT_EQ(DMEnumDict::IndexOfText(gStructureDict, "lists"), -1);
}

// ---------------------------------------------------------------------------
// Construction and getters

TEST(DMFieldTest, DefaultFieldHasNoNameAndEveryDefault) {
  const DMField field;
  EXPECT_EQ(field.GetName(), "");
  EXPECT_EQ(field.GetType(), Type::Unknown);
  EXPECT_EQ(field.GetStorage(), Storage::Unknown);
  EXPECT_EQ(field.GetRole(), Role::None);
  ExpectDefaultsBeyondTheFour(field);
}

TEST(DMFieldTest, NamedConstructorStoresItsFourAndDefaultsTheRest) {
  const DMField field("income", Type::Ordinal, Storage::Real, Role::Target);
  EXPECT_EQ(field.GetName(), "income");
  EXPECT_EQ(field.GetType(), Type::Ordinal);
  EXPECT_EQ(field.GetStorage(), Storage::Real);
  EXPECT_EQ(field.GetRole(), Role::Target);
  ExpectDefaultsBeyondTheFour(field);
}

TEST(DMFieldTest, NamedConstructorTakesAnEmptyNameWithoutComplaint) {
  DMField field("", Type::Continuous, Storage::Integer, Role::Input);
  EXPECT_EQ(field.GetName(), "");
  EXPECT_EQ(field.GetType(), Type::Continuous);
  field.SetRole(Role::Target);
  EXPECT_EQ(field.GetRole(), Role::Input);
}

struct StorageMatchCase {
  Storage storage;
  bool integer;
  bool real;
  bool text;
};

TEST(DMFieldTest, StorageMatchesDatumsByTypeNullOrNot) {
  const StorageMatchCase cases[] = {
      {Storage::Unknown, false, false, false},  {Storage::Integer, true, false, false},
      {Storage::Real, false, true, false},      {Storage::String, false, false, true},
      {Storage::Date, false, true, false},      {Storage::Time, false, true, false},
      {Storage::Timestamp, false, true, false},
  };
  for (const StorageMatchCase& row : cases) {
    SCOPED_TRACE(static_cast<unsigned>(row.storage));
    const DMField field = Named(Type::Nominal, row.storage);
    EXPECT_EQ(field.StorageMatches(Int(4)), row.integer);
    EXPECT_EQ(field.StorageMatches(NullOf(DMDatum::IntegerType)), row.integer);
    EXPECT_EQ(field.StorageMatches(Real(4.5)), row.real);
    EXPECT_EQ(field.StorageMatches(NullOf(DMDatum::RealType)), row.real);
    EXPECT_EQ(field.StorageMatches(Text("x")), row.text);
    EXPECT_EQ(field.StorageMatches(NullOf(DMDatum::StringType)), row.text);
  }
}

struct FormatMatchCase {
  Storage storage;
  std::set<DMFormat::FormatClass> accepted;
};

const std::vector<FormatMatchCase>& FormatMatchCases() {
  static const std::vector<FormatMatchCase> cases = {
      {Storage::Unknown, {}},
      {Storage::Integer, {DMFormat::Number, DMFormat::Decorated}},
      {Storage::Real, {DMFormat::Number, DMFormat::Decorated}},
      {Storage::String, {DMFormat::String}},
      {Storage::Date, {DMFormat::Date}},
      {Storage::Time, {DMFormat::Time}},
      {Storage::Timestamp, {DMFormat::Date}},
  };
  return cases;
}

constexpr DMFormat::FormatClass kAllFormatClasses[] = {
    DMFormat::Decorated, DMFormat::Date, DMFormat::Number, DMFormat::String, DMFormat::Time};

TEST(DMFieldTest, MatchesFormatPairsEveryStorageWithItsFormatClasses) {
  for (const FormatMatchCase& row : FormatMatchCases()) {
    for (DMFormat::FormatClass formatClass : kAllFormatClasses) {
      SCOPED_TRACE(std::to_string(static_cast<unsigned>(row.storage)) + " with format class " +
                   std::to_string(formatClass));
      const std::unique_ptr<DMFormat> format = FormatOfClass(formatClass);
      EXPECT_EQ(DMField::MatchesFormat(row.storage, *format), row.accepted.count(formatClass) == 1);
    }
  }
}

TEST(DMFieldTest, MatchesFormatLooksAtTheClassNotTheValidity) {
  // A width-0 format is invalid, but choosing it is the caller's business.
  EXPECT_TRUE(DMField::MatchesFormat(Storage::Integer, DMNumberFormat()));
  EXPECT_TRUE(DMField::MatchesFormat(Storage::Timestamp, DMDateFormat()));
}

// ---------------------------------------------------------------------------
// The name test of the setters

TEST(DMFieldTest, DefaultFieldRefusesEverySetterButMaxStringLengthAndLabel) {
  DMField field;
  field.SetName("rescued");
  field.SetRole(Role::Target);
  field.SetSubRole("sub");
  field.SetRange(DMRange(Int(1), Int(5)));
  field.SetValues(ListOf({Int(1)}));
  field.SetMissingValues(DMMissingValues(DMRange(), ListOf({Int(9)}), false, true));
  field.SetValueLabels(ListOf({Int(1)}));
  const DMNumberFormat format(DMNumberFormat::Standard, 8, 2);
  EXPECT_FALSE(field.SetPrivateFormat(&format));
  EXPECT_FALSE(field.SetPrivateFormat(nullptr));
  EXPECT_FALSE(field.SetFormatReference("shared"));
  EXPECT_FALSE(field.SetFormatReference(""));
  const DMModelField modelField(DMModelField::Probability, "",
                                DMModelField::MFRuleFeatureType::None);
  EXPECT_FALSE(field.SetModelField(&modelField));
  EXPECT_FALSE(field.SetModelField(nullptr));
  DMGeo geo;
  geo.SetType(DMGeo::Point);
  EXPECT_FALSE(field.SetGeo(&geo));
  EXPECT_FALSE(field.SetGeo(nullptr));
  EXPECT_FALSE(field.SetFieldType(Type::Continuous));
  DMCatStatsInt catStats;
  EXPECT_FALSE(field.SetSumStats(&catStats));
  EXPECT_FALSE(field.SetSumStats(static_cast<const DMCatStats*>(nullptr)));
  DMContStatsInt contStats;
  EXPECT_FALSE(field.SetSumStats(&contStats));
  EXPECT_FALSE(field.SetSumStats(static_cast<const DMContStats*>(nullptr)));
  field.SetBaseField(Named(Type::Nominal, Storage::Integer));
  field.SetStructure(Structure::List);
  field.SetStructureStorage(Storage::String);
  field.SetDepth(2);
  field.SetElementCount(3);

  EXPECT_EQ(field.GetName(), "");
  EXPECT_EQ(field.GetType(), Type::Unknown);
  EXPECT_EQ(field.GetRole(), Role::None);
  ExpectDefaultsBeyondTheFour(field);

  field.SetMaxStringLength(40);
  field.SetLabel("Age in years");
  EXPECT_EQ(field.GetMaxStringLength(), 40U);
  EXPECT_EQ(field.GetLabel(), "Age in years");
}

TEST(DMFieldTest, UnnamedFieldRefusesChangesItsTypeAndStorageWouldAllow) {
  // Continuous, Integer: every refusal below is the name test's alone.
  DMField field("", Type::Continuous, Storage::Integer, Role::Input);
  field.SetRange(DMRange(Int(1), Int(5)));
  field.SetMissingValues(DMMissingValues(DMRange(), ListOf({Int(9)}), false, true));
  field.SetValueLabels(ListOf({Int(1)}));
  const DMNumberFormat format(DMNumberFormat::Standard, 8, 2);
  EXPECT_FALSE(field.SetPrivateFormat(&format));
  DMContStatsInt contStats;
  EXPECT_FALSE(field.SetSumStats(&contStats));
  EXPECT_FALSE(field.SetFieldType(Type::Nominal));
  field.SetBaseField(Named(Type::Nominal, Storage::Integer));

  EXPECT_EQ(field.GetType(), Type::Continuous);
  ExpectDefaultsBeyondTheFour(field);
}

// ---------------------------------------------------------------------------
// Plain setters

TEST(DMFieldTest, SetNameReplacesTheNameOfANamedField) {
  DMField field = Named(Type::Nominal, Storage::Integer);
  field.SetName("years");
  EXPECT_EQ(field.GetName(), "years");
}

TEST(DMFieldTest, SetNameToEmptyLeavesAFieldThatRefusesFurtherChanges) {
  DMField field = Named(Type::Nominal, Storage::Integer);
  field.SetName("");
  EXPECT_EQ(field.GetName(), "");
  field.SetName("again");
  field.SetRole(Role::Target);
  EXPECT_EQ(field.GetName(), "");
  EXPECT_EQ(field.GetRole(), Role::Input);
}

TEST(DMFieldTest, SimpleSettersStoreTheirValuesOnANamedField) {
  DMField field = Named(Type::Nominal, Storage::String);
  field.SetRole(Role::FreqWeight);
  field.SetSubRole("weight of a case");
  field.SetMaxStringLength(255);
  field.SetLabel("Age");
  field.SetStructure(Structure::List);
  field.SetStructureStorage(Storage::Timestamp);
  field.SetDepth(0);
  field.SetElementCount(3);
  EXPECT_EQ(field.GetRole(), Role::FreqWeight);
  EXPECT_EQ(field.GetSubRole(), "weight of a case");
  EXPECT_EQ(field.GetMaxStringLength(), 255U);
  EXPECT_EQ(field.GetLabel(), "Age");
  EXPECT_EQ(field.GetStructure(), Structure::List);
  EXPECT_EQ(field.GetStructureStorage(), Storage::Timestamp);
  EXPECT_EQ(field.GetDepth(), 0);
  EXPECT_EQ(field.GetElementCount(), 3);

  // Negative counts mean "not declared" and are stored as given.
  field.SetDepth(-7);
  field.SetElementCount(-1);
  field.SetSubRole("");
  EXPECT_EQ(field.GetDepth(), -7);
  EXPECT_EQ(field.GetElementCount(), -1);
  EXPECT_EQ(field.GetSubRole(), "");
}

// ---------------------------------------------------------------------------
// SetRange

struct RangeCase {
  const char* name;
  Storage storage;
  DMRange before;  // Set first; must be taken.
  DMRange range;
  bool taken;
};

TEST(DMFieldTest, SetRangeOnAContinuousFieldFollowsTheStorageUnlessTheRangeIsEmpty) {
  const RangeCase cases[] = {
      {"integer range on Integer", Storage::Integer, DMRange(Int(10), Int(20)),
       DMRange(Int(1), Int(5)), true},
      {"real range on Integer", Storage::Integer, DMRange(Int(10), Int(20)),
       DMRange(Real(1.0), Real(5.0)), false},
      {"real range on Real", Storage::Real, DMRange(Real(10.0), Real(20.0)),
       DMRange(Real(1.5), Real(2.5)), true},
      {"integer range on Real", Storage::Real, DMRange(Real(10.0), Real(20.0)),
       DMRange(Int(1), Int(5)), false},
      {"reversed integer range on Real", Storage::Real, DMRange(Real(10.0), Real(20.0)),
       DMRange(Int(5), Int(1)), true},
      {"the empty default on String", Storage::String, DMRange(Text("k"), Text("m")), DMRange(),
       true},
      {"both limits null on Real", Storage::Real, DMRange(Real(10.0), Real(20.0)),
       DMRange(DMDatum(), DMDatum()), true},
      {"null real lower limit on Date", Storage::Date, DMRange(Real(10.0), Real(20.0)),
       DMRange(NullOf(DMDatum::RealType), Real(3.0)), true},
      // The null lower limit is tested by its type: integer, so refused.
      {"null integer lower limit on Real", Storage::Real, DMRange(Real(10.0), Real(20.0)),
       DMRange(NullOf(DMDatum::IntegerType), Real(3.0)), false},
      {"real lower limit, null upper on Time", Storage::Time, DMRange(Real(10.0), Real(20.0)),
       DMRange(Real(2.0), NullOf(DMDatum::RealType)), true},
      {"text range on String", Storage::String, DMRange(Text("k"), Text("m")),
       DMRange(Text("a"), Text("c")), true},
      {"text range on Timestamp", Storage::Timestamp, DMRange(Real(10.0), Real(20.0)),
       DMRange(Text("a"), Text("c")), false},
      {"integer range on Unknown", Storage::Unknown, DMRange(), DMRange(Int(1), Int(5)), false},
  };
  for (const RangeCase& row : cases) {
    SCOPED_TRACE(row.name);
    DMField field = Named(Type::Continuous, row.storage);
    field.SetRange(row.before);
    ASSERT_TRUE(SameRange(field.GetRange(), row.before));
    field.SetRange(row.range);
    EXPECT_TRUE(SameRange(field.GetRange(), row.taken ? row.range : row.before));
  }
}

TEST(DMFieldTest, SetRangeOnAReversedIntegerRangeStoresTheEmptyRange) {
  DMField field = Named(Type::Continuous, Storage::Real);
  field.SetRange(DMRange(Real(10.0), Real(20.0)));
  field.SetRange(DMRange(Int(5), Int(1)));
  EXPECT_TRUE(field.GetRange().IsEmpty());
  EXPECT_TRUE(SameRange(field.GetRange(), DMRange()));
}

TEST(DMFieldTest, SetRangeOnANonContinuousFieldChangesNothing) {
  for (Type type : kAllTypes) {
    if (type == Type::Continuous) continue;
    SCOPED_TRACE(static_cast<unsigned>(type));
    DMField field = Named(type, Storage::Integer);
    field.SetRange(DMRange(Int(1), Int(5)));
    field.SetRange(DMRange(DMDatum(), DMDatum()));
    EXPECT_TRUE(SameRange(field.GetRange(), DMRange()));
  }
}

// ---------------------------------------------------------------------------
// SetValues and SetValueLabels

TEST(DMFieldTest, SetValuesIsTakenByTheFourCategoricalLevelsOnly) {
  for (Type type : kAllTypes) {
    SCOPED_TRACE(static_cast<unsigned>(type));
    DMField field = Named(type, Storage::Integer);
    const std::vector<DMValue> values = ListOf({Int(1), Int(2), Int(3)});
    field.SetValues(values);
    const bool categorical = type == Type::Nominal || type == Type::Ordinal || type == Type::Flag ||
                             type == Type::Discrete;
    EXPECT_TRUE(SameValues(field.GetValues(), categorical ? values : std::vector<DMValue>()));
  }
}

TEST(DMFieldTest, SetValuesWithOneNullValueAmongManyChangesNothing) {
  DMField field = Named(Type::Nominal, Storage::String);
  const std::vector<DMValue> before = ListOf({Text("a"), Text("b")});
  field.SetValues(before);
  field.SetValues(
      ListOf({Text("x"), Text("y"), NullOf(DMDatum::StringType), Text("z"), Text("w")}));
  EXPECT_TRUE(SameValues(field.GetValues(), before));
}

TEST(DMFieldTest, SetValuesWithAValueOfAnotherStorageChangesNothing) {
  DMField field = Named(Type::Flag, Storage::Date);
  const std::vector<DMValue> before = ListOf({Real(1.0), Real(2.0)});
  field.SetValues(before);
  ASSERT_TRUE(SameValues(field.GetValues(), before));
  field.SetValues(ListOf({Real(3.0), Int(4)}));
  EXPECT_TRUE(SameValues(field.GetValues(), before));
  field.SetValues({});
  EXPECT_TRUE(field.GetValues().empty());
}

TEST(DMFieldTest, SetValueLabelsIsTakenAtEveryMeasurementLevel) {
  for (Type type : kAllTypes) {
    SCOPED_TRACE(static_cast<unsigned>(type));
    DMField field = Named(type, Storage::Real);
    const std::vector<DMValue> labels = ListOf({Real(0.5), Real(1.5)});
    field.SetValueLabels(labels);
    EXPECT_TRUE(SameValues(field.GetValueLabels(), labels));
  }
}

TEST(DMFieldTest, SetValueLabelsWithANullOrMismatchedValueChangesNothing) {
  DMField field = Named(Type::Continuous, Storage::Integer);
  const std::vector<DMValue> before = ListOf({Int(1)});
  field.SetValueLabels(before);
  field.SetValueLabels(ListOf({Int(2), NullOf(DMDatum::IntegerType)}));
  EXPECT_TRUE(SameValues(field.GetValueLabels(), before));
  field.SetValueLabels(ListOf({Int(2), Text("3")}));
  EXPECT_TRUE(SameValues(field.GetValueLabels(), before));
}

// ---------------------------------------------------------------------------
// SetMissingValues

struct MissingCase {
  const char* name;
  Storage storage;
  DMMissingValues missing;
  bool taken;
};

TEST(DMFieldTest, SetMissingValuesTestsTheRangeOrElseTheFirstListedValue) {
  const MissingCase cases[] = {
      {"integer range on Integer", Storage::Integer,
       DMMissingValues(DMRange(Int(90), Int(99)), {}, true, false), true},
      {"integer range on Real", Storage::Real,
       DMMissingValues(DMRange(Int(90), Int(99)), {}, true, false), false},
      {"null integer lower limit on Real", Storage::Real,
       DMMissingValues(DMRange(DMDatum(), Real(99.0)), {}, true, false), false},
      {"null real lower limit on Real", Storage::Real,
       DMMissingValues(DMRange(NullOf(DMDatum::RealType), Real(99.0)), {}, true, false), true},
      {"empty range, integer list on Integer", Storage::Integer,
       DMMissingValues(DMRange(), ListOf({Int(-1), Int(-2)}), true, false), true},
      {"empty range, integer list on String", Storage::String,
       DMMissingValues(DMRange(), ListOf({Int(-1)}), true, false), false},
      {"null limits, text list on String", Storage::String,
       DMMissingValues(DMRange(DMDatum(), DMDatum()), ListOf({Text("NA")}), true, false), true},
      {"no range, no list on String", Storage::String, DMMissingValues(DMRange(), {}, false, true),
       true},
      {"no range, no list on Unknown", Storage::Unknown,
       DMMissingValues(DMRange(), {}, false, false), true},
      {"a null listed value is invalid", Storage::Integer,
       DMMissingValues(DMRange(), ListOf({Int(-1), NullOf(DMDatum::IntegerType)}), true, false),
       false},
      {"a list of mixed types is invalid", Storage::Integer,
       DMMissingValues(DMRange(), ListOf({Int(-1), Real(-2.0)}), true, false), false},
  };
  for (const MissingCase& row : cases) {
    SCOPED_TRACE(row.name);
    DMField field = Named(Type::Continuous, row.storage);
    field.SetMissingValues(row.missing);
    EXPECT_TRUE(
        SameMissingValues(field.GetMissingValues(), row.taken ? row.missing : DMMissingValues()));
  }
}

TEST(DMFieldTest, SetMissingValuesCopiesRangeListAndBothSwitches) {
  DMField field = Named(Type::Nominal, Storage::Real);
  const DMMissingValues missing(DMRange(Real(97.0), Real(99.0)), ListOf({Real(-1.0)}), false, true);
  field.SetMissingValues(missing);
  EXPECT_TRUE(SameMissingValues(field.GetMissingValues(), missing));
  EXPECT_FALSE(field.GetMissingValues().IsNullMissing());
  EXPECT_TRUE(field.GetMissingValues().IsWhiteSpMissing());
}

// ---------------------------------------------------------------------------
// Formats

TEST(DMFieldTest, SetPrivateFormatTakesOnlyFormatsThatSuitTheStorage) {
  for (const FormatMatchCase& row : FormatMatchCases()) {
    for (DMFormat::FormatClass formatClass : kAllFormatClasses) {
      SCOPED_TRACE(std::to_string(static_cast<unsigned>(row.storage)) + " with format class " +
                   std::to_string(formatClass));
      DMField field = Named(Type::Nominal, row.storage);
      ASSERT_TRUE(field.SetFormatReference("shared"));
      const std::unique_ptr<DMFormat> format = FormatOfClass(formatClass);
      const bool suits = row.accepted.count(formatClass) == 1;
      EXPECT_EQ(field.SetPrivateFormat(format.get()), suits);
      if (suits) {
        ASSERT_NE(field.GetPrivateFormat(), nullptr);
        EXPECT_NE(field.GetPrivateFormat(), format.get());
        EXPECT_EQ(field.GetPrivateFormat()->GetFormatClass(), formatClass);
        EXPECT_EQ(field.GetFormatReference(), "");
      } else {
        EXPECT_EQ(field.GetPrivateFormat(), nullptr);
        EXPECT_EQ(field.GetFormatReference(), "shared");
      }
    }
  }
}

TEST(DMFieldTest, SetPrivateFormatWithADateFormatOnATimeFieldIsRefused) {
  DMField field = Named(Type::Continuous, Storage::Time);
  const DMTimeFormat timeFormat;
  ASSERT_TRUE(field.SetPrivateFormat(&timeFormat));
  const DMDateFormat dateFormat;
  EXPECT_FALSE(field.SetPrivateFormat(&dateFormat));
  ASSERT_NE(field.GetPrivateFormat(), nullptr);
  EXPECT_EQ(field.GetPrivateFormat()->GetFormatClass(), DMFormat::Time);
}

TEST(DMFieldTest, SetPrivateFormatWithANumberFormatOnAnIntegerFieldClearsTheReference) {
  DMField field = Named(Type::Continuous, Storage::Integer);
  ASSERT_TRUE(field.SetFormatReference("shared"));
  DMNumberFormat format(DMNumberFormat::Standard, 8, 2);
  format.SetName("mine");
  EXPECT_TRUE(field.SetPrivateFormat(&format));
  EXPECT_EQ(field.GetFormatReference(), "");
  ASSERT_NE(field.GetPrivateFormat(), nullptr);
  EXPECT_EQ(field.GetPrivateFormat()->GetName(), "mine");
  EXPECT_EQ(field.GetPrivateFormat()->GetWidth(), 8);
}

TEST(DMFieldTest, SetPrivateFormatWithNullReleasesTheFormatAndKeepsTheReferenceEmpty) {
  DMField field = Named(Type::Continuous, Storage::Integer);
  const DMNumberFormat format(DMNumberFormat::Standard, 8, 2);
  ASSERT_TRUE(field.SetPrivateFormat(&format));
  EXPECT_TRUE(field.SetPrivateFormat(nullptr));
  EXPECT_EQ(field.GetPrivateFormat(), nullptr);
  EXPECT_EQ(field.GetFormatReference(), "");

  // On an Unknown storage, which takes no format, null is still accepted.
  DMField unknown = Named(Type::Continuous, Storage::Unknown);
  EXPECT_TRUE(unknown.SetPrivateFormat(nullptr));
}

TEST(DMFieldTest, SetFormatReferenceReleasesThePrivateFormat) {
  DMField field = Named(Type::Continuous, Storage::String);
  const DMStringFormat format(12, false);
  ASSERT_TRUE(field.SetPrivateFormat(&format));
  EXPECT_TRUE(field.SetFormatReference("shared"));
  EXPECT_EQ(field.GetFormatReference(), "shared");
  EXPECT_EQ(field.GetPrivateFormat(), nullptr);
}

TEST(DMFieldTest, SetFormatReferenceToEmptyClearsOnlyTheReference) {
  DMField field = Named(Type::Continuous, Storage::String);
  ASSERT_TRUE(field.SetFormatReference("shared"));
  EXPECT_TRUE(field.SetFormatReference(""));
  EXPECT_EQ(field.GetFormatReference(), "");

  const DMStringFormat format(12, false);
  ASSERT_TRUE(field.SetPrivateFormat(&format));
  EXPECT_TRUE(field.SetFormatReference(""));
  EXPECT_EQ(field.GetFormatReference(), "");
  ASSERT_NE(field.GetPrivateFormat(), nullptr);
  EXPECT_EQ(field.GetPrivateFormat()->GetFormatClass(), DMFormat::String);
}

// ---------------------------------------------------------------------------
// Base field

TEST(DMFieldTest, SetBaseFieldStoresAPrivateCopy) {
  DMField field = Named(Type::Continuous, Storage::Real);
  DMField base("raw", Type::Nominal, Storage::String, Role::Input);
  base.SetLabel("Raw answer");
  field.SetBaseField(base);
  ASSERT_NE(field.GetBaseField(), nullptr);
  EXPECT_NE(field.GetBaseField(), &base);
  ExpectSameField(*field.GetBaseField(), base);

  base.SetName("changed");
  EXPECT_EQ(field.GetBaseField()->GetName(), "raw");
}

TEST(DMFieldTest, SetBaseFieldWithAFieldThatHasItsOwnBaseChangesNothing) {
  DMField field = Named(Type::Continuous, Storage::Real);
  field.SetBaseField(DMField("first", Type::Nominal, Storage::String, Role::Input));
  DMField derived("derived", Type::Nominal, Storage::String, Role::Input);
  derived.SetBaseField(DMField("origin", Type::Nominal, Storage::String, Role::Input));
  ASSERT_NE(derived.GetBaseField(), nullptr);

  field.SetBaseField(derived);
  ASSERT_NE(field.GetBaseField(), nullptr);
  EXPECT_EQ(field.GetBaseField()->GetName(), "first");
  EXPECT_EQ(field.GetBaseField()->GetBaseField(), nullptr);
}

TEST(DMFieldTest, SetBaseFieldReplacesTheOldBaseEvenWithItself) {
  DMField field = Named(Type::Continuous, Storage::Real);
  field.SetBaseField(DMField("first", Type::Nominal, Storage::String, Role::Input));
  field.SetBaseField(DMField("second", Type::Ordinal, Storage::Integer, Role::Target));
  ASSERT_NE(field.GetBaseField(), nullptr);
  EXPECT_EQ(field.GetBaseField()->GetName(), "second");

  // The argument is the object being replaced: it is copied before it goes.
  field.SetBaseField(*field.GetBaseField());
  ASSERT_NE(field.GetBaseField(), nullptr);
  EXPECT_EQ(field.GetBaseField()->GetName(), "second");
  EXPECT_EQ(field.GetBaseField()->GetType(), Type::Ordinal);
}

// ---------------------------------------------------------------------------
// Model field and geo

TEST(DMFieldTest, SetModelFieldStoresAPrivateCopyAndNullReleasesIt) {
  DMField field = Named(Type::Continuous, Storage::Real);
  DMModelField modelField(DMModelField::Extended, "score", DMModelField::MFRuleFeatureType::Lift);
  EXPECT_TRUE(field.SetModelField(&modelField));
  ASSERT_NE(field.GetModelField(), nullptr);
  EXPECT_NE(field.GetModelField(), &modelField);
  EXPECT_EQ(field.GetModelField()->GetMFRole(), DMModelField::Extended);
  EXPECT_EQ(field.GetModelField()->GetMFExtendedRole(), "score");
  EXPECT_EQ(field.GetModelField()->GetMFRuleFeature(), DMModelField::MFRuleFeatureType::Lift);

  const DMModelField other(DMModelField::Residual, "", DMModelField::MFRuleFeatureType::None);
  EXPECT_TRUE(field.SetModelField(&other));
  EXPECT_EQ(field.GetModelField()->GetMFRole(), DMModelField::Residual);

  EXPECT_TRUE(field.SetModelField(nullptr));
  EXPECT_EQ(field.GetModelField(), nullptr);
}

TEST(DMFieldTest, SetModelFieldRefusesAnUnsetRole) {
  DMField field = Named(Type::Continuous, Storage::Real);
  const DMModelField valid(DMModelField::Probability, "", DMModelField::MFRuleFeatureType::None);
  ASSERT_TRUE(field.SetModelField(&valid));
  const DMModelField unset;
  ASSERT_EQ(unset.GetMFRole(), DMModelField::Unset);
  EXPECT_FALSE(field.SetModelField(&unset));
  ASSERT_NE(field.GetModelField(), nullptr);
  EXPECT_EQ(field.GetModelField()->GetMFRole(), DMModelField::Probability);
}

TEST(DMFieldTest, SetGeoStoresAPrivateCopyAndNullReleasesIt) {
  DMField field = Named(Type::Typeless, Storage::String);
  DMGeo geo;
  geo.SetType(DMGeo::Polygon);
  geo.SetWkid(4326);
  EXPECT_TRUE(field.SetGeo(&geo));
  ASSERT_NE(field.GetGeo(), nullptr);
  EXPECT_NE(field.GetGeo(), &geo);
  bool isSet = false;
  EXPECT_EQ(field.GetGeo()->GetType(isSet), DMGeo::Polygon);
  EXPECT_TRUE(isSet);
  EXPECT_EQ(field.GetGeo()->GetWkid(isSet), 4326);
  EXPECT_TRUE(isSet);

  geo.SetWkid(3857);
  EXPECT_EQ(field.GetGeo()->GetWkid(isSet), 4326);

  EXPECT_TRUE(field.SetGeo(&geo));
  EXPECT_EQ(field.GetGeo()->GetWkid(isSet), 3857);
  EXPECT_TRUE(field.SetGeo(nullptr));
  EXPECT_EQ(field.GetGeo(), nullptr);
}

// ---------------------------------------------------------------------------
// Deep copy and assignment

// A categorical field with every component a categorical field can hold.
DMField CategoricalFieldWithEverything() {
  DMField field("colour", Type::Nominal, Storage::Integer, Role::Target);
  field.SetSubRole("primary");
  field.SetMaxStringLength(12);
  field.SetLabel("Colour");
  field.SetStructure(Structure::List);
  field.SetStructureStorage(Storage::Integer);
  field.SetDepth(1);
  field.SetElementCount(4);
  field.SetValues(ListOf({Int(1), Int(2), Int(3)}));
  field.SetMissingValues(DMMissingValues(DMRange(), ListOf({Int(-1)}), false, true));
  field.SetValueLabels(ListOf({Int(1), Int(2)}));
  DMNumberFormat format(DMNumberFormat::Standard, 8, 2);
  format.SetName("two places");
  EXPECT_TRUE(field.SetPrivateFormat(&format));
  const DMModelField modelField(DMModelField::PredictedValue, "",
                                DMModelField::MFRuleFeatureType::None);
  EXPECT_TRUE(field.SetModelField(&modelField));
  DMGeo geo;
  geo.SetType(DMGeo::Point);
  geo.SetCsname("WGS 84");
  EXPECT_TRUE(field.SetGeo(&geo));
  DMCatStatsInt stats;
  EXPECT_TRUE(stats.Update(1, 2.0));
  EXPECT_TRUE(stats.Update(3, 5.0));
  EXPECT_TRUE(field.SetSumStats(&stats));
  DMField base("colour_raw", Type::Nominal, Storage::String, Role::Input);
  base.SetValues(ListOf({Text("red"), Text("green")}));
  field.SetBaseField(base);
  return field;
}

// A continuous field with its range and continuous statistics.
DMField ContinuousFieldWithEverything() {
  DMField field("height", Type::Continuous, Storage::Real, Role::Input);
  field.SetRange(DMRange(Real(0.5), Real(2.5)));
  EXPECT_TRUE(field.SetFormatReference("metres"));
  DMContStatsDbl stats;
  stats.Update(1.75);
  stats.Update(1.5, 2.0, 1.0);
  EXPECT_TRUE(field.SetSumStats(&stats));
  return field;
}

void ExpectDistinctComponents(const DMField& copy, const DMField& source) {
  EXPECT_TRUE(copy.GetPrivateFormat() == nullptr ||
              copy.GetPrivateFormat() != source.GetPrivateFormat());
  EXPECT_TRUE(copy.GetModelField() == nullptr || copy.GetModelField() != source.GetModelField());
  EXPECT_TRUE(copy.GetGeo() == nullptr || copy.GetGeo() != source.GetGeo());
  EXPECT_TRUE(copy.GetCatStats() == nullptr || copy.GetCatStats() != source.GetCatStats());
  EXPECT_TRUE(copy.GetContStats() == nullptr || copy.GetContStats() != source.GetContStats());
  EXPECT_TRUE(copy.GetBaseField() == nullptr || copy.GetBaseField() != source.GetBaseField());
}

TEST(DMFieldTest, CopyOfAFieldWithAllComponentsHasIndependentEqualComponents) {
  const DMField source = CategoricalFieldWithEverything();
  ASSERT_NE(source.GetPrivateFormat(), nullptr);
  ASSERT_NE(source.GetModelField(), nullptr);
  ASSERT_NE(source.GetGeo(), nullptr);
  ASSERT_NE(source.GetCatStats(), nullptr);
  ASSERT_NE(source.GetBaseField(), nullptr);

  auto copy = std::make_unique<DMField>(source);
  ExpectSameField(*copy, source);
  ExpectDistinctComponents(*copy, source);
  EXPECT_NE(dynamic_cast<const DMCatStatsInt*>(copy->GetCatStats()), nullptr);
  EXPECT_NE(dynamic_cast<const DMNumberFormat*>(copy->GetPrivateFormat()), nullptr);

  // Deleting the copy leaves the source whole.
  copy.reset();
  const DMField fresh = CategoricalFieldWithEverything();
  ExpectSameField(source, fresh);
  EXPECT_EQ(source.GetCatStats()->GetCatWeight(1), 5.0);
}

TEST(DMFieldTest, CopyOfAContinuousFieldClonesItsStatistics) {
  const DMField source = ContinuousFieldWithEverything();
  ASSERT_NE(source.GetContStats(), nullptr);
  const DMField copy(source);  // NOLINT(performance-unnecessary-copy-initialization): under test
  ExpectSameField(copy, source);
  ExpectDistinctComponents(copy, source);
  EXPECT_NE(dynamic_cast<const DMContStatsDbl*>(copy.GetContStats()), nullptr);
  EXPECT_EQ(copy.GetContStats()->GetSumFreqWeights(), 3.0);
}

TEST(DMFieldTest, CopyOfADefaultFieldKeepsEveryComponentNull) {
  const DMField source;
  const DMField copy(source);  // NOLINT(performance-unnecessary-copy-initialization): under test
  ExpectSameField(copy, source);
  ExpectDefaultsBeyondTheFour(copy);
}

TEST(DMFieldTest, AssignmentReplacesEveryMemberAndComponent) {
  DMField target = CategoricalFieldWithEverything();
  const DMField source = ContinuousFieldWithEverything();
  target = source;
  ExpectSameField(target, source);
  ExpectDistinctComponents(target, source);
  EXPECT_EQ(target.GetCatStats(), nullptr);
  EXPECT_EQ(target.GetModelField(), nullptr);
  EXPECT_EQ(target.GetBaseField(), nullptr);

  target = CategoricalFieldWithEverything();
  ExpectSameField(target, CategoricalFieldWithEverything());
  EXPECT_EQ(target.GetContStats(), nullptr);
}

TEST(DMFieldTest, AssignmentToAnUnnamedFieldMakesItUsable) {
  DMField field;
  field = Named(Type::Nominal, Storage::Integer);
  field.SetRole(Role::Split);
  EXPECT_EQ(field.GetName(), "age");
  EXPECT_EQ(field.GetRole(), Role::Split);
}

TEST(DMFieldTest, AssignmentToItselfChangesNothing) {
  DMField field = CategoricalFieldWithEverything();
  const DMFormat* format = field.GetPrivateFormat();
  const DMField* base = field.GetBaseField();
  DMField& alias = field;
  field = alias;
  ExpectSameField(field, CategoricalFieldWithEverything());
  EXPECT_EQ(field.GetPrivateFormat(), format);
  EXPECT_EQ(field.GetBaseField(), base);
}

TEST(DMFieldTest, AssignmentFromItsOwnBaseFieldCopiesBeforeReleasing) {
  DMField field = CategoricalFieldWithEverything();
  const DMField expected = *field.GetBaseField();
  field = *field.GetBaseField();
  ExpectSameField(field, expected);
  EXPECT_EQ(field.GetBaseField(), nullptr);
}

// ---------------------------------------------------------------------------
// SetFieldType

struct FieldTypeCase {
  Type from;
  Type to;
  bool keepsItsOwn;  // values and categorical statistics, or range and
                     // continuous statistics, as the field had them
};

TEST(DMFieldTest, SetFieldTypeDropsWhatTheNewLevelCannotCarry) {
  std::vector<FieldTypeCase> cases;
  for (Type to : kAllTypes) {
    const bool categorical =
        to == Type::Nominal || to == Type::Ordinal || to == Type::Flag || to == Type::Discrete;
    cases.push_back({Type::Nominal, to, categorical});
    cases.push_back({Type::Continuous, to, to == Type::Continuous});
  }
  for (const FieldTypeCase& row : cases) {
    SCOPED_TRACE(std::to_string(static_cast<unsigned>(row.from)) + " to " +
                 std::to_string(static_cast<unsigned>(row.to)));
    DMField field = row.from == Type::Nominal ? CategoricalFieldWithEverything()
                                              : ContinuousFieldWithEverything();
    const DMField before = field;
    EXPECT_TRUE(field.SetFieldType(row.to));
    EXPECT_EQ(field.GetType(), row.to);
    if (row.from == Type::Nominal) {
      EXPECT_TRUE(SameValues(field.GetValues(),
                             row.keepsItsOwn ? before.GetValues() : std::vector<DMValue>()));
      EXPECT_EQ(field.GetCatStats() != nullptr, row.keepsItsOwn);
    } else {
      EXPECT_TRUE(SameRange(field.GetRange(), row.keepsItsOwn ? before.GetRange() : DMRange()));
      EXPECT_EQ(field.GetContStats() != nullptr, row.keepsItsOwn);
    }
    // Nothing else moves.
    EXPECT_TRUE(SameValues(field.GetValueLabels(), before.GetValueLabels()));
    EXPECT_TRUE(SameMissingValues(field.GetMissingValues(), before.GetMissingValues()));
    EXPECT_EQ(field.GetFormatReference(), before.GetFormatReference());
    EXPECT_EQ(field.GetPrivateFormat() != nullptr, before.GetPrivateFormat() != nullptr);
    EXPECT_EQ(field.GetModelField() != nullptr, before.GetModelField() != nullptr);
    EXPECT_EQ(field.GetGeo() != nullptr, before.GetGeo() != nullptr);
    EXPECT_EQ(field.GetBaseField() != nullptr, before.GetBaseField() != nullptr);
  }
}

TEST(DMFieldTest, SetFieldTypeToContinuousAndBackLeavesNothingOfEither) {
  DMField field = Named(Type::Nominal, Storage::Integer);
  field.SetValues(ListOf({Int(1), Int(2)}));
  DMCatStatsInt catStats;
  ASSERT_TRUE(catStats.Update(1, 1.0));
  ASSERT_TRUE(field.SetSumStats(&catStats));

  EXPECT_TRUE(field.SetFieldType(Type::Continuous));
  EXPECT_TRUE(field.GetValues().empty());
  EXPECT_EQ(field.GetCatStats(), nullptr);

  field.SetRange(DMRange(Int(1), Int(9)));
  ASSERT_TRUE(SameRange(field.GetRange(), DMRange(Int(1), Int(9))));
  EXPECT_TRUE(field.SetFieldType(Type::Nominal));
  EXPECT_TRUE(SameRange(field.GetRange(), DMRange()));
  EXPECT_TRUE(field.GetRange().IsEmpty());
  EXPECT_TRUE(field.GetValues().empty());
  EXPECT_EQ(field.GetCatStats(), nullptr);
}

TEST(DMFieldTest, SetFieldTypeToANumberOutsideTheEnumerationDropsEverything) {
  const Type outside = static_cast<Type>(9);
  DMField categorical = CategoricalFieldWithEverything();
  EXPECT_TRUE(categorical.SetFieldType(outside));
  EXPECT_EQ(categorical.GetType(), outside);
  EXPECT_TRUE(categorical.GetValues().empty());
  EXPECT_EQ(categorical.GetCatStats(), nullptr);
  DMField continuous = ContinuousFieldWithEverything();
  EXPECT_TRUE(continuous.SetFieldType(outside));
  EXPECT_TRUE(SameRange(continuous.GetRange(), DMRange()));
  EXPECT_EQ(continuous.GetContStats(), nullptr);
}

// ---------------------------------------------------------------------------
// Statistics

enum class CatKind { Int, Dbl, Str };

std::unique_ptr<DMCatStats> CatStatsOf(CatKind kind) {
  switch (kind) {
    case CatKind::Int:
      return std::make_unique<DMCatStatsInt>();
    case CatKind::Dbl:
      return std::make_unique<DMCatStatsDbl>();
    case CatKind::Str:
      return std::make_unique<DMCatStatsStr>();
  }
  return nullptr;
}

struct CatStatsCase {
  Storage storage;
  std::set<CatKind> accepted;
};

TEST(DMFieldTest, SetCategoricalStatisticsTakesTheClassThatSuitsTheStorage) {
  const CatStatsCase cases[] = {
      {Storage::Unknown, {}},
      {Storage::Integer, {CatKind::Int}},
      {Storage::Real, {CatKind::Dbl}},
      {Storage::String, {CatKind::Str}},
      {Storage::Date, {CatKind::Dbl}},
      {Storage::Time, {CatKind::Dbl}},
      {Storage::Timestamp, {CatKind::Dbl}},
  };
  for (const CatStatsCase& row : cases) {
    for (CatKind kind : {CatKind::Int, CatKind::Dbl, CatKind::Str}) {
      SCOPED_TRACE(std::to_string(static_cast<unsigned>(row.storage)) + " with kind " +
                   std::to_string(static_cast<int>(kind)));
      DMField field = Named(Type::Ordinal, row.storage);
      const std::unique_ptr<DMCatStats> stats = CatStatsOf(kind);
      const bool suits = row.accepted.count(kind) == 1;
      EXPECT_EQ(field.SetSumStats(stats.get()), suits);
      EXPECT_EQ(field.GetCatStats() != nullptr, suits);
      EXPECT_NE(field.GetCatStats(), stats.get());
    }
  }
}

TEST(DMFieldTest, SetCategoricalStatisticsNeedsACategoricalField) {
  for (Type type : kAllTypes) {
    SCOPED_TRACE(static_cast<unsigned>(type));
    DMField field = Named(type, Storage::String);
    DMCatStatsStr stats;
    ASSERT_TRUE(stats.Update("a", 1.0));
    const bool categorical = type == Type::Nominal || type == Type::Ordinal || type == Type::Flag ||
                             type == Type::Discrete;
    EXPECT_EQ(field.SetSumStats(&stats), categorical);
    EXPECT_EQ(field.SetSumStats(static_cast<const DMCatStats*>(nullptr)), categorical);
  }
}

TEST(DMFieldTest, SetCategoricalStatisticsReplacesWithACloneAndNullReleases) {
  DMField field = Named(Type::Discrete, Storage::Real);
  DMCatStatsDbl first;
  ASSERT_TRUE(first.Update(1.5, 2.0));
  ASSERT_TRUE(field.SetSumStats(&first));
  DMCatStatsDbl second;
  ASSERT_TRUE(second.Update(2.5, 1.0));
  ASSERT_TRUE(second.Update(3.5, 1.0));
  EXPECT_TRUE(field.SetSumStats(&second));
  ASSERT_NE(field.GetCatStats(), nullptr);
  EXPECT_EQ(field.GetCatStats()->GetNCats(), 2U);
  ASSERT_TRUE(second.Update(4.5, 1.0));
  EXPECT_EQ(field.GetCatStats()->GetNCats(), 2U);

  // A refused class leaves the statistics held.
  const DMCatStatsInt wrong;
  EXPECT_FALSE(field.SetSumStats(&wrong));
  EXPECT_EQ(field.GetCatStats()->GetNCats(), 2U);

  EXPECT_TRUE(field.SetSumStats(static_cast<const DMCatStats*>(nullptr)));
  EXPECT_EQ(field.GetCatStats(), nullptr);
}

struct ContStatsCase {
  Storage storage;
  bool integer;
  bool real;
};

TEST(DMFieldTest, SetContinuousStatisticsTakesTheClassThatSuitsTheStorage) {
  const ContStatsCase cases[] = {
      {Storage::Unknown, false, false},  {Storage::Integer, true, false},
      {Storage::Real, false, true},      {Storage::String, false, false},
      {Storage::Date, false, true},      {Storage::Time, false, true},
      {Storage::Timestamp, false, true},
  };
  for (const ContStatsCase& row : cases) {
    SCOPED_TRACE(static_cast<unsigned>(row.storage));
    DMField field = Named(Type::Continuous, row.storage);
    const DMContStatsInt integer;
    EXPECT_EQ(field.SetSumStats(&integer), row.integer);
    EXPECT_EQ(field.GetContStats() != nullptr, row.integer);
    EXPECT_TRUE(field.SetSumStats(static_cast<const DMContStats*>(nullptr)));
    const DMContStatsDbl real;
    EXPECT_EQ(field.SetSumStats(&real), row.real);
    EXPECT_EQ(field.GetContStats() != nullptr, row.real);
    EXPECT_NE(field.GetContStats(), &real);
  }
}

TEST(DMFieldTest, SetContinuousStatisticsNeedsAContinuousField) {
  for (Type type : kAllTypes) {
    SCOPED_TRACE(static_cast<unsigned>(type));
    DMField field = Named(type, Storage::Integer);
    DMContStatsInt stats;
    stats.Update(7LL);
    const bool continuous = type == Type::Continuous;
    EXPECT_EQ(field.SetSumStats(&stats), continuous);
    EXPECT_EQ(field.GetContStats() != nullptr, continuous);
    EXPECT_EQ(field.SetSumStats(static_cast<const DMContStats*>(nullptr)), continuous);
    EXPECT_EQ(field.GetContStats(), nullptr);
  }
}

TEST(DMFieldTest, SetContinuousStatisticsReplacesWithAClone) {
  DMField field = Named(Type::Continuous, Storage::Integer);
  DMContStatsInt first;
  first.Update(1LL);
  ASSERT_TRUE(field.SetSumStats(&first));
  DMContStatsInt second;
  second.Update(5LL);
  second.Update(9LL);
  EXPECT_TRUE(field.SetSumStats(&second));
  second.Update(100LL);
  ASSERT_NE(field.GetContStats(), nullptr);
  EXPECT_EQ(field.GetContStats()->GetSumFreqWeights(), 2.0);
  EXPECT_EQ(field.GetContStats()->GetExtrema(), std::make_pair(5.0, 9.0));

  const DMContStatsDbl wrong;
  EXPECT_FALSE(field.SetSumStats(&wrong));
  EXPECT_EQ(field.GetContStats()->GetSumFreqWeights(), 2.0);
}

}  // namespace
