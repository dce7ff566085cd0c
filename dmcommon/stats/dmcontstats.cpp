#include "dmcommon/stats/dmcontstats.h"

#include <climits>
#include <cmath>
#include <memory>
#include <string>
#include <utility>

#include "dmcommon/xml/dmxmlresult.h"
#include "dmcommon/xml/dmxmlwrapper.h"
#include "dmcommon/xml/vocabulary/xmlelement.h"
#include "dmcommon/xml/vocabulary/xmlvocabulary.h"

using DmCppHelperV1::XMLElement;
using DmExtension::DM_XML_OK;
using DmExtension::DMXMLWrapper;
namespace XMLAttributes = DmCppHelperV1::XMLAttributes;
namespace XMLElements = DmCppHelperV1::XMLElements;

namespace {

// What the element handle's real reader reports for an ordinary number.
constexpr int kOrdinaryNumber = 0;

// The six fields of an accumulator while they are being read; installed only
// when every step succeeded.
struct Fields {
  double min = 0.0;
  double max = 0.0;
  double sumFreqWts = 0.0;
  double sumCompWts = 0.0;
  double mean = 0.0;
  double sumSqDev = 0.0;
};

// Reads real attributes through the element handle, which tells infinities and
// not-a-number apart from ordinary numbers by its `special` code.
class HandleReals {
 public:
  explicit HandleReals(const DMXMLWrapper& element) : element_(element) {}

  // False unless the attribute is present and an ordinary number.
  [[nodiscard]] bool Read(const char* name, double& value) const {
    bool found = false;
    int special = kOrdinaryNumber;
    double read = 0.0;
    if (element_.getAttribute(name, read, found, special) != DM_XML_OK) return false;
    if (!found || special != kOrdinaryNumber) return false;
    value = read;
    return true;
  }

 private:
  const DMXMLWrapper& element_;
};

// Reads real attributes through the element view. The view hands out "INF",
// "-INF" and "NaN" as values, so ordinary numbers are told by finiteness, which
// gives the same outcome as the handle's `special` code.
class ViewReals {
 public:
  explicit ViewReals(const XMLElement& element) : element_(element) {}

  [[nodiscard]] bool Read(const char* name, double& value) const {
    double read = 0.0;
    if (!element_.getAttribute(name, read)) return false;
    if (!std::isfinite(read)) return false;
    value = read;
    return true;
  }

 private:
  const XMLElement& element_;
};

template <typename Reals>
[[nodiscard]] bool ReadNonNegative(const Reals& reals, const char* name, double& value) {
  return reals.Read(name, value) && value >= 0.0;
}

// Step by step, each step returning early. An element whose frequency weights
// do not sum above 0 is complete after the two sums, and one whose weights do
// not sum above 1 after the mean.
template <typename Reals>
[[nodiscard]] bool ReadFields(const Reals& reals, Fields& out) {
  Fields read;
  if (!ReadNonNegative(reals, XMLAttributes::SumFreqWts, read.sumFreqWts)) return false;
  if (!ReadNonNegative(reals, XMLAttributes::SumCompWts, read.sumCompWts)) return false;
  if (!(read.sumFreqWts > 0.0)) {
    out = read;
    return true;
  }
  if (!reals.Read(XMLAttributes::Minimum, read.min)) return false;
  if (!reals.Read(XMLAttributes::Maximum, read.max)) return false;
  if (read.min > read.max) return false;
  if (!reals.Read(XMLAttributes::Mean, read.mean)) return false;
  if (read.sumFreqWts > 1.0) {
    double variance = 0.0;
    if (!ReadNonNegative(reals, XMLAttributes::Variance, variance)) return false;
    read.sumSqDev = variance * (read.sumFreqWts - 1.0);
  }
  out = read;
  return true;
}

// A real extremum truncated toward zero. A plain conversion of a value beyond
// the 64-bit range is undefined, so those saturate; writer and reader both go
// through here, which keeps the exact extrema of the limits round-tripping.
long long TruncateToInteger(double value) {
  if (std::isnan(value)) return 0;
  if (value >= 9223372036854775808.0) return LLONG_MAX;
  if (value < -9223372036854775808.0) return LLONG_MIN;
  return static_cast<long long>(value);
}

[[nodiscard]] bool WriteReal(DMXMLWrapper& element, const char* name, double value) {
  return element.addAttribute(name, value) == DM_XML_OK;
}

// An absent exact extremum stands for the real one; only an unreadable text
// fails.
[[nodiscard]] bool ReadExact(const DMXMLWrapper& element, const char* name, long long fallback,
                             long long& value) {
  bool found = false;
  long long read = 0;
  if (element.getAttribute(name, read, found) != DM_XML_OK) return false;
  value = found ? read : fallback;
  return true;
}

// The view's reader requires the exact extremum: a missing one fails.
[[nodiscard]] bool ReadExact(const XMLElement& element, const char* name, long long& value) {
  return element.getAttribute(name, value);
}

}  // namespace

