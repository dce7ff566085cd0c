#include "dmcommon/summaries/dmstatisticsext.h"

#include <array>
#include <string>

#include "dmcommon/summaries/dmsummaries_internal.h"
#include "dmcommon/xml/dmxmlwrapper.h"
#include "dmcommon/xml/vocabulary/xmlvocabulary.h"

using DmExtension::DMXMLWrapper;
using dmsummaries_internal::CopyOf;
using dmsummaries_internal::Presence;
namespace XMLAttributes = DmCppHelperV1::XMLAttributes;
namespace XMLElements = DmCppHelperV1::XMLElements;

// ---------------------------------------------------------------------------
// DMContinuousStatisticsExt

const std::array<DMContinuousStatisticsExt::RealItem, 11>& DMContinuousStatisticsExt::RealItems() {
  static constexpr std::array<RealItem, 11> kItems{{
      {XMLAttributes::Minimum, &DMContinuousStatisticsExt::minimum_},
      {XMLAttributes::Maximum, &DMContinuousStatisticsExt::maximum_},
      {XMLAttributes::Mean, &DMContinuousStatisticsExt::mean_},
      {XMLAttributes::Variance, &DMContinuousStatisticsExt::variance_},
      {XMLAttributes::stdDev, &DMContinuousStatisticsExt::stdDev_},
      {XMLAttributes::skewness, &DMContinuousStatisticsExt::skewness_},
      {XMLAttributes::stdErrSkewness, &DMContinuousStatisticsExt::stdErrSkewness_},
      {XMLAttributes::kurtosis, &DMContinuousStatisticsExt::kurtosis_},
      {XMLAttributes::stdErrKurtosis, &DMContinuousStatisticsExt::stdErrKurtosis_},
      {XMLAttributes::outlierLowerBound, &DMContinuousStatisticsExt::outlierLowerBound_},
      {XMLAttributes::outlierUpperBound, &DMContinuousStatisticsExt::outlierUpperBound_},
  }};
  return kItems;
}

DMContinuousStatisticsExt::DMContinuousStatisticsExt() = default;

DMContinuousStatisticsExt::DMContinuousStatisticsExt(const DMXMLWrapper& element) {
  parseSuccess_ = Read(element);
}

DMContinuousStatisticsExt::DMContinuousStatisticsExt(const DMContinuousStatisticsExt& other)
    : parseSuccess_(other.parseSuccess_),
      percentiles_(CopyOf(other.percentiles_)),
      distributionSummary_(CopyOf(other.distributionSummary_)),
      minimum_(other.minimum_),
      maximum_(other.maximum_),
      mean_(other.mean_),
      variance_(other.variance_),
      stdDev_(other.stdDev_),
      skewness_(other.skewness_),
      stdErrSkewness_(other.stdErrSkewness_),
      kurtosis_(other.kurtosis_),
      stdErrKurtosis_(other.stdErrKurtosis_),
      outlierLowerBound_(other.outlierLowerBound_),
      outlierUpperBound_(other.outlierUpperBound_) {}

DMContinuousStatisticsExt& DMContinuousStatisticsExt::operator=(
    const DMContinuousStatisticsExt& other) {
  // Copy first, so that a failing copy leaves these statistics as they were.
  if (this != &other) *this = DMContinuousStatisticsExt(other);
  return *this;
}

DMContinuousStatisticsExt::DMContinuousStatisticsExt(DMContinuousStatisticsExt&& other) noexcept =
    default;

DMContinuousStatisticsExt& DMContinuousStatisticsExt::operator=(
    DMContinuousStatisticsExt&& other) noexcept = default;

DMContinuousStatisticsExt::~DMContinuousStatisticsExt() = default;

bool DMContinuousStatisticsExt::Read(const DMXMLWrapper& element) {
  if (!dmsummaries_internal::ReadFirstChild(element, XMLElements::Percentiles, percentiles_)) {
    return false;
  }
  if (!dmsummaries_internal::ReadFirstChild(element, XMLElements::DistributionSummary,
                                            distributionSummary_)) {
    return false;
  }
  for (const RealItem& item : RealItems()) {
    if (!dmsummaries_internal::ReadItem(element, item.attribute, this->*item.member)) return false;
  }
  return true;
}

bool DMContinuousStatisticsExt::Write(DMXMLWrapper& element) const {
  if (!dmsummaries_internal::WriteOptionalChild(element, percentiles_)) return false;
  if (!dmsummaries_internal::WriteOptionalChild(element, distributionSummary_)) return false;
  for (const RealItem& item : RealItems()) {
    if (!dmsummaries_internal::WriteItem(element, item.attribute, this->*item.member)) return false;
  }
  return true;
}

void DMContinuousStatisticsExt::AddToTree(DMXMLWrapper& parent, DMXMLWrapper*& created) const {
  dmsummaries_internal::WriteElement(parent, XMLElements::ContinuousStatisticsExt, created,
                                     [this](DMXMLWrapper& element) { return Write(element); });
}

