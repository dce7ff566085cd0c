#include "dmcommon/formats/dmdateformat.h"

#include <cstddef>
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
#include "dmcommon/xml/dmxmliteratorwrapper.h"
#include "dmcommon/xml/dmxmlwrapper.h"
#include "dmcommon/xml/vocabulary/xmlvocabulary.h"

using DmExtension::DM_XML_OK;
using DmExtension::DMXMLIteratorWrapper;
using DmExtension::DMXMLWrapper;
namespace XMLAttributes = DmCppHelperV1::XMLAttributes;
namespace XMLElements = DmCppHelperV1::XMLElements;
namespace XMLEntities = DmCppHelperV1::XMLEntities;

namespace {

constexpr DMEnumDictEntry gFmtTypeDict[] = {
    {DMDateFormat::D_M_Y, XMLEntities::D_M_Y},
    {DMDateFormat::M_D_Y, XMLEntities::M_D_Y},
    {DMDateFormat::Y_M_D, XMLEntities::Y_M_D},
    {DMDateFormat::D_monthName_Y, XMLEntities::D_monthName_Y},
    {DMDateFormat::MonthName_Y, XMLEntities::MonthName_Y},
    {DMDateFormat::Y_dayNo, XMLEntities::Y_dayNo},
    {DMDateFormat::DayName, XMLEntities::DayName},
    {DMDateFormat::MonthName, XMLEntities::MonthName},
    {DMDateFormat::Q_Y, XMLEntities::Q_Y},
    {DMDateFormat::W_Y, XMLEntities::W_Y},
    {0, nullptr},
};
static_assert(dmformat_internal::MapsBothWays(gFmtTypeDict));

// Reads the first direct `TimeFormat` child, if any. No child is no failure;
// a child that reads as invalid fails the whole date format.
[[nodiscard]] int ReadTimeFormat(const DMXMLWrapper& element,
                                 std::unique_ptr<DMTimeFormat>& timeFormat) {
  // A handle of our own over the same element: the iterator it hands out
  // lives and dies with it, and the caller's handle stays untouched.
  DMXMLWrapper view(element.getElement());
  DMXMLIteratorWrapper* children = nullptr;
  if (view.getElementDirectIterator(XMLElements::TimeFormat, &children) != DM_XML_OK) {
    return DM_FORMAT_FAILED;
  }
  void* item = nullptr;
  if (children->nextItem(&item) != DM_XML_OK || item == nullptr) {
    timeFormat.reset();
    return DM_FORMAT_OK;
  }
  auto read = std::make_unique<DMTimeFormat>(*static_cast<DMXMLWrapper*>(item));
  if (read->GetWidth() == 0) return DM_FORMAT_FAILED;
  timeFormat = std::move(read);
  return DM_FORMAT_OK;
}

constexpr double kSecondsPerDay = 86400.0;

// Counts characters rather than UTF-16 units, so that a local name is never
// split inside a character.
void CutToWidth(icu::UnicodeString& text, int width) {
  if (text.countChar32() > width) text.truncate(text.moveIndex32(0, width));
}

}  // namespace

DMDateFormat::DMDateFormat() : DMDateFormat(Y_M_D, 0, 0, UnitsSeparator::None, false, false) {}

DMDateFormat::DMDateFormat(FormatType type, int width, unsigned decimals, UnitsSeparator separator,
                           bool twoDigitYear, bool namesLocal)
    : formatType_(type),
      width_(width),
      alignment_(Auto),
      decimals_(decimals),
      separator_(separator),
      twoDigitYear_(twoDigitYear),
      namesLocal_(namesLocal) {}

DMDateFormat::DMDateFormat(const DMXMLWrapper& element) : DMDateFormat() {
  dmformat_internal::TemporalAttrs read;
  bool twoDigitYear = false;
  bool namesLocal = false;
  std::unique_ptr<DMTimeFormat> timeFormat;
  if (dmformat_internal::ReadTemporalAttrs(element, gFmtTypeDict, read) != DM_FORMAT_OK) return;
  if (dmformat_internal::ReadRequiredBool(element, XMLAttributes::TwoDigitYear, twoDigitYear) !=
      DM_FORMAT_OK) {
    return;
  }
  if (dmformat_internal::ReadRequiredBool(element, XMLAttributes::NamesLocal, namesLocal) !=
      DM_FORMAT_OK) {
    return;
  }
  if (ReadTimeFormat(element, timeFormat) != DM_FORMAT_OK) return;
  formatType_ = static_cast<FormatType>(read.type);
  width_ = read.width;
  alignment_ = read.alignment;
  name_ = std::move(read.name);
  decimals_ = read.decimals;
  separator_ = read.separator;
  twoDigitYear_ = twoDigitYear;
  namesLocal_ = namesLocal;
  timeFormat_ = std::move(timeFormat);
}

