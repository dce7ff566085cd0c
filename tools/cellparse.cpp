#include "cellparse.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <system_error>

namespace dmtool {
namespace {

bool IsDigit(char c) { return c >= '0' && c <= '9'; }

// Reads exactly `count` digits at `text[at]`.
bool ReadDigits(std::string_view text, std::size_t at, std::size_t count, int& value) {
  value = 0;
  for (std::size_t i = at; i < at + count; ++i) {
    if (!IsDigit(text[i])) return false;
    value = value * 10 + (text[i] - '0');
  }
  return true;
}

bool IsLeapYear(int year) { return (year % 4 == 0 && year % 100 != 0) || year % 400 == 0; }

int DaysInMonth(int year, int month) {
  static constexpr int kDays[] = {31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
  return month == 2 && IsLeapYear(year) ? 29 : kDays[month - 1];
}

// Days from 1970-01-01 to the given civil date (proleptic Gregorian), by
// counting whole 400-year eras, which keeps the arithmetic exact.
long long DaysFromCivil(int year, int month, int day) {
  const int y = month <= 2 ? year - 1 : year;
  const int era = (y >= 0 ? y : y - 399) / 400;
  const int yearOfEra = y - era * 400;
  const int dayOfYear = (153 * (month + (month > 2 ? -3 : 9)) + 2) / 5 + day - 1;
  const int dayOfEra = yearOfEra * 365 + yearOfEra / 4 - yearOfEra / 100 + dayOfYear;
  return static_cast<long long>(era) * 146097 + dayOfEra - 719468;
}

}  // namespace

bool ParseInteger(std::string_view text, long long& value) {
  const char* first = text.data();
  const char* last = first + text.size();
  if (first != last && *first == '+') ++first;
  if (first == last || (!IsDigit(*first) && *first != '-')) return false;
  const auto [end, error] = std::from_chars(first, last, value);
  return error == std::errc() && end == last;
}

bool ParseReal(std::string_view text, double& value, unsigned& decimals) {
  const char* first = text.data();
  const char* last = first + text.size();
  if (first != last && *first == '+') ++first;
  const char* digits = first != last && *first == '-' ? first + 1 : first;
  // from_chars also reads "inf" and "nan", which are no data values here.
  if (digits == last || !(IsDigit(*digits) || *digits == '.')) return false;
  const auto [end, error] = std::from_chars(first, last, value, std::chars_format::general);
  if (error != std::errc() || end != last || !std::isfinite(value)) return false;
  decimals = 0;
  if (const void* point = std::memchr(digits, '.', static_cast<std::size_t>(last - digits))) {
    for (const char* p = static_cast<const char*>(point) + 1; p != last && IsDigit(*p); ++p) {
      ++decimals;
    }
  }
  return true;
}

bool ParseDate(std::string_view text, long long& days) {
  if (text.size() != 10 || text[4] != '-' || text[7] != '-') return false;
  int year = 0;
  int month = 0;
  int day = 0;
  if (!ReadDigits(text, 0, 4, year) || !ReadDigits(text, 5, 2, month) ||
      !ReadDigits(text, 8, 2, day)) {
    return false;
  }
  if (month < 1 || month > 12 || day < 1 || day > DaysInMonth(year, month)) return false;
  days = DaysFromCivil(year, month, day);
  return true;
}

bool ParseTime(std::string_view text, long long& seconds) {
  if (text.size() != 8 || text[2] != ':' || text[5] != ':') return false;
  int hours = 0;
  int minutes = 0;
  int secs = 0;
  if (!ReadDigits(text, 0, 2, hours) || !ReadDigits(text, 3, 2, minutes) ||
      !ReadDigits(text, 6, 2, secs)) {
    return false;
  }
  if (hours > 23 || minutes > 59 || secs > 59) return false;
  seconds = hours * 3600LL + minutes * 60LL + secs;
  return true;
}

bool ParseTimestamp(std::string_view text, double& seconds) {
  if (text.size() != 19 || (text[10] != ' ' && text[10] != 'T')) return false;
  long long days = 0;
  long long time = 0;
  if (!ParseDate(text.substr(0, 10), days) || !ParseTime(text.substr(11), time)) return false;
  seconds = static_cast<double>(days) * kSecondsPerDay + static_cast<double>(time);
  return true;
}

int FirstForbiddenControl(std::string_view text) {
  const auto* p = reinterpret_cast<const unsigned char*>(text.data());
  const auto* end = p + text.size();
  while (p != end) {
    // Eight bytes at a time while none of them is below 0x20 (the classic
    // "has a byte less than n" test), which is almost every cell.
    while (end - p >= 8) {
      std::uint64_t block;
      std::memcpy(&block, p, sizeof block);
      constexpr std::uint64_t kOnes = 0x0101010101010101ULL;
      constexpr std::uint64_t kHighBits = 0x8080808080808080ULL;
      if (((block - kOnes * 0x20) & ~block & kHighBits) != 0) break;
      p += 8;
    }
    const auto* stop = std::min(end, p + 8);
    for (; p != stop; ++p) {
      if (*p < 0x20 && *p != '\t' && *p != '\n' && *p != '\r') return *p;
    }
  }
  return -1;
}

bool IsValidUtf8(std::string_view text) {
  const auto* p = reinterpret_cast<const unsigned char*>(text.data());
  const auto* end = p + text.size();
  while (p != end) {
    // Most cells are ASCII: skip eight such bytes at a time.
    while (end - p >= 8) {
      std::uint64_t block;
      std::memcpy(&block, p, sizeof block);
      if ((block & 0x8080808080808080ULL) != 0) break;
      p += 8;
    }
    if (p == end) break;
    const unsigned char lead = *p;
    if (lead < 0x80) {
      ++p;
      continue;
    }
    int length = 0;
    std::uint32_t code = 0;
    if (lead >= 0xC2 && lead <= 0xDF) {
      length = 2;
      code = lead & 0x1Fu;
    } else if (lead >= 0xE0 && lead <= 0xEF) {
      length = 3;
      code = lead & 0x0Fu;
    } else if (lead >= 0xF0 && lead <= 0xF4) {
      length = 4;
      code = lead & 0x07u;
    } else {
      return false;
    }
    if (end - p < length) return false;
    for (int i = 1; i < length; ++i) {
      if ((p[i] & 0xC0u) != 0x80u) return false;
      code = (code << 6) | (p[i] & 0x3Fu);
    }
    if ((length == 3 && (code < 0x800 || (code >= 0xD800 && code <= 0xDFFF))) ||
        (length == 4 && (code < 0x10000 || code > 0x10FFFF))) {
      return false;
    }
    p += length;
  }
  return true;
}

std::size_t DisplayWidth(std::string_view text) {
  std::size_t width = 0;
  for (const char c : text) {
    if ((static_cast<unsigned char>(c) & 0xC0u) != 0x80u) ++width;
  }
  return width;
}

}  // namespace dmtool
