#include "profile.h"

#include <unistd.h>

#include <algorithm>
#include <cmath>
#include <exception>
#include <iostream>
#include <limits>
#include <optional>
#include <string_view>
#include <thread>
#include <utility>
#include <vector>

#include "columnprofile.h"
#include "csvreader.h"
#include "toolio.h"

namespace dmtool {
namespace {

namespace Elements = DmCppHelperV1::XMLElements;
namespace Attributes = DmCppHelperV1::XMLAttributes;
namespace Entities = DmCppHelperV1::XMLEntities;

using Storage = DMField::StorageType;
using Measure = DMField::FieldType;

// Digits after the point beyond this add nothing a reader can see in a table.
constexpr unsigned kMaxDecimals = 10;

// Feeds the cells of a CSV file to one profile per column.
class Profiler : public CsvHandler {
 public:
  explicit Profiler(std::size_t maxCategories) : maxCategories_(maxCategories) {}

  void OnHeader(const std::vector<std::string>& names) override {
    names_ = names;
    columns_.clear();
    columns_.reserve(names.size());
    for (std::size_t i = 0; i < names.size(); ++i) columns_.emplace_back(maxCategories_);
  }
  void OnCell(std::size_t column, std::string_view cell) override { columns_[column].Add(cell); }

  const std::vector<std::string>& Names() const { return names_; }
  const std::vector<ColumnProfile>& Columns() const { return columns_; }

  // Takes the profiles of the rows that follow this profiler's, read with
  // the same header.
  void Merge(Profiler&& later) {
    for (std::size_t i = 0; i < columns_.size(); ++i) {
      columns_[i].Merge(std::move(later.columns_[i]));
    }
  }

