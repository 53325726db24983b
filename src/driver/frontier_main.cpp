// qob-frontier: reads a herd once, shows what is possible between most merit and least
// relationship, and makes plans beneath it, each as a run of its own.
#include <algorithm>
#include <memory>
#include <string>
#include <vector>

#include "core/stop.h"
#include "core/text.h"
#include "driver/end_of.h"
#include "driver/frontier_arguments.h"
#include "driver/frontier_files.h"
#include "driver/frontier_folders.h"
#include "driver/frontier_plans.h"
#include "driver/frontier_workflow.h"
#include "driver/report_inputs.h"
#include "driver/report_template.h"
#include "driver/sheet_file.h"
#include "report/page.h"
#include "system/paths.h"
#include "system/process.h"
#include "system/threads.h"

namespace qob {
namespace {

class Main {
 public:
  explicit Main(const FrontierArguments& arguments)
      : arguments_(arguments),
        jobs_(arguments.jobs > 0 ? arguments.jobs : processors()),
        given_(read_parameters(arguments.parameter_file)),
        folders_(arguments.output, given_) {
    out_.open_standard_output();
    err_.open_standard_error();
  }

  int run();

 private:
  void read_herd_once();
  void add_runs(const std::vector<Point>& points);
  bool make_plans();
  void add_to_workflow();
  void write(const Frontier& frontier);
  void tell(const std::string& line) { err_.write_line(line); }

  const FrontierArguments& arguments_;
  int jobs_;
  GivenParameters given_;
  FrontierFolders folders_;
  Unit out_{6}, err_{0};
  SharedHerd herd_;
  std::unique_ptr<Possible> possible_;
  std::vector<PointRun> runs_;
};

// The herd's own goal is among the points whatever they are, and its folder the first that there
// is.
void Main::read_herd_once() {
  const PointRun own = direct_run(own_point(given_.groups.ocs), given_);
  if (!folders_.is_finished(own)) folders_.prepare(own);
  ToldRun told;
  told.run.parallel = Parallel(jobs_);
  told.run.files.folder = folders_.path(own);
  const End end = end_of([&] { read_herd(told.run, kRunParameters, herd_); });
  if (end.status != kSuccess) {
    const std::string words = told.last_words();
    refuse(arguments_.parameter_file, (words.empty() ? end.text : words) + " : qob " +
                                          printable(arguments_.parameter_file) +
                                          " tells more in qob.log");
  }
  if (!arguments_.quiet && !told.err.empty()) tell(told.err.substr(0, told.err.size() - 1));
  possible_ = std::make_unique<Possible>(herd_.selection, herd_.relationship, herd_.pedigree);
  if (!possible_->is_any())
    refuse(arguments_.parameter_file,
           "the males have no room for all matings in whole units of limitmalematings");
}

void Main::add_runs(const std::vector<Point>& points) {
  for (const Point& point : points) {
    runs_.push_back(direct_run(point, given_));
    for (std::int32_t seed = 1; arguments_.search && seed <= arguments_.seeds; ++seed)
      runs_.push_back(searched_run(point, given_, seed));
  }
}

// Returns whether all are finished.
bool Main::make_plans() {
  const auto is_finished = [&](const PointRun& run) { return folders_.is_finished(run); };
  if (!arguments_.collect) {
    std::vector<PointRun> wanted = runs_;
    if (arguments_.resume) std::erase_if(wanted, is_finished);
    for (const PointRun& run : wanted) folders_.prepare(run);
    for (const std::string& fault : run_all(folders_, herd_, wanted, jobs_, out_)) tell(fault);
  }
  const auto missing = std::stable_partition(runs_.begin(), runs_.end(), is_finished);
  const bool all = missing == runs_.end();
  if (!all)
    tell("Plans that are not finished: " + missing->folder + and_more(runs_.end() - missing));
  runs_.erase(missing, runs_.end());
  if (runs_.empty()) refuse(arguments_.output, "no plan is finished");
  return all;
}

std::string file_name(const std::string& path) { return path.substr(path.find_last_of('/') + 1); }

void Main::write(const Frontier& frontier) {
  const std::string data(adjustl_trim(given_.groups.data.datafile));
  const std::string names_file = prepared_file(data, ".names.csv");
  Names names;
  if (!names_file.empty()) read_names(names_file, names);
  const auto name = [&](std::int32_t id) {
    std::string text(names.identifier(id));
    const std::string_view called = names.name(id);
    return called.empty() ? text : text.append(text.empty() ? "" : " ").append(called);
  };
  const std::string file = file_name(data);
  const std::string json = json_of(
      frontier, herd_.selection,
      {std::string("qob-frontier ") + QOB_VERSION, time_now(), file_name(arguments_.parameter_file),
       file, file.substr(0, file.size() - (file.ends_with(".dat") ? 4 : 0)), name});
  const auto put = [&](const char* to, const std::string& text) {
    write_lines(folders_.path(to), [&](const Lines& lines) { lines(text); });
    out_.write_line("Written: " + printable(folders_.path(to)));
  };
  put("frontier.csv", csv_of(frontier));
  put("frontier.json", json);
  if (!page_template().empty()) put("frontier.html", page_of(page_template(), json));
}

void Main::add_to_workflow() {
  WorkflowHerd herd = {arguments_.parameter_file,
                       folders_.inputs(),
                       arguments_.of_plans,
                       {},
                       results_prefix(given_).substr(2),
                       {}};
  for (const PointRun& run : runs_) {
    if (!folders_.is_finished(run)) folders_.prepare(run);
    herd.runs.push_back(run.folder);
  }
  herd.effort = effort_of(herd_.selection, runs_.back().parameters.algorithm, herd_.pedigree.maxid);
  qob::add_to_workflow(arguments_.workflow, herd);
  out_.write_line("Workflow: " + printable(arguments_.workflow) + ", with " +
                  std::to_string(runs_.size()) + " plans of " +
                  printable(herd_name(arguments_.parameter_file)));
}

int Main::run() {
  read_herd_once();
  add_runs({own_point(given_.groups.ocs)});
  add_runs(other_points(arguments_, given_.groups.ocs, &possible_->curve()));
  if (!arguments_.workflow.empty()) {
    add_to_workflow();
    return kSuccess;
  }
  const bool all = make_plans();
  const Frontier frontier = collect(herd_, *possible_, folders_, runs_);
  for (const FrontierPlan& plan : frontier.plans) {
    if (!plan.reach && !plan.run.is_search())
      tell(plan.run.folder + ": no bound is known for a goal like this");
  }
  const std::string table = table_of(frontier);
  out_.write_line(table.substr(0, table.size() - 1));
  write(frontier);
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
    Main(arguments).run();
  }
  return kSuccess;
}

}  // namespace
}  // namespace qob

int main(int argc, char** argv) {
  qob::prepare_process();
  int status = qob::kSuccess;
  const auto arguments = qob::frontier_arguments(argc, argv, status);
  if (!arguments) return status;
  const qob::End end = qob::end_of([&] {
    status =
        arguments->workflow.empty() ? qob::Main(*arguments).run() : qob::write_workflow(*arguments);
  });
  if (end.status != qob::kSuccess) qob::end_process(end.text, end.status);
  return status;
}
