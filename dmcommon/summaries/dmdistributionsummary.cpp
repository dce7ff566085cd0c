#include "dmcommon/summaries/dmdistributionsummary.h"

#include <cstddef>
#include <string>

#include "dmcommon/summaries/dmsummaries_internal.h"
#include "dmcommon/xml/dmxmlwrapper.h"
#include "dmcommon/xml/vocabulary/xmlvocabulary.h"

using DmExtension::DMXMLWrapper;
using dmsummaries_internal::IsFlagText;
using dmsummaries_internal::Presence;
using dmsummaries_internal::ReadItem;
using dmsummaries_internal::WriteItem;
namespace XMLAttributes = DmCppHelperV1::XMLAttributes;
namespace XMLElements = DmCppHelperV1::XMLElements;

// ---------------------------------------------------------------------------
// DMCluster

DMCluster::DMCluster() = default;

DMCluster::DMCluster(const DMXMLWrapper& element) { parseSuccess_ = Read(element); }

DMCluster::DMCluster(const DMCluster& other) = default;

DMCluster& DMCluster::operator=(const DMCluster& other) = default;

bool DMCluster::Read(const DMXMLWrapper& element) {
  if (!ReadItem(element, XMLAttributes::Count, count_, Presence::Required)) return false;
  // A cluster cannot hold fewer than no records; categories may, see
  // DMCategory.
  if (*count_ < 0) return false;
  if (!ReadItem(element, XMLAttributes::Mean, mean_, Presence::Required)) return false;
  if (!ReadItem(element, XMLAttributes::Variance, variance_)) return false;
  if (!ReadItem(element, XMLAttributes::lower, lower_)) return false;
  return ReadItem(element, XMLAttributes::upper, upper_);
}

bool DMCluster::Write(DMXMLWrapper& element) const {
  if (!count_.has_value() || *count_ < 0 || !mean_.has_value()) return false;
  return WriteItem(element, XMLAttributes::Count, count_) &&
         WriteItem(element, XMLAttributes::Mean, mean_) &&
         WriteItem(element, XMLAttributes::Variance, variance_) &&
         WriteItem(element, XMLAttributes::lower, lower_) &&
         WriteItem(element, XMLAttributes::upper, upper_);
}

void DMCluster::AddToTree(DMXMLWrapper& parent, DMXMLWrapper*& created) const {
  dmsummaries_internal::WriteElement(parent, XMLElements::Cluster, created,
                                     [this](DMXMLWrapper& element) { return Write(element); });
}

bool DMCluster::parseSuccess() const { return parseSuccess_; }
long long DMCluster::getCount() const { return count_.value_or(0); }
bool DMCluster::hasCount() const { return count_.has_value(); }
double DMCluster::getMean() const { return mean_.value_or(0.0); }
bool DMCluster::hasMean() const { return mean_.has_value(); }
double DMCluster::getVariance() const { return variance_.value_or(0.0); }
bool DMCluster::hasVariance() const { return variance_.has_value(); }
double DMCluster::getLower() const { return lower_.value_or(0.0); }
bool DMCluster::hasLower() const { return lower_.has_value(); }
double DMCluster::getUpper() const { return upper_.value_or(0.0); }
bool DMCluster::hasUpper() const { return upper_.has_value(); }

// ---------------------------------------------------------------------------
// DMCategory

DMCategory::DMCategory() = default;

DMCategory::DMCategory(const DMXMLWrapper& element) { parseSuccess_ = Read(element); }

DMCategory::DMCategory(const DMCategory& other) = default;

DMCategory& DMCategory::operator=(const DMCategory& other) = default;

DMCategory::~DMCategory() = default;

bool DMCategory::Read(const DMXMLWrapper& element) {
  if (!ReadItem(element, XMLAttributes::Value, value_, Presence::Required)) return false;
  // Unlike a cluster's count, a negative one is accepted here: intended, the
  // format defines the two counts differently.
  if (!ReadItem(element, XMLAttributes::Count, count_, Presence::Required)) return false;
  if (!ReadItem(element, XMLAttributes::percentage, percentage_)) return false;
  return ReadItem(element, XMLAttributes::cumPercentage, cumPercentage_);
}

bool DMCategory::Write(DMXMLWrapper& element) const {
  if (!value_.has_value() || !count_.has_value()) return false;
  return WriteItem(element, XMLAttributes::Value, value_) &&
         WriteItem(element, XMLAttributes::Count, count_) &&
         WriteItem(element, XMLAttributes::percentage, percentage_) &&
         WriteItem(element, XMLAttributes::cumPercentage, cumPercentage_);
}

void DMCategory::AddToTree(DMXMLWrapper& parent, DMXMLWrapper*& created) const {
  dmsummaries_internal::WriteElement(parent, XMLElements::Category, created,
                                     [this](DMXMLWrapper& element) { return Write(element); });
}