 private:
  std::size_t maxCategories_;
  std::vector<std::string> names_;
  std::vector<ColumnProfile> columns_;
};

// One category of a categorical field: its value as a datum and as text, and
// how many records had it.
struct Category {
  DMDatum datum;
  std::string text;
  long long count = 0;
};

// What the dataset-summary document says about one field.
struct FieldSummaryInput {
  std::string name;
  long long valid = 0;
  long long missing = 0;
  std::optional<std::pair<double, double>> extrema;
  double mean = 0.0;
  double variance = 0.0;
  std::vector<Category> categories;
};

Storage StorageOf(ColumnKind kind) {
  switch (kind) {
    case ColumnKind::kEmpty:
    case ColumnKind::kString:
      return Storage::String;
    case ColumnKind::kInteger:
      return Storage::Integer;
    case ColumnKind::kReal:
      return Storage::Real;
    case ColumnKind::kDate:
      return Storage::Date;
    case ColumnKind::kTime:
      return Storage::Time;
    case ColumnKind::kTimestamp:
      return Storage::Timestamp;
  }
  return Storage::String;
}

// The display format that shows a column's values as they were written.
std::unique_ptr<DMFormat> FormatFor(const ColumnProfile& column) {
  switch (column.Kind()) {
    case ColumnKind::kEmpty:
    case ColumnKind::kString:
      // Only a variable width renders text as it is.
      return std::make_unique<DMStringFormat>(-1, false);
    case ColumnKind::kInteger:
      return std::make_unique<DMNumberFormat>(DMNumberFormat::Standard, -1, 0);
    case ColumnKind::kReal:
      return std::make_unique<DMNumberFormat>(DMNumberFormat::Standard, -1,
                                              std::min(column.Decimals(), kMaxDecimals));
    case ColumnKind::kDate:
      return std::make_unique<DMDateFormat>(DMDateFormat::Y_M_D, 10, 0,
                                            DMFormat::UnitsSeparator::Dash, false, false);
    case ColumnKind::kTime:
      return std::make_unique<DMTimeFormat>(DMTimeFormat::H_M_S, 8, 0,
                                            DMFormat::UnitsSeparator::Colon, true);
    case ColumnKind::kTimestamp: {
      auto format = std::make_unique<DMDateFormat>(DMDateFormat::Y_M_D, 19, 0,
                                                   DMFormat::UnitsSeparator::Dash, false, false);
      const DMTimeFormat time(DMTimeFormat::H_M_S, 8, 0, DMFormat::UnitsSeparator::Colon, true);
      format->SetTimeFormat(&time);
      return format;
    }
  }
  return nullptr;
}

// An integer column's value, held as a double: beyond 2^53 the double may
// have rounded up to 2^63, which no long long holds, so the ends clamp.
long long IntegerOf(double value) {
  constexpr double kTop = 9223372036854775808.0;  // 2^63
  if (value >= kTop) return std::numeric_limits<long long>::max();
  if (value < -kTop) return std::numeric_limits<long long>::min();
  return static_cast<long long>(value);
}

// The categories of a column with at most two distinct values or a text
// column under the cap, in ascending order of value.
std::vector<Category> CategoriesOf(const ColumnProfile& column) {
  std::vector<Category> categories;
  if (column.Kind() == ColumnKind::kString) {
    for (const auto& [text, count] : column.Texts().Sorted()) {
      categories.push_back({DMDatum(std::string(text)), std::string(text), count});
    }
    return categories;
  }
  for (int i = 0; i < std::min(column.DistinctValues(), 2); ++i) {
    const auto [value, count] = column.Value(i);
    const DMDatum datum =
        column.Kind() == ColumnKind::kInteger ? DMDatum(IntegerOf(value)) : DMDatum(value);
    std::string text;
    datum.ToString(text, 0);
    categories.push_back({datum, std::move(text), count});
  }
  std::sort(categories.begin(), categories.end(),
            [](const Category& a, const Category& b) { return a.datum.Compare(b.datum) < 0; });
  return categories;
}

Measure MeasureOf(const ColumnProfile& column) {
  switch (column.Kind()) {
    case ColumnKind::kEmpty:
      return Measure::Typeless;
    case ColumnKind::kString:
      if (column.Texts().Overflowed()) return Measure::Typeless;
      return column.Texts().Size() == 2 ? Measure::Flag : Measure::Nominal;
    case ColumnKind::kInteger:
    case ColumnKind::kReal:
    case ColumnKind::kDate:
    case ColumnKind::kTime:
    case ColumnKind::kTimestamp:
      return column.DistinctValues() == 2 ? Measure::Flag : Measure::Continuous;
  }
  return Measure::Typeless;
}

// Categorical statistics of the class the storage asks for.
std::unique_ptr<DMCatStats> CategoryStats(Storage storage, const std::vector<Category>& cats) {
  switch (storage) {
    case Storage::Integer: {
      auto stats = std::make_unique<DMCatStatsInt>();
      for (const Category& c : cats) {
        stats->Update(c.datum.GetInteger(), static_cast<double>(c.count));
      }
      return stats;
    }
    case Storage::String: {
      auto stats = std::make_unique<DMCatStatsStr>();
      for (const Category& c : cats) stats->Update(c.text, static_cast<double>(c.count));
      return stats;
    }
    case Storage::Real:
    case Storage::Date:
    case Storage::Time:
    case Storage::Timestamp:
    case Storage::Unknown: {
      auto stats = std::make_unique<DMCatStatsDbl>();
      for (const Category& c : cats) stats->Update(c.datum.GetReal(), static_cast<double>(c.count));
      return stats;
    }
  }
  return nullptr;
}

// Category values; a flag field's larger value is its true value, so that
// 0/1, false/true, N/Y and no/yes come out the natural way round.
std::vector<DMValue> CategoryValues(const std::vector<Category>& categories, bool flag) {
  std::vector<DMValue> values;
  for (std::size_t i = 0; i < categories.size(); ++i) {
    const unsigned marker = !flag ? 0U : i + 1 == categories.size() ? 1U : 2U;
    values.emplace_back(categories[i].datum, "", marker);
  }
  return values;
}

// Adds the field of one column to `metadata` and fills `summary`. Returns
// false with `error` set when the library refuses the column.
[[nodiscard]] bool AddField(DMMetaData& metadata, std::size_t columnIndex, const std::string& name,
                            const ColumnProfile& column, FieldSummaryInput& summary,
                            std::string& error) {
  const std::string where = "column " + std::to_string(columnIndex + 1);
  if (name.empty()) {
    error = where + " has no name in the header";
    return false;
  }
  if (!DMMetaData::ValidateXMLChars(name)) {
    error = where + " has a control character in its name, which XML cannot carry";
    return false;
  }
  const Storage storage = StorageOf(column.Kind());
  const Measure measure = MeasureOf(column);
  DMField field(name, measure, storage, DMField::RoleType::Input);
  const std::unique_ptr<DMFormat> format = FormatFor(column);
  if (!field.SetPrivateFormat(format.get())) {
    error = where + ": the library refused the display format";
    return false;
  }
  if (storage == Storage::String && column.MaxLength() > 0) {
    field.SetMaxStringLength(static_cast<unsigned>(column.MaxLength()));
  }
  const int index = metadata.AppendField(field);
  if (index < 0) {
    error = where + " repeats the column name \"" + name + "\"";
    return false;
  }

  summary.name = name;
  summary.valid = column.Valid();
  summary.missing = column.Missing();
  const auto at = static_cast<unsigned>(index);
  if (measure == Measure::Continuous) {
    const DMContStats& stats = storage == Storage::Integer
                                   ? static_cast<const DMContStats&>(column.IntegerStats())
                                   : column.RealStats();
    if (!metadata.SetSumStats(at, &stats)) {
      error = where + ": the library refused the continuous statistics";
      return false;
    }
    summary.extrema = stats.GetExtrema();
    summary.mean = stats.GetMean();
    summary.variance = stats.GetVariance();
  } else if (measure == Measure::Flag || measure == Measure::Nominal) {
    summary.categories = CategoriesOf(column);
    for (const Category& category : summary.categories) {
      if (!DMMetaData::ValidateXMLChars(category.text)) {
        error = where + " has a value with a control character, which XML cannot carry";
        return false;
      }
    }
    const std::unique_ptr<DMCatStats> stats = CategoryStats(storage, summary.categories);
    if (!metadata.SetSumStats(at, stats.get())) {
      error = where + ": the library refused the categorical statistics";
      return false;
    }
    metadata.SetValues(at, CategoryValues(summary.categories, measure == Measure::Flag));
  }
  return true;
}

// Collects the first failure of a sequence of XML-layer calls.
class XmlSteps {
 public:
  void operator()(int rc) { ok_ = ok_ && rc == DmExtension::DM_XML_OK; }
  bool Ok() const { return ok_; }

