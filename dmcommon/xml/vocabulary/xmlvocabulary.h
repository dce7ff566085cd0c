#ifndef DMCOMMON_XML_VOCABULARY_XMLVOCABULARY_H
#define DMCOMMON_XML_VOCABULARY_XMLVOCABULARY_H

// The names of the XML forms are constants here, so that a misspelt name is a
// compile error rather than an attribute silently not found. The constants are
// arrays (not std::string_view or std::string) because callers hand them to
// the element handle as plain character pointers and store their addresses in
// constexpr lookup tables of other translation units; `inline` gives each one
// a single address across the library. Compare attribute values with them by
// text, never by address: a parsed value never shares storage with a constant.

namespace DmCppHelperV1 {

/// Element names of the XML forms; each text is the constant's own name.
namespace XMLElements {
inline constexpr char BaseField[] = "BaseField";
inline constexpr char Category[] = "Category";
inline constexpr char Cluster[] = "Cluster";
inline constexpr char ContinuousStatistics[] = "ContinuousStatistics";
inline constexpr char ContinuousStatisticsExt[] = "ContinuousStatisticsExt";
inline constexpr char DataModel[] = "DataModel";
inline constexpr char DatasetSummaries[] = "DatasetSummaries";
inline constexpr char DateFormat[] = "DateFormat";
inline constexpr char DecoratedFormat[] = "DecoratedFormat";
inline constexpr char DiscreteStatistics[] = "DiscreteStatistics";
inline constexpr char DiscreteStatisticsExt[] = "DiscreteStatisticsExt";
inline constexpr char DistributionSummary[] = "DistributionSummary";
inline constexpr char Field[] = "Field";
inline constexpr char FieldFormat[] = "FieldFormat";
inline constexpr char FieldFormats[] = "FieldFormats";
inline constexpr char FieldGroup[] = "FieldGroup";
inline constexpr char FieldGroups[] = "FieldGroups";
inline constexpr char FieldName[] = "FieldName";
inline constexpr char FieldSummaries[] = "FieldSummaries";
inline constexpr char FieldSummary[] = "FieldSummary";
inline constexpr char Fields[] = "Fields";
inline constexpr char Geo[] = "Geo";
inline constexpr char GeoEnvelope[] = "GeoEnvelope";
inline constexpr char MissingValues[] = "MissingValues";
inline constexpr char ModelField[] = "ModelField";
inline constexpr char NumberFormat[] = "NumberFormat";
inline constexpr char OverallSummaries[] = "OverallSummaries";
inline constexpr char Percentile[] = "Percentile";
inline constexpr char Percentiles[] = "Percentiles";
inline constexpr char Range[] = "Range";
inline constexpr char RecordCounts[] = "RecordCounts";
inline constexpr char RecordCountsExt[] = "RecordCountsExt";
inline constexpr char StringFormat[] = "StringFormat";
inline constexpr char TimeFormat[] = "TimeFormat";
inline constexpr char Value[] = "Value";
inline constexpr char ValueLabels[] = "ValueLabels";
inline constexpr char Values[] = "Values";
}  // namespace XMLElements

/// Attribute names of the XML forms; each text is the constant's name with its
/// first letter in lower case.
namespace XMLAttributes {
inline constexpr char Alignment[] = "alignment";
inline constexpr char CaseSensitive[] = "caseSensitive";
inline constexpr char Category[] = "category";
inline constexpr char Coordinates[] = "coordinates";
inline constexpr char Count[] = "count";
inline constexpr char CountedValue[] = "countedValue";
inline constexpr char Csname[] = "csname";
inline constexpr char CustomCurrType[] = "customCurrType";
inline constexpr char DecimalPlaces[] = "decimalPlaces";
inline constexpr char DecimalSymbol[] = "decimalSymbol";
inline constexpr char DefaultDateFormat[] = "defaultDateFormat";
inline constexpr char DefaultNumberFormat[] = "defaultNumberFormat";
inline constexpr char DefaultStringFormat[] = "defaultStringFormat";
inline constexpr char DefaultTimeFormat[] = "defaultTimeFormat";
inline constexpr char DefinePartition[] = "definePartition";
inline constexpr char Depth[] = "depth";
inline constexpr char DisplayLabel[] = "displayLabel";
inline constexpr char DroppedCount[] = "droppedCount";
inline constexpr char ElementCount[] = "elementCount";
inline constexpr char ExactMaximum[] = "exactMaximum";
inline constexpr char ExactMinimum[] = "exactMinimum";
inline constexpr char FieldName[] = "fieldName";
inline constexpr char FlagValue[] = "flagValue";
inline constexpr char FormatType[] = "formatType";
inline constexpr char Group[] = "group";
inline constexpr char GroupType[] = "groupType";
inline constexpr char GroupingSymbol[] = "groupingSymbol";
inline constexpr char Hexadecimal[] = "hexadecimal";
inline constexpr char IsProjected[] = "isProjected";
inline constexpr char LeftUpperX[] = "leftUpperX";
inline constexpr char LeftUpperY[] = "leftUpperY";
inline constexpr char MaxStringLength[] = "maxStringLength";
inline constexpr char MaxValue[] = "maxValue";
inline constexpr char Maximum[] = "maximum";
inline constexpr char Mean[] = "mean";
inline constexpr char Measure[] = "measure";
inline constexpr char MinValue[] = "minValue";
inline constexpr char Minimum[] = "minimum";
inline constexpr char Name[] = "name";
inline constexpr char NamesLocal[] = "namesLocal";
inline constexpr char NegPrefix[] = "negPrefix";
inline constexpr char NegSuffix[] = "negSuffix";
inline constexpr char PaddedHMS[] = "paddedHMS";
inline constexpr char Prefix[] = "prefix";
inline constexpr char RightLowerX[] = "rightLowerX";
inline constexpr char RightLowerY[] = "rightLowerY";
inline constexpr char Role[] = "role";
inline constexpr char RuleFeature[] = "ruleFeature";
inline constexpr char Separator[] = "separator";
inline constexpr char Storage[] = "storage";
inline constexpr char Structure[] = "structure";
inline constexpr char StructureStorage[] = "structureStorage";
inline constexpr char Suffix[] = "suffix";
inline constexpr char SumCompWts[] = "sumCompWts";
inline constexpr char SumFreqWts[] = "sumFreqWts";
inline constexpr char Tag[] = "tag";
inline constexpr char TargetField[] = "targetField";
inline constexpr char TargetFieldStorage[] = "targetFieldStorage";
inline constexpr char TreatNullAsMissing[] = "treatNullAsMissing";
inline constexpr char TreatWhitespaceAsMissing[] = "treatWhitespaceAsMissing";
inline constexpr char TwoDigitYear[] = "twoDigitYear";
inline constexpr char Type[] = "type";
inline constexpr char UnweightedCount[] = "unweightedCount";
inline constexpr char UseNamedFormat[] = "useNamedFormat";
inline constexpr char Value[] = "value";
inline constexpr char Variance[] = "variance";
inline constexpr char WeightedCount[] = "weightedCount";
inline constexpr char Width[] = "width";
inline constexpr char Wkid[] = "wkid";
inline constexpr char Wkt[] = "wkt";
inline constexpr char cumPercentage[] = "cumPercentage";
inline constexpr char current[] = "current";
inline constexpr char discrete[] = "discrete";
inline constexpr char includeNotValid[] = "includeNotValid";
inline constexpr char includeUMissing[] = "includeUMissing";
inline constexpr char interQuartileRange[] = "interQuartileRange";
inline constexpr char invalidCount[] = "invalidCount";
inline constexpr char kurtosis[] = "kurtosis";
inline constexpr char lower[] = "lower";
inline constexpr char maxCatsExceeded[] = "maxCatsExceeded";
inline constexpr char median[] = "median";
inline constexpr char missingCount[] = "missingCount";
inline constexpr char mode[] = "mode";
inline constexpr char outlierLowerBound[] = "outlierLowerBound";
inline constexpr char outlierUpperBound[] = "outlierUpperBound";
inline constexpr char percentage[] = "percentage";
inline constexpr char rank[] = "rank";
inline constexpr char score[] = "score";
inline constexpr char skewness[] = "skewness";
inline constexpr char stdDev[] = "stdDev";
inline constexpr char stdErrKurtosis[] = "stdErrKurtosis";
inline constexpr char stdErrSkewness[] = "stdErrSkewness";
inline constexpr char unweightedInvalid[] = "unweightedInvalid";
inline constexpr char unweightedMissing[] = "unweightedMissing";
inline constexpr char unweightedValid[] = "unweightedValid";
inline constexpr char upper[] = "upper";
inline constexpr char validCount[] = "validCount";
}  // namespace XMLAttributes

/// Enumerated attribute values of the XML forms; each text is the constant's
/// name with its first letter in lower case. Matching is case-sensitive.
namespace XMLEntities {
inline constexpr char Antecedent[] = "antecedent";
inline constexpr char Auto[] = "auto";
inline constexpr char Both[] = "both";
inline constexpr char Center[] = "center";
inline constexpr char ClusterAffinity[] = "clusterAffinity";
inline constexpr char ClusterId[] = "clusterId";
inline constexpr char Colon[] = "colon";
inline constexpr char Comma[] = "comma";
inline constexpr char Confidence[] = "confidence";
inline constexpr char Consequent[] = "consequent";
inline constexpr char Continuous[] = "continuous";
inline constexpr char Currency[] = "currency";
inline constexpr char D_H_M_S[] = "d_H_M_S";
inline constexpr char D_M_Y[] = "d_M_Y";
inline constexpr char D_monthName_Y[] = "d_monthName_Y";
inline constexpr char Dash[] = "dash";
inline constexpr char Date[] = "date";
inline constexpr char DayName[] = "dayName";
inline constexpr char Derived[] = "derived";
inline constexpr char Discrete[] = "discrete";
inline constexpr char EntityAffinity[] = "entityAffinity";
inline constexpr char EntityId[] = "entityId";
inline constexpr char False[] = "false";
inline constexpr char FieldGroup[] = "fieldGroup";
inline constexpr char Flag[] = "flag";
inline constexpr char FreqWeight[] = "freqWeight";
inline constexpr char General[] = "general";
inline constexpr char H_M[] = "h_M";
inline constexpr char H_M_S[] = "h_M_S";
inline constexpr char Input[] = "input";
inline constexpr char IntBin[] = "intBin";
inline constexpr char Integer[] = "integer";
inline constexpr char Left[] = "left";
inline constexpr char Lift[] = "lift";
inline constexpr char LineString[] = "lineString";
inline constexpr char List[] = "list";
inline constexpr char Local[] = "local";
inline constexpr char LowerConfidenceLimit[] = "lowerConfidenceLimit";
inline constexpr char M_D_Y[] = "m_D_Y";
inline constexpr char M_S[] = "m_S";
inline constexpr char MonthName[] = "monthName";
inline constexpr char MonthName_Y[] = "monthName_Y";
inline constexpr char MultiCategorySet[] = "multiCategorySet";
inline constexpr char MultiDichotomySet[] = "multiDichotomySet";
inline constexpr char MultiLineString[] = "multiLineString";
inline constexpr char MultiPoint[] = "multiPoint";
inline constexpr char MultiPolygon[] = "multiPolygon";
inline constexpr char Nominal[] = "nominal";
inline constexpr char None[] = "none";
inline constexpr char Ordinal[] = "ordinal";
inline constexpr char Packed[] = "packed";
inline constexpr char Partition[] = "partition";
inline constexpr char Percentage[] = "percentage";
inline constexpr char Period[] = "period";
inline constexpr char Point[] = "point";
inline constexpr char Polygon[] = "polygon";
inline constexpr char PosIntBin[] = "posIntBin";
inline constexpr char PosIntBinHex[] = "posIntBinHex";
inline constexpr char PosRealBin[] = "posRealBin";
inline constexpr char PredictedValue[] = "predictedValue";
inline constexpr char Primitive[] = "primitive";
inline constexpr char Probability[] = "probability";
inline constexpr char Propensity[] = "propensity";
inline constexpr char Q_Y[] = "q_Y";
inline constexpr char Real[] = "real";
inline constexpr char RealBin[] = "realBin";
inline constexpr char RecordId[] = "recordId";
inline constexpr char Residual[] = "residual";
inline constexpr char Restricted[] = "restricted";
inline constexpr char Right[] = "right";
inline constexpr char Rule[] = "rule";
inline constexpr char RuleId[] = "ruleId";
inline constexpr char RuleValue[] = "ruleValue";
inline constexpr char Scientific[] = "scientific";
inline constexpr char Slash[] = "slash";
inline constexpr char Space[] = "space";
inline constexpr char Split[] = "split";
inline constexpr char SplitGroup[] = "splitGroup";
inline constexpr char Standard[] = "standard";
inline constexpr char StandardError[] = "standardError";
inline constexpr char String[] = "string";
inline constexpr char Support[] = "support";
inline constexpr char Target[] = "target";
inline constexpr char Testing[] = "testing";
inline constexpr char Time[] = "time";
inline constexpr char Timestamp[] = "timestamp";
inline constexpr char Training[] = "training";
inline constexpr char True[] = "true";
inline constexpr char Typeless[] = "typeless";
inline constexpr char Unknown[] = "unknown";
inline constexpr char UnsignedPacked[] = "unsignedPacked";
inline constexpr char UpperConfidenceLimit[] = "upperConfidenceLimit";
inline constexpr char Validation[] = "validation";
inline constexpr char W_Y[] = "w_Y";
inline constexpr char Warning[] = "warning";
inline constexpr char Y_M_D[] = "y_M_D";
inline constexpr char Y_dayNo[] = "y_dayNo";
inline constexpr char Zoned[] = "zoned";
}  // namespace XMLEntities

}  // namespace DmCppHelperV1

#endif  // DMCOMMON_XML_VOCABULARY_XMLVOCABULARY_H
