#ifndef DMCOMMON_VALUES_DMRANGE_H
#define DMCOMMON_VALUES_DMRANGE_H

#include <utility>

#include "dmcommon/dmcommon_export.h"
#include "dmcommon/values/dmdatum.h"

namespace DmExtension {
class DMXMLWrapper;
}  // namespace DmExtension

/// A range of values between two inclusive limits. A null limit leaves that
/// side open. The default is the empty range from integer 1 to integer 0: a
/// field without a range has an empty one, which contains nothing and is
/// never written.
class DMCOMMON_EXPORT DMRange {
 public:
  /// The empty range 1 to 0.
  DMRange();
  /// A range from `lower` to `upper`. When both are set and `lower` is not
  /// below or equal to `upper` (for texts: their byte difference is positive),
  /// the range becomes the empty default.
  DMRange(const DMDatum& lower, const DMDatum& upper);
  /// Reads a range element's minimum and maximum as datums of `type`; "-INF",
  /// "INF", not-a-number and absent limits leave that side open. Texts are
  /// never read, and an unreadable limit or a minimum above the maximum gives
  /// the empty default.
  DMRange(const DmExtension::DMXMLWrapper& element, DMDatum::DataType type);
  DMRange(const DMRange& other);
  DMRange& operator=(const DMRange& other);
  ~DMRange();

  /// The lower and the upper limit, in that order.
  std::pair<DMDatum, DMDatum> GetLimits() const;
  /// True when both limits are null, or both are set and `lower` compares
  /// above `upper` by exactly 1.
  bool IsEmpty() const;
  /// 1 when `value` lies inside the range (limits included), 0 outside, 2
  /// when it cannot be compared (a null value, or a type that differs from a
  /// set limit's). Texts count as below or above a limit only when their
  /// first differing bytes differ by exactly 1.
  int CheckInRange(const DMDatum& value) const;
  /// Writes a `Range` element with the limits that are set and appends it to
  /// `parent`; `created` receives it. Nothing is written, and `created` is
  /// null, for an empty range or when writing fails. `unused` has no effect.
  void AddToTree(DmExtension::DMXMLWrapper& parent, DmExtension::DMXMLWrapper*& created,
                 bool unused = false) const;

 private:
  void MakeEmpty();

  DMDatum lower;
  DMDatum upper;
};

#endif  // DMCOMMON_VALUES_DMRANGE_H
