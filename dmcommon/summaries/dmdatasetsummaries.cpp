#include "dmcommon/summaries/dmdatasetsummaries.h"

#include <array>
#include <cstddef>
#include <optional>
#include <string>
#include <utility>

#include "dmcommon/summaries/dmsummaries_internal.h"
#include "dmcommon/xml/dmxmlresult.h"
#include "dmcommon/xml/dmxmlwrapper.h"
#include "dmcommon/xml/vocabulary/xmlvocabulary.h"

using DmExtension::DM_XML_OK;
using DmExtension::DMXMLWrapper;
using dmsummaries_internal::CopyOf;
using dmsummaries_internal::IsFlagText;
namespace XMLAttributes = DmCppHelperV1::XMLAttributes;
namespace XMLElements = DmCppHelperV1::XMLElements;
namespace XMLEntities = DmCppHelperV1::XMLEntities;

namespace {

// Reads a flag of the overall summaries: absent leaves `flag` as it was, the
// two entities set it, any other text is a defect.
[[nodiscard]] bool ReadFlag(const DMXMLWrapper& element, const char* name, bool& flag) {
  std::string text;
  bool found = false;
  if (!dmsummaries_internal::ReadText(element, name, text, found)) return false;
  if (!found) return true;
  if (!IsFlagText(text)) return false;
  flag = text == XMLEntities::True;
  return true;
}

[[nodiscard]] bool WriteFlag(DMXMLWrapper& element, const char* name, bool flag) {
  return element.addAttribute(name, flag ? XMLEntities::True : XMLEntities::False) == DM_XML_OK;
}

// Reads an optional count: absent leaves `count` at -1. A negative count is
// kept as read and is a defect.
[[nodiscard]] bool ReadCount(const DMXMLWrapper& element, const char* name, long long& count) {
  std::optional<long long> read;
  if (!dmsummaries_internal::ReadItem(element, name, read)) return false;
  if (!read.has_value()) return true;
  count = *read;
  return count >= 0;
}

// Writes a count unless it stands for "not given".
[[nodiscard]] bool WriteCount(DMXMLWrapper& element, const char* name, long long count) {
  if (count < 0) return true;
  return element.addAttribute(name, count) == DM_XML_OK;
}

}  // namespace

// ---------------------------------------------------------------------------
// DMRecordCountsExt

DMRecordCountsExt::DMRecordCountsExt() = default;

DMRecordCountsExt::DMRecordCountsExt(const DMXMLWrapper& /*element*/) {}

DMRecordCountsExt::DMRecordCountsExt(const DMRecordCountsExt& other) = default;

DMRecordCountsExt& DMRecordCountsExt::operator=(const DMRecordCountsExt& other) = default;

bool DMRecordCountsExt::parseSuccess() const { return parseSuccess_; }

void DMRecordCountsExt::AddToTree(DMXMLWrapper& parent, DMXMLWrapper*& created) const {
  dmsummaries_internal::WriteElement(parent, XMLElements::RecordCountsExt, created,
                                     [](DMXMLWrapper& /*element*/) { return true; });
}

// ---------------------------------------------------------------------------
// DMOverallSummaries

DMOverallSummaries::DMOverallSummaries() = default;

DMOverallSummaries::DMOverallSummaries(const DMXMLWrapper& element) {
  parseSuccess_ = Read(element);
}

DMOverallSummaries::DMOverallSummaries(const DMOverallSummaries& other)
    : recordCounts_(CopyOf(other.recordCounts_)),
      current_(other.current_),
      includeUMissing_(other.includeUMissing_),
      includeNotValid_(other.includeNotValid_),
      parseSuccess_(other.parseSuccess_) {}

DMOverallSummaries& DMOverallSummaries::operator=(const DMOverallSummaries& other) {
  // Copy first, so that a failing copy leaves this object as it was.
  if (this != &other) *this = DMOverallSummaries(other);
  return *this;
}

DMOverallSummaries::DMOverallSummaries(DMOverallSummaries&& other) noexcept = default;

DMOverallSummaries& DMOverallSummaries::operator=(DMOverallSummaries&& other) noexcept = default;

DMOverallSummaries::~DMOverallSummaries() = default;

