#include "dmcommon/stats/dmcatstatsimp.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <functional>
#include <memory>
#include <numeric>
#include <string>
#include <utility>
#include <vector>

#include "dmcommon/xml/dmxmliteratorwrapper.h"
#include "dmcommon/xml/dmxmlresult.h"
#include "dmcommon/xml/dmxmlwrapper.h"
#include "dmcommon/xml/vocabulary/xmlvocabulary.h"

using DmExtension::DM_XML_NO_MORE_ITEMS;
using DmExtension::DM_XML_OK;
using DmExtension::DMXMLIteratorWrapper;
using DmExtension::DMXMLWrapper;
namespace XMLAttributes = DmCppHelperV1::XMLAttributes;
namespace XMLElements = DmCppHelperV1::XMLElements;

namespace {

// What `DMCatStatsStr::GetCatVal` hands out by reference for a category number
// out of range; built at load and destroyed at unload. It stays in this file:
// the library exports only its own DM... names, so callers reach it through
// `GetCatVal` alone.
const std::string gEmptyString;

// The category number of an unknown value, and the mark of a free index slot.
constexpr unsigned int kNoCategory = 0xFFFFFFFFU;

// What the element handle's real reader reports for an ordinary number.
constexpr int kOrdinaryNumber = 0;

// Key traits of the three value types. `Less` is the natural ascending order,
// a strict weak order on every value. For numbers, `Tag` condenses a value
// into 64 bits such that equal tags mean equal values.
struct IntegerKey {
  using Value = long long;
  static std::uint64_t Tag(long long value) { return static_cast<std::uint64_t>(value); }
  static bool Less(long long left, long long right) { return left < right; }
};

struct RealKey {
  using Value = double;
  static std::uint64_t Tag(double value) {
    // Values match by `==`: both zeros are one category. Not-a-number matches
    // nothing by `==`; giving all of them one tag keeps the index consistent.
    if (value == 0.0) return 0;
    if (std::isnan(value)) return 0x7FF8000000000000ULL;
    std::uint64_t bits = 0;
    std::memcpy(&bits, &value, sizeof bits);
    return bits;
  }
  // `<` with not-a-number above every number, so that sorting stays defined.
  static bool Less(double left, double right) {
    if (std::isnan(left)) return false;
    if (std::isnan(right)) return true;
    return left < right;
  }
};

struct TextKey {
  using Value = std::string;
  // std::string compares through char_traits<char>, which orders bytes as
  // unsigned char: UTF-8 texts sort by code point, a shorter prefix first.
  static bool Less(const std::string& left, const std::string& right) { return left < right; }
};

// Spreads a hash over all 64 bits so that the low bits pick a slot evenly, even
// for runs of consecutive integers or reals that differ in high bits only.
inline std::uint64_t Mix(std::uint64_t tag) {
  tag ^= tag >> 33;
  tag *= 0xFF51AFD7ED558CCDULL;
  tag ^= tag >> 33;
  tag *= 0xC4CEB9FE1A85EC53ULL;
  tag ^= tag >> 33;
  return tag;
}

// The indexes below are open-addressing hash tables with linear probing over a
// power-of-two number of slots. A free slot has the number kNoCategory, so at
// most 0xFFFFFFFE categories are possible.
constexpr std::size_t kFirstCapacity = 16;

// Whether one more entry beside `count` would fill more than
// numerator/denominator of `capacity` slots.
inline bool MustGrow(std::size_t count, std::size_t capacity, std::size_t numerator,
                     std::size_t denominator) {
  return (count + 1) * denominator > capacity * numerator;
}

// Index of numbers: a slot keeps the value's tag, which identifies the value,
// so a lookup reads the slot array and nothing else.
template <typename Key>
class NumberIndex {
 public:
  using Value = typename Key::Value;

  unsigned int Find(const Value& value) const {
    if (slots_.empty()) return kNoCategory;
    return slots_[Locate(Key::Tag(value))].number;
  }

