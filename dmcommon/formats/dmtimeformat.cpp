#include "dmcommon/formats/dmtimeformat.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <utility>

#include <unicode/locid.h>
#include <unicode/unistr.h>

#include "dmcommon/formats/dmdatetime_internal.h"
#include "dmcommon/formats/dmformat_internal.h"
#include "dmcommon/formats/dmformatutils.h"
#include "dmcommon/values/dmdatum.h"
#include "dmcommon/values/dmenumdict.h"
#include "dmcommon/xml/dmxmlwrapper.h"
#include "dmcommon/xml/vocabulary/xmlvocabulary.h"

using DmExtension::DMXMLWrapper;
namespace XMLAttributes = DmCppHelperV1::XMLAttributes;
namespace XMLElements = DmCppHelperV1::XMLElements;
namespace XMLEntities = DmCppHelperV1::XMLEntities;

namespace {

constexpr DMEnumDictEntry gFmtTypeDict[] = {
    {DMTimeFormat::H_M, XMLEntities::H_M},
    {DMTimeFormat::H_M_S, XMLEntities::H_M_S},
    {DMTimeFormat::M_S, XMLEntities::M_S},
    {DMTimeFormat::D_H_M_S, XMLEntities::D_H_M_S},
    {0, nullptr},
};
static_assert(dmformat_internal::MapsBothWays(gFmtTypeDict));

// Milliseconds from 1970-01-01 back to Julian day 0 (2440588 days). Shifting a
// duration by it makes ICU's Julian day field count the whole elapsed days
// from 0, while hours, minutes and seconds stay those of the duration.
constexpr double kEpochJulianDayMillis = -210866803200000.0;

// ICU shows at most 13 fractional digits however many letters ask for more,
// so letters beyond this change nothing but the pattern's size; decimals read
// from a document could otherwise ask for gigabytes.
constexpr unsigned kMaxFractionLetters = 64;

// Only the duration counts days; the other types are times of day.
constexpr bool IsDuration(DMTimeFormat::FormatType type) { return type == DMTimeFormat::D_H_M_S; }

// Drops units from the end of a duration `width` cannot hold: the last
// fractional digits, then the fraction with its point, then the seconds,
// minutes and hours, each with the separator in front of it. Returns false
// when even the day number alone is too long.
[[nodiscard]] bool CutDuration(icu::UnicodeString& text, int width, unsigned decimals) {
  const std::int64_t length = text.length();
  const std::int64_t excess = length - width;
  const std::int64_t digits = decimals;
  std::int64_t cut = 0;
  if (digits > 0 && excess < digits) {
    cut = excess;
  } else if (digits > 0 && excess <= digits + 1) {
    cut = digits + 1;
  } else {
    // Intended: a unit is taken as three characters, two digits and one
    // separator, as the padded pattern gives; an unpadded duration may lose
    // more than it needs to.
    const std::int64_t fraction = digits > 0 ? digits + 1 : 0;
    if (fraction + 3 >= excess) {
      cut = fraction + 3;
    } else if (fraction + 6 >= excess) {
      cut = fraction + 6;
    } else if (fraction + 9 >= excess) {
      cut = fraction + 9;
    } else {
      return false;
    }
  }
  text.truncate(static_cast<std::int32_t>(std::max<std::int64_t>(length - cut, 0)));
  return true;
}

}  // namespace

DMTimeFormat::DMTimeFormat() : DMTimeFormat(H_M_S, 0, 0, UnitsSeparator::None, true) {}

DMTimeFormat::DMTimeFormat(FormatType type, int width, unsigned decimals, UnitsSeparator separator,
                           bool paddedHMS)
    : formatType_(type),
      width_(width),
      alignment_(Auto),
      decimals_(decimals),
      separator_(separator),
      paddedHMS_(paddedHMS) {}

DMTimeFormat::DMTimeFormat(const DMXMLWrapper& element) : DMTimeFormat() {
  dmformat_internal::TemporalAttrs read;
  bool padded = false;
  if (dmformat_internal::ReadTemporalAttrs(element, gFmtTypeDict, read) != DM_FORMAT_OK) return;
  if (dmformat_internal::ReadRequiredBool(element, XMLAttributes::PaddedHMS, padded) !=
      DM_FORMAT_OK) {
    return;
  }
  formatType_ = static_cast<FormatType>(read.type);
  width_ = read.width;
  alignment_ = read.alignment;
  name_ = std::move(read.name);
  decimals_ = read.decimals;
  separator_ = read.separator;
  paddedHMS_ = padded;
}

DMTimeFormat::DMTimeFormat(const DMTimeFormat& other) = default;

DMTimeFormat& DMTimeFormat::operator=(const DMTimeFormat& other) = default;

DMTimeFormat::~DMTimeFormat() = default;

DMTimeFormat* DMTimeFormat::Clone() const { return new DMTimeFormat(*this); }

void DMTimeFormat::SetName(const std::string& name) {
  if (width_ != 0) name_ = name;
}

int DMTimeFormat::GetWidth() const { return width_; }

DMFormat::Alignment DMTimeFormat::GetAlignment() const { return alignment_; }

const std::string& DMTimeFormat::GetName() const { return name_; }

