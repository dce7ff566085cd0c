#include "table.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <memory>
#include <numeric>
#include <vector>

#include "cellparse.h"

namespace dmtool {
namespace {

using Storage = DMField::StorageType;
using Measure = DMField::FieldType;

// Categories listed per categorical field; the rest are only counted.
constexpr unsigned kTopCategories = 3;
// Mean and standard deviation carry this many more decimals than the values.
constexpr unsigned kExtraStatDecimals = 2;
// Cells wider than this are cut, so that one long label cannot widen the
// whole table.
constexpr std::size_t kMaxCellWidth = 64;

// A plain text table: a header, rows, and per column whether it aligns right.
class TextTable {
 public:
  struct Column {
    const char* title;
    bool right;
  };

  explicit TextTable(std::vector<Column> columns) : columns_(std::move(columns)) {}

  void AddRow(std::vector<std::string> cells) {
    for (std::string& cell : cells) cell = Cut(std::move(cell));
    rows_.push_back(std::move(cells));
  }

  void Print(std::ostream& out) const {
    std::vector<std::size_t> widths(columns_.size());
    for (std::size_t c = 0; c < columns_.size(); ++c) {
      widths[c] = DisplayWidth(columns_[c].title);
      for (const auto& row : rows_) widths[c] = std::max(widths[c], DisplayWidth(row[c]));
    }
    std::vector<std::string> titles;
    titles.reserve(columns_.size());
    for (const Column& column : columns_) titles.emplace_back(column.title);
    PrintRow(out, titles, widths);
    std::vector<std::string> rules;
    rules.reserve(widths.size());
    for (const std::size_t width : widths) rules.emplace_back(width, '-');
    PrintRow(out, rules, widths);
    for (const auto& row : rows_) PrintRow(out, row, widths);
  }

 private:
  static std::string Cut(std::string cell) {
    if (DisplayWidth(cell) <= kMaxCellWidth) return cell;
    std::size_t kept = 0;
    std::size_t bytes = 0;
    while (bytes < cell.size() && kept < kMaxCellWidth - 1) {
      ++bytes;
      while (bytes < cell.size() && (static_cast<unsigned char>(cell[bytes]) & 0xC0u) == 0x80u) {
        ++bytes;
      }
      ++kept;
    }
    cell.resize(bytes);
    return cell + "\xE2\x80\xA6";  // the ellipsis
  }

  void PrintRow(std::ostream& out, const std::vector<std::string>& cells,
                const std::vector<std::size_t>& widths) const {
    std::string line;
    for (std::size_t c = 0; c < cells.size(); ++c) {
      const std::string padding(widths[c] - DisplayWidth(cells[c]), ' ');
      if (c > 0) line += "  ";
      line += columns_[c].right ? padding + cells[c] : cells[c] + padding;
    }
    while (!line.empty() && line.back() == ' ') line.pop_back();
    out << line << '\n';
  }

