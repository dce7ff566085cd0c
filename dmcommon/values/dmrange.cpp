#include "dmcommon/values/dmrange.h"

#include <memory>
#include <string>

#include "dmcommon/values/dmvalue_internal.h"
#include "dmcommon/xml/dmxmlwrapper.h"
#include "dmcommon/xml/vocabulary/xmlvocabulary.h"

using DmExtension::DM_XML_OK;
using DmExtension::DMXMLWrapper;
namespace XMLAttributes = DmCppHelperV1::XMLAttributes;
namespace XMLElements = DmCppHelperV1::XMLElements;

namespace {

// Whether two set limits of the same type are in the wrong order. Integers
// and reals compare by value; texts only by a byte difference of exactly 1,
// like every text comparison of ranges.
bool Reversed(const DMDatum& lower, const DMDatum& upper) {
  switch (lower.GetType()) {
    case DMDatum::IntegerType:
      return lower.GetInteger() > upper.GetInteger();
    case DMDatum::RealType:
      return !(upper.GetReal() > lower.GetReal()) && lower.GetReal() != upper.GetReal();
    case DMDatum::StringType:
      return lower.Compare(upper) == 1;
  }
  return false;
}

// Reads one limit; a null datum leaves that side open.
[[nodiscard]] bool ReadLimit(const DMXMLWrapper& element, const char* attribute,
                             DMDatum::DataType type, DMDatum& limit) {
  int special = kValueUnreadable;
  return GetDataValueAttr(element, attribute, type, limit, special) == DM_XML_OK;
}

// Writes a set limit as attribute text; nulls are not written at all.
[[nodiscard]] bool WriteLimit(DMXMLWrapper& element, const char* attribute, const DMDatum& limit) {
  if (limit.IsNull()) return true;
  std::string text;
  if (!limit.ToString(text, 0)) return false;
  return element.addAttribute(attribute, text.c_str()) == DM_XML_OK;
}

// 0 when `value` lies below the lower limit (`side` -1) or above the upper
// one (`side` 1), 2 when the two cannot be compared, 1 otherwise.
int CheckLimit(const DMDatum& value, const DMDatum& limit, int side) {
  if (value.GetType() != limit.GetType()) return 2;
  switch (value.GetType()) {
    case DMDatum::IntegerType: {
      const long long v = value.GetInteger();
      const long long l = limit.GetInteger();
      return (side < 0 ? v < l : v > l) ? 0 : 1;
    }
    case DMDatum::RealType: {
      const double v = value.GetReal();
      const double l = limit.GetReal();
      return (side < 0 ? v < l : v > l) ? 0 : 1;
    }
    case DMDatum::StringType: {
      // Only a byte difference of exactly 1 counts as outside: intended, and
      // relied upon by callers that test texts against ranges.
      const int order = value.Compare(limit);
      if (order == side) return 0;
      return order == 2 ? 2 : 1;
    }
  }
  return 2;
}

}  // namespace

DMRange::DMRange() : lower(1LL), upper(0LL) {}

DMRange::DMRange(const DMDatum& lower_, const DMDatum& upper_) : lower(lower_), upper(upper_) {
  if (lower.IsNull() || upper.IsNull()) return;
  const int order = lower.Compare(upper);
  const bool ordered =
      lower.GetType() == DMDatum::StringType && upper.GetType() == DMDatum::StringType
          ? order <= 0
          : order == -1 || order == 0;
  if (!ordered) MakeEmpty();
}

DMRange::DMRange(const DMXMLWrapper& element, DMDatum::DataType type) : DMRange() {
  // Ranges of texts are never read; they stay empty.
  if (type == DMDatum::StringType) return;
  DMDatum min;
  DMDatum max;
  if (!ReadLimit(element, XMLAttributes::MinValue, type, min)) return;
  if (!ReadLimit(element, XMLAttributes::MaxValue, type, max)) return;
  if (!min.IsNull() && !max.IsNull() && Reversed(min, max)) return;
  lower = min;
  upper = max;
}

DMRange::DMRange(const DMRange& other) = default;

DMRange& DMRange::operator=(const DMRange& other) = default;

DMRange::~DMRange() = default;

void DMRange::MakeEmpty() {
  lower.SetInteger(1);
  upper.SetInteger(0);
}

std::pair<DMDatum, DMDatum> DMRange::GetLimits() const { return {lower, upper}; }

bool DMRange::IsEmpty() const {
  if (lower.IsNull() && upper.IsNull()) return true;
  return !lower.IsNull() && !upper.IsNull() && lower.Compare(upper) == 1;
}

int DMRange::CheckInRange(const DMDatum& value) const {
  if (value.IsNull()) return 2;
  if (IsEmpty()) return 0;
  if (!lower.IsNull()) {
    if (int answer = CheckLimit(value, lower, -1); answer != 1) return answer;
  }
  if (upper.IsNull()) return 1;
  return CheckLimit(value, upper, 1);
}

void DMRange::AddToTree(DMXMLWrapper& parent, DMXMLWrapper*& created, bool /*unused*/) const {
  created = nullptr;
  if (lower.IsNull() && upper.IsNull()) return;
  if (!lower.IsNull() && !upper.IsNull() && lower.Compare(upper) == 1) return;
  std::unique_ptr<DMXMLWrapper> element(parent.createFreeElement(XMLElements::Range));
  if (element == nullptr) return;
  if (!WriteLimit(*element, XMLAttributes::MinValue, lower)) return;
  if (!WriteLimit(*element, XMLAttributes::MaxValue, upper)) return;
  if (parent.addElement(element.get()) != DM_XML_OK) return;
  created = element.release();
}