bool DMOverallSummaries::Read(const DMXMLWrapper& element) {
  // Only the presence of the child counts; it has nothing to read and never
  // fails.
  if (!dmsummaries_internal::ReadFirstChild(element, XMLElements::RecordCountsExt, recordCounts_)) {
    return false;
  }
  if (!ReadFlag(element, XMLAttributes::current, current_)) return false;
  if (!ReadFlag(element, XMLAttributes::includeUMissing, includeUMissing_)) return false;
  return ReadFlag(element, XMLAttributes::includeNotValid, includeNotValid_);
}

bool DMOverallSummaries::Write(DMXMLWrapper& element) const {
  return dmsummaries_internal::WriteOptionalChild(element, recordCounts_) &&
         WriteFlag(element, XMLAttributes::current, current_) &&
         WriteFlag(element, XMLAttributes::includeUMissing, includeUMissing_) &&
         WriteFlag(element, XMLAttributes::includeNotValid, includeNotValid_);
}

void DMOverallSummaries::AddToTree(DMXMLWrapper& parent, DMXMLWrapper*& created) const {
  dmsummaries_internal::WriteElement(parent, XMLElements::OverallSummaries, created,
                                     [this](DMXMLWrapper& element) { return Write(element); });
}

bool DMOverallSummaries::parseSuccess() const { return parseSuccess_; }
const DMRecordCountsExt* DMOverallSummaries::getRecordCountsExt() const {
  return recordCounts_.get();
}
bool DMOverallSummaries::getCurrent() const { return current_; }
bool DMOverallSummaries::getIncludeUMissing() const { return includeUMissing_; }
bool DMOverallSummaries::getIncludeNotValid() const { return includeNotValid_; }

// ---------------------------------------------------------------------------
// DMFieldSummary

const std::array<DMFieldSummary::Item<long long>, 6>& DMFieldSummary::CountItems() {
  static constexpr std::array<Item<long long>, 6> kItems{{
      {XMLAttributes::validCount, &DMFieldSummary::validCount_},
      {XMLAttributes::unweightedValid, &DMFieldSummary::unweightedValid_},
      {XMLAttributes::missingCount, &DMFieldSummary::missingCount_},
      {XMLAttributes::unweightedMissing, &DMFieldSummary::unweightedMissing_},
      {XMLAttributes::invalidCount, &DMFieldSummary::invalidCount_},
      {XMLAttributes::unweightedInvalid, &DMFieldSummary::unweightedInvalid_},
  }};
  return kItems;
}

const std::array<DMFieldSummary::Item<std::string>, 3>& DMFieldSummary::FlagItems() {
  static constexpr std::array<Item<std::string>, 3> kItems{{
      {XMLAttributes::current, &DMFieldSummary::current_},
      {XMLAttributes::includeUMissing, &DMFieldSummary::includeUMissing_},
      {XMLAttributes::includeNotValid, &DMFieldSummary::includeNotValid_},
  }};
  return kItems;
}

DMFieldSummary::DMFieldSummary() = default;

DMFieldSummary::DMFieldSummary(const DMXMLWrapper& element) { parseSuccess_ = Read(element); }

DMFieldSummary::DMFieldSummary(const DMFieldSummary& other)
    : parseSuccess_(other.parseSuccess_),
      conStatistics_(CopyOf(other.conStatistics_)),
      disStatistics_(CopyOf(other.disStatistics_)),
      current_(other.current_),
      includeUMissing_(other.includeUMissing_),
      includeNotValid_(other.includeNotValid_),
      fieldName_(other.fieldName_),
      validCount_(other.validCount_),
      unweightedValid_(other.unweightedValid_),
      missingCount_(other.missingCount_),
      unweightedMissing_(other.unweightedMissing_),
      invalidCount_(other.invalidCount_),
      unweightedInvalid_(other.unweightedInvalid_) {}

DMFieldSummary& DMFieldSummary::operator=(const DMFieldSummary& other) {
  // Copy first, so that a failing copy leaves this summary as it was.
  if (this != &other) *this = DMFieldSummary(other);
  return *this;
}

DMFieldSummary::DMFieldSummary(DMFieldSummary&& other) noexcept = default;

DMFieldSummary& DMFieldSummary::operator=(DMFieldSummary&& other) noexcept = default;

DMFieldSummary::~DMFieldSummary() = default;

bool DMFieldSummary::Read(const DMXMLWrapper& element) {
  if (!ReadStatistics(element)) return false;
  if (!ReadFlags(element)) return false;
  if (!ReadFieldName(element)) return false;
  return ReadCounts(element);
}

