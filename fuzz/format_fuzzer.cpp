// A format element read through `DMField::FormatFromDOMNode`: a format that
// comes back writes, reads back and writes the same text again, and renders
// values the same way as its clone and its read-back copy.

#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <limits>
#include <memory>
#include <string>
#include <vector>

#include "dmcommon/fields/dmfield.h"
#include "dmcommon/formats/dmformat.h"
#include "dmcommon/values/dmdatum.h"
#include "dmcommon/xml/dmxmlwrapper.h"
#include "fuzz/fuzz_support.h"

namespace {

constexpr char kTarget[] = "format";

std::unique_ptr<DMFormat> ReadFormat(const std::string& text) {
  DmExtension::DMXMLWrapper document;
  document.loadFromContents(text.c_str());
  return std::unique_ptr<DMFormat>(DMField::FormatFromDOMNode(document));
}

// Values of every datum kind, the edges of the number line, and one real
// taken from the input so that the fuzzer can steer it.
std::vector<DMDatum> Values(const uint8_t* data, size_t size) {
  std::vector<DMDatum> values;
  values.emplace_back();
  values.emplace_back(0LL);
  values.emplace_back(-1234567LL);
  values.emplace_back(std::numeric_limits<long long>::min());
  values.emplace_back(std::numeric_limits<long long>::max());
  values.emplace_back(1234.5678);
  values.emplace_back(-0.5);
  values.emplace_back(1e300);
  values.emplace_back(-1e-300);
  values.emplace_back(18693.0 * 86400.0 + 45296.0);
  values.emplace_back(-86400.0 * 1e6);
  values.emplace_back(std::numeric_limits<double>::infinity());
  values.emplace_back(std::numeric_limits<double>::quiet_NaN());
  values.emplace_back("caf\xC3\xA9 \xE2\x82\xAC");
  values.emplace_back("");
  DMDatum nullReal(0.0);
  nullReal.SetNull();
  values.push_back(nullReal);
  double steered = 0;
  if (size >= sizeof(steered)) {
    std::memcpy(&steered, data + size - sizeof(steered), sizeof(steered));
    values.emplace_back(steered);
    values.emplace_back(std::isfinite(steered) ? static_cast<long long>(std::fmod(steered, 1e18))
                                               : 0LL);
  }
  return values;
}

// What `format` makes of `datum`, checking the rendering contract.
std::string Rendered(const DMFormat& format, const DMDatum& datum, DMFormat::ValueUnits units) {
  std::string out = "stale";
  const int result = format.Format(datum, units, out);
  if (result != DM_FORMAT_OK) {
    dmfuzz::Require(out.empty(), kTarget, "a failed rendering left text behind: " + out);
    return "<failed>";
  }
  return out;
}

void RequireSameRendering(const DMFormat& format, const DMFormat& other,
                          const std::vector<DMDatum>& values, const char* what) {
  for (const DMDatum& datum : values) {
    for (DMFormat::ValueUnits units :
         {DMFormat::UnitsNone, DMFormat::UnitsSeconds, DMFormat::UnitsDays}) {
      const std::string expected = Rendered(format, datum, units);
      dmfuzz::Require(
          Rendered(other, datum, units) == expected, kTarget,
          std::string(what) + " renders a value otherwise than the format: " + expected);
    }
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  const std::unique_ptr<DMFormat> format = ReadFormat(dmfuzz::AsText(data, size));
  if (format == nullptr) return 0;
  dmfuzz::Require(format->GetWidth() != 0, kTarget, "a format of width 0 came back");

  const std::vector<DMDatum> values = Values(data, size);
  const std::unique_ptr<DMFormat> clone(format->Clone());
  dmfuzz::Require(clone->GetFormatClass() == format->GetFormatClass(), kTarget,
                  "a clone is of another class");
  RequireSameRendering(*format, *clone, values, "a clone");

  const std::string first = dmfuzz::Written(*format);
  dmfuzz::Require(!first.empty(), kTarget, "a format that was read writes nothing");
  dmfuzz::Require(dmfuzz::Written(*clone) == first, kTarget, "a clone writes other text");

  const std::unique_ptr<DMFormat> reread = ReadFormat(first);
  dmfuzz::Require(reread != nullptr, kTarget, "the written format does not read back:\n" + first);
  const std::string second = dmfuzz::Written(*reread);
  dmfuzz::Require(second == first, kTarget,
                  "write, read, write is no fixed point:\n" + first + "\n" + second);
  RequireSameRendering(*format, *reread, values, "the read-back copy");
  return 0;
}
