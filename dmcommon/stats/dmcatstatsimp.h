#ifndef DMCOMMON_STATS_DMCATSTATSIMP_H
#define DMCOMMON_STATS_DMCATSTATSIMP_H

#include <memory>
#include <string>

#include "dmcommon/dmcommon_export.h"
#include "dmcommon/values/dmdatum.h"

namespace DmExtension {
class DMXMLWrapper;
}  // namespace DmExtension

class DMCatStatsDbl;

/// A caller's order of string categories, for `DMCatStatsStr::ReorderCats`.
class DMCOMMON_EXPORT DMCatStrLess {
 public:
  /// True when `left` sorts before `right`. Must be a strict weak order;
  /// categories it treats as equivalent end up in an unspecified relative
  /// order.
  virtual bool operator()(const std::string& left, const std::string& right) const = 0;
  virtual ~DMCatStrLess();

 protected:
  DMCatStrLess() = default;
  DMCatStrLess(const DMCatStrLess&) = default;
  DMCatStrLess& operator=(const DMCatStrLess&) = default;
};

/// A frequency table of a field's categories: for every distinct value seen,
/// the sum of the weights of the records that had it. A category's number is
/// its position in order of first appearance until `ReorderCats` or
/// `SetLastCategory` renumbers. No operation removes a category.
class DMCOMMON_EXPORT DMCatStats {
 public:
  virtual ~DMCatStats();
  /// A deep copy of the same concrete class, owned by the caller.
  virtual DMCatStats* Clone() const = 0;
  /// The number of categories.
  virtual unsigned int GetNCats() const = 0;
  /// The weight sum of category `i`; -1.0 when `i` is out of range.
  virtual double GetCatWeight(unsigned int i) const = 0;
  /// The value of category `i` as a datum of the table's type; out of range, a
  /// null datum of that type.
  virtual DMDatum GetCatValDatum(unsigned int i) const = 0;
  /// The sum of all category weights, added from the first category to the
  /// last.
  virtual double GetSumWeights() const = 0;
  /// Sorts the categories by value, ascending or descending, and renumbers
  /// them; weights move with their categories.
  virtual void ReorderCats(bool ascending) = 0;
  /// Sets every weight to 0.0 and keeps the categories.
  virtual void ClearSums() = 0;
  /// A new real-valued table whose categories are the category numbers 0.0,
  /// 1.0, ... with this table's weights; owned by the caller.
  virtual DMCatStatsDbl* CatNumVersion() const;
  /// Writes a `DiscreteStatistics` element with one `Category` child per
  /// category, in category-number order, and appends it to `parent`;
  /// `created` receives it. On failure `created` is null and `parent` is
  /// untouched.
  virtual void AddToTree(DmExtension::DMXMLWrapper& parent,
                         DmExtension::DMXMLWrapper*& created) const = 0;

 protected:
  DMCatStats() = default;
  DMCatStats(const DMCatStats&) = default;
  DMCatStats& operator=(const DMCatStats&) = default;
};

/// Categorical statistics of an integer field.
class DMCOMMON_EXPORT DMCatStatsInt : public DMCatStats {
 public:
  /// An empty table.
  DMCatStatsInt();
  /// Reads the `Category` children of a `DiscreteStatistics` element in
  /// document order. Each needs an integer category; its weight, when
  /// present, must be an ordinary number not below 0 (absent reads as 0.0).
  /// A repeated category or any invalid child gives an empty table.
  explicit DMCatStatsInt(const DmExtension::DMXMLWrapper& element);
  DMCatStatsInt(const DMCatStatsInt& other);
  /// A deep copy; assigning an object to itself changes nothing.
  DMCatStatsInt& operator=(const DMCatStatsInt& other);
  ~DMCatStatsInt() override;

  DMCatStatsInt* Clone() const override;
  unsigned int GetNCats() const override;
  double GetCatWeight(unsigned int i) const override;
  /// An integer datum; a null integer datum out of range.
  DMDatum GetCatValDatum(unsigned int i) const override;
  double GetSumWeights() const override;
  void ReorderCats(bool ascending) override;
  void ClearSums() override;
  void AddToTree(DmExtension::DMXMLWrapper& parent,
                 DmExtension::DMXMLWrapper*& created) const override;
  /// Moves the category `value` to the last place, keeping the order of the
  /// others, and renumbers. An unknown value changes nothing.
  virtual void SetLastCategory(long long value);

  /// Adds `weight` to the category `value`, creating it (as the last one)
  /// when new, even for a weight of 0.0. Returns false, changing nothing,
  /// when `weight` is negative or not a number.
  bool Update(long long value, double weight);
  /// As `Update`, but never creates a category: false for an unknown value.
  bool UpdateIfKnown(long long value, double weight);
  /// Adds the categories of `other` in ascending value order: known ones add
  /// up, new ones arrive at the end in ascending order. `other` is unchanged.
  void Pool(const DMCatStatsInt& other);
  /// The number of category `value`, or 0xFFFFFFFF when it is unknown.
  unsigned int GetCatNum(long long value) const;
  /// The value of category `i`, or -1 when `i` is out of range.
  long long GetCatVal(unsigned int i) const;

