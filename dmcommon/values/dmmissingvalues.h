#ifndef DMCOMMON_VALUES_DMMISSINGVALUES_H
#define DMCOMMON_VALUES_DMMISSINGVALUES_H

#include <vector>

#include "dmcommon/dmcommon_export.h"
#include "dmcommon/values/dmdatum.h"
#include "dmcommon/values/dmrange.h"
#include "dmcommon/values/dmvalue.h"

/// Which values of a field count as missing: those inside a range, those in a
/// list, nulls (unless switched off) and, when switched on, texts made only of
/// white space. Every test answers 1 yes, 0 no, 2 not comparable.
class DMCOMMON_EXPORT DMMissingValues {
 public:
  /// The empty range, no values, nulls missing, white space not missing.
  DMMissingValues();
  DMMissingValues(const DMRange& range, const std::vector<DMValue>& values, bool nullMissing,
                  bool whiteSpaceMissing);
  DMMissingValues(const DMMissingValues& other);
  DMMissingValues& operator=(const DMMissingValues& other);
  ~DMMissingValues();

  const DMRange& GetMissingRange() const;
  const std::vector<DMValue>& GetMissingValueList() const;
  bool IsNullMissing() const;
  bool IsWhiteSpMissing() const;

  /// False when a listed value is null or of another type than the list must
  /// have: the type of the range's lower limit when the range is not empty,
  /// else the type of the first listed value.
  bool IsValid() const;
  /// Whether `value` is missing: nulls by the null switch, then the list, then
  /// the range. Texts go to the text form.
  int CheckForMissing(const DMDatum& value) const;
  /// Whether `text` is missing: a null text by the null switch, then the list
  /// (the range is not consulted for texts), then, when switched on, the empty
  /// text and texts of Unicode white space only. Malformed UTF-8 is not white
  /// space.
  int CheckForMissing(const char* text) const;

 private:
  DMRange range;
  std::vector<DMValue> values;
  bool nullMissing;
  bool whiteSpaceMissing;
};

#endif  // DMCOMMON_VALUES_DMMISSINGVALUES_H
