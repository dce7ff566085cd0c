// Statistics updates beside their anchors, in the same run:
//   - the continuous update per value against a plain loop summing x * f * c
//     over the same arrays;
//   - categorical updates at 10, 1,000 and 100,000 distinct categories against
//     a bare std::unordered_map count over the same keys.
// Each benchmark reports "per_value", the time per update; compare the
// ratios, not single times.

#include <cstddef>
#include <cstdint>
#include <map>
#include <random>
#include <string>
#include <unordered_map>
#include <vector>

#include <benchmark/benchmark.h>

#include "dmcommon/stats/dmcatstatsimp.h"
#include "dmcommon/stats/dmcontstats.h"

namespace {

// ---------------------------------------------------------------------------
// Continuous statistics

// Small enough to stay in the second-level cache, so that the loop measures
// the arithmetic and not memory.
constexpr std::size_t kContinuousValues = std::size_t{1} << 15;

struct WeightedSample {
  std::vector<double> values;
  std::vector<double> freqWeights;
  std::vector<double> caseWeights;
};

const WeightedSample& Sample() {
  static const WeightedSample sample = [] {
    std::mt19937_64 random(42);
    std::normal_distribution<double> values(250.0, 40.0);
    std::uniform_real_distribution<double> weights(0.5, 4.0);
    WeightedSample built;
    for (std::size_t i = 0; i < kContinuousValues; ++i) {
      built.values.push_back(values(random));
      built.freqWeights.push_back(weights(random));
      built.caseWeights.push_back(weights(random));
    }
    return built;
  }();
  return sample;
}

void SetPerValue(benchmark::State& state, std::size_t perIteration) {
  state.counters["per_value"] = benchmark::Counter(
      static_cast<double>(perIteration) * static_cast<double>(state.iterations()),
      benchmark::Counter::kIsRate | benchmark::Counter::kInvert);
}

void BM_PlainWeightedSum(benchmark::State& state) {
  const WeightedSample& sample = Sample();
  for (auto _ : state) {
    double sum = 0.0;
    for (std::size_t i = 0; i < kContinuousValues; ++i) {
      sum += sample.values[i] * sample.freqWeights[i] * sample.caseWeights[i];
    }
    benchmark::DoNotOptimize(sum);
  }
  SetPerValue(state, kContinuousValues);
}
BENCHMARK(BM_PlainWeightedSum);

void BM_ContStatsDblWeightedUpdate(benchmark::State& state) {
  const WeightedSample& sample = Sample();
  for (auto _ : state) {
    DMContStatsDbl stats;
    for (std::size_t i = 0; i < kContinuousValues; ++i) {
      stats.Update(sample.values[i], sample.freqWeights[i], sample.caseWeights[i]);
    }
    benchmark::DoNotOptimize(stats.GetMean());
    benchmark::DoNotOptimize(stats.GetVariance());
  }
  SetPerValue(state, kContinuousValues);
}
BENCHMARK(BM_ContStatsDblWeightedUpdate);

void BM_ContStatsDblUnweightedUpdate(benchmark::State& state) {
  const WeightedSample& sample = Sample();
  for (auto _ : state) {
    DMContStatsDbl stats;
    for (std::size_t i = 0; i < kContinuousValues; ++i) stats.Update(sample.values[i]);
    benchmark::DoNotOptimize(stats.GetMean());
    benchmark::DoNotOptimize(stats.GetVariance());
  }
  SetPerValue(state, kContinuousValues);
}
BENCHMARK(BM_ContStatsDblUnweightedUpdate);

void BM_ContStatsIntWeightedUpdate(benchmark::State& state) {
  const WeightedSample& sample = Sample();
  std::vector<long long> integers;
  integers.reserve(kContinuousValues);
  for (const double value : sample.values) integers.push_back(static_cast<long long>(value * 1e6));
  for (auto _ : state) {
    DMContStatsInt stats;
    for (std::size_t i = 0; i < kContinuousValues; ++i) {
      stats.Update(integers[i], sample.freqWeights[i], sample.caseWeights[i]);
    }
    benchmark::DoNotOptimize(stats.GetMean());
    benchmark::DoNotOptimize(stats.GetExactExtrema());
  }
  SetPerValue(state, kContinuousValues);
}
BENCHMARK(BM_ContStatsIntWeightedUpdate);

// ---------------------------------------------------------------------------
// Categorical statistics

constexpr std::size_t kCategoricalUpdates = 10'000'000;

// For one number of categories: the distinct integer and text categories, and
// the values of the updates in order, drawn uniformly from them. The values
// are laid out one after the other, as the records of a file arrive, so that
// fetching the next value costs what reading a record does and the benchmark
// measures the table, not its own random reads.
struct CategoricalKeys {
  std::size_t categories = 0;
  std::vector<long long> integers;
  std::vector<std::string> texts;
  std::vector<long long> integerVisits;
  std::vector<std::string> textVisits;
};

// One set at a time: the ten million texts take a few hundred megabytes.
const CategoricalKeys& Keys(std::size_t categories) {
  static CategoricalKeys keys;
  if (keys.categories == categories) return keys;
  keys = CategoricalKeys();
  keys.categories = categories;
  std::mt19937_64 random(categories);
  std::unordered_map<long long, bool> seen;
  while (keys.integers.size() < categories) {
    // Spread over a wide range, as record identifiers or codes are.
    const auto value = static_cast<long long>(random() >> 20);
    if (seen.emplace(value, true).second) keys.integers.push_back(value);
  }
  // Labels of 9 to 32 bytes: most fit the small-string buffer, some do not.
  static const char* const kWords[] = {"north",    "south-east",    "unknown",
                                       "category", "r\xC3\xA9gion", "segment"};
  for (std::size_t k = 0; k < categories; ++k) {
    keys.texts.push_back(std::string(kWords[k % 6]) + "-" + std::to_string(k * 7919 % 1000003) +
                         (k % 5 == 0 ? "-with-a-longer-tail" : ""));
  }
  std::uniform_int_distribution<std::size_t> pick(0, categories - 1);
  keys.integerVisits.reserve(kCategoricalUpdates);
  keys.textVisits.reserve(kCategoricalUpdates);
  for (std::size_t i = 0; i < kCategoricalUpdates; ++i) {
    const std::size_t visit = pick(random);
    keys.integerVisits.push_back(keys.integers[visit]);
    keys.textVisits.push_back(keys.texts[visit]);
  }
  return keys;
}

void BM_UnorderedMapIntegerCount(benchmark::State& state) {
  const CategoricalKeys& keys = Keys(static_cast<std::size_t>(state.range(0)));
  for (auto _ : state) {
    std::unordered_map<long long, double> counts;
    for (const long long value : keys.integerVisits) counts[value] += 1.0;
    benchmark::DoNotOptimize(counts.size());
  }
  SetPerValue(state, kCategoricalUpdates);
}

void BM_CatStatsIntUpdate(benchmark::State& state) {
  const CategoricalKeys& keys = Keys(static_cast<std::size_t>(state.range(0)));
  for (auto _ : state) {
    DMCatStatsInt stats;
    for (const long long value : keys.integerVisits) stats.Update(value, 1.0);
    benchmark::DoNotOptimize(stats.GetNCats());
  }
  SetPerValue(state, kCategoricalUpdates);
}

void BM_UnorderedMapTextCount(benchmark::State& state) {
  const CategoricalKeys& keys = Keys(static_cast<std::size_t>(state.range(0)));
  for (auto _ : state) {
    std::unordered_map<std::string, double> counts;
    for (const std::string& value : keys.textVisits) counts[value] += 1.0;
    benchmark::DoNotOptimize(counts.size());
  }
  SetPerValue(state, kCategoricalUpdates);
}

void BM_CatStatsStrUpdate(benchmark::State& state) {
  const CategoricalKeys& keys = Keys(static_cast<std::size_t>(state.range(0)));
  for (auto _ : state) {
    DMCatStatsStr stats;
    for (const std::string& value : keys.textVisits) stats.Update(value, 1.0);
    benchmark::DoNotOptimize(stats.GetNCats());
  }
  SetPerValue(state, kCategoricalUpdates);
}

// Registered one number of categories at a time, so that each set of keys is
// built once.
#define DM_CATEGORICAL_BENCHMARKS(categories)                                             \
  BENCHMARK(BM_UnorderedMapIntegerCount)->Arg(categories)->Unit(benchmark::kMillisecond); \
  BENCHMARK(BM_CatStatsIntUpdate)->Arg(categories)->Unit(benchmark::kMillisecond);        \
  BENCHMARK(BM_UnorderedMapTextCount)->Arg(categories)->Unit(benchmark::kMillisecond);    \
  BENCHMARK(BM_CatStatsStrUpdate)->Arg(categories)->Unit(benchmark::kMillisecond)

DM_CATEGORICAL_BENCHMARKS(10);
DM_CATEGORICAL_BENCHMARKS(1000);
DM_CATEGORICAL_BENCHMARKS(100000);

// Pooling walks the other table in ascending value order, which the hash
// index produces by sorting once per call.
void BM_CatStatsIntPool(benchmark::State& state) {
  const auto categories = static_cast<std::size_t>(state.range(0));
  std::mt19937_64 random(categories);
  DMCatStatsInt other;
  while (other.GetNCats() < categories) other.Update(static_cast<long long>(random() >> 20), 1.0);
  for (auto _ : state) {
    DMCatStatsInt stats;
    stats.Pool(other);
    benchmark::DoNotOptimize(stats.GetNCats());
  }
  SetPerValue(state, categories);
}

BENCHMARK(BM_CatStatsIntPool)->Arg(1000)->Arg(100000)->Unit(benchmark::kMillisecond);

}  // namespace

BENCHMARK_MAIN();
