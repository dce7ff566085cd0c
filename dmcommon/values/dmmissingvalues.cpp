#include "dmcommon/values/dmmissingvalues.h"

#include <cstdint>
#include <cstring>

#include <unicode/uchar.h>
#include <unicode/utf8.h>

namespace {

// Whether `text` consists of white-space code points only. The text is
// decoded with ICU's UTF-8 rules, so a malformed or cut-off sequence is
// never white space.
bool AllWhiteSpace(const char* text) {
  const auto* bytes = reinterpret_cast<const uint8_t*>(text);
  const auto length = static_cast<int32_t>(std::strlen(text));
  int32_t offset = 0;
  while (offset < length) {
    UChar32 codePoint = 0;
    U8_NEXT(bytes, offset, length, codePoint);
    if (codePoint < 0 || !u_isspace(codePoint)) return false;
  }
  return true;
}

}  // namespace

DMMissingValues::DMMissingValues() : nullMissing(true), whiteSpaceMissing(false) {}

DMMissingValues::DMMissingValues(const DMRange& range_, const std::vector<DMValue>& values_,
                                 bool nullMissing_, bool whiteSpaceMissing_)
    : range(range_),
      values(values_),
      nullMissing(nullMissing_),
      whiteSpaceMissing(whiteSpaceMissing_) {}

DMMissingValues::DMMissingValues(const DMMissingValues& other) = default;

DMMissingValues& DMMissingValues::operator=(const DMMissingValues& other) = default;

DMMissingValues::~DMMissingValues() = default;

const DMRange& DMMissingValues::GetMissingRange() const { return range; }

const std::vector<DMValue>& DMMissingValues::GetMissingValueList() const { return values; }

bool DMMissingValues::IsNullMissing() const { return nullMissing; }

bool DMMissingValues::IsWhiteSpMissing() const { return whiteSpaceMissing; }

bool DMMissingValues::IsValid() const {
  if (values.empty()) return true;
  // A range that is not empty decides the type, through its lower limit even
  // when that side is open (null).
  const DMDatum::DataType required =
      !range.IsEmpty() ? range.GetLimits().first.GetType() : values.front().GetDatum().GetType();
  for (auto it = values.rbegin(); it != values.rend(); ++it) {
    const DMDatum& datum = it->GetDatum();
    if (datum.IsNull() || datum.GetType() != required) return false;
  }
  return true;
}

int DMMissingValues::CheckForMissing(const DMDatum& value) const {
  if (value.GetType() == DMDatum::StringType) return CheckForMissing(value.GetString());
  if (value.IsNull()) return nullMissing ? 1 : 0;
  const int index = DMValue::GetIndex(value, values);
  if (index >= 0) return 1;
  if (index == -2) return 2;
  return range.CheckInRange(value);
}

int DMMissingValues::CheckForMissing(const char* text) const {
  if (text == nullptr) return nullMissing ? 1 : 0;
  if (!values.empty()) {
    if (values.front().GetDatum().GetType() != DMDatum::StringType) return 2;
    if (DMValue::GetIndex(text, values) >= 0) return 1;
  }
  if (!whiteSpaceMissing) return 0;
  return AllWhiteSpace(text) ? 1 : 0;
}