bool DMFieldSummary::ReadStatistics(const DMXMLWrapper& element) {
  if (!dmsummaries_internal::ReadFirstChild(element, XMLElements::ContinuousStatisticsExt,
                                            conStatistics_)) {
    return false;
  }
  if (!dmsummaries_internal::ReadFirstChild(element, XMLElements::DiscreteStatisticsExt,
                                            disStatistics_)) {
    return false;
  }
  return HasOneKindOfStatistics();
}

bool DMFieldSummary::HasOneKindOfStatistics() const {
  return (conStatistics_ == nullptr) != (disStatistics_ == nullptr);
}

bool DMFieldSummary::ReadFlags(const DMXMLWrapper& element) {
  // Texts here, unlike the booleans of DMOverallSummaries: intended, the
  // format defines the two differently.
  for (const auto& flag : FlagItems()) {
    if (!dmsummaries_internal::ReadFlagText(element, flag.attribute, this->*flag.member)) {
      return false;
    }
  }
  return true;
}

bool DMFieldSummary::ReadFieldName(const DMXMLWrapper& element) {
  if (!dmsummaries_internal::ReadText(element, XMLAttributes::FieldName, fieldName_)) {
    return false;
  }
  return !fieldName_.empty();
}

bool DMFieldSummary::ReadCounts(const DMXMLWrapper& element) {
  for (const auto& count : CountItems()) {
    if (!ReadCount(element, count.attribute, this->*count.member)) return false;
  }
  return true;
}

bool DMFieldSummary::Write(DMXMLWrapper& element) const {
  if (!HasOneKindOfStatistics()) return false;
  const bool wroteStatistics = conStatistics_ != nullptr
                                   ? dmsummaries_internal::WriteChild(element, *conStatistics_)
                                   : dmsummaries_internal::WriteChild(element, *disStatistics_);
  if (!wroteStatistics) return false;
  for (const auto& flag : FlagItems()) {
    const std::string& text = this->*flag.member;
    // Unlike the flags of a distribution summary, a text that is no entity
    // fails the write here instead of being left out.
    if (!text.empty() && !IsFlagText(text)) return false;
    if (!dmsummaries_internal::WriteText(element, flag.attribute, text)) return false;
  }
  if (fieldName_.empty()) return false;
  if (!dmsummaries_internal::WriteText(element, XMLAttributes::FieldName, fieldName_)) {
    return false;
  }
  for (const auto& count : CountItems()) {
    if (!WriteCount(element, count.attribute, this->*count.member)) return false;
  }
  return true;
}

void DMFieldSummary::AddToTree(DMXMLWrapper& parent, DMXMLWrapper*& created) const {
  dmsummaries_internal::WriteElement(parent, XMLElements::FieldSummary, created,
                                     [this](DMXMLWrapper& element) { return Write(element); });
}

bool DMFieldSummary::parseSuccess() const { return parseSuccess_; }
const DMContinuousStatisticsExt* DMFieldSummary::getConStatistics() const {
  return conStatistics_.get();
}
const DMDiscreteStatisticsExt* DMFieldSummary::getDisStatistics() const {
  return disStatistics_.get();
}
std::string DMFieldSummary::getCurrent() const { return current_; }
std::string DMFieldSummary::getIncludeUMissing() const { return includeUMissing_; }
std::string DMFieldSummary::getIncludeNotValid() const { return includeNotValid_; }
std::string DMFieldSummary::getFieldName() const { return fieldName_; }
long long DMFieldSummary::getValidCount() const { return validCount_; }
long long DMFieldSummary::getUnweightedValid() const { return unweightedValid_; }
long long DMFieldSummary::getMissingCount() const { return missingCount_; }
long long DMFieldSummary::getUnweightedMissing() const { return unweightedMissing_; }
long long DMFieldSummary::getInvalidCount() const { return invalidCount_; }
long long DMFieldSummary::getUnweightedInvalid() const { return unweightedInvalid_; }

// ---------------------------------------------------------------------------
// DMFieldSummaries

DMFieldSummaries::DMFieldSummaries() = default;

DMFieldSummaries::DMFieldSummaries(const DMXMLWrapper& element) {
  parseSuccess_ =
      dmsummaries_internal::ReadChildren(element, XMLElements::FieldSummary, fieldSummaries_);
}