 private:
  bool ok_ = true;
};

void AddDiscrete(DmExtension::DMXMLWrapper& summary, const FieldSummaryInput& input,
                 XmlSteps& step) {
  DmExtension::DMXMLWrapper* discrete = nullptr;
  DmExtension::DMXMLWrapper* distribution = nullptr;
  step(summary.addElement(Elements::DiscreteStatisticsExt, &discrete));
  if (!step.Ok()) return;
  step(discrete->addElement(Elements::DistributionSummary, &distribution));
  if (!step.Ok()) return;
  const Category* mode = &input.categories.front();
  long long cumulative = 0;
  for (const Category& category : input.categories) {
    DmExtension::DMXMLWrapper* element = nullptr;
    step(distribution->addElement(Elements::Category, &element));
    if (!step.Ok()) return;
    cumulative += category.count;
    const double valid = static_cast<double>(input.valid);
    step(element->addAttribute(Attributes::Value, category.text.c_str()));
    step(element->addAttribute(Attributes::Count, category.count));
    step(element->addAttribute(Attributes::percentage,
                               100.0 * static_cast<double>(category.count) / valid));
    step(element->addAttribute(Attributes::cumPercentage,
                               100.0 * static_cast<double>(cumulative) / valid));
    if (category.count > mode->count) mode = &category;
  }
  step(distribution->addAttribute(Attributes::discrete, Entities::True));
  step(distribution->addAttribute(Attributes::maxCatsExceeded, Entities::False));
  step(discrete->addAttribute(Attributes::mode, mode->text.c_str()));
}

void AddContinuous(DmExtension::DMXMLWrapper& summary, const FieldSummaryInput& input,
                   XmlSteps& step) {
  DmExtension::DMXMLWrapper* continuous = nullptr;
  step(summary.addElement(Elements::ContinuousStatisticsExt, &continuous));
  // A field without a distribution (all empty, or too many texts) still
  // needs one statistics child; an empty continuous one says "nothing known".
  if (!step.Ok() || !input.extrema) return;
  step(continuous->addAttribute(Attributes::Minimum, input.extrema->first));
  step(continuous->addAttribute(Attributes::Maximum, input.extrema->second));
  step(continuous->addAttribute(Attributes::Mean, input.mean));
  if (input.valid > 1) {
    step(continuous->addAttribute(Attributes::Variance, input.variance));
    step(continuous->addAttribute(Attributes::stdDev, std::sqrt(input.variance)));
  }
}

// The dataset-summary document of the profiled fields, as XML text.
[[nodiscard]] bool SummariesText(const std::vector<FieldSummaryInput>& fields, std::string& text) {
  DmExtension::DMXMLWrapper document;
  document.createNew(Elements::DatasetSummaries);
  XmlSteps step;
  DmExtension::DMXMLWrapper* overall = nullptr;
  DmExtension::DMXMLWrapper* counts = nullptr;
  DmExtension::DMXMLWrapper* list = nullptr;
  step(document.addElement(Elements::OverallSummaries, &overall));
  if (step.Ok()) step(overall->addElement(Elements::RecordCountsExt, &counts));
  if (step.Ok()) step(document.addElement(Elements::FieldSummaries, &list));
  for (const FieldSummaryInput& field : fields) {
    if (!step.Ok()) return false;
    DmExtension::DMXMLWrapper* summary = nullptr;
    step(list->addElement(Elements::FieldSummary, &summary));
    if (!step.Ok()) return false;
    if (field.categories.empty()) {
      AddContinuous(*summary, field, step);
    } else {
      AddDiscrete(*summary, field, step);
    }
    step(summary->addAttribute(Attributes::FieldName, field.name.c_str()));
    step(summary->addAttribute(Attributes::validCount, field.valid));
    step(summary->addAttribute(Attributes::unweightedValid, field.valid));
    step(summary->addAttribute(Attributes::missingCount, field.missing));
    step(summary->addAttribute(Attributes::unweightedMissing, field.missing));
  }
  if (!step.Ok()) return false;
  return document.doc2string(text) == DmExtension::DM_XML_OK && !text.empty();
}

// Profiles the file in `options.jobs` parts on as many threads into
// `profiler` and counts its rows into `read`. Returns false, with both
// unusable, when the file could not be cut or any part failed: reading it in
// one pass then reports the first problem with its true row number.
[[nodiscard]] bool ProfileInParts(const ProfileOptions& options, Profiler& profiler,
                                  CsvResult& read) {
  CsvSplit split;
  if (!SplitCsv(options.csvPath, options.jobs, split)) return false;
  const std::size_t parts = split.bounds.size() - 1;
  std::vector<Profiler> profilers;
  for (std::size_t i = 0; i < parts; ++i) profilers.emplace_back(options.maxCategories);
  std::vector<CsvResult> results(parts);
  // Each part has its own profiler, parser and file; the statistics and the
  // XML layer (thread-local name caches, one document per conversion) are
  // safe to use on distinct objects from several threads.
  const auto readPart = [&](std::size_t i) {
    try {
      results[i] = ReadCsvRows(options.csvPath, split.bounds[i], split.bounds[i + 1], split.header,
                               profilers[i]);
    } catch (const std::exception& error) {
      results[i].exitCode = kExitUsage;
      results[i].error = error.what();
    }
  };
  std::vector<std::thread> threads;
  for (std::size_t i = 1; i < parts; ++i) threads.emplace_back(readPart, i);
  readPart(0);
  for (std::thread& thread : threads) thread.join();
  for (const CsvResult& result : results) {
    if (result.exitCode != kExitOk) return false;
  }
  // In file order, so that kinds and first values merge as one pass meets
  // them.
  for (std::size_t i = 1; i < parts; ++i) {
    profilers[0].Merge(std::move(profilers[i]));
    results[0].dataRows += results[i].dataRows;
  }
  profiler = std::move(profilers[0]);
  read = std::move(results[0]);
  return true;
}

}  // namespace

int Profile(const ProfileOptions& options, std::unique_ptr<DMMetaData>& metadata) {
  Profiler profiler(options.maxCategories);
  CsvResult read;
  if (options.jobs <= 1 || !ProfileInParts(options, profiler, read)) {
    profiler = Profiler(options.maxCategories);
    read = ReadCsv(options.csvPath, profiler, options.progress && isatty(STDERR_FILENO) == 1);
  }
  if (read.exitCode != kExitOk) {
    std::cerr << "dmtool: " << read.error << '\n';
    return read.exitCode;
  }

  auto built = std::make_unique<DMMetaData>(nullptr);
  std::vector<FieldSummaryInput> summaries(profiler.Names().size());
  for (std::size_t i = 0; i < profiler.Names().size(); ++i) {
    std::string error;
    if (!AddField(*built, i, profiler.Names()[i], profiler.Columns()[i], summaries[i], error)) {
      std::cerr << "dmtool: " << options.csvPath << ": " << error << '\n';
      return kExitRejected;
    }
  }
  const auto records = static_cast<double>(read.dataRows);
  built->SetRecordCounts(records, records);

  std::string text;
  if (!SummariesText(summaries, text) || !built->setDatasetSummaries(text)) {
    std::cerr << "dmtool: " << options.csvPath
              << ": the library refused the dataset-summary document built for it\n";
    return kExitRejected;
  }
  metadata = std::move(built);
  return kExitOk;
}

}  // namespace dmtool