 private:
  struct Impl;
  // Never null: every constructor allocates it, and no move leaves it empty.
  std::unique_ptr<Impl> impl_;
};

/// Categorical statistics of a real-valued field. Values compare with `==`, so
/// 0.0 and -0.0 are one category, which keeps the sign it was created with.
/// Every not-a-number value falls into one category that sorts above all
/// numbers; the XML form cannot carry it.
class DMCOMMON_EXPORT DMCatStatsDbl : public DMCatStats {
 public:
  /// An empty table.
  DMCatStatsDbl();
  /// As `DMCatStatsInt`'s reader, with real categories: "INF", "-INF" and
  /// "NaN" are invalid. Categories are written with 15 significant digits, so
  /// two that agree in those read back as a repeated category.
  explicit DMCatStatsDbl(const DmExtension::DMXMLWrapper& element);
  DMCatStatsDbl(const DMCatStatsDbl& other);
  /// A deep copy; assigning an object to itself changes nothing.
  DMCatStatsDbl& operator=(const DMCatStatsDbl& other);
  ~DMCatStatsDbl() override;

  DMCatStatsDbl* Clone() const override;
  unsigned int GetNCats() const override;
  double GetCatWeight(unsigned int i) const override;
  /// A real datum; a null real datum out of range.
  DMDatum GetCatValDatum(unsigned int i) const override;
  double GetSumWeights() const override;
  void ReorderCats(bool ascending) override;
  void ClearSums() override;
  void AddToTree(DmExtension::DMXMLWrapper& parent,
                 DmExtension::DMXMLWrapper*& created) const override;
  /// As `DMCatStatsInt::SetLastCategory`; the value is found with `==`.
  virtual void SetLastCategory(double value);

  /// As `DMCatStatsInt::Update`.
  bool Update(double value, double weight);
  /// As `DMCatStatsInt::UpdateIfKnown`.
  bool UpdateIfKnown(double value, double weight);
  /// As `DMCatStatsInt::Pool`.
  void Pool(const DMCatStatsDbl& other);
  /// The number of category `value`, or 0xFFFFFFFF when it is unknown.
  unsigned int GetCatNum(double value) const;
  /// The value of category `i`, or -1.0 when `i` is out of range.
  double GetCatVal(unsigned int i) const;

 private:
  struct Impl;
  // Never null: every constructor allocates it, and no move leaves it empty.
  std::unique_ptr<Impl> impl_;
};

/// Categorical statistics of a string field. Categories are UTF-8 texts,
/// ordered byte by byte (a shorter prefix first) unless a caller's order is
/// given.
class DMCOMMON_EXPORT DMCatStatsStr : public DMCatStats {
 public:
  /// An empty table.
  DMCatStatsStr();
  /// As `DMCatStatsInt`'s reader, with text categories; an empty text is a
  /// category, an absent attribute is invalid.
  explicit DMCatStatsStr(const DmExtension::DMXMLWrapper& element);
  DMCatStatsStr(const DMCatStatsStr& other);
  /// A deep copy; assigning an object to itself changes nothing.
  DMCatStatsStr& operator=(const DMCatStatsStr& other);
  ~DMCatStatsStr() override;

  DMCatStatsStr* Clone() const override;
  unsigned int GetNCats() const override;
  double GetCatWeight(unsigned int i) const override;
  /// A string datum holding a copy of the text; a null string datum out of
  /// range.
  DMDatum GetCatValDatum(unsigned int i) const override;
  double GetSumWeights() const override;
  /// Sorts by byte-wise order, ascending or descending.
  void ReorderCats(bool ascending) override;
  void ClearSums() override;
  void AddToTree(DmExtension::DMXMLWrapper& parent,
                 DmExtension::DMXMLWrapper*& created) const override;
  /// Sorts the categories ascending by the caller's order `less` and
  /// renumbers them; weights move with their categories.
  virtual void ReorderCats(DMCatStrLess& less);
  /// As `DMCatStatsInt::SetLastCategory`.
  virtual void SetLastCategory(const std::string& value);

  /// As `DMCatStatsInt::Update`.
  bool Update(const std::string& value, double weight);
  /// As `DMCatStatsInt::UpdateIfKnown`.
  bool UpdateIfKnown(const std::string& value, double weight);
  /// As `DMCatStatsInt::Pool`.
  void Pool(const DMCatStatsStr& other);
  /// The number of category `value`, or 0xFFFFFFFF when it is unknown.
  unsigned int GetCatNum(const std::string& value) const;
  /// The text of category `i`, valid until the table changes; out of range,
  /// one shared empty text that lives as long as the library is loaded.
  const std::string& GetCatVal(unsigned int i) const;

 private:
  struct Impl;
  // Never null: every constructor allocates it, and no move leaves it empty.
  std::unique_ptr<Impl> impl_;
};

#endif  // DMCOMMON_STATS_DMCATSTATSIMP_H
