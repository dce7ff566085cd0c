#include "dmcommon/xml/vocabulary/xmlvocabulary.h"

#include <cctype>
#include <cstring>
#include <set>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "dmcommon/xml/dmxmlresult.h"
#include "dmcommon/xml/dmxmlwrapper.h"
#include "dmcommon/xml/vocabulary/xmlelement.h"

namespace {

namespace Vocabulary = DmCppHelperV1;

struct Constant {
  const char* identifier;
  const char* text;
};

// Listing every identifier makes a missing or renamed constant a compile error.
#define E(id) \
  Constant { #id, Vocabulary::XMLElements::id }
#define A(id) \
  Constant { #id, Vocabulary::XMLAttributes::id }
#define N(id) \
  Constant { #id, Vocabulary::XMLEntities::id }

const std::vector<Constant>& Elements() {
  static const std::vector<Constant> kElements = {
      E(BaseField),
      E(Category),
      E(Cluster),
      E(ContinuousStatistics),
      E(ContinuousStatisticsExt),
      E(DataModel),
      E(DatasetSummaries),
      E(DateFormat),
      E(DecoratedFormat),
      E(DiscreteStatistics),
      E(DiscreteStatisticsExt),
      E(DistributionSummary),
      E(Field),
      E(FieldFormat),
      E(FieldFormats),
      E(FieldGroup),
      E(FieldGroups),
      E(FieldName),
      E(FieldSummaries),
      E(FieldSummary),
      E(Fields),
      E(Geo),
      E(GeoEnvelope),
      E(MissingValues),
      E(ModelField),
      E(NumberFormat),
      E(OverallSummaries),
      E(Percentile),
      E(Percentiles),
      E(Range),
      E(RecordCounts),
      E(RecordCountsExt),
      E(StringFormat),
      E(TimeFormat),
      E(Value),
      E(ValueLabels),
      E(Values),
  };
  return kElements;
}

const std::vector<Constant>& Attributes() {
  static const std::vector<Constant> kAttributes = {
      A(Alignment),
      A(CaseSensitive),
      A(Category),
      A(Coordinates),
      A(Count),
      A(CountedValue),
      A(Csname),
      A(CustomCurrType),
      A(DecimalPlaces),
      A(DecimalSymbol),
      A(DefaultDateFormat),
      A(DefaultNumberFormat),
      A(DefaultStringFormat),
      A(DefaultTimeFormat),
      A(DefinePartition),
      A(Depth),
      A(DisplayLabel),
      A(DroppedCount),
      A(ElementCount),
      A(ExactMaximum),
      A(ExactMinimum),
      A(FieldName),
      A(FlagValue),
      A(FormatType),
      A(Group),
      A(GroupType),
      A(GroupingSymbol),
      A(Hexadecimal),
      A(IsProjected),
      A(LeftUpperX),
      A(LeftUpperY),
      A(MaxStringLength),
      A(MaxValue),
      A(Maximum),
      A(Mean),
      A(Measure),
      A(MinValue),
      A(Minimum),
      A(Name),
      A(NamesLocal),
      A(NegPrefix),
      A(NegSuffix),
      A(PaddedHMS),
      A(Prefix),
      A(RightLowerX),
      A(RightLowerY),
      A(Role),
      A(RuleFeature),
      A(Separator),
      A(Storage),
      A(Structure),
      A(StructureStorage),
      A(Suffix),
      A(SumCompWts),
      A(SumFreqWts),
      A(Tag),
      A(TargetField),
      A(TargetFieldStorage),
      A(TreatNullAsMissing),
      A(TreatWhitespaceAsMissing),
      A(TwoDigitYear),
      A(Type),
      A(UnweightedCount),
      A(UseNamedFormat),
      A(Value),
      A(Variance),
      A(WeightedCount),
      A(Width),
      A(Wkid),
      A(Wkt),
      A(cumPercentage),
      A(current),
      A(discrete),
      A(includeNotValid),
      A(includeUMissing),
      A(interQuartileRange),
      A(invalidCount),
      A(kurtosis),
      A(lower),
      A(maxCatsExceeded),
      A(median),
      A(missingCount),
      A(mode),
      A(outlierLowerBound),
      A(outlierUpperBound),
      A(percentage),
      A(rank),
      A(score),
      A(skewness),
      A(stdDev),
      A(stdErrKurtosis),
      A(stdErrSkewness),
      A(unweightedInvalid),
      A(unweightedMissing),
      A(unweightedValid),
      A(upper),
      A(validCount),
  };
  return kAttributes;
}

const std::vector<Constant>& Entities() {
  static const std::vector<Constant> kEntities = {
      N(Antecedent),
      N(Auto),
      N(Both),
      N(Center),
      N(ClusterAffinity),
      N(ClusterId),
      N(Colon),
      N(Comma),
      N(Confidence),
      N(Consequent),
      N(Continuous),
      N(Currency),
      N(D_H_M_S),
      N(D_M_Y),
      N(D_monthName_Y),
      N(Dash),
      N(Date),
      N(DayName),
      N(Derived),
      N(Discrete),
      N(EntityAffinity),
      N(EntityId),
      N(False),
      N(FieldGroup),
      N(Flag),
      N(FreqWeight),
      N(General),
      N(H_M),
      N(H_M_S),
      N(Input),
      N(IntBin),
      N(Integer),
      N(Left),
      N(Lift),
      N(LineString),
      N(List),
      N(Local),
      N(LowerConfidenceLimit),
      N(M_D_Y),
      N(M_S),
      N(MonthName),
      N(MonthName_Y),
      N(MultiCategorySet),
      N(MultiDichotomySet),
      N(MultiLineString),
      N(MultiPoint),
      N(MultiPolygon),
      N(Nominal),
      N(None),
      N(Ordinal),
      N(Packed),
      N(Partition),
      N(Percentage),
      N(Period),
      N(Point),
      N(Polygon),
      N(PosIntBin),
      N(PosIntBinHex),
      N(PosRealBin),
      N(PredictedValue),
      N(Primitive),
      N(Probability),
      N(Propensity),
      N(Q_Y),
      N(Real),
      N(RealBin),
      N(RecordId),
      N(Residual),
      N(Restricted),
      N(Right),
      N(Rule),
      N(RuleId),
      N(RuleValue),
      N(Scientific),
      N(Slash),
      N(Space),
      N(Split),
      N(SplitGroup),
      N(Standard),
      N(StandardError),
      N(String),
      N(Support),
      N(Target),
      N(Testing),
      N(Time),
      N(Timestamp),
      N(Training),
      N(True),
      N(Typeless),
      N(Unknown),
      N(UnsignedPacked),
      N(UpperConfidenceLimit),
      N(Validation),
      N(W_Y),
      N(Warning),
      N(Y_M_D),
      N(Y_dayNo),
      N(Zoned),
  };
  return kEntities;
}

#undef E
#undef A
#undef N

std::string LowerFirstLetter(const char* identifier) {
  std::string text = identifier;
  text[0] = static_cast<char>(std::tolower(static_cast<unsigned char>(text[0])));
  return text;
}

void ExpectNoTextRepeats(const std::vector<Constant>& constants) {
  std::set<std::string> seen;
  for (const Constant& constant : constants) {
    EXPECT_TRUE(seen.insert(constant.text).second)
        << constant.identifier << " repeats \"" << constant.text << '"';
  }
}

TEST(XMLVocabularyTest, HasThirtySevenElementNames) { EXPECT_EQ(Elements().size(), 37u); }

TEST(XMLVocabularyTest, HasNinetySevenAttributeNames) { EXPECT_EQ(Attributes().size(), 97u); }

TEST(XMLVocabularyTest, HasNinetyEightEntities) { EXPECT_EQ(Entities().size(), 98u); }

TEST(XMLVocabularyTest, ElementNameTextIsItsIdentifier) {
  for (const Constant& constant : Elements()) {
    EXPECT_STREQ(constant.text, constant.identifier);
  }
}

TEST(XMLVocabularyTest, AttributeNameTextIsItsIdentifierWithLowerCaseFirstLetter) {
  for (const Constant& constant : Attributes()) {
    EXPECT_EQ(constant.text, LowerFirstLetter(constant.identifier)) << constant.identifier;
  }
}

TEST(XMLVocabularyTest, EntityTextIsItsIdentifierWithLowerCaseFirstLetter) {
  for (const Constant& constant : Entities()) {
    EXPECT_EQ(constant.text, LowerFirstLetter(constant.identifier)) << constant.identifier;
  }
}

TEST(XMLVocabularyTest, NoElementNameRepeats) { ExpectNoTextRepeats(Elements()); }

TEST(XMLVocabularyTest, NoAttributeNameRepeats) { ExpectNoTextRepeats(Attributes()); }

TEST(XMLVocabularyTest, NoEntityRepeats) { ExpectNoTextRepeats(Entities()); }

TEST(XMLVocabularyTest, IdentifiersAreListedInOrder) {
  for (const auto* constants : {&Elements(), &Attributes(), &Entities()}) {
    for (std::size_t i = 1; i < constants->size(); ++i) {
      EXPECT_LT(std::strcmp((*constants)[i - 1].identifier, (*constants)[i].identifier), 0)
          << (*constants)[i].identifier;
    }
  }
}

TEST(XMLVocabularyTest, SampleTextsAreExact) {
  EXPECT_STREQ(Vocabulary::XMLElements::Field, "Field");
  EXPECT_STREQ(Vocabulary::XMLElements::ContinuousStatisticsExt, "ContinuousStatisticsExt");
  EXPECT_STREQ(Vocabulary::XMLAttributes::Name, "name");
  EXPECT_STREQ(Vocabulary::XMLAttributes::DecimalPlaces, "decimalPlaces");
  EXPECT_STREQ(Vocabulary::XMLAttributes::cumPercentage, "cumPercentage");
  EXPECT_STREQ(Vocabulary::XMLAttributes::Wkid, "wkid");
  EXPECT_STREQ(Vocabulary::XMLEntities::True, "true");
  EXPECT_STREQ(Vocabulary::XMLEntities::False, "false");
  EXPECT_STREQ(Vocabulary::XMLEntities::Nominal, "nominal");
  EXPECT_STREQ(Vocabulary::XMLEntities::D_M_Y, "d_M_Y");
  EXPECT_STREQ(Vocabulary::XMLEntities::Y_dayNo, "y_dayNo");
}

TEST(XMLVocabularyTest, SameIdentifierInTwoNamespacesHasEachNamespacesText) {
  EXPECT_STREQ(Vocabulary::XMLElements::Category, "Category");
  EXPECT_STREQ(Vocabulary::XMLAttributes::Category, "category");
  EXPECT_STREQ(Vocabulary::XMLElements::FieldGroup, "FieldGroup");
  EXPECT_STREQ(Vocabulary::XMLEntities::FieldGroup, "fieldGroup");
}

TEST(XMLVocabularyTest, TextLengthIsTakenWithStrlen) {
  EXPECT_EQ(std::strlen(Vocabulary::XMLElements::Field), 5u);
  EXPECT_EQ(sizeof(Vocabulary::XMLElements::Field), 6u);
  EXPECT_EQ(std::strlen(Vocabulary::XMLAttributes::TreatWhitespaceAsMissing), 24u);
}

// Lookup tables elsewhere store the constants' addresses at compile time.
constexpr const char* kTruthTexts[] = {Vocabulary::XMLEntities::True,
                                       Vocabulary::XMLEntities::False};
static_assert(sizeof(kTruthTexts) / sizeof(kTruthTexts[0]) == 2);
static_assert(kTruthTexts[0] == Vocabulary::XMLEntities::True);
static_assert(Vocabulary::XMLEntities::True[0] == 't' && Vocabulary::XMLEntities::True[4] == '\0');

TEST(XMLVocabularyTest, ConstantsAreUsableInAConstexprTable) {
  EXPECT_STREQ(kTruthTexts[0], "true");
  EXPECT_STREQ(kTruthTexts[1], "false");
}

// The element handle must outlive the view, so the document stays here.
class XMLVocabularyMatchingTest : public ::testing::Test {
 protected:
  std::string ReadAttribute(const char* document, const char* name) {
    doc_.loadFromContents(document);
    EXPECT_NE(doc_.getElement(), nullptr) << document;
    const Vocabulary::XMLElement element(doc_);
    EXPECT_TRUE(element.hasAttribute(name)) << document;
    return element.getAttribute(name);
  }

  DmExtension::DMXMLWrapper doc_;
};

TEST_F(XMLVocabularyMatchingTest, AttributeValueDifferingOnlyInCaseDoesNotMatchEntity) {
  const std::string measure =
      ReadAttribute(R"(<Field measure="Nominal"/>)", Vocabulary::XMLAttributes::Measure);
  EXPECT_EQ(measure, "Nominal");
  EXPECT_NE(measure, Vocabulary::XMLEntities::Nominal);
}

TEST_F(XMLVocabularyMatchingTest, AttributeValueWithEntityTextMatchesIt) {
  const std::string measure =
      ReadAttribute(R"(<Field measure="nominal"/>)", Vocabulary::XMLAttributes::Measure);
  EXPECT_EQ(measure, Vocabulary::XMLEntities::Nominal);
}

TEST_F(XMLVocabularyMatchingTest, UpperCaseTruthValueDoesNotMatchTrue) {
  const std::string truth =
      ReadAttribute(R"(<Field caseSensitive="TRUE"/>)", Vocabulary::XMLAttributes::CaseSensitive);
  EXPECT_NE(truth, Vocabulary::XMLEntities::True);
  EXPECT_NE(truth, Vocabulary::XMLEntities::False);
}

TEST_F(XMLVocabularyMatchingTest, AttributeValueMatchesEntityByTextNotByAddress) {
  const std::string truth =
      ReadAttribute(R"(<Field caseSensitive="true"/>)", Vocabulary::XMLAttributes::CaseSensitive);
  EXPECT_NE(truth.c_str(), Vocabulary::XMLEntities::True);
  EXPECT_EQ(truth, Vocabulary::XMLEntities::True);
}

TEST_F(XMLVocabularyMatchingTest, ElementNameIsFoundThroughItsConstant) {
  doc_.loadFromContents("<Fields><Field name='age'/></Fields>");
  std::string name;
  ASSERT_EQ(doc_.getName(name), DmExtension::DM_XML_OK);
  EXPECT_EQ(name, Vocabulary::XMLElements::Fields);
}

}  // namespace