DMDateFormat::DMDateFormat(const DMDateFormat& other)
    : DMFormat(other),
      formatType_(other.formatType_),
      width_(other.width_),
      alignment_(other.alignment_),
      name_(other.name_),
      decimals_(other.decimals_),
      separator_(other.separator_),
      twoDigitYear_(other.twoDigitYear_),
      namesLocal_(other.namesLocal_),
      timeFormat_(other.timeFormat_ != nullptr ? std::make_unique<DMTimeFormat>(*other.timeFormat_)
                                               : nullptr) {}

DMDateFormat& DMDateFormat::operator=(const DMDateFormat& other) {
  // Copy first, then take over: safe for self-assignment and leaves this
  // object unchanged if the copy throws.
  DMDateFormat copy(other);
  formatType_ = copy.formatType_;
  width_ = copy.width_;
  alignment_ = copy.alignment_;
  name_ = std::move(copy.name_);
  decimals_ = copy.decimals_;
  separator_ = copy.separator_;
  twoDigitYear_ = copy.twoDigitYear_;
  namesLocal_ = copy.namesLocal_;
  timeFormat_ = std::move(copy.timeFormat_);
  return *this;
}

DMDateFormat::~DMDateFormat() = default;

DMDateFormat* DMDateFormat::Clone() const { return new DMDateFormat(*this); }

void DMDateFormat::SetName(const std::string& name) {
  if (width_ != 0) name_ = name;
}

int DMDateFormat::GetWidth() const { return width_; }

DMFormat::Alignment DMDateFormat::GetAlignment() const { return alignment_; }

const std::string& DMDateFormat::GetName() const { return name_; }

int DMDateFormat::Format(const DMDatum& datum, ValueUnits units, std::string& out) const {
  out.clear();
  if (datum.IsNull()) {
    out.push_back('.');
    return DM_FORMAT_OK;
  }
  if (units == UnitsNone || datum.GetType() != DMDatum::RealType || width_ == 0) {
    return DM_FORMAT_FAILED;
  }
  const double seconds = units == UnitsSeconds ? datum.GetReal() : datum.GetReal() * kSecondsPerDay;
  // English names unless asked otherwise, so that stored output does not
  // change with the machine it was made on.
  const icu::Locale& names = namesLocal_ ? icu::Locale::getDefault() : icu::Locale::getUS();
  dmdatetime_internal::FormatterCache& cache = dmdatetime_internal::ThreadFormatterCache();
  const dmdatetime_internal::PatternKey key{Date, formatType_, separator_, twoDigitYear_, 0};
  icu::UnicodeString text;
  if (dmdatetime_internal::FormatMillis(
          cache, key, names, [this] { return MakePattern(); }, seconds * 1000.0, text) !=
      DM_FORMAT_OK) {
    return DM_FORMAT_FAILED;
  }
  // Only the names are cut: a width of 3 is how an abbreviated day or month
  // name is asked for. Numeric dates keep every digit whatever the width.
  if ((formatType_ == DayName || formatType_ == MonthName) && width_ > 0) {
    CutToWidth(text, width_);
  }
  std::string timeText;
  if (timeFormat_ != nullptr) {
    // Intended: a time part that cannot be shown leaves the date on its own
    // instead of failing it.
    static_cast<void>(timeFormat_->Format(DMDatum(seconds), UnitsSeconds, timeText));
  }
  out = cache.Converter().ToUTF8(text);
  if (!timeText.empty()) {
    out += ' ';
    out += timeText;
  }
  return DM_FORMAT_OK;
}

void DMDateFormat::AddToTree(DMXMLWrapper& parent, DMXMLWrapper*& created) const {
  created = nullptr;
  // Intended: unlike the number, decorated and string formats, an invalid
  // date format is still written, with width -1, and so reads back as a
  // variable-width one.
  auto element = dmformat_internal::CreateElement(parent, XMLElements::DateFormat);
  if (element == nullptr) return;
  const dmformat_internal::TemporalAttrs attrs{name_,       width_,    alignment_,
                                               formatType_, decimals_, separator_};
  const char* type = dmformat_internal::EntityOr(gFmtTypeDict, formatType_, XMLEntities::D_M_Y);
  if (dmformat_internal::WriteTemporalAttrs(*element, attrs, type) != DM_FORMAT_OK) return;
  if (DMFormatUtils::SetBoolAttr(*element, XMLAttributes::TwoDigitYear, twoDigitYear_) !=
      DM_FORMAT_OK) {
    return;
  }
  if (DMFormatUtils::SetBoolAttr(*element, XMLAttributes::NamesLocal, namesLocal_) !=
      DM_FORMAT_OK) {
    return;
  }
  if (timeFormat_ != nullptr) {
    DMXMLWrapper* time = nullptr;
    timeFormat_->AddToTree(*element, time);
    // A date without the time part it owns would read back as another
    // format, so nothing is written at all.
    if (time == nullptr) return;
  }
  dmformat_internal::Publish(parent, std::move(element), created);
}

