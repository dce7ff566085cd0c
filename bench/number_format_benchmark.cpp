// Number rendering beside its anchors, in one run over the same values: the
// standard type against a bare snprintf("%*.*f"), and the scientific type
// with its kept formatter against an ICU formatter built for every value and
// one built once and reused. Compare the ratios, not single times.

#include <cmath>
#include <cstddef>
#include <cstdio>
#include <memory>
#include <random>
#include <string>
#include <vector>

#include <benchmark/benchmark.h>
#include <unicode/decimfmt.h>
#include <unicode/locid.h>
#include <unicode/unistr.h>
#include <unicode/utypes.h>

#include "dmcommon/formats/dmformat.h"
#include "dmcommon/formats/dmformatutils.h"
#include "dmcommon/formats/dmnumberformat.h"
#include "dmcommon/values/dmdatum.h"

namespace {

constexpr int kWidth = 12;
constexpr int kDecimals = 2;
// A power of two, so that stepping through the values is a mask.
constexpr std::size_t kValueCount = 1024;

// Values of both signs from 0.001 to 10^8, all shown without the exponent
// form in the width, with a fixed seed so that every run sees the same ones.
const std::vector<double>& Values() {
  static const std::vector<double> values = [] {
    std::mt19937_64 random(20240601);
    std::uniform_real_distribution<double> mantissa(1.0, 10.0);
    std::uniform_int_distribution<int> exponent(-3, 7);
    std::vector<double> made;
    made.reserve(kValueCount);
    for (std::size_t i = 0; i < kValueCount; ++i) {
      const double value = mantissa(random) * std::pow(10.0, exponent(random));
      made.push_back(i % 3 == 0 ? -value : value);
    }
    return made;
  }();
  return values;
}

const std::vector<DMDatum>& Datums() {
  static const std::vector<DMDatum> datums = [] {
    std::vector<DMDatum> made;
    made.reserve(kValueCount);
    for (const double value : Values()) made.emplace_back(value);
    return made;
  }();
  return datums;
}

std::size_t Next(std::size_t index) { return (index + 1) & (kValueCount - 1); }

void ConfigureScientific(icu::DecimalFormat& formatter) {
  formatter.setScientificNotation(true);
  formatter.setMinimumIntegerDigits(1);
  formatter.setMaximumIntegerDigits(1);
  formatter.setMaximumFractionDigits(kDecimals);
  formatter.setMinimumFractionDigits(kDecimals);
  formatter.setMinimumExponentDigits(3);
  formatter.setExponentSignAlwaysShown(true);
  formatter.setSignificantDigitsUsed(false);
}

// The anchor of the standard type: the conversion it starts from, alone.
void BM_BareSnprintf(benchmark::State& state) {
  const std::vector<double>& values = Values();
  char buffer[64];
  std::size_t index = 0;
  for (auto _ : state) {
    const int length =
        std::snprintf(buffer, sizeof(buffer), "%*.*f", kWidth, kDecimals, values[index]);
    benchmark::DoNotOptimize(length);
    benchmark::DoNotOptimize(buffer);
    index = Next(index);
  }
  state.SetItemsProcessed(state.iterations());
}
BENCHMARK(BM_BareSnprintf);

void RunStandard(benchmark::State& state, DMFormat::DecimalSymbol decimalSymbol,
                 DMFormat::GroupingSymbol groupingSymbol) {
  const std::vector<DMDatum>& datums = Datums();
  DMNumberFormat format(DMNumberFormat::Standard, kWidth, kDecimals);
  format.SetSeparators(decimalSymbol, groupingSymbol);
  std::string out;
  std::size_t index = 0;
  for (auto _ : state) {
    const int result = format.Format(datums[index], DMFormat::UnitsNone, out);
    benchmark::DoNotOptimize(result);
    benchmark::DoNotOptimize(out.data());
    index = Next(index);
  }
  state.SetItemsProcessed(state.iterations());
}

// Target: at most twice BM_BareSnprintf.
void BM_NumberFormatStandard(benchmark::State& state) {
  RunStandard(state, DMFormat::DecimalSymbol::Period, DMFormat::GroupingSymbol::Comma);
}
BENCHMARK(BM_NumberFormatStandard);

// For scale: the default locale's symbols, kept per thread.
void BM_NumberFormatStandardLocal(benchmark::State& state) {
  RunStandard(state, DMFormat::DecimalSymbol::Local, DMFormat::GroupingSymbol::Local);
}
BENCHMARK(BM_NumberFormatStandardLocal);

// The scientific type with the formatter its format object keeps.
void BM_NumberFormatScientific(benchmark::State& state) {
  const std::vector<DMDatum>& datums = Datums();
  const DMNumberFormat format(DMNumberFormat::Scientific, kWidth, kDecimals);
  std::string out;
  std::size_t index = 0;
  for (auto _ : state) {
    const int result = format.Format(datums[index], DMFormat::UnitsNone, out);
    benchmark::DoNotOptimize(result);
    benchmark::DoNotOptimize(out.data());
    index = Next(index);
  }
  state.SetItemsProcessed(state.iterations());
}
BENCHMARK(BM_NumberFormatScientific);

// The floor of the scientific type: one bare ICU formatter, built once.
void BM_DecimalFormatReused(benchmark::State& state) {
  const std::vector<double>& values = Values();
  const std::unique_ptr<icu::DecimalFormat> formatter(
      DMFormatUtils::MakeDecimalFormat(&icu::Locale::getUS()));
  if (formatter == nullptr) {
    state.SkipWithError("no formatter");
    return;
  }
  ConfigureScientific(*formatter);
  std::string out;
  std::size_t index = 0;
  for (auto _ : state) {
    icu::UnicodeString text;
    formatter->format(values[index], text);
    text.padLeading(kWidth, u' ');
    out.clear();
    text.toUTF8String(out);
    benchmark::DoNotOptimize(out.data());
    index = Next(index);
  }
  state.SetItemsProcessed(state.iterations());
}
BENCHMARK(BM_DecimalFormatReused);

// What the scientific type would cost without keeping its formatter.
void BM_DecimalFormatBuiltPerValue(benchmark::State& state) {
  const std::vector<double>& values = Values();
  std::string out;
  std::size_t index = 0;
  for (auto _ : state) {
    const std::unique_ptr<icu::DecimalFormat> formatter(
        DMFormatUtils::MakeDecimalFormat(&icu::Locale::getUS()));
    if (formatter == nullptr) {
      state.SkipWithError("no formatter");
      return;
    }
    ConfigureScientific(*formatter);
    icu::UnicodeString text;
    formatter->format(values[index], text);
    text.padLeading(kWidth, u' ');
    out.clear();
    text.toUTF8String(out);
    benchmark::DoNotOptimize(out.data());
    index = Next(index);
  }
  state.SetItemsProcessed(state.iterations());
}
BENCHMARK(BM_DecimalFormatBuiltPerValue);

}  // namespace

BENCHMARK_MAIN();