  // The number of `value`, or `next` once `value` is added with that number.
  unsigned int FindOrAdd(const Value& value, unsigned int next) {
    const std::uint64_t tag = Key::Tag(value);
    if (!slots_.empty()) {
      const unsigned int number = slots_[Locate(tag)].number;
      if (number != kNoCategory) return number;
    }
    // At most three quarters full: a lookup reads its slot and nothing else,
    // so a sparser table shortens the probes at no other cost.
    if (MustGrow(next, slots_.size(), 3, 4)) Grow();
    slots_[Locate(tag)] = Slot{tag, next};
    return next;
  }

  // Gives category j the number renumbered[j].
  void Renumber(const std::vector<unsigned int>& renumbered) {
    for (Slot& entry : slots_) {
      if (entry.number != kNoCategory) entry.number = renumbered[entry.number];
    }
  }

 private:
  struct Slot {
    std::uint64_t tag = 0;
    unsigned int number = kNoCategory;
  };

  // The slot holding `tag`, or the free slot where it would go. The index is
  // never full, so the probe ends.
  std::size_t Locate(std::uint64_t tag) const {
    const std::size_t mask = slots_.size() - 1;
    for (std::size_t slot = Mix(tag) & mask;; slot = (slot + 1) & mask) {
      const Slot& entry = slots_[slot];
      if (entry.number == kNoCategory || entry.tag == tag) return slot;
    }
  }

  void Grow() {
    std::vector<Slot> old(slots_.empty() ? kFirstCapacity : slots_.size() * 2);
    old.swap(slots_);
    for (const Slot& entry : old) {
      if (entry.number != kNoCategory) slots_[Locate(entry.tag)] = entry;
    }
  }

  std::vector<Slot> slots_;
};

// Index of texts: a slot keeps a 32-bit fingerprint of the text's hash, its
// size and the place of its bytes in a packed copy of all texts. A lookup
// reads one slot and, when fingerprint and size match, the packed bytes. The
// packed copy doubles the memory the texts take, and buys speed once the
// categories outgrow the caches: the bytes of all texts lie close together,
// whereas comparing against the std::string objects would cost a further
// cache miss for every text too long for the string's own buffer.
class TextIndex {
 public:
  unsigned int Find(const std::string& value) const {
    if (slots_.empty()) return kNoCategory;
    return slots_[Locate(value, Fingerprint(value))].number;
  }

  // The number of `value`, or `next` once `value` is added with that number.
  unsigned int FindOrAdd(const std::string& value, unsigned int next) {
    const std::uint32_t fingerprint = Fingerprint(value);
    if (!slots_.empty()) {
      const unsigned int number = slots_[Locate(value, fingerprint)].number;
      if (number != kNoCategory) return number;
    }
    // At most four fifths full: a lookup also reads the packed bytes, which
    // compete with the slots for the cache, so a denser table pays off once
    // the categories outgrow it.
    if (MustGrow(next, slots_.size(), 4, 5)) Grow();
    const std::uint64_t offset = texts_.size();
    const bool huge = value.size() >= kHugeText;
    slots_[FreeSlot(fingerprint)] =
        Slot{offset << kSizeBits | (huge ? kHugeText : value.size()), fingerprint, next};
    if (huge) {
      const std::uint64_t size = value.size();
      texts_.resize(offset + sizeof size);
      std::memcpy(&texts_[offset], &size, sizeof size);
    }
    texts_.insert(texts_.end(), value.begin(), value.end());
    return next;
  }

  // Gives category j the number renumbered[j].
  void Renumber(const std::vector<unsigned int>& renumbered) {
    for (Slot& entry : slots_) {
      if (entry.number != kNoCategory) entry.number = renumbered[entry.number];
    }
  }

 private:
  // A slot stays at 16 bytes: the packed copy's offset takes the high 40 bits
  // of `place` (a terabyte of texts), the size the low 24. A text of
  // kHugeText bytes or more has that mark as its size, and its full size
  // precedes its bytes in the packed copy.
  static constexpr int kSizeBits = 24;
  static constexpr std::uint64_t kHugeText = (std::uint64_t{1} << kSizeBits) - 1;