// ---------------------------------------------------------------------------
// DMContStatsImp

DMContStatsImp::DMContStatsImp()
    : min(0.0), max(0.0), sumFreqWts(0.0), sumCompWts(0.0), mean(0.0), sumSqDev(0.0) {}

DMContStatsImp::DMContStatsImp(const DMXMLWrapper& element) : DMContStatsImp() {
  Fields read;
  if (!ReadFields(HandleReals(element), read)) return;
  min = read.min;
  max = read.max;
  sumFreqWts = read.sumFreqWts;
  sumCompWts = read.sumCompWts;
  mean = read.mean;
  sumSqDev = read.sumSqDev;
}

DMContStatsImp::DMContStatsImp(const XMLElement& element) : DMContStatsImp() {
  Fields read;
  if (!ReadFields(ViewReals(element), read)) return;
  min = read.min;
  max = read.max;
  sumFreqWts = read.sumFreqWts;
  sumCompWts = read.sumCompWts;
  mean = read.mean;
  sumSqDev = read.sumSqDev;
}

void DMContStatsImp::Pool(const DMContStatsImp& other) {
  if (sumFreqWts == 0.0) {
    if (other.sumFreqWts == 0.0) return;
    *this = other;
    return;
  }
  if (other.sumFreqWts == 0.0) return;
  if (other.min < min) min = other.min;
  if (other.max > max) max = other.max;
  // Same caution as in Update: the order of operations is kept as written.
  const double s1 = sumCompWts;
  const double s2 = other.sumCompWts;
  const double d = other.mean - mean;
  const double s = s1 + s2;
  sumSqDev = s1 * s2 * d * d / s + other.sumSqDev + sumSqDev;
  mean = d * s2 / s + mean;
  sumFreqWts += other.sumFreqWts;
  sumCompWts = s;
}

std::pair<double, double> DMContStatsImp::GetExtrema() const { return {min, max}; }

double DMContStatsImp::GetMean() const { return mean; }

double DMContStatsImp::GetVariance() const {
  // Frequency weights define n; case weights only scale the deviations.
  if (!(sumFreqWts > 1.0)) return 0.0;
  return sumSqDev / (sumFreqWts - 1.0);
}

double DMContStatsImp::GetSumCompWeights() const { return sumCompWts; }

DMXMLWrapper* DMContStatsImp::MakeContStatsElmt(DMXMLWrapper& parent) const {
  std::unique_ptr<DMXMLWrapper> element(
      parent.createFreeElement(XMLElements::ContinuousStatistics));
  if (element == nullptr) return nullptr;
  if (!WriteReal(*element, XMLAttributes::SumFreqWts, sumFreqWts)) return nullptr;
  if (!WriteReal(*element, XMLAttributes::SumCompWts, sumCompWts)) return nullptr;
  if (sumFreqWts > 0.0) {
    if (!WriteReal(*element, XMLAttributes::Minimum, min)) return nullptr;
    if (!WriteReal(*element, XMLAttributes::Maximum, max)) return nullptr;
    if (!WriteReal(*element, XMLAttributes::Mean, mean)) return nullptr;
  }
  if (sumFreqWts > 1.0) {
    if (!WriteReal(*element, XMLAttributes::Variance, GetVariance())) return nullptr;
  }
  return element.release();
}

// ---------------------------------------------------------------------------
// DMContStats

DMContStats::~DMContStats() = default;

// ---------------------------------------------------------------------------
// DMContStatsDbl

DMContStatsDbl::DMContStatsDbl() : imp_(std::make_unique<DMContStatsImp>()) {}

DMContStatsDbl::DMContStatsDbl(const DMXMLWrapper& element)
    : imp_(std::make_unique<DMContStatsImp>(element)) {}

DMContStatsDbl::DMContStatsDbl(const XMLElement& element)
    : imp_(std::make_unique<DMContStatsImp>(element)) {}

DMContStatsDbl::DMContStatsDbl(const DMContStatsDbl& other)
    : DMContStats(other), imp_(std::make_unique<DMContStatsImp>(*other.imp_)) {}

DMContStatsDbl& DMContStatsDbl::operator=(const DMContStatsDbl& other) {
  if (this != &other) *imp_ = *other.imp_;
  return *this;
}

DMContStatsDbl::~DMContStatsDbl() = default;

DMContStatsDbl* DMContStatsDbl::Clone() const { return new DMContStatsDbl(*this); }

std::pair<double, double> DMContStatsDbl::GetExtrema() const { return imp_->GetExtrema(); }

double DMContStatsDbl::GetMean() const { return imp_->GetMean(); }