DMFormat::FormatClass DMDateFormat::GetFormatClass() const { return Date; }

void DMDateFormat::Reset(FormatType type, int width, unsigned decimals, UnitsSeparator separator,
                         bool twoDigitYear, bool namesLocal) {
  if (width == 0) return;
  *this = DMDateFormat(type, width, decimals, separator, twoDigitYear, namesLocal);
}

void DMDateFormat::SetAlignment(Alignment alignment) {
  if (width_ != 0) alignment_ = alignment;
}

DMDateFormat::FormatType DMDateFormat::GetFormatType() const {
  return width_ != 0 ? formatType_ : Y_M_D;
}

void DMDateFormat::SetWidthDecimals(int width, unsigned decimals) {
  if (width == 0 || width_ == 0) return;
  width_ = width;
  decimals_ = decimals;
}

unsigned DMDateFormat::GetDecimals() const { return width_ != 0 ? decimals_ : 0; }

void DMDateFormat::SetSeparator(UnitsSeparator separator) {
  if (width_ != 0) separator_ = separator;
}

void DMDateFormat::GetSeparator(UnitsSeparator& separator) const {
  separator = width_ != 0 ? separator_ : UnitsSeparator::None;
}

bool DMDateFormat::GetTwoDigitYear() const { return width_ != 0 && twoDigitYear_; }

bool DMDateFormat::GetNamesLocal() const { return width_ != 0 && namesLocal_; }

void DMDateFormat::SetTimeFormat(const DMTimeFormat* timeFormat) {
  if (width_ == 0) return;
  if (timeFormat == nullptr) {
    timeFormat_.reset();
  } else if (timeFormat_ == nullptr) {
    timeFormat_ = std::make_unique<DMTimeFormat>(*timeFormat);
  } else {
    *timeFormat_ = *timeFormat;
  }
}

const DMTimeFormat* DMDateFormat::GetTimeFormat() const { return timeFormat_.get(); }

std::string DMDateFormat::MakePattern() const {
  std::string pattern;
  switch (formatType_) {
    case D_M_Y:
      SetDatePatt("dMy", false, twoDigitYear_, separator_, pattern);
      break;
    case M_D_Y:
      SetDatePatt("Mdy", false, twoDigitYear_, separator_, pattern);
      break;
    case Y_M_D:
      SetDatePatt("yMd", false, twoDigitYear_, separator_, pattern);
      break;
    case D_monthName_Y:
      SetDatePatt("dMy", true, twoDigitYear_, separator_, pattern);
      break;
    case MonthName_Y:
    // Intended: a quarter is shown as its month name and year, exactly like
    // MonthName_Y; no quarter field is used.
    case Q_Y:
      SetDatePatt("My", true, twoDigitYear_, separator_, pattern);
      break;
    case Y_dayNo:
      SetDatePatt("yD", false, twoDigitYear_, separator_, pattern);
      break;
    case DayName:
      pattern = "EEEE";
      break;
    case MonthName:
      pattern = "MMMM";
      break;
    case W_Y:
      pattern = twoDigitYear_ ? "ww 'WK' yy" : "ww 'WK' yyyy";
      break;
  }
  return pattern;
}

void DMDateFormat::SetDatePatt(std::string_view letters, bool monthName, bool twoDigitYear,
                               UnitsSeparator separator, std::string& pattern) {
  const std::string between = DMFormatUtils::MakeSeparatorStr(separator);
  for (std::size_t i = 0; i < letters.size(); ++i) {
    if (i != 0) pattern += between;
    const char letter = letters[i];
    switch (letter) {
      case 'y':
        pattern.append(twoDigitYear ? 2 : 4, letter);
        break;
      case 'M':
        pattern.append(monthName ? 3 : 2, letter);
        break;
      case 'D':
        pattern.append(3, letter);
        break;
      case 'd':
        pattern.append(2, letter);
        break;
      default:
        pattern += letter;
        break;
    }
  }
}