  struct Slot {
    std::uint64_t place = 0;
    std::uint32_t fingerprint = 0;
    unsigned int number = kNoCategory;
  };

  // Mixed, so that its low bits choose the home slot evenly; growing then
  // needs no text hashed again.
  static std::uint32_t Fingerprint(const std::string& value) {
    return static_cast<std::uint32_t>(Mix(std::hash<std::string>()(value)) >> 32);
  }

  bool Holds(const Slot& entry, const std::string& value) const {
    std::uint64_t size = entry.place & kHugeText;
    const char* stored = texts_.data() + (entry.place >> kSizeBits);
    if (size == kHugeText) {
      std::memcpy(&size, stored, sizeof size);
      stored += sizeof size;
    }
    if (size != value.size()) return false;
    return size == 0 || std::memcmp(stored, value.data(), value.size()) == 0;
  }

  std::size_t Locate(const std::string& value, std::uint32_t fingerprint) const {
    const std::size_t mask = slots_.size() - 1;
    for (std::size_t slot = fingerprint & mask;; slot = (slot + 1) & mask) {
      const Slot& entry = slots_[slot];
      if (entry.number == kNoCategory) return slot;
      if (entry.fingerprint == fingerprint && Holds(entry, value)) return slot;
    }
  }

  std::size_t FreeSlot(std::uint32_t fingerprint) const {
    const std::size_t mask = slots_.size() - 1;
    std::size_t slot = fingerprint & mask;
    while (slots_[slot].number != kNoCategory) slot = (slot + 1) & mask;
    return slot;
  }

  void Grow() {
    std::vector<Slot> old(slots_.empty() ? kFirstCapacity : slots_.size() * 2);
    old.swap(slots_);
    for (const Slot& entry : old) {
      if (entry.number != kNoCategory) slots_[FreeSlot(entry.fingerprint)] = entry;
    }
  }

  std::vector<Slot> slots_;
  std::vector<char> texts_;
};

// The table behind the three classes: the index from value to category number,
// then the values and the weights in category order.
//
// The index is a hash table rather than an ordered map: an ordered map costs a
// cache miss per tree level once the categories outgrow the caches, a hash
// table one or two per lookup. Nothing observable depends on the index's own
// order: `Pool` and `Reorder` sort the values when they need an order.
template <typename Key, typename Index>
class CategoryTable {
 public:
  using Value = typename Key::Value;

  unsigned int Size() const { return static_cast<unsigned int>(values_.size()); }
  const std::vector<Value>& Values() const { return values_; }
  const std::vector<double>& Weights() const { return weights_; }

  unsigned int Find(const Value& value) const { return index_.Find(value); }

  bool Update(const Value& value, double weight) {
    if (!(weight >= 0.0)) return false;
    const unsigned int count = Size();
    const unsigned int number = index_.FindOrAdd(value, count);
    if (number == count) {
      values_.push_back(value);
      weights_.push_back(weight);
    } else {
      weights_[number] += weight;
    }
    return true;
  }

  bool UpdateIfKnown(const Value& value, double weight) {
    if (!(weight >= 0.0)) return false;
    const unsigned int number = Find(value);
    if (number == kNoCategory) return false;
    weights_[number] += weight;
    return true;
  }

  // Appends a category read from a document, whose weight is already known to
  // be valid; false for a value already there.
  [[nodiscard]] bool AppendNew(const Value& value, double weight) {
    if (Find(value) != kNoCategory) return false;
    return Update(value, weight);
  }

  void Pool(const CategoryTable& other) {
    // The ascending walk is taken before any update, and pooling a table into
    // itself adds no category, so `other`'s entries stay in place throughout.
    const std::vector<unsigned int> order = other.SortedNumbers(Key::Less);
    for (const unsigned int number : order) {
      Update(other.values_[number], other.weights_[number]);
    }
  }

