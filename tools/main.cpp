// dmtool: the dataset dictionary from the command line. Profiles CSV files
// into metadata documents and shows, checks, round-trips and renders them.

#include <exception>
#include <iostream>
#include <map>
#include <memory>
#include <sstream>
#include <string>

#include <CLI/CLI.hpp>

#include "check.h"
#include "profile.h"
#include "render.h"
#include "table.h"
#include "toolio.h"

namespace {

using dmtool::kExitOk;
using dmtool::kExitRejected;
using dmtool::kExitUsage;

// Exports `metadata` and writes it to `path` (standard output for "" or
// "-"). Returns an exit code.
int ExportTo(const DMMetaData& metadata, const std::string& path) {
  std::string xml;
  if (!metadata.ExportXMLDoc(xml)) {
    std::cerr << "dmtool: the library could not write the document\n";
    return kExitRejected;
  }
  return dmtool::WriteOutput(path, xml) ? kExitOk : kExitUsage;
}

int RunProfile(const dmtool::ProfileOptions& options, const std::string& output, bool table) {
  std::unique_ptr<DMMetaData> metadata;
  if (const int rc = dmtool::Profile(options, metadata); rc != kExitOk) return rc;
  if (const int rc = ExportTo(*metadata, output); rc != kExitOk) return rc;
  if (table) {
    // The document may have taken standard output; then the table must not
    // be mixed into it.
    const bool toStdout = !output.empty() && output != "-";
    dmtool::PrintDictionary(*metadata, toStdout ? std::cout : std::cerr);
  }
  return kExitOk;
}

int RunShow(const std::string& path) {
  std::unique_ptr<DMMetaData> metadata;
  if (const auto result = dmtool::LoadMetaData(path, metadata);
      result != dmtool::LoadResult::kLoaded) {
    return dmtool::ExitCodeOf(result);
  }
  dmtool::PrintDictionary(*metadata, std::cout);
  return kExitOk;
}

int RunRoundtrip(const std::string& path, const std::string& output) {
  std::unique_ptr<DMMetaData> metadata;
  if (const auto result = dmtool::LoadMetaData(path, metadata);
      result != dmtool::LoadResult::kLoaded) {
    return dmtool::ExitCodeOf(result);
  }
  return ExportTo(*metadata, output);
}

// Parses the command line and runs the subcommand; returns the exit code.
int Run(int argc, char** argv) {
  CLI::App app{
      "dmtool: build, show, check and round-trip dataset dictionaries (metadata XML documents)\n"
      "with the dmcommon library. Exit codes: 0 success, 1 a document or CSV file was\n"
      "rejected, 2 bad arguments or a file that cannot be read or written.",
      "dmtool"};
  app.require_subcommand(1);
  app.set_version_flag("--version", "dmtool 1.0.0");

  dmtool::ProfileOptions profile;
  std::string profileOutput;
  bool noTable = false;
  CLI::App* profileCommand = app.add_subcommand(
      "profile",
      "Read a CSV file in one pass and build its dictionary: storage, measurement level,\n"
      "display format, statistics and categories per column, record counts and a\n"
      "dataset-summary document. Writes the metadata document, then shows its table\n"
      "(on standard error when the document goes to standard output).");
  profileCommand->add_option("DATA.csv", profile.csvPath, "CSV file with a header row")->required();
  profileCommand->add_option("-o,--output", profileOutput,
                             "Write the metadata document here (default: standard output)");
  profileCommand
      ->add_option("--max-categories", profile.maxCategories,
                   "Text columns with more distinct values are typeless")
      ->capture_default_str()
      ->check(CLI::Range(std::size_t{1}, std::size_t{1} << 24));
  profileCommand
      ->add_option("--jobs", profile.jobs,
                   "Profile on this many threads: the file is cut into as many ranges of whole\n"
                   "rows and their profiles are pooled; means and variances may differ from\n"
                   "one thread's in the last digits")
      ->capture_default_str()
      ->check(CLI::Range(std::size_t{1}, std::size_t{256}));
  profileCommand->add_flag("--no-table", noTable, "Do not print the dictionary table");
  profile.progress = true;

  std::string showPath;
  CLI::App* showCommand = app.add_subcommand(
      "show",
      "Print the dictionary of a metadata document as a table: name, storage, measure,\n"
      "role, label, display format, valid and missing counts, and minimum, maximum,\n"
      "mean and standard deviation (continuous) or the most frequent categories.");
  showCommand->add_option("META.xml", showPath, "Metadata document")->required();

  std::string checkPath;
  CLI::App* checkCommand = app.add_subcommand(
      "check",
      "Load a metadata document. Accepted: exit 0 and a one-line summary. Rejected:\n"
      "exit 1 and the first offending part (shared format, field group, record counts,\n"
      "field by number and name, or summary) with the reason.");
  checkCommand->add_option("META.xml", checkPath, "Metadata document")->required();

  std::string roundtripPath;
  std::string roundtripOutput;
  CLI::App* roundtripCommand = app.add_subcommand(
      "roundtrip", "Load a metadata document and export it again; exit 1 when it is rejected.");
  roundtripCommand->add_option("META.xml", roundtripPath, "Metadata document")->required();
  roundtripCommand->add_option("-o,--output", roundtripOutput,
                               "Write the exported document here (default: standard output)");

  std::string formatPath;
  std::string value;
  dmtool::RenderUnits units = dmtool::RenderUnits::kAuto;
  const std::map<std::string, dmtool::RenderUnits> unitNames{
      {"auto", dmtool::RenderUnits::kAuto},
      {"none", dmtool::RenderUnits::kNone},
      {"seconds", dmtool::RenderUnits::kSeconds},
      {"days", dmtool::RenderUnits::kDays}};
  CLI::App* renderCommand = app.add_subcommand(
      "render",
      "Render one value through a format element (NumberFormat, DecoratedFormat,\n"
      "DateFormat, TimeFormat or StringFormat at the root of FORMAT.xml). Date and\n"
      "time formats also take ISO dates, times and timestamps; \".\" is the null value.");
  renderCommand->add_option("FORMAT.xml", formatPath, "File holding one format element")
      ->required();
  renderCommand->add_option("VALUE", value, "The value to render")->required();
  renderCommand
      ->add_option("--units", units,
                   "What a number counts for date and time formats (auto: days for dates, "
                   "seconds for times)")
      ->transform(CLI::CheckedTransformer(unitNames, CLI::ignore_case));

  try {
    app.parse(argc, argv);
  } catch (const CLI::ParseError& error) {
    // CLI11 prints help, the version or the error; its own codes are not
    // ours, so any failure is a usage error.
    const int rc = app.exit(error);
    return rc == 0 ? kExitOk : kExitUsage;
  }

  dmtool::XmlSession session;
  if (*profileCommand) return RunProfile(profile, profileOutput, !noTable);
  if (*showCommand) return RunShow(showPath);
  if (*checkCommand) return dmtool::CheckDocument(checkPath);
  if (*roundtripCommand) return RunRoundtrip(roundtripPath, roundtripOutput);
  if (*renderCommand) return dmtool::RenderValue(formatPath, value, units);
  return kExitUsage;
}

}  // namespace

int main(int argc, char** argv) {
  try {
    return Run(argc, argv);
  } catch (const std::exception& error) {
    // Only running out of memory gets here; the library reports by results
    // and CLI11's parse errors are handled in Run.
    std::cerr << "dmtool: " << error.what() << '\n';
    return kExitUsage;
  }
}