bool DMCategory::parseSuccess() const { return parseSuccess_; }
std::string DMCategory::getValue() const { return value_.value_or(std::string()); }
bool DMCategory::hasValue() const { return value_.has_value(); }
long long DMCategory::getCount() const { return count_.value_or(0); }
bool DMCategory::hasCount() const { return count_.has_value(); }
double DMCategory::getPercentage() const { return percentage_.value_or(0.0); }
bool DMCategory::hasPercentage() const { return percentage_.has_value(); }
double DMCategory::getCumPercentage() const { return cumPercentage_.value_or(0.0); }
bool DMCategory::hasCumPercentage() const { return cumPercentage_.has_value(); }

// ---------------------------------------------------------------------------
// DMPercentile

DMPercentile::DMPercentile() = default;

DMPercentile::DMPercentile(const DMXMLWrapper& element) { parseSuccess_ = Read(element); }

DMPercentile::DMPercentile(const DMPercentile& other) = default;

DMPercentile& DMPercentile::operator=(const DMPercentile& other) = default;

bool DMPercentile::Read(const DMXMLWrapper& element) {
  if (!ReadItem(element, XMLAttributes::rank, rank_, Presence::Required)) return false;
  if (!ReadItem(element, XMLAttributes::score, score_, Presence::Required)) return false;
  if (!ReadItem(element, XMLAttributes::lower, lower_)) return false;
  return ReadItem(element, XMLAttributes::upper, upper_);
}

bool DMPercentile::Write(DMXMLWrapper& element) const {
  if (!rank_.has_value() || !score_.has_value()) return false;
  return WriteItem(element, XMLAttributes::rank, rank_) &&
         WriteItem(element, XMLAttributes::score, score_) &&
         WriteItem(element, XMLAttributes::lower, lower_) &&
         WriteItem(element, XMLAttributes::upper, upper_);
}

void DMPercentile::AddToTree(DMXMLWrapper& parent, DMXMLWrapper*& created) const {
  dmsummaries_internal::WriteElement(parent, XMLElements::Percentile, created,
                                     [this](DMXMLWrapper& element) { return Write(element); });
}

bool DMPercentile::parseSuccess() const { return parseSuccess_; }
double DMPercentile::getRank() const { return rank_.value_or(0.0); }
bool DMPercentile::hasRank() const { return rank_.has_value(); }
double DMPercentile::getScore() const { return score_.value_or(0.0); }
bool DMPercentile::hasScore() const { return score_.has_value(); }
double DMPercentile::getLower() const { return lower_.value_or(0.0); }
bool DMPercentile::hasLower() const { return lower_.has_value(); }
double DMPercentile::getUpper() const { return upper_.value_or(0.0); }
bool DMPercentile::hasUpper() const { return upper_.has_value(); }

// ---------------------------------------------------------------------------
// DMPercentiles

DMPercentiles::DMPercentiles() = default;

DMPercentiles::DMPercentiles(const DMXMLWrapper& element) { parseSuccess_ = Read(element); }

DMPercentiles::DMPercentiles(const DMPercentiles& other)
    : parseSuccess_(other.parseSuccess_),
      percentiles_(dmsummaries_internal::CopyOf(other.percentiles_)),
      interQuartileRange_(other.interQuartileRange_) {}

DMPercentiles& DMPercentiles::operator=(const DMPercentiles& other) {
  // Copy first, so that a failing copy leaves this list as it was.
  if (this != &other) *this = DMPercentiles(other);
  return *this;
}

DMPercentiles::DMPercentiles(DMPercentiles&& other) noexcept = default;

DMPercentiles& DMPercentiles::operator=(DMPercentiles&& other) noexcept = default;

DMPercentiles::~DMPercentiles() = default;

bool DMPercentiles::Read(const DMXMLWrapper& element) {
  if (!dmsummaries_internal::ReadChildren(element, XMLElements::Percentile, percentiles_)) {
    return false;
  }
  return ReadItem(element, XMLAttributes::interQuartileRange, interQuartileRange_);
}

bool DMPercentiles::Write(DMXMLWrapper& element) const {
  return dmsummaries_internal::WriteChildren(element, percentiles_) &&
         WriteItem(element, XMLAttributes::interQuartileRange, interQuartileRange_);
}

void DMPercentiles::AddToTree(DMXMLWrapper& parent, DMXMLWrapper*& created) const {
  dmsummaries_internal::WriteElement(parent, XMLElements::Percentiles, created,
                                     [this](DMXMLWrapper& element) { return Write(element); });
}

