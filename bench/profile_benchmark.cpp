// `dmtool profile` on a generated CSV file of 20 columns of mixed types (integers,
// reals, dates, times, timestamps, flags, categories, quoted texts with commas
// and line breaks, free text, some empty cells), beside its anchor in the same
// run:
//   - Profile/R/jobs:N: the dmtool binary run as a child process on R rows
//     with --jobs N, writing its document to /dev/null; wall time, and the
//     child's own peak resident memory ("peak_rss_bytes", from wait4);
//   - LibcsvParse/R: a bare libcsv parse of the same file in this process,
//     with the tool's parser options and chunk size, counting the cells.
// R is 100,000 and 1,000,000: the peak memory of the two must be close, since
// the profile keeps per column only its statistics and capped tables. Files go
// to $TMPDIR or /tmp and are generated once (their names carry the layout's
// version). Compare ratios, not single times.

#include <csv.h>
#include <fcntl.h>
#include <spawn.h>
#include <stdlib.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <memory>
#include <random>
#include <string>
#include <vector>

#include <benchmark/benchmark.h>

extern char** environ;

namespace {

constexpr int kColumns = 20;
constexpr std::size_t kChunkSize = 1 << 18;

std::string Directory() {
  const char* directory = getenv("TMPDIR");
  return directory != nullptr && *directory != '\0' ? directory : "/tmp";
}

// Appends one row of generated cells; `random` decides the values and which
// cells are empty.
void AppendRow(long long row, std::mt19937_64& random, std::string& out) {
  static const char* const kRegions[] = {"north", "south", "east", "west", "centre", "islands"};
  static const char* const kNames[] = {"\"Smith, J\"",        "\"Doe, A\"", "\"O'Neil, P\"",
                                       "\"Ng, \"\"Kim\"\"\"", "Brown",      "\"Lee, S\""};
  char cell[64];
  const auto pick = [&random](unsigned n) { return static_cast<unsigned>(random() % n); };
  const auto empty = [&pick](unsigned percent) { return pick(100) < percent; };
  const auto add = [&out](const char* text, bool last = false) {
    out += text;
    out += last ? '\n' : ',';
  };
  const auto number = [&cell, &add](const char* format, auto value) {
    std::snprintf(cell, sizeof cell, format, value);
    add(cell);
  };
  number("%lld", row + 1);                                                // id
  empty(5) ? add("") : number("%u", pick(1000));                          // small integer
  number("%.2f", static_cast<double>(pick(1000000)) / 100.0);             // amount
  empty(10) ? add("") : number("%.4f", (pick(200000) - 100000.0) / 1e4);  // signed real
  std::snprintf(cell, sizeof cell, "20%02u-%02u-%02u", pick(25), pick(12) + 1, pick(28) + 1);
  add(cell);  // date
  std::snprintf(cell, sizeof cell, "%02u:%02u:%02u", pick(24), pick(60), pick(60));
  add(cell);  // time
  std::snprintf(cell, sizeof cell, "2024-%02u-%02u %02u:%02u:%02u", pick(12) + 1, pick(28) + 1,
                pick(24), pick(60), pick(60));
  add(cell);                                                                   // timestamp
  add(pick(2) == 0 ? "0" : "1");                                               // numeric flag
  empty(3) ? add("") : add(pick(2) == 0 ? "N" : "Y");                          // text flag
  add(kRegions[pick(6)]);                                                      // category
  add(kNames[pick(6)]);                                                        // quoted category
  number("note %llu", static_cast<unsigned long long>(random() % 100000000));  // free text
  number("%lld", static_cast<long long>(random() % 2000000000000LL) - 1000000000000LL);
  empty(2) ? add("") : add(pick(100) == 0 ? "\"two\nlines\"" : "\"one line\"");  // quoted text
  empty(20) ? add("") : number("%u", pick(50));                                  // sparse integer
  if (empty(15)) {
    add("");
  } else {
    std::snprintf(cell, sizeof cell, "19%02u-%02u-%02u", pick(100), pick(12) + 1, pick(28) + 1);
    add(cell);  // sparse date
  }
  number("%.1f", static_cast<double>(pick(1000)) / 10.0);  // one decimal
  number("code-%u", pick(100));                            // 100 categories
  number("%u", pick(7));                                   // weekday
  std::snprintf(cell, sizeof cell, "%.3e", static_cast<double>(pick(1000000)) * 1.5);
  add(cell, true);  // exponent
}

// The generated file of `rows` data rows; empty when it could not be written.
const std::string& CsvFile(long long rows) {
  static std::string paths[2];
  std::string& path = paths[rows >= 1000000 ? 1 : 0];
  if (!path.empty()) return path;
  const std::string name = Directory() + "/dmtool-profile-v1-" + std::to_string(rows) + ".csv";
  struct stat info {};
  if (stat(name.c_str(), &info) == 0 && info.st_size > 0) return path = name;
  const std::string partial = name + ".part";
  std::unique_ptr<std::FILE, int (*)(std::FILE*)> file(std::fopen(partial.c_str(), "wb"),
                                                       &std::fclose);
  if (!file) return path;
  std::string text =
      "id,small,amount,signed,date,time,stamp,flag,yes_no,region,name,note,big,remark,sparse,"
      "born,score,code,weekday,exponent\n";
  std::mt19937_64 random(20260101);
  for (long long row = 0; row < rows; ++row) {
    AppendRow(row, random, text);
    if (text.size() > (1U << 20)) {
      if (std::fwrite(text.data(), 1, text.size(), file.get()) != text.size()) return path;
      text.clear();
    }
  }
  if (std::fwrite(text.data(), 1, text.size(), file.get()) != text.size() ||
      std::fflush(file.get()) != 0) {
    return path;
  }
  file.reset();
  if (std::rename(partial.c_str(), name.c_str()) != 0) return path;
  return path = name;
}

// Runs dmtool profile with `jobs` threads; false when it could not be run or
// failed. `seconds` receives the wall time, `peakBytes` the child's peak RSS.
bool RunTool(const std::string& csv, int jobs, double& seconds, double& peakBytes) {
  const std::string jobsText = std::to_string(jobs);
  std::vector<std::string> arguments = {DMTOOL_PATH, "profile",   csv,
                                        "-o",        "/dev/null", "--no-table"};
  if (jobs > 1) {
    arguments.emplace_back("--jobs");
    arguments.push_back(jobsText);
  }
  std::vector<char*> argv;
  for (std::string& argument : arguments) argv.push_back(argument.data());
  argv.push_back(nullptr);
  posix_spawn_file_actions_t actions;
  posix_spawn_file_actions_init(&actions);
  posix_spawn_file_actions_addopen(&actions, STDOUT_FILENO, "/dev/null", O_WRONLY, 0);
  posix_spawn_file_actions_addopen(&actions, STDERR_FILENO, "/dev/null", O_WRONLY, 0);
  const auto start = std::chrono::steady_clock::now();
  pid_t child = 0;
  const int spawned = posix_spawn(&child, argv[0], &actions, nullptr, argv.data(), environ);
  posix_spawn_file_actions_destroy(&actions);
  if (spawned != 0) return false;
  int status = 0;
  struct rusage usage {};
  if (wait4(child, &status, 0, &usage) != child) return false;
  seconds = std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
  // ru_maxrss is in kilobytes on Linux.
  peakBytes = static_cast<double>(usage.ru_maxrss) * 1024.0;
  return WIFEXITED(status) && WEXITSTATUS(status) == 0;
}

void BM_Profile(benchmark::State& state, long long rows, int jobs) {
  const std::string& csv = CsvFile(rows);
  if (csv.empty()) {
    state.SkipWithError("could not generate the CSV file");
    return;
  }
  double peak = 0;
  for (auto _ : state) {
    double seconds = 0;
    if (!RunTool(csv, jobs, seconds, peak)) {
      state.SkipWithError("dmtool profile failed");
      break;
    }
    state.SetIterationTime(seconds);
  }
  state.counters["peak_rss_bytes"] = peak;
  state.counters["rows"] = static_cast<double>(rows);
}

struct Counts {
  long long cells = 0;
  long long rows = 0;
};

void OnCell(void* data, std::size_t size, void* user) {
  benchmark::DoNotOptimize(data);
  benchmark::DoNotOptimize(size);
  ++static_cast<Counts*>(user)->cells;
}

void OnRow(int /*terminator*/, void* user) { ++static_cast<Counts*>(user)->rows; }

void BM_LibcsvParse(benchmark::State& state, long long rows) {
  const std::string& csv = CsvFile(rows);
  if (csv.empty()) {
    state.SkipWithError("could not generate the CSV file");
    return;
  }
  std::vector<char> buffer(kChunkSize);
  for (auto _ : state) {
    std::unique_ptr<std::FILE, int (*)(std::FILE*)> file(std::fopen(csv.c_str(), "rb"),
                                                         &std::fclose);
    csv_parser parser{};
    if (!file || csv_init(&parser, CSV_STRICT | CSV_STRICT_FINI) != 0) {
      state.SkipWithError("could not start");
      break;
    }
    Counts counts;
    bool ok = true;
    while (const std::size_t got = std::fread(buffer.data(), 1, buffer.size(), file.get())) {
      if (csv_parse(&parser, buffer.data(), got, OnCell, OnRow, &counts) != got) ok = false;
    }
    ok = csv_fini(&parser, OnCell, OnRow, &counts) == 0 && ok;
    csv_free(&parser);
    if (!ok || counts.rows != rows + 1 || counts.cells != (rows + 1) * kColumns) {
      state.SkipWithError("the parse failed or miscounted");
      break;
    }
  }
  state.counters["rows"] = static_cast<double>(rows);
}

}  // namespace

int main(int argc, char** argv) {
  benchmark::Initialize(&argc, argv);
  if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 1;
  for (const long long rows : {100000LL, 1000000LL}) {
    const std::string r = "/" + std::to_string(rows);
    for (const int jobs : {1, 2}) {
      benchmark::RegisterBenchmark(("Profile" + r + "/jobs:" + std::to_string(jobs)).c_str(),
                                   BM_Profile, rows, jobs)
          ->Unit(benchmark::kMillisecond)
          ->UseManualTime()
          ->Iterations(1);
    }
    benchmark::RegisterBenchmark(("LibcsvParse" + r).c_str(), BM_LibcsvParse, rows)
        ->Unit(benchmark::kMillisecond)
        ->UseRealTime();
  }
  benchmark::RunSpecifiedBenchmarks();
  benchmark::Shutdown();
  return 0;
}