int DMTimeFormat::Format(const DMDatum& datum, ValueUnits units, std::string& out) const {
  out.clear();
  if (datum.IsNull()) {
    out.push_back('.');
    return DM_FORMAT_OK;
  }
  if (units != UnitsSeconds || datum.GetType() != DMDatum::RealType || width_ == 0) {
    return DM_FORMAT_FAILED;
  }
  const bool duration = IsDuration(formatType_);
  double millis = datum.GetReal() * 1000.0;
  if (duration) millis += kEpochJulianDayMillis;
  dmdatetime_internal::FormatterCache& cache = dmdatetime_internal::ThreadFormatterCache();
  const dmdatetime_internal::PatternKey key{Time, formatType_, separator_, paddedHMS_, decimals_};
  const auto makePattern = [this] {
    bool unused = false;
    return MakePattern(unused);
  };
  icu::UnicodeString text;
  // Times have no names, and English digits keep them the same everywhere.
  if (dmdatetime_internal::FormatMillis(cache, key, icu::Locale::getUS(), makePattern, millis,
                                        text) != DM_FORMAT_OK) {
    return DM_FORMAT_FAILED;
  }
  if (width_ > 0) {
    if (duration && text.length() > width_ && !CutDuration(text, width_, decimals_)) {
      // Intended: the marker of a duration that cannot fit is the whole text,
      // not padded to the width.
      out = "*";
      return DM_FORMAT_OK;
    }
    text.padLeading(width_, u' ');
  }
  out = cache.Converter().ToUTF8(text);
  return DM_FORMAT_OK;
}

void DMTimeFormat::AddToTree(DMXMLWrapper& parent, DMXMLWrapper*& created) const {
  created = nullptr;
  // Intended: unlike the number, decorated and string formats, an invalid
  // time format is still written, with width -1, and so reads back as a
  // variable-width one.
  auto element = dmformat_internal::CreateElement(parent, XMLElements::TimeFormat);
  if (element == nullptr) return;
  const dmformat_internal::TemporalAttrs attrs{name_,       width_,    alignment_,
                                               formatType_, decimals_, separator_};
  const char* type = dmformat_internal::EntityOr(gFmtTypeDict, formatType_, XMLEntities::H_M_S);
  if (dmformat_internal::WriteTemporalAttrs(*element, attrs, type) != DM_FORMAT_OK) return;
  if (DMFormatUtils::SetBoolAttr(*element, XMLAttributes::PaddedHMS, paddedHMS_) != DM_FORMAT_OK) {
    return;
  }
  dmformat_internal::Publish(parent, std::move(element), created);
}

DMFormat::FormatClass DMTimeFormat::GetFormatClass() const { return Time; }

void DMTimeFormat::Reset(FormatType type, int width, unsigned decimals, UnitsSeparator separator,
                         bool paddedHMS) {
  if (width == 0) return;
  *this = DMTimeFormat(type, width, decimals, separator, paddedHMS);
}

void DMTimeFormat::SetAlignment(Alignment alignment) {
  if (width_ != 0) alignment_ = alignment;
}

DMTimeFormat::FormatType DMTimeFormat::GetFormatType() const {
  return width_ != 0 ? formatType_ : H_M_S;
}

void DMTimeFormat::SetWidthDecimals(int width, unsigned decimals) {
  if (width == 0 || width_ == 0) return;
  width_ = width;
  decimals_ = decimals;
}

unsigned DMTimeFormat::GetDecimals() const { return width_ != 0 ? decimals_ : 0; }

void DMTimeFormat::SetSeparator(UnitsSeparator separator) {
  if (width_ != 0) separator_ = separator;
}

void DMTimeFormat::GetSeparator(UnitsSeparator& separator) const {
  separator = width_ != 0 ? separator_ : UnitsSeparator::None;
}

bool DMTimeFormat::GetPaddedHMS() const { return width_ != 0 && paddedHMS_; }

std::string DMTimeFormat::MakePattern(bool& duration) const {
  duration = IsDuration(formatType_);
  std::string pattern;
  switch (formatType_) {
    case H_M:
      // Never fractional: seconds are not shown, so their fraction is not.
      SetTimePatt("Hm", 0, paddedHMS_, separator_, pattern);
      break;
    case H_M_S:
      SetTimePatt("Hms", decimals_, paddedHMS_, separator_, pattern);
      break;
    case M_S:
      SetTimePatt("ms", decimals_, paddedHMS_, separator_, pattern);
      break;
    case D_H_M_S:
      pattern = "g ";
      SetTimePatt("Hms", decimals_, paddedHMS_, separator_, pattern);
      break;
  }
  return pattern;
}

void DMTimeFormat::SetTimePatt(std::string_view letters, unsigned fractionDigits, bool padded,
                               UnitsSeparator separator, std::string& pattern) {
  const std::string between = DMFormatUtils::MakeSeparatorStr(separator);
  for (std::size_t i = 0; i < letters.size(); ++i) {
    if (i != 0) pattern += between;
    pattern.append(padded ? 2 : 1, letters[i]);
  }
  if (fractionDigits > 0) {
    pattern += '.';
    pattern.append(std::min(fractionDigits, kMaxFractionLetters), 'S');
  }
}
