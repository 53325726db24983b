#include "driver/report_arguments.h"

#include <CLI/CLI.hpp>

#include "driver/usage.h"

namespace qob {
namespace {

constexpr std::size_t kMostCompared = 3;

constexpr const char* kAbout =
    "Makes of the results of a qob run one page with pictures that opens in any browser, and tables for a spreadsheet.";
constexpr const char* kMore =
    "PREFIX is what the names of the result files begin with: resultsdirectory in the parameter file.\n"
    "Exit status: 0 if all was written, 1 if there is a fault, 2 if the arguments are wrong.\n"
    "Examples: qob-report ./QOB_\n"
    "          qob-report --compare ./QOB_ ./strict_\n"
    "          qob-report --evaluate matings.csv ./QOB_";

// What the page or its JSON is called when nobody says: it stands with the results. A comparison
// and an evaluation do not take the place of the plan's own report.
std::string name_beside_results(const ReportArguments& arguments) {
  const bool compares = arguments.prefixes.size() > 1;
  const char* what = compares                   ? "comparison"
                     : !arguments.given.empty() ? "evaluation"
                     : arguments.json           ? "result"
                                                : "report";
  return arguments.prefixes.front() + what + (arguments.json ? ".json" : ".html");
}

// What is wrong with options that are each right, or "".
std::string contradiction(const ReportArguments& arguments, bool compares) {
  const std::size_t plans = arguments.prefixes.size();
  if (plans == 0) return "PREFIX is required";
  if (plans > kMostCompared) return "--compare: expected two or three prefixes in all";
  if (compares && plans == 1) return "--compare: expected a second prefix";
  if (arguments.prefixes.front().empty())
    return "PREFIX is empty : expected ./ for results under their bare names";
  return "";
}

void add_options(CLI::App& app, ReportArguments& arguments, std::vector<std::string>& compared) {
  app.add_option("--names", arguments.names,
                 "table of names; else the NAME.names.csv beside the data file, if it is there")
      ->type_name("FILE");
  app.add_option("-o,--output", arguments.output,
                 "the page, or with --json the result; else PREFIX followed by report.html")
      ->type_name("FILE");
  CLI::Option* tables =
      app.add_option("--tables", arguments.tables,
                     "folder for the tables, as CSV and as a spreadsheet; made if it is not there")
          ->type_name("FOLDER");
  app.add_flag("--json", arguments.json,
               "no page, but what it holds: PREFIX followed by result.json");
  CLI::Option* compare =
      app.add_option("--compare", compared, "two or three plans side by side on one page")
          ->type_name("PREFIX")
          ->expected(1, static_cast<int>(kMostCompared))
          ->excludes(tables);
  app.add_option("--evaluate", arguments.given,
                 "value the plan in this table (sire, dam, number) and compare it with the best")
      ->type_name("MATINGS.csv")
      ->excludes(compare);
  app.add_flag("--force", arguments.force, "write also over files that no qob-report has made");
}

}  // namespace

std::optional<ReportArguments> report_arguments(int argc, char** argv, int& status) {
  ReportArguments arguments;
  std::string prefix;
  std::vector<std::string> compared;
  CLI::App app(kAbout, "qob-report");
  app.footer(kMore);
  app.add_option("PREFIX", prefix, "what the names of the result files begin with");
  add_options(app, arguments, compared);
  app.set_version_flag("--version", std::string("qob-report ") + QOB_VERSION);
  try {
    app.parse(argc, argv);
    if (app.count("PREFIX") > 0) arguments.prefixes.push_back(prefix);
    arguments.prefixes.insert(arguments.prefixes.end(), compared.begin(), compared.end());
    const std::string wrong = contradiction(arguments, app.count("--compare") > 0);
    if (!wrong.empty()) throw CLI::ValidationError(wrong, CLI::ExitCodes::ValidationError);
  } catch (const CLI::ParseError& end) {
    status = tell_usage(app, end);
    return std::nullopt;
  }
  if (arguments.output.empty()) arguments.output = name_beside_results(arguments);
  return arguments;
}

}  // namespace qob