  void Reorder(bool ascending) {
    if (ascending) {
      Renumber(SortedNumbers(Key::Less));
    } else {
      Renumber(SortedNumbers(
          [](const Value& left, const Value& right) { return Key::Less(right, left); }));
    }
  }

  // Sorts ascending by a caller's order.
  template <typename Less>
  void ReorderBy(const Less& less) {
    Renumber(SortedNumbers(less, true));
  }

  void MoveToEnd(const Value& value) {
    // Plain equality from the front, as callers expect of this operation; it
    // differs from the index only for not-a-number, which it never finds.
    const auto found = std::find(values_.begin(), values_.end(), value);
    if (found == values_.end()) return;
    const auto position = static_cast<std::size_t>(found - values_.begin());
    std::vector<unsigned int> order(values_.size());
    std::iota(order.begin(), order.begin() + static_cast<std::ptrdiff_t>(position), 0U);
    std::iota(order.begin() + static_cast<std::ptrdiff_t>(position), order.end() - 1,
              static_cast<unsigned int>(position + 1));
    order.back() = static_cast<unsigned int>(position);
    Renumber(order);
  }

  void ClearSums() { std::fill(weights_.begin(), weights_.end(), 0.0); }

  double SumWeights() const {
    double sum = 0.0;
    for (const double weight : weights_) sum += weight;
    return sum;
  }

 private:
  // The category numbers sorted by their values under `less`. A caller's
  // order goes through a stable sort: unlike std::sort, it stays within the
  // array even when the order is not a strict weak one.
  template <typename Less>
  std::vector<unsigned int> SortedNumbers(const Less& less, bool callerOrder = false) const {
    std::vector<unsigned int> order(values_.size());
    std::iota(order.begin(), order.end(), 0U);
    const auto byValue = [this, &less](unsigned int left, unsigned int right) {
      return less(values_[left], values_[right]);
    };
    if (callerOrder) {
      std::stable_sort(order.begin(), order.end(), byValue);
    } else {
      std::sort(order.begin(), order.end(), byValue);
    }
    return order;
  }

  // Makes old category `order[k]` the new category k, weights included.
  void Renumber(const std::vector<unsigned int>& order) {
    std::vector<Value> values;
    std::vector<double> weights;
    std::vector<unsigned int> renumbered(order.size());
    values.reserve(order.size());
    weights.reserve(order.size());
    for (std::size_t k = 0; k < order.size(); ++k) {
      values.push_back(std::move(values_[order[k]]));
      weights.push_back(weights_[order[k]]);
      renumbered[order[k]] = static_cast<unsigned int>(k);
    }
    values_.swap(values);
    weights_.swap(weights);
    index_.Renumber(renumbered);
  }

  Index index_;
  std::vector<Value> values_;
  std::vector<double> weights_;
};

// Forwards each comparison to the caller's order.
class StrCatCompare {
 public:
  explicit StrCatCompare(DMCatStrLess& less) : less_(less) {}
  bool operator()(const std::string& left, const std::string& right) const {
    return less_(left, right);
  }

