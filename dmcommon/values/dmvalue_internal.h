#ifndef DMCOMMON_VALUES_DMVALUE_INTERNAL_H
#define DMCOMMON_VALUES_DMVALUE_INTERNAL_H

#include "dmcommon/values/dmdatum.h"

namespace DmExtension {
class DMXMLWrapper;
}  // namespace DmExtension

/// What `GetDataValueAttr` found, in its `special` argument.
enum DMValueSpecial : int {
  kValueUnreadable = -1,
  kValueRead = 0,
  kValueNegativeInfinity = 1,
  kValuePositiveInfinity = 2,
  kValueNotANumber = 3,
  kValueAbsent = 4,
};

/// Reads `attribute` of `element` as a datum of `type` into `datum`, which is
/// made null first. Returns the element handle's result code; `special` tells
/// what was found (`DMValueSpecial`). Infinities and not-a-number leave the
/// datum null and are reported through `special` only.
[[nodiscard]] int GetDataValueAttr(const DmExtension::DMXMLWrapper& element, const char* attribute,
                                   DMDatum::DataType type, DMDatum& datum, int& special);

#endif  // DMCOMMON_VALUES_DMVALUE_INTERNAL_H
