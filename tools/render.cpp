#include "render.h"

#include <iostream>
#include <memory>

#include "cellparse.h"
#include "toolio.h"

namespace dmtool {
namespace {

DMFormat::ValueUnits Resolve(RenderUnits units, DMFormat::FormatClass kind) {
  switch (units) {
    case RenderUnits::kNone:
      return DMFormat::UnitsNone;
    case RenderUnits::kSeconds:
      return DMFormat::UnitsSeconds;
    case RenderUnits::kDays:
      return DMFormat::UnitsDays;
    case RenderUnits::kAuto:
      break;
  }
  if (kind == DMFormat::Date) return DMFormat::UnitsDays;
  if (kind == DMFormat::Time) return DMFormat::UnitsSeconds;
  return DMFormat::UnitsNone;
}

// An ISO date, time or timestamp as a count of `units`.
bool ParseCalendar(const std::string& text, DMFormat::ValueUnits units, double& value) {
  long long whole = 0;
  double seconds = 0.0;
  if (ParseDate(text, whole)) {
    seconds = static_cast<double>(whole) * kSecondsPerDay;
  } else if (ParseTimestamp(text, seconds)) {
  } else if (ParseTime(text, whole)) {
    seconds = static_cast<double>(whole);
  } else {
    return false;
  }
  value = units == DMFormat::UnitsSeconds ? seconds : seconds / kSecondsPerDay;
  return true;
}

// The datum `text` stands for, in the type the format's class renders. A
// lone "." is the null value, as formats print it.
bool ToDatum(const std::string& text, DMFormat::FormatClass kind, DMFormat::ValueUnits units,
             DMDatum& datum) {
  if (kind == DMFormat::String) {
    datum = DMDatum(text);
    return true;
  }
  const bool real = kind == DMFormat::Date || kind == DMFormat::Time;
  if (text == ".") {
    datum.SetNull(real ? DMDatum::RealType : DMDatum::IntegerType);
    return true;
  }
  long long whole = 0;
  double number = 0.0;
  unsigned decimals = 0;
  if (!real && ParseInteger(text, whole)) {
    datum = DMDatum(whole);
    return true;
  }
  if (ParseReal(text, number, decimals) || (real && ParseCalendar(text, units, number))) {
    datum = DMDatum(number);
    return true;
  }
  return false;
}

}  // namespace

int RenderValue(const std::string& formatPath, const std::string& value, RenderUnits units) {
  std::string text;
  if (!ReadFile(formatPath, text)) return kExitUsage;
  DmExtension::DMXMLWrapper document;
  {
    StdoutToStderr guard;
    document.loadFromContents(text.c_str());
  }
  if (document.getElement() == nullptr) {
    std::cerr << "dmtool: " << formatPath << ": the text is not well-formed XML\n";
    return kExitRejected;
  }
  const std::unique_ptr<DMFormat> format(DMField::FormatFromDOMNode(document));
  if (format == nullptr) {
    std::string name;
    document.getName(name);
    std::cerr << "dmtool: " << formatPath << ": <" << name
              << "> is not a readable NumberFormat, DecoratedFormat, DateFormat, TimeFormat "
                 "or StringFormat element\n";
    return kExitRejected;
  }
  const DMFormat::ValueUnits resolved = Resolve(units, format->GetFormatClass());
  DMDatum datum;
  if (!ToDatum(value, format->GetFormatClass(), resolved, datum)) {
    std::cerr << "dmtool: \"" << value << "\" is not a value this format shows (a number"
              << (format->GetFormatClass() == DMFormat::Date ||
                          format->GetFormatClass() == DMFormat::Time
                      ? ", or an ISO date, time or timestamp"
                      : "")
              << ")\n";
    return kExitUsage;
  }
  std::string out;
  if (format->Format(datum, resolved, out) != DM_FORMAT_OK) {
    std::cerr << "dmtool: the format cannot show \"" << value << "\" in these units\n";
    return kExitRejected;
  }
  std::cout << out << '\n';
  return kExitOk;
}

}  // namespace dmtool