 private:
  DMCatStrLess& less_;
};

// ---------------------------------------------------------------------------
// XML

[[nodiscard]] bool ReadCategory(const DMXMLWrapper& child, long long& value) {
  bool found = false;
  return child.getAttribute(XMLAttributes::Category, value, found) == DM_XML_OK && found;
}

[[nodiscard]] bool ReadCategory(const DMXMLWrapper& child, double& value) {
  bool found = false;
  int special = kOrdinaryNumber;
  return child.getAttribute(XMLAttributes::Category, value, found, special) == DM_XML_OK && found &&
         special == kOrdinaryNumber;
}

[[nodiscard]] bool ReadCategory(const DMXMLWrapper& child, std::string& value) {
  bool found = false;
  return child.getAttribute(XMLAttributes::Category, value, found) == DM_XML_OK && found;
}

// An absent weight is 0.0; a present one must be an ordinary number, not
// negative.
[[nodiscard]] bool ReadWeight(const DMXMLWrapper& child, double& weight) {
  bool found = false;
  int special = kOrdinaryNumber;
  if (child.getAttribute(XMLAttributes::SumFreqWts, weight, found, special) != DM_XML_OK) {
    return false;
  }
  if (!found) {
    weight = 0.0;
    return true;
  }
  return special == kOrdinaryNumber && weight >= 0.0;
}

// Reads every direct `Category` child into `table`, which changes only when
// all of them are valid.
template <typename Key, typename Index>
[[nodiscard]] bool ReadCategories(const DMXMLWrapper& element, CategoryTable<Key, Index>& table) {
  // A handle of our own over the same element: the iterator it hands out
  // lives and dies with it, and the caller's handle stays untouched.
  DMXMLWrapper view(element.getElement());
  DMXMLIteratorWrapper* children = nullptr;
  if (view.getElementDirectIterator(XMLElements::Category, &children) != DM_XML_OK) return false;
  CategoryTable<Key, Index> read;
  for (;;) {
    void* item = nullptr;
    const int rc = children->nextItem(&item);
    if (rc == DM_XML_NO_MORE_ITEMS) break;
    if (rc != DM_XML_OK || item == nullptr) return false;
    const DMXMLWrapper& child = *static_cast<DMXMLWrapper*>(item);
    typename Key::Value value{};
    double weight = 0.0;
    if (!ReadCategory(child, value)) return false;
    if (!ReadWeight(child, weight)) return false;
    // A repeated category is refused, not summed.
    if (!read.AppendNew(value, weight)) return false;
  }
  table = std::move(read);
  return true;
}

[[nodiscard]] bool WriteCategory(DMXMLWrapper& child, long long value) {
  return child.addAttribute(XMLAttributes::Category, value) == DM_XML_OK;
}

[[nodiscard]] bool WriteCategory(DMXMLWrapper& child, double value) {
  return child.addAttribute(XMLAttributes::Category, value) == DM_XML_OK;
}

[[nodiscard]] bool WriteCategory(DMXMLWrapper& child, const std::string& value) {
  return child.addAttribute(XMLAttributes::Category, value.c_str()) == DM_XML_OK;
}

template <typename Key, typename Index>
void WriteCategories(const CategoryTable<Key, Index>& table, DMXMLWrapper& parent,
                     DMXMLWrapper*& created) {
  created = nullptr;
  std::unique_ptr<DMXMLWrapper> element(parent.createFreeElement(XMLElements::DiscreteStatistics));
  if (element == nullptr) return;
  const auto& values = table.Values();
  const auto& weights = table.Weights();
  for (std::size_t k = 0; k < values.size(); ++k) {
    DMXMLWrapper* child = nullptr;
    if (element->addElement(XMLElements::Category, &child) != DM_XML_OK) return;
    if (!WriteCategory(*child, values[k])) return;
    if (child->addAttribute(XMLAttributes::SumFreqWts, weights[k]) != DM_XML_OK) return;
  }
  if (parent.addElement(element.get()) != DM_XML_OK) return;
  created = element.release();
}

DMDatum NullDatum(DMDatum::DataType type) {
  DMDatum datum;
  datum.SetNull(type);
  return datum;
}

}  // namespace

// ---------------------------------------------------------------------------
// DMCatStrLess and DMCatStats

DMCatStrLess::~DMCatStrLess() = default;

DMCatStats::~DMCatStats() = default;

DMCatStatsDbl* DMCatStats::CatNumVersion() const {
  auto numbers = std::make_unique<DMCatStatsDbl>();
  const unsigned int count = GetNCats();
  for (unsigned int i = 0; i < count; ++i) {
    numbers->Update(static_cast<double>(i), GetCatWeight(i));
  }
  return numbers.release();
}

// ---------------------------------------------------------------------------
// DMCatStatsInt

struct DMCatStatsInt::Impl : CategoryTable<IntegerKey, NumberIndex<IntegerKey>> {};