bool DMPercentiles::parseSuccess() const { return parseSuccess_; }
std::size_t DMPercentiles::getPercentileCount() const { return percentiles_.size(); }
const DMPercentile* DMPercentiles::getPercentile(std::size_t index) const {
  return percentiles_[index].get();
}
double DMPercentiles::getInterQuartileRange() const { return interQuartileRange_.value_or(0.0); }
bool DMPercentiles::hasInterQuartileRange() const { return interQuartileRange_.has_value(); }

// ---------------------------------------------------------------------------
// DMDistributionSummary

DMDistributionSummary::DMDistributionSummary() = default;

DMDistributionSummary::DMDistributionSummary(const DMXMLWrapper& element) {
  parseSuccess_ = Read(element);
}

DMDistributionSummary::DMDistributionSummary(const DMDistributionSummary& other)
    : parseSuccess_(other.parseSuccess_),
      clusters_(dmsummaries_internal::CopyOf(other.clusters_)),
      categories_(dmsummaries_internal::CopyOf(other.categories_)),
      discrete_(other.discrete_),
      mode_(other.mode_),
      maxCatsExceeded_(other.maxCatsExceeded_),
      median_(other.median_) {}

DMDistributionSummary& DMDistributionSummary::operator=(const DMDistributionSummary& other) {
  // Copy first, so that a failing copy leaves this summary as it was.
  if (this != &other) *this = DMDistributionSummary(other);
  return *this;
}

DMDistributionSummary::DMDistributionSummary(DMDistributionSummary&& other) noexcept = default;

DMDistributionSummary& DMDistributionSummary::operator=(DMDistributionSummary&& other) noexcept =
    default;

DMDistributionSummary::~DMDistributionSummary() = default;

bool DMDistributionSummary::Read(const DMXMLWrapper& element) {
  if (!ReadChildren(element)) return false;
  if (!HasOneKindOfChild()) return false;
  return ReadAttributes(element);
}

bool DMDistributionSummary::ReadChildren(const DMXMLWrapper& element) {
  if (!dmsummaries_internal::ReadChildren(element, XMLElements::Cluster, clusters_)) return false;
  return dmsummaries_internal::ReadChildren(element, XMLElements::Category, categories_);
}

bool DMDistributionSummary::HasOneKindOfChild() const {
  return clusters_.empty() != categories_.empty();
}

bool DMDistributionSummary::ReadAttributes(const DMXMLWrapper& element) {
  // The two flags stay texts, as the format defines them, so that a summary
  // writes back exactly the entity it read.
  if (!dmsummaries_internal::ReadFlagText(element, XMLAttributes::discrete, discrete_)) {
    return false;
  }
  if (!ReadItem(element, XMLAttributes::mode, mode_)) return false;
  if (!dmsummaries_internal::ReadFlagText(element, XMLAttributes::maxCatsExceeded,
                                          maxCatsExceeded_)) {
    return false;
  }
  return dmsummaries_internal::ReadText(element, XMLAttributes::median, median_);
}

bool DMDistributionSummary::Write(DMXMLWrapper& element) const {
  if (!HasOneKindOfChild()) return false;
  if (!dmsummaries_internal::WriteChildren(element, clusters_)) return false;
  if (!dmsummaries_internal::WriteChildren(element, categories_)) return false;
  // A flag text that is no entity is left out rather than failing the write.
  if (IsFlagText(discrete_) &&
      !dmsummaries_internal::WriteText(element, XMLAttributes::discrete, discrete_)) {
    return false;
  }
  if (!WriteItem(element, XMLAttributes::mode, mode_)) return false;
  if (IsFlagText(maxCatsExceeded_) &&
      !dmsummaries_internal::WriteText(element, XMLAttributes::maxCatsExceeded, maxCatsExceeded_)) {
    return false;
  }
  return dmsummaries_internal::WriteText(element, XMLAttributes::median, median_);
}

void DMDistributionSummary::AddToTree(DMXMLWrapper& parent, DMXMLWrapper*& created) const {
  dmsummaries_internal::WriteElement(parent, XMLElements::DistributionSummary, created,
                                     [this](DMXMLWrapper& element) { return Write(element); });
}

bool DMDistributionSummary::parseSuccess() const { return parseSuccess_; }
std::size_t DMDistributionSummary::getClusterCount() const { return clusters_.size(); }
const DMCluster* DMDistributionSummary::getCluster(std::size_t index) const {
  return clusters_[index].get();
}
std::size_t DMDistributionSummary::getCategoryCount() const { return categories_.size(); }
const DMCategory* DMDistributionSummary::getCategory(std::size_t index) const {
  return categories_[index].get();
}
std::string DMDistributionSummary::getDiscrete() const { return discrete_; }
double DMDistributionSummary::getMode() const { return mode_.value_or(0.0); }
bool DMDistributionSummary::hasMode() const { return mode_.has_value(); }
std::string DMDistributionSummary::getMaxCatsExceeded() const { return maxCatsExceeded_; }
std::string DMDistributionSummary::getMedian() const { return median_; }