bool DMContinuousStatisticsExt::parseSuccess() const { return parseSuccess_; }
const DMPercentiles* DMContinuousStatisticsExt::getPercentiles() const {
  return percentiles_.get();
}
const DMDistributionSummary* DMContinuousStatisticsExt::getDistributionSummary() const {
  return distributionSummary_.get();
}
double DMContinuousStatisticsExt::getMinimum() const { return minimum_.value_or(0.0); }
bool DMContinuousStatisticsExt::hasMinimum() const { return minimum_.has_value(); }
double DMContinuousStatisticsExt::getMaximum() const { return maximum_.value_or(0.0); }
bool DMContinuousStatisticsExt::hasMaximum() const { return maximum_.has_value(); }
double DMContinuousStatisticsExt::getMean() const { return mean_.value_or(0.0); }
bool DMContinuousStatisticsExt::hasMean() const { return mean_.has_value(); }
double DMContinuousStatisticsExt::getVariance() const { return variance_.value_or(0.0); }
bool DMContinuousStatisticsExt::hasVariance() const { return variance_.has_value(); }
double DMContinuousStatisticsExt::getStdDev() const { return stdDev_.value_or(0.0); }
bool DMContinuousStatisticsExt::hasStdDev() const { return stdDev_.has_value(); }
double DMContinuousStatisticsExt::getSkewness() const { return skewness_.value_or(0.0); }
bool DMContinuousStatisticsExt::hasSkewness() const { return skewness_.has_value(); }
double DMContinuousStatisticsExt::getStdErrSkewness() const {
  return stdErrSkewness_.value_or(0.0);
}
bool DMContinuousStatisticsExt::hasStdErrSkewness() const { return stdErrSkewness_.has_value(); }
double DMContinuousStatisticsExt::getKurtosis() const { return kurtosis_.value_or(0.0); }
bool DMContinuousStatisticsExt::hasKurtosis() const { return kurtosis_.has_value(); }
double DMContinuousStatisticsExt::getStdErrKurtosis() const {
  return stdErrKurtosis_.value_or(0.0);
}
bool DMContinuousStatisticsExt::hasStdErrKurtosis() const { return stdErrKurtosis_.has_value(); }
double DMContinuousStatisticsExt::getOutlierLowerBound() const {
  return outlierLowerBound_.value_or(0.0);
}
bool DMContinuousStatisticsExt::hasOutlierLowerBound() const {
  return outlierLowerBound_.has_value();
}
double DMContinuousStatisticsExt::getOutlierUpperBound() const {
  return outlierUpperBound_.value_or(0.0);
}
bool DMContinuousStatisticsExt::hasOutlierUpperBound() const {
  return outlierUpperBound_.has_value();
}

// ---------------------------------------------------------------------------
// DMDiscreteStatisticsExt

DMDiscreteStatisticsExt::DMDiscreteStatisticsExt() = default;

DMDiscreteStatisticsExt::DMDiscreteStatisticsExt(const DMXMLWrapper& element) {
  parseSuccess_ = Read(element);
}

DMDiscreteStatisticsExt::DMDiscreteStatisticsExt(const DMDiscreteStatisticsExt& other)
    : parseSuccess_(other.parseSuccess_),
      distributionSummary_(CopyOf(other.distributionSummary_)),
      mode_(other.mode_),
      median_(other.median_) {}

DMDiscreteStatisticsExt& DMDiscreteStatisticsExt::operator=(const DMDiscreteStatisticsExt& other) {
  // Copy first, so that a failing copy leaves these statistics as they were.
  if (this != &other) *this = DMDiscreteStatisticsExt(other);
  return *this;
}

DMDiscreteStatisticsExt::DMDiscreteStatisticsExt(DMDiscreteStatisticsExt&& other) noexcept =
    default;

DMDiscreteStatisticsExt& DMDiscreteStatisticsExt::operator=(
    DMDiscreteStatisticsExt&& other) noexcept = default;

DMDiscreteStatisticsExt::~DMDiscreteStatisticsExt() = default;

bool DMDiscreteStatisticsExt::Read(const DMXMLWrapper& element) {
  if (!dmsummaries_internal::ReadFirstChild(element, XMLElements::DistributionSummary,
                                            distributionSummary_, Presence::Required)) {
    return false;
  }
  if (!dmsummaries_internal::ReadText(element, XMLAttributes::mode, mode_)) return false;
  return dmsummaries_internal::ReadText(element, XMLAttributes::median, median_);
}

bool DMDiscreteStatisticsExt::Write(DMXMLWrapper& element) const {
  if (distributionSummary_ == nullptr) return false;
  return dmsummaries_internal::WriteChild(element, *distributionSummary_) &&
         dmsummaries_internal::WriteText(element, XMLAttributes::mode, mode_) &&
         dmsummaries_internal::WriteText(element, XMLAttributes::median, median_);
}

void DMDiscreteStatisticsExt::AddToTree(DMXMLWrapper& parent, DMXMLWrapper*& created) const {
  dmsummaries_internal::WriteElement(parent, XMLElements::DiscreteStatisticsExt, created,
                                     [this](DMXMLWrapper& element) { return Write(element); });
}

bool DMDiscreteStatisticsExt::parseSuccess() const { return parseSuccess_; }
const DMDistributionSummary* DMDiscreteStatisticsExt::getDistributionSummary() const {
  return distributionSummary_.get();
}
std::string DMDiscreteStatisticsExt::getMode() const { return mode_; }
std::string DMDiscreteStatisticsExt::getMedian() const { return median_; }