DMCatStatsInt::DMCatStatsInt() : impl_(std::make_unique<Impl>()) {}

DMCatStatsInt::DMCatStatsInt(const DMXMLWrapper& element) : DMCatStatsInt() {
  if (!ReadCategories(element, *impl_)) *impl_ = Impl();
}

DMCatStatsInt::DMCatStatsInt(const DMCatStatsInt& other)
    : DMCatStats(other), impl_(std::make_unique<Impl>(*other.impl_)) {}

DMCatStatsInt& DMCatStatsInt::operator=(const DMCatStatsInt& other) {
  if (this != &other) *impl_ = *other.impl_;
  return *this;
}

DMCatStatsInt::~DMCatStatsInt() = default;

DMCatStatsInt* DMCatStatsInt::Clone() const { return new DMCatStatsInt(*this); }

unsigned int DMCatStatsInt::GetNCats() const { return impl_->Size(); }

double DMCatStatsInt::GetCatWeight(unsigned int i) const {
  return i < impl_->Size() ? impl_->Weights()[i] : -1.0;
}

DMDatum DMCatStatsInt::GetCatValDatum(unsigned int i) const {
  if (i >= impl_->Size()) return NullDatum(DMDatum::IntegerType);
  return DMDatum(impl_->Values()[i]);
}

double DMCatStatsInt::GetSumWeights() const { return impl_->SumWeights(); }

void DMCatStatsInt::ReorderCats(bool ascending) { impl_->Reorder(ascending); }

void DMCatStatsInt::ClearSums() { impl_->ClearSums(); }

void DMCatStatsInt::AddToTree(DMXMLWrapper& parent, DMXMLWrapper*& created) const {
  WriteCategories(*impl_, parent, created);
}

void DMCatStatsInt::SetLastCategory(long long value) { impl_->MoveToEnd(value); }

bool DMCatStatsInt::Update(long long value, double weight) { return impl_->Update(value, weight); }

bool DMCatStatsInt::UpdateIfKnown(long long value, double weight) {
  return impl_->UpdateIfKnown(value, weight);
}

void DMCatStatsInt::Pool(const DMCatStatsInt& other) { impl_->Pool(*other.impl_); }

unsigned int DMCatStatsInt::GetCatNum(long long value) const { return impl_->Find(value); }

long long DMCatStatsInt::GetCatVal(unsigned int i) const {
  return i < impl_->Size() ? impl_->Values()[i] : -1;
}

// ---------------------------------------------------------------------------
// DMCatStatsDbl

struct DMCatStatsDbl::Impl : CategoryTable<RealKey, NumberIndex<RealKey>> {};

DMCatStatsDbl::DMCatStatsDbl() : impl_(std::make_unique<Impl>()) {}

DMCatStatsDbl::DMCatStatsDbl(const DMXMLWrapper& element) : DMCatStatsDbl() {
  if (!ReadCategories(element, *impl_)) *impl_ = Impl();
}

DMCatStatsDbl::DMCatStatsDbl(const DMCatStatsDbl& other)
    : DMCatStats(other), impl_(std::make_unique<Impl>(*other.impl_)) {}

DMCatStatsDbl& DMCatStatsDbl::operator=(const DMCatStatsDbl& other) {
  if (this != &other) *impl_ = *other.impl_;
  return *this;
}

DMCatStatsDbl::~DMCatStatsDbl() = default;

DMCatStatsDbl* DMCatStatsDbl::Clone() const { return new DMCatStatsDbl(*this); }

unsigned int DMCatStatsDbl::GetNCats() const { return impl_->Size(); }

double DMCatStatsDbl::GetCatWeight(unsigned int i) const {
  return i < impl_->Size() ? impl_->Weights()[i] : -1.0;
}

DMDatum DMCatStatsDbl::GetCatValDatum(unsigned int i) const {
  if (i >= impl_->Size()) return NullDatum(DMDatum::RealType);
  return DMDatum(impl_->Values()[i]);
}