DMFieldSummaries::DMFieldSummaries(const DMFieldSummaries& other)
    : parseSuccess_(other.parseSuccess_), fieldSummaries_(CopyOf(other.fieldSummaries_)) {}

DMFieldSummaries& DMFieldSummaries::operator=(const DMFieldSummaries& other) {
  // Copy first, so that a failing copy leaves this list as it was.
  if (this != &other) *this = DMFieldSummaries(other);
  return *this;
}

DMFieldSummaries::DMFieldSummaries(DMFieldSummaries&& other) noexcept = default;

DMFieldSummaries& DMFieldSummaries::operator=(DMFieldSummaries&& other) noexcept = default;

DMFieldSummaries::~DMFieldSummaries() = default;

bool DMFieldSummaries::Write(DMXMLWrapper& element) const {
  return dmsummaries_internal::WriteChildren(element, fieldSummaries_);
}

void DMFieldSummaries::AddToTree(DMXMLWrapper& parent, DMXMLWrapper*& created) const {
  dmsummaries_internal::WriteElement(parent, XMLElements::FieldSummaries, created,
                                     [this](DMXMLWrapper& element) { return Write(element); });
}

bool DMFieldSummaries::parseSuccess() const { return parseSuccess_; }
std::size_t DMFieldSummaries::getFieldSummaryCount() const { return fieldSummaries_.size(); }
const DMFieldSummary* DMFieldSummaries::getFieldSummary(std::size_t index) const {
  if (index >= fieldSummaries_.size()) return nullptr;
  return fieldSummaries_[index].get();
}

// ---------------------------------------------------------------------------
// DMDatasetSummaries

DMDatasetSummaries::DMDatasetSummaries() = default;

DMDatasetSummaries::DMDatasetSummaries(const DMXMLWrapper& element) {
  parseSuccess_ = Read(element);
}

DMDatasetSummaries DMDatasetSummaries::fromText(const char* text) {
  DMXMLWrapper document;
  document.loadFromContents(text);
  // An unparsable text leaves the handle without an element, which the
  // element constructor already refuses.
  return DMDatasetSummaries(document);
}

DMDatasetSummaries::DMDatasetSummaries(const DMDatasetSummaries& other)
    : parseSuccess_(other.parseSuccess_),
      overallSummaries_(CopyOf(other.overallSummaries_)),
      fieldSummaries_(CopyOf(other.fieldSummaries_)) {}

DMDatasetSummaries& DMDatasetSummaries::operator=(const DMDatasetSummaries& other) {
  // Copy first, so that a failing copy leaves this document as it was.
  if (this != &other) *this = DMDatasetSummaries(other);
  return *this;
}

DMDatasetSummaries::DMDatasetSummaries(DMDatasetSummaries&& other) noexcept = default;

DMDatasetSummaries& DMDatasetSummaries::operator=(DMDatasetSummaries&& other) noexcept = default;

DMDatasetSummaries::~DMDatasetSummaries() = default;

bool DMDatasetSummaries::Read(const DMXMLWrapper& element) {
  if (!dmsummaries_internal::ReadFirstChild(element, XMLElements::OverallSummaries,
                                            overallSummaries_)) {
    return false;
  }
  return dmsummaries_internal::ReadFirstChild(element, XMLElements::FieldSummaries,
                                              fieldSummaries_);
}

bool DMDatasetSummaries::Write(DMXMLWrapper& element) const {
  return dmsummaries_internal::WriteOptionalChild(element, overallSummaries_) &&
         dmsummaries_internal::WriteOptionalChild(element, fieldSummaries_);
}

void DMDatasetSummaries::AddToTree(DMXMLWrapper& parent, DMXMLWrapper*& created) const {
  dmsummaries_internal::WriteElement(parent, XMLElements::DatasetSummaries, created,
                                     [this](DMXMLWrapper& element) { return Write(element); });
}

bool DMDatasetSummaries::parseSuccess() const { return parseSuccess_; }
const DMOverallSummaries* DMDatasetSummaries::getOverallSummaries() const {
  return overallSummaries_.get();
}
const DMFieldSummaries* DMDatasetSummaries::getFieldSummaries() const {
  return fieldSummaries_.get();
}
void DMDatasetSummaries::releaseOverallSummaries() { overallSummaries_.reset(); }
void DMDatasetSummaries::releaseFieldSummaries() { fieldSummaries_.reset(); }
