#include "dmcommon/values/dmdatum.h"

#include <cstdio>
#include <cstring>

#include "dmcommon/xml/dmxmlwrapper.h"

namespace {

// The byte difference at the first position where the texts differ, as the C
// library's strcmp computes it here. Computed in the library because
// sanitizer runtimes replace strcmp with one that answers only -1 and 1, and
// callers depend on the difference itself.
int ByteDifference(const char* left, const char* right) {
  const auto* l = reinterpret_cast<const unsigned char*>(left);
  const auto* r = reinterpret_cast<const unsigned char*>(right);
  while (*l != 0 && *l == *r) {
    ++l;
    ++r;
  }
  return static_cast<int>(*l) - static_cast<int>(*r);
}

}  // namespace

DMDatum::DMDatum() : isNull(true), type(IntegerType), size(0), value{0} {}

DMDatum::DMDatum(long long integer) : DMDatum() { SetInteger(integer); }

DMDatum::DMDatum(double real) : DMDatum() { SetReal(real); }

DMDatum::DMDatum(const char* text) : DMDatum() { SetString(text); }

DMDatum::DMDatum(const std::string& text) : DMDatum() { SetString(text.c_str()); }

DMDatum::DMDatum(const DMDatum& other) : DMDatum() { *this = other; }

DMDatum& DMDatum::operator=(const DMDatum& other) {
  if (this == &other) return *this;
  Clear();
  isNull = other.isNull;
  type = other.type;
  value = other.value;
  if (type == StringType && other.size != 0) {
    text_ = std::make_unique<char[]>(other.size);
    std::memcpy(text_.get(), other.text_.get(), other.size);
    size = other.size;
  }
  return *this;
}

DMDatum::~DMDatum() = default;

void DMDatum::Clear() {
  text_.reset();
  size = 0;
  value.integer = 0;
}

bool DMDatum::IsNull() const { return isNull; }

DMDatum::DataType DMDatum::GetType() const { return type; }

long long DMDatum::GetInteger() const { return !isNull && type == IntegerType ? value.integer : 0; }

double DMDatum::GetReal() const { return !isNull && type == RealType ? value.real : 0.0; }

const char* DMDatum::GetString() const {
  return !isNull && type == StringType ? text_.get() : nullptr;
}

unsigned long long DMDatum::GetSize() const { return size; }

void DMDatum::SetNull() {
  Clear();
  isNull = true;
}

void DMDatum::SetNull(DataType newType) {
  SetNull();
  type = newType;
}

void DMDatum::SetInteger(long long integer) {
  Clear();
  isNull = false;
  type = IntegerType;
  value.integer = integer;
}

void DMDatum::SetReal(double real) {
  Clear();
  isNull = false;
  type = RealType;
  value.real = real;
}

void DMDatum::SetString(const char* text) {
  if (text == nullptr) {
    SetNull(StringType);
    return;
  }
  // Copy before releasing the old text: `text` may point into it.
  const std::size_t bytes = std::strlen(text) + 1;
  auto copy = std::make_unique<char[]>(bytes);
  std::memcpy(copy.get(), text, bytes);
  Clear();
  isNull = false;
  type = StringType;
  text_ = std::move(copy);
  size = bytes;
}

int DMDatum::Compare(const DMDatum& other) const {
  if (isNull || other.isNull) return 2;
  if (type == IntegerType && other.type == IntegerType) {
    if (value.integer < other.value.integer) return -1;
    return value.integer == other.value.integer ? 0 : 1;
  }
  if (type == RealType && other.type == RealType) {
    // Not-a-number on either side compares as greater: only "less" is
    // answered by the comparison itself.
    if (value.real < other.value.real) return -1;
    return value.real != other.value.real ? 1 : 0;
  }
  if (type == StringType && other.type == StringType) {
    return ByteDifference(text_.get(), other.text_.get());
  }
  return 2;
}

bool DMDatum::ToString(std::string& text, int infinitySign) const {
  text.clear();
  if (isNull) {
    // Open range limits are written as infinities.
    if (infinitySign == 0) return false;
    text = infinitySign < 0 ? "-INF" : "INF";
    return true;
  }
  switch (type) {
    case IntegerType:
      return DmExtension::DMXMLWrapper::ToString(value.integer, text);
    case RealType:
      return DmExtension::DMXMLWrapper::ToString(value.real, text);
    case StringType:
      text = text_.get();
      return true;
  }
  return false;
}