double DMCatStatsDbl::GetSumWeights() const { return impl_->SumWeights(); }

void DMCatStatsDbl::ReorderCats(bool ascending) { impl_->Reorder(ascending); }

void DMCatStatsDbl::ClearSums() { impl_->ClearSums(); }

void DMCatStatsDbl::AddToTree(DMXMLWrapper& parent, DMXMLWrapper*& created) const {
  WriteCategories(*impl_, parent, created);
}

void DMCatStatsDbl::SetLastCategory(double value) { impl_->MoveToEnd(value); }

bool DMCatStatsDbl::Update(double value, double weight) { return impl_->Update(value, weight); }

bool DMCatStatsDbl::UpdateIfKnown(double value, double weight) {
  return impl_->UpdateIfKnown(value, weight);
}

void DMCatStatsDbl::Pool(const DMCatStatsDbl& other) { impl_->Pool(*other.impl_); }

unsigned int DMCatStatsDbl::GetCatNum(double value) const { return impl_->Find(value); }

double DMCatStatsDbl::GetCatVal(unsigned int i) const {
  return i < impl_->Size() ? impl_->Values()[i] : -1.0;
}

// ---------------------------------------------------------------------------
// DMCatStatsStr

struct DMCatStatsStr::Impl : CategoryTable<TextKey, TextIndex> {};

DMCatStatsStr::DMCatStatsStr() : impl_(std::make_unique<Impl>()) {}

DMCatStatsStr::DMCatStatsStr(const DMXMLWrapper& element) : DMCatStatsStr() {
  if (!ReadCategories(element, *impl_)) *impl_ = Impl();
}

DMCatStatsStr::DMCatStatsStr(const DMCatStatsStr& other)
    : DMCatStats(other), impl_(std::make_unique<Impl>(*other.impl_)) {}

DMCatStatsStr& DMCatStatsStr::operator=(const DMCatStatsStr& other) {
  if (this != &other) *impl_ = *other.impl_;
  return *this;
}

DMCatStatsStr::~DMCatStatsStr() = default;

DMCatStatsStr* DMCatStatsStr::Clone() const { return new DMCatStatsStr(*this); }

unsigned int DMCatStatsStr::GetNCats() const { return impl_->Size(); }

double DMCatStatsStr::GetCatWeight(unsigned int i) const {
  return i < impl_->Size() ? impl_->Weights()[i] : -1.0;
}

DMDatum DMCatStatsStr::GetCatValDatum(unsigned int i) const {
  if (i >= impl_->Size()) return NullDatum(DMDatum::StringType);
  return DMDatum(impl_->Values()[i]);
}

double DMCatStatsStr::GetSumWeights() const { return impl_->SumWeights(); }

void DMCatStatsStr::ReorderCats(bool ascending) { impl_->Reorder(ascending); }

void DMCatStatsStr::ClearSums() { impl_->ClearSums(); }

void DMCatStatsStr::AddToTree(DMXMLWrapper& parent, DMXMLWrapper*& created) const {
  WriteCategories(*impl_, parent, created);
}

void DMCatStatsStr::ReorderCats(DMCatStrLess& less) { impl_->ReorderBy(StrCatCompare(less)); }

void DMCatStatsStr::SetLastCategory(const std::string& value) { impl_->MoveToEnd(value); }

bool DMCatStatsStr::Update(const std::string& value, double weight) {
  return impl_->Update(value, weight);
}

bool DMCatStatsStr::UpdateIfKnown(const std::string& value, double weight) {
  return impl_->UpdateIfKnown(value, weight);
}

void DMCatStatsStr::Pool(const DMCatStatsStr& other) { impl_->Pool(*other.impl_); }

unsigned int DMCatStatsStr::GetCatNum(const std::string& value) const { return impl_->Find(value); }

const std::string& DMCatStatsStr::GetCatVal(unsigned int i) const {
  return i < impl_->Size() ? impl_->Values()[i] : gEmptyString;
}
