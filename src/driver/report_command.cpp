// qob-report: takes up a run that has ended, has it reported, and writes the page or its JSON, and
// the tables.
#include <algorithm>
#include <functional>
#include <iterator>
#include <string>
#include <utility>
#include <vector>

#include "core/stop.h"
#include "core/text.h"
#include "core/unit.h"
#include "driver/commands.h"
#include "driver/end_of.h"
#include "driver/report_arguments.h"
#include "driver/report_files.h"
#include "driver/report_inputs.h"
#include "driver/report_tables.h"
#include "driver/report_template.h"
#include "driver/sheet_file.h"
#include "report/json.h"
#include "report/page.h"
#include "report/reporting.h"

namespace qob {
namespace {

void add_prepared(const std::string& faults_file, Report& report) {
  if (faults_file.empty()) return;
  std::vector<Warning> found = prepared_findings(faults_file);
  std::vector<Warning>& all = report.warnings;
  std::move(found.begin(), found.end(), std::back_inserter(all));
  std::stable_partition(all.begin(), all.end(), [](const Warning& one) { return one.serious; });
}

// The core's own messages tell of a data file as of one that is seen for the first time, and of a
// log that is not written here.
std::string of_other_data(const std::string& text) {
  const bool is_of_core = (text.starts_with(' ') || text.starts_with("ERROR")) &&
                          text.find("memory") == std::string::npos;
  if (!is_of_core) return text;
  const bool is_of_rules = text.find("file of rules") != std::string::npos;
  return printable(adjustl_trim(text)) +
         "\nThe run ended well with these files, so they have changed since; " +
         (is_of_rules ? "another run of qob tells all that is wrong with a file of rules"
                      : "qob-prepare --check tells all that is wrong with a data file");
}

void take_up_with_hint(const std::string& prefix, FinishedRun& run) {
  const End end = end_of([&] { take_up_run(prefix, run); });
  if (end.status != kSuccess) stop(of_other_data(end.text), end.status);
}

// What there is of a run, and where it comes from.
struct Source {
  FinishedRun run;
  Names names;
  std::string names_file, faults_file;  // "": there is none

  Source(const std::string& prefix, const std::string& wanted_names) {
    take_up_with_hint(prefix, run);
    const std::string data = run.input(run.run.parameters.data.datafile);
    names_file = wanted_names.empty() ? prepared_file(data, ".names.csv") : wanted_names;
    faults_file = prepared_file(data, ".faults.csv");
    if (!names_file.empty()) read_names(names_file, names);
  }
};

// How the report was made, as far as the run does not tell it.
void complete(const Source& source, Report& report) {
  add_prepared(source.faults_file, report);
  Making& making = report.making;
  making.program = std::string("qob-report ") + QOB_VERSION;
  making.time = time_now();
  if (!source.names_file.empty()) making.files.push_back({"names", source.names_file, "", 0});
  if (!source.faults_file.empty()) making.files.push_back({"faults", source.faults_file, "", 0});
  add_checksums(making.files);
}

void write_tables_of(const Source& source, const Reported& reported,
                     const ReportArguments& arguments, const Outputs& outputs) {
  const PopulationMeasures& measures = reported.population;
  std::vector<ReportedFounder> founders;
  for (const FounderShare& founder : measures.founders)
    founders.push_back({founder.animal, founder.share});
  write_tables(arguments.tables, outputs, reported.report,
               {source.run.pedigree, source.names, source.run.statistics, measures.mean_kinship,
                measures.complete_generations, measures.contribution_so_far, founders});
}

// What must not be written over.
Outputs outputs_of(const Source& source, const ReportArguments& arguments) {
  const FinishedRun& run = source.run;
  const Parameters& p = run.as_run;
  Outputs outputs{run.parameter_files(), arguments.force};
  for (const std::string& file :
       {run.input(p.data.datafile), run.input(p.relationship.gfile), run.input(p.rules.rulesfile),
        run.log.path, source.names_file, source.faults_file, arguments.given}) {
    if (!file.empty()) outputs.inputs.push_back(file);
  }
  for (const std::string& file : run.results()) outputs.inputs.push_back(file);
  return outputs;
}

// The road of one report.
Report report_of(const std::string& prefix, const ReportArguments& arguments) {
  Source source(prefix, arguments.names);
  const Outputs outputs = outputs_of(source, arguments);
  outputs.expect_report(arguments.output);
  const bool is_given = !arguments.given.empty();
  const GivenList given = is_given ? given_list(arguments.given) : GivenList();
  Reported reported = report_on(source.run, source.names, is_given ? &given : nullptr);
  complete(source, reported.report);
  if (!arguments.tables.empty()) write_tables_of(source, reported, arguments, outputs);
  return std::move(reported.report);
}

std::string json_of_all(const std::vector<Report>& reports) {
  return reports.size() == 1 ? json_of(reports.front()) : comparison_json(reports);
}

int report(const ReportArguments& arguments) {
  Unit out(6);
  out.open_standard_output();
  for (const std::string& prefix : arguments.prefixes) expect_results(prefix);
  const bool has_page = !arguments.json && !page_template().empty();
  if (!has_page && !arguments.json && arguments.tables.empty())
    stop(
        "this qob-report was built without pages : expected --json or --tables, or a build with -DQOB_WEB=ON");

  std::vector<Report> reports;
  for (const std::string& prefix : arguments.prefixes)
    reports.push_back(report_of(prefix, arguments));
  if (!arguments.tables.empty()) out.write_line("Tables: " + printable(arguments.tables));
  if (!has_page && !arguments.json) {
    out.write_line("No page: this qob-report was built without pages (-DQOB_WEB=OFF)");
    return kSuccess;
  }
  const std::string json = json_of_all(reports) + "\n";
  const std::string text = arguments.json ? json : page_of(page_template(), json);
  write_lines(arguments.output, [&](const Lines& lines) { lines(text); });
  out.write_line((arguments.json ? "Result: " : "Report: ") + printable(arguments.output));
  return kSuccess;
}

}  // namespace

int report_command(int argc, char** argv) {
  int status = kSuccess;
  const auto arguments = report_arguments(argc, argv, status);
  return arguments ? report(*arguments) : status;
}

}  // namespace qob
