// qob-frontier: reads a herd once, shows what is possible between most merit and least
// relationship, and makes plans beneath it, each as a run of its own.
#include <algorithm>
#include <string>
#include <vector>

#include "core/stop.h"
#include "core/text.h"
#include "driver/commands.h"
#include "driver/frontier_arguments.h"
#include "driver/frontier_files.h"
#include "driver/frontier_session.h"
#include "driver/frontier_workflow.h"
#include "driver/report_template.h"
#include "driver/sheet_file.h"
#include "report/page.h"

namespace qob {
namespace {

// Returns whether all are finished.
bool make_plans(const FrontierArguments& arguments, FrontierSession& session) {
  const auto is_finished = [&](const PointRun& run) { return session.is_finished(run); };
  const std::vector<PointRun>& runs = session.runs();
  if (!arguments.collect) {
    std::vector<PointRun> wanted = runs;
    if (arguments.resume) std::erase_if(wanted, is_finished);
    session.make(wanted);
  }
  const auto missing = std::find_if_not(runs.begin(), runs.end(), is_finished);
  if (missing == runs.end()) return true;
  const auto count = std::count_if(runs.begin(), runs.end(), is_finished);
  session.tell("Plans that are not finished: " + missing->folder +
               and_more(std::ssize(runs) - count));
  if (count == 0) refuse(arguments.output, "no plan is finished");
  return false;
}

void write(const Frontier& frontier, FrontierSession& session) {
  const std::string json = session.json_of_frontier(frontier);
  const auto put = [&](const char* to, const std::string& text) {
    const std::string path = session.folders().path(to);
    write_lines(path, [&](const Lines& lines) { lines(text); });
    session.out().write_line("Written: " + printable(path));
  };
  put("frontier.csv", csv_of(frontier));
  put("frontier.json", json);
  if (!page_template().empty()) put("frontier.html", page_of(page_template(), json));
}

void add_to_workflow(const FrontierArguments& arguments, FrontierSession& session) {
  WorkflowHerd herd = {arguments.parameter_file,
                       session.folders().inputs(),
                       arguments.of_plans,
                       {},
                       results_prefix(session.given()).substr(2),
                       {}};
  for (const PointRun& run : session.runs()) {
    if (!session.is_finished(run)) session.folders().prepare(run);
    herd.runs.push_back(run.folder);
  }
  herd.effort = effort_of(session.herd().selection, session.runs().back().parameters.algorithm,
                          session.herd().pedigree.maxid);
  qob::add_to_workflow(arguments.workflow, herd);
  session.out().write_line("Workflow: " + printable(arguments.workflow) + ", with " +
                           std::to_string(herd.runs.size()) + " plans of " +
                           printable(herd_name(arguments.parameter_file)));
}

int plans_of(const FrontierArguments& arguments) {
  FrontierSession session(arguments);
  session.add(arguments);
  if (!arguments.workflow.empty()) {
    add_to_workflow(arguments, session);
    return kSuccess;
  }
  const bool all = make_plans(arguments, session);
  const Frontier frontier = session.collected();
  for (const FrontierPlan& plan : frontier.plans) {
    if (!plan.reach && !plan.run.is_search())
      session.tell(plan.run.folder + ": no bound is known for a goal like this");
  }
  const std::string table = table_of(frontier);
  session.out().write_line(table.substr(0, table.size() - 1));
  write(frontier, session);
  return all ? kSuccess : kFailure;
}

// The folder of a herd is the workflow's, so that the same is found there on all machines.
int write_workflow(FrontierArguments arguments) {
  make_workflow(arguments.workflow);
  std::vector<std::string> files = arguments.more;
  files.insert(files.begin(), arguments.parameter_file);
  for (const std::string& file : files) {
    expect_place(arguments.workflow, file);
    arguments.parameter_file = file;
    arguments.output = arguments.workflow + "/" + herd_name(file);
    plans_of(arguments);
  }
  return kSuccess;
}

}  // namespace

int frontier_command(int argc, char** argv) {
  int status = kSuccess;
  const auto arguments = frontier_arguments(argc, argv, status);
  if (!arguments) return status;
  return arguments->workflow.empty() ? plans_of(*arguments) : write_workflow(*arguments);
}

}  // namespace qob
