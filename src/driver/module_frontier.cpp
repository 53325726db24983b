#include "driver/module_frontier.h"

#include <algorithm>
#include <memory>
#include <set>
#include <string>

#include "core/edit.h"
#include "core/stop.h"
#include "driver/frontier_files.h"
#include "driver/frontier_session.h"
#include "driver/sheet_file.h"

namespace qob {
namespace {

struct Kept {
  std::unique_ptr<FrontierSession> session;
  std::set<std::string> tried;  // folders of plans, also of those that could not be made
};

Kept& kept() {
  static Kept kept;
  return kept;
}

FrontierSession& session() {
  if (kept().session == nullptr) stop("no herd has been read : expected frontier-begin before");
  return *kept().session;
}

bool is_to_be_made(const PointRun& run) {
  return !run.is_search() && !session().is_finished(run) && !kept().tried.contains(run.folder);
}

int tell_how_many() {
  const std::vector<PointRun>& runs = session().runs();
  session().out().write_line(
      std::to_string(std::count_if(runs.begin(), runs.end(), is_to_be_made)));
  return kSuccess;
}

void write_json() {
  const std::string json = session().json_of_frontier(session().collected());
  write_lines(session().folders().path("frontier.json"), [&](const Lines& lines) { lines(json); });
}

}  // namespace

int begin_frontier(int argc, char** argv) {
  kept() = {};
  int status = kSuccess;
  const auto arguments = frontier_arguments(argc, argv, status);
  if (!arguments) return status;
  kept().session = std::make_unique<FrontierSession>(*arguments);
  session().add(*arguments);
  write_json();
  return tell_how_many();
}

int add_to_frontier(int argc, char** argv) {
  int status = kSuccess;
  const auto arguments = frontier_arguments(argc, argv, status);
  if (!arguments) return status;
  session().add(*arguments);
  return tell_how_many();
}

int make_next_plan(int, char**) {
  const std::vector<PointRun>& runs = session().runs();
  const auto next = std::find_if(runs.begin(), runs.end(), is_to_be_made);
  if (next != runs.end()) {
    kept().tried.insert(next->folder);
    session().make({*next});
  }
  write_json();
  return tell_how_many();
}

int collect_frontier(int, char**) {
  write_json();
  return kSuccess;
}

int prepare_search(int argc, char** argv) {
  std::int32_t seed = 0;
  if (argc != 4 || read_list(argv[2], seed) != 0 || seed < 0)
    stop("expected frontier-search POINT SEED FILE");
  const std::vector<PointRun>& runs = session().runs();
  const auto direct = std::find_if(runs.begin(), runs.end(),
                                   [&](const PointRun& run) { return run.folder == argv[1]; });
  if (direct == runs.end()) stop(std::string(argv[1]) + " : expected a point of the frontier");
  const GivenParameters& given = session().given();
  const PointRun run = seed == 0 ? *direct : searched_run(direct->point, given, seed);
  write_lines(argv[3],
              [&](const Lines& lines) { lines(parameter_file(given, run.parameters, "./")); });
  if (run.is_search()) {
    session().add(run);
    session().folders().prepare(run);
  }
  session().out().write_line(session().folders().path(run));
  return kSuccess;
}

}  // namespace qob