double DMContStatsDbl::GetVariance() const { return imp_->GetVariance(); }

double DMContStatsDbl::GetSumFreqWeights() const { return imp_->GetSumFreqWeights(); }

double DMContStatsDbl::GetSumCompWeights() const { return imp_->GetSumCompWeights(); }

void DMContStatsDbl::AddToTree(DMXMLWrapper& parent, DMXMLWrapper*& created) const {
  created = nullptr;
  std::unique_ptr<DMXMLWrapper> element(imp_->MakeContStatsElmt(parent));
  if (element == nullptr) return;
  if (parent.addElement(element.get()) != DM_XML_OK) return;
  created = element.release();
}

void DMContStatsDbl::Pool(const DMContStatsDbl& other) { imp_->Pool(*other.imp_); }

// ---------------------------------------------------------------------------
// DMContStatsInt

DMContStatsInt::DMContStatsInt()
    : imp_(std::make_unique<DMContStatsImp>()), exactMin(0), exactMax(0) {}

DMContStatsInt::DMContStatsInt(const DMXMLWrapper& element)
    : imp_(std::make_unique<DMContStatsImp>(element)), exactMin(0), exactMax(0) {
  if (!(imp_->GetSumFreqWeights() > 0.0)) return;
  const auto [min, max] = imp_->GetExtrema();
  long long readMin = 0;
  long long readMax = 0;
  if (!ReadExact(element, XMLAttributes::ExactMinimum, TruncateToInteger(min), readMin) ||
      !ReadExact(element, XMLAttributes::ExactMaximum, TruncateToInteger(max), readMax)) {
    MakeEmpty();
    return;
  }
  exactMin = readMin;
  exactMax = readMax;
}

DMContStatsInt::DMContStatsInt(const XMLElement& element)
    : imp_(std::make_unique<DMContStatsImp>(element)), exactMin(0), exactMax(0) {
  if (!(imp_->GetSumFreqWeights() > 0.0)) return;
  long long readMin = 0;
  long long readMax = 0;
  // Stricter than the handle's reader on purpose: a missing exact extremum is
  // not filled in from the real one here.
  if (!ReadExact(element, XMLAttributes::ExactMinimum, readMin) ||
      !ReadExact(element, XMLAttributes::ExactMaximum, readMax)) {
    MakeEmpty();
    return;
  }
  exactMin = readMin;
  exactMax = readMax;
}

DMContStatsInt::DMContStatsInt(const DMContStatsInt& other)
    : DMContStats(other),
      imp_(std::make_unique<DMContStatsImp>(*other.imp_)),
      exactMin(other.exactMin),
      exactMax(other.exactMax) {}

DMContStatsInt& DMContStatsInt::operator=(const DMContStatsInt& other) {
  if (this == &other) return *this;
  *imp_ = *other.imp_;
  exactMin = other.exactMin;
  exactMax = other.exactMax;
  return *this;
}

DMContStatsInt::~DMContStatsInt() = default;

void DMContStatsInt::MakeEmpty() {
  *imp_ = DMContStatsImp();
  exactMin = 0;
  exactMax = 0;
}

DMContStatsInt* DMContStatsInt::Clone() const { return new DMContStatsInt(*this); }

std::pair<double, double> DMContStatsInt::GetExtrema() const { return imp_->GetExtrema(); }

double DMContStatsInt::GetMean() const { return imp_->GetMean(); }

double DMContStatsInt::GetVariance() const { return imp_->GetVariance(); }

double DMContStatsInt::GetSumFreqWeights() const { return imp_->GetSumFreqWeights(); }

double DMContStatsInt::GetSumCompWeights() const { return imp_->GetSumCompWeights(); }

std::pair<long long, long long> DMContStatsInt::GetExactExtrema() const {
  return {exactMin, exactMax};
}

void DMContStatsInt::AddToTree(DMXMLWrapper& parent, DMXMLWrapper*& created) const {
  created = nullptr;
  std::unique_ptr<DMXMLWrapper> element(imp_->MakeContStatsElmt(parent));
  if (element == nullptr) return;
  const auto [min, max] = imp_->GetExtrema();
  // Written only where the real extremum does not convert back to the exact
  // one, so that documents of ordinary integers stay as they were.
  if (exactMin != TruncateToInteger(min) &&
      element->addAttribute(XMLAttributes::ExactMinimum, exactMin) != DM_XML_OK) {
    return;
  }
  if (exactMax != TruncateToInteger(max) &&
      element->addAttribute(XMLAttributes::ExactMaximum, exactMax) != DM_XML_OK) {
    return;
  }
  if (parent.addElement(element.get()) != DM_XML_OK) return;
  created = element.release();
}

void DMContStatsInt::Pool(const DMContStatsInt& other) { imp_->Pool(*other.imp_); }