  std::vector<Column> columns_;
  std::vector<std::vector<std::string>> rows_;
};

std::string Trim(const std::string& text) {
  const auto first = text.find_first_not_of(' ');
  if (first == std::string::npos) return "";
  return text.substr(first, text.find_last_not_of(' ') - first + 1);
}

std::string Plain(double value) {
  char buffer[32];
  std::snprintf(buffer, sizeof buffer, "%g", value);
  return buffer;
}

// `datum` through `format`, without the padding of a fixed width; plain
// digits when there is no format or it cannot show the datum.
std::string Render(const DMFormat* format, const DMDatum& datum, DMFormat::ValueUnits units) {
  std::string text;
  if (format != nullptr && format->Format(datum, units, text) == DM_FORMAT_OK) return Trim(text);
  if (datum.GetType() == DMDatum::StringType && datum.GetString() != nullptr) {
    return datum.GetString();
  }
  return datum.GetType() == DMDatum::IntegerType ? std::to_string(datum.GetInteger())
                                                 : Plain(datum.GetReal());
}

// A copy of a number format with more decimals, for means and standard
// deviations, whose precision the values' own decimals understate. Variable
// width, so the extra digits are never traded for an exponent. Null for the
// other kinds, which show statistics as they show values.
std::unique_ptr<DMFormat> StatisticsFormat(const DMFormat* format) {
  if (format == nullptr) return nullptr;
  if (format->GetFormatClass() == DMFormat::Number) {
    std::unique_ptr<DMNumberFormat> copy(static_cast<const DMNumberFormat*>(format)->Clone());
    copy->SetWidthDecimals(-1, copy->GetDecimals() + kExtraStatDecimals);
    return copy;
  }
  if (format->GetFormatClass() == DMFormat::Decorated) {
    std::unique_ptr<DMDecoratedFormat> copy(static_cast<const DMDecoratedFormat*>(format)->Clone());
    copy->SetWidthDecimals(-1, copy->GetDecimals() + kExtraStatDecimals);
    return copy;
  }
  return nullptr;
}

// The standard deviation in a form that suits the storage: dates and
// timestamps spread over days, times over a clock's hours.
std::string RenderSpread(const DMFormat* format, const DMFormat* statsFormat, Storage storage,
                         double deviation) {
  const DMNumberFormat days(DMNumberFormat::Standard, -1, 1);
  switch (storage) {
    case Storage::Date:
      return Render(&days, DMDatum(deviation), DMFormat::UnitsNone) + " days";
    case Storage::Timestamp:
      return Render(&days, DMDatum(deviation / kSecondsPerDay), DMFormat::UnitsNone) + " days";
    case Storage::Time:
      return Render(format, DMDatum(deviation), DMFormat::UnitsSeconds);
    case Storage::Integer:
    case Storage::Real:
    case Storage::String:
    case Storage::Unknown:
      return Render(statsFormat != nullptr ? statsFormat : format, DMDatum(deviation),
                    DMFormat::UnitsNone);
  }
  return Plain(deviation);
}

const char* EntityText(const DMEnumDictEntry* table, unsigned value) {
  const char* text = DMEnumDict::TextOfValue(table, value);
  return text != nullptr ? text : "?";
}

std::string Count(double count) {
  if (count < 0) return "-";
  if (count == std::floor(count) && count < 1e15)
    return std::to_string(static_cast<long long>(count));
  return Plain(count);
}

// The field summary of the dataset-summary document named like the field.
const DMFieldSummary* SummaryOf(const DMMetaData& metadata, const std::string& name) {
  const DMDatasetSummaries* summaries = metadata.getDatasetSummaries();
  if (summaries == nullptr || summaries->getFieldSummaries() == nullptr) return nullptr;
  const DMFieldSummaries& list = *summaries->getFieldSummaries();
  for (std::size_t i = 0; i < list.getFieldSummaryCount(); ++i) {
    const DMFieldSummary* summary = list.getFieldSummary(i);
    if (summary != nullptr && summary->getFieldName() == name) return summary;
  }
  return nullptr;
}

// Valid and missing counts: from the field's summary when the document has
// one, else from its statistics and the record count.
void ValidAndMissing(const DMMetaData& metadata, const DMField& field, std::string& valid,
                     std::string& missing) {
  if (const DMFieldSummary* summary = SummaryOf(metadata, field.GetName())) {
    const long long v = summary->getUnweightedValid() >= 0 ? summary->getUnweightedValid()
                                                           : summary->getValidCount();
    const long long m = summary->getUnweightedMissing() >= 0 ? summary->getUnweightedMissing()
                                                             : summary->getMissingCount();
    valid = Count(static_cast<double>(v));
    missing = Count(static_cast<double>(m));
    return;
  }
  double weight = -1;
  if (field.GetContStats() != nullptr) weight = field.GetContStats()->GetSumFreqWeights();
  if (field.GetCatStats() != nullptr) weight = field.GetCatStats()->GetSumWeights();
  const double records = metadata.GetRecordCount(false);
  valid = Count(weight);
  missing = weight >= 0 && records >= weight ? Count(records - weight) : "-";
}

std::string TopCategories(const DMField& field, const DMFormat* format) {
  const DMCatStats* stats = field.GetCatStats();
  const DMFormat::ValueUnits units = UnitsOf(field.GetStorage());
  std::string text;
  if (stats == nullptr) {
    // Category values without counts still say what the field may hold.
    for (const DMValue& value : field.GetValues()) {
      if (!text.empty()) text += ", ";
      text += Render(format, value.GetDatum(), units);
    }
    return text;
  }
  std::vector<unsigned> order(stats->GetNCats());
  std::iota(order.begin(), order.end(), 0U);
  std::stable_sort(order.begin(), order.end(), [stats](unsigned a, unsigned b) {
    return stats->GetCatWeight(a) > stats->GetCatWeight(b);
  });
  for (std::size_t i = 0; i < order.size() && i < kTopCategories; ++i) {
    const DMDatum datum = stats->GetCatValDatum(order[i]);
    if (!text.empty()) text += ", ";
    text += Render(format, datum, units);
    if (const int label = DMValue::GetIndex(datum, field.GetValueLabels()); label >= 0) {
      text += " \"" + field.GetValueLabels()[static_cast<std::size_t>(label)].GetLabel() + "\"";
    }
    text += ": " + Count(stats->GetCatWeight(order[i]));
  }
  if (order.size() > kTopCategories) {
    text += ", +" + std::to_string(order.size() - kTopCategories) + " more";
  }
  return text;
}

std::string NumberPattern(unsigned decimals, DMFormat::GroupingSymbol grouping) {
  std::string pattern = grouping == DMFormat::GroupingSymbol::None ? "0" : "#,##0";
  if (decimals > 0) pattern += "." + std::string(decimals, '0');
  return pattern;
}

}  // namespace

const DMFormat* EffectiveFormat(const DMMetaData& metadata, const DMField& field,
                                std::string& source) {
  if (const DMFormat* own = field.GetPrivateFormat()) {
    source = "private";
    return own;
  }
  if (const std::string name = field.GetFormatReference(); !name.empty()) {
    source = "shared";
    if (const DMFormat* shared = metadata.GetSharedFormat(name)) return shared;
  }
  source = "default";
  return metadata.GetDefaultFormat(field.GetStorage());
}

DMFormat::ValueUnits UnitsOf(Storage storage) {
  switch (storage) {
    case Storage::Date:
      return DMFormat::UnitsDays;
    case Storage::Time:
    case Storage::Timestamp:
      return DMFormat::UnitsSeconds;
    case Storage::Unknown:
    case Storage::Integer:
    case Storage::Real:
    case Storage::String:
      return DMFormat::UnitsNone;
  }
  return DMFormat::UnitsNone;
}

std::string DescribeFormat(const DMFormat& format) {
  switch (format.GetFormatClass()) {
    case DMFormat::Number: {
      const auto& number = static_cast<const DMNumberFormat&>(format);
      DMFormat::DecimalSymbol decimal{};
      DMFormat::GroupingSymbol grouping{};
      number.GetSeparators(decimal, grouping);
      switch (number.GetFormatType()) {
        case DMNumberFormat::Standard:
          return "number " + NumberPattern(number.GetDecimals(), grouping);
        case DMNumberFormat::Scientific:
          return "number " + NumberPattern(number.GetDecimals(), DMFormat::GroupingSymbol::None) +
                 "E+000";
        case DMNumberFormat::General:
          return "number general";
        case DMNumberFormat::Restricted:
          return "number restricted";
        case DMNumberFormat::IntBin:
        case DMNumberFormat::PosIntBin:
        case DMNumberFormat::PosIntBinHex:
        case DMNumberFormat::RealBin:
        case DMNumberFormat::PosRealBin:
          return "number binary";
        case DMNumberFormat::Zoned:
          return "number zoned";
        case DMNumberFormat::Packed:
        case DMNumberFormat::UnsignedPacked:
          return "number packed";
      }
      return "number";
    }
    case DMFormat::Decorated: {
      const auto& decorated = static_cast<const DMDecoratedFormat&>(format);
      DMFormat::DecimalSymbol decimal{};
      DMFormat::GroupingSymbol grouping{};
      decorated.GetSeparators(decimal, grouping);
      std::string prefix;
      std::string suffix;
      decorated.GetAffixes(prefix, suffix);
      return std::string(decorated.GetFormatType() == DMDecoratedFormat::Percentage ? "percent "
                                                                                    : "currency ") +
             prefix + NumberPattern(decorated.GetDecimals(), grouping) + suffix;
    }
    case DMFormat::Date: {
      const auto& date = static_cast<const DMDateFormat&>(format);
      std::string text = "date " + date.MakePattern();
      if (const DMTimeFormat* time = date.GetTimeFormat()) {
        bool duration = false;
        text += " " + time->MakePattern(duration);
      }
      return text;
    }
    case DMFormat::Time: {
      bool duration = false;
      return "time " + static_cast<const DMTimeFormat&>(format).MakePattern(duration);
    }
    case DMFormat::String: {
      const auto& string = static_cast<const DMStringFormat&>(format);
      std::string text = string.GetHexRep() ? "text hex" : "text";
      if (string.GetWidth() > 0) text += " (" + std::to_string(string.GetWidth()) + ")";
      return text;
    }
  }
  return "?";
}

void PrintDictionary(const DMMetaData& metadata, std::ostream& out) {
  out << metadata.FieldCount() << (metadata.FieldCount() == 1 ? " field" : " fields");
  if (const double records = metadata.GetRecordCount(false); records >= 0) {
    out << ", " << Count(records) << " records";
  }
  out << '\n';

  TextTable table({{"field", false},
                   {"storage", false},
                   {"measure", false},
                   {"role", false},
                   {"label", false},
                   {"format", false},
                   {"valid", true},
                   {"missing", true},
                   {"min", true},
                   {"max", true},
                   {"mean", true},
                   {"std.dev", true},
                   {"top categories", false}});
  for (unsigned i = 0; i < metadata.FieldCount(); ++i) {
    const DMField& field = *metadata.GetField(i);
    std::string source;
    const DMFormat* format = EffectiveFormat(metadata, field, source);
    std::string formatText = format != nullptr ? DescribeFormat(*format) : "-";
    if (format != nullptr && source == "shared") {
      formatText.insert(0, "@" + format->GetName() + " ");
    }
    if (format != nullptr && source == "default") formatText.insert(0, "default ");

    std::string valid;
    std::string missing;
    ValidAndMissing(metadata, field, valid, missing);

    std::string min;
    std::string max;
    std::string mean;
    std::string deviation;
    std::string categories;
    const Storage storage = field.GetStorage();
    const DMFormat::ValueUnits units = UnitsOf(storage);
    if (const DMContStats* stats = field.GetContStats();
        stats != nullptr && stats->GetSumFreqWeights() > 0) {
      const auto [low, high] = stats->GetExtrema();
      if (storage == Storage::Integer) {
        // Integers beyond 2^53 have no exact real, so the exact extrema.
        const auto exact = static_cast<const DMContStatsInt*>(stats)->GetExactExtrema();
        min = Render(format, DMDatum(exact.first), units);
        max = Render(format, DMDatum(exact.second), units);
      } else {
        min = Render(format, DMDatum(low), units);
        max = Render(format, DMDatum(high), units);
      }
      const std::unique_ptr<DMFormat> statsFormat = StatisticsFormat(format);
      const DMFormat* meanFormat = statsFormat != nullptr ? statsFormat.get() : format;
      mean = Render(meanFormat, DMDatum(stats->GetMean()), units);
      if (stats->GetSumFreqWeights() > 1) {
        deviation =
            RenderSpread(format, statsFormat.get(), storage, std::sqrt(stats->GetVariance()));
      }
    } else {
      categories = TopCategories(field, format);
    }
    table.AddRow({field.GetName(), EntityText(gStorageDict, static_cast<unsigned>(storage)),
                  EntityText(gMeasureDict, static_cast<unsigned>(field.GetType())),
                  EntityText(gRoleDict, static_cast<unsigned>(field.GetRole())), field.GetLabel(),
                  formatText, valid, missing, min, max, mean, deviation, categories});
  }
  table.Print(out);
}

}  // namespace dmtool
