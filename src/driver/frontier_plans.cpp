#include "driver/frontier_plans.h"

#include <algorithm>
#include <cmath>
#include <map>
#include <numbers>

#include "core/lexer.h"
#include "driver/sheet_file.h"
#include "ocs/evaluation.h"
#include "ocs/qobocs.h"

namespace qob {
namespace {

constexpr double kShare = 1.0e-3;  // of its range to which the curve is drawn

// What the end of a log tells of its run.
struct LogOfPlan {
  std::int64_t exchanges = 0;
  double seconds = 0.0;  // of planning
};

// "0:01:02.34"
double seconds_of(std::string_view text) {
  double seconds = 0.0;
  for (std::size_t begin = 0; begin < text.size();) {
    const std::size_t end = std::min(text.find(':', begin), text.size());
    double part = 0.0;
    if (to_real(text.substr(begin, end - begin), part) != 0) return kNaN;
    seconds = 60.0 * seconds + part;
    begin = end + 1;
  }
  return seconds;
}

LogOfPlan read_log(const std::string& path) {
  constexpr std::string_view kExchanges = "Improvement:", kWall = "wall=";
  LogOfPlan log;
  const std::string text = bytes_of(path);
  const std::string_view all = text;
  const std::size_t found = all.find(kExchanges);
  std::int32_t count = 0;
  if (found != std::string_view::npos &&
      read_list(all.substr(found + kExchanges.size(), 40), count) == 0)
    log.exchanges = count;
  for (const std::string_view watch : {"  Optimal contribution selection:\n", "  Mating:\n"}) {
    const std::size_t line = all.find(kWall, all.rfind(watch));
    if (line == std::string_view::npos) continue;
    const std::string_view value = all.substr(line + kWall.size());
    log.seconds += seconds_of(adjustl_trim(value.substr(0, value.find('\n'))));
  }
  log.seconds = std::round(100.0 * log.seconds) / 100.0;  // the log has no more digits
  return log;
}

class Collector {
 public:
  Collector(const SharedHerd& herd, Possible& possible, const FrontierFolders& folders)
      : selection_(herd.selection),
        relationship_(herd.relationship),
        possible_(possible),
        folders_(folders),
        rows_(herd.relationship, herd.selection.candidates) {
    for (std::int32_t i = 1; i <= selection_.candidates.ncands; ++i)
      candidate_[selection_.candidates.old_id(i)] = i;
  }

  FrontierPlan plan(const PointRun& run);
  std::vector<CurvePoint> curve();

 private:
  void set_matings(const std::string& path, FrontierPlan& plan, Mateset mateset);
  double degrees(double scaled_merit, double relationship);

  const Selection& selection_;
  const Relationship& relationship_;
  Possible& possible_;
  const FrontierFolders& folders_;
  RowCache rows_;
  std::map<std::int32_t, std::int32_t> candidate_;     // by identifier
  std::map<std::string, std::optional<Reach>> reach_;  // by point
};

// As the run has it.
Objective objective_of(const PointRun& point, const Goal& goal) {
  OCSParameters p = point.parameters.goal;
  complete_weights(p);
  return objective_of(p, goal);
}

void Collector::set_matings(const std::string& path, FrontierPlan& plan, Mateset mateset) {
  plan.matings = read_mating_list(path);
  if (std::ssize(plan.matings) != mateset.nmatings())
    refuse(path, "expected " + std::to_string(mateset.nmatings()) + " matings");
  std::int64_t j = 0;
  for (const ListedMating& mating : plan.matings) {
    const auto sire = candidate_.find(mating.sire), dam = candidate_.find(mating.dam);
    const bool known = sire != candidate_.end() && dam != candidate_.end() &&
                       selection_.candidates.is_male(sire->second) &&
                       selection_.candidates.is_female(dam->second);
    if (!known) refuse(path, "its animals are no candidates of this herd");
    mateset.male(++j) = sire->second;
    mateset.female(j) = dam->second;
  }
  const Uses uses = uses_of(selection_.candidates, mateset);
  for (std::int32_t i = 1; i <= selection_.candidates.ncands; ++i)
    if (uses(i) > 0) ++(selection_.candidates.is_male(i) ? plan.males : plan.females);
}

double Collector::degrees(double scaled_merit, double relationship) {
  if (!possible_.is_any() || possible_.curve().is_point()) return kNaN;
  const RelaxedPlan& first = possible_.curve().tangents().front().plan;
  const RelaxedPlan& last = possible_.curve().tangents().back().plan;
  const double less =
      (first.relationship - relationship) / (first.relationship - last.relationship);
  const double more = (scaled_merit - last.scaled_merit) / (first.scaled_merit - last.scaled_merit);
  return std::atan2(std::max(less, 0.0), std::max(more, 0.0)) * 180.0 / std::numbers::pi;
}

FrontierPlan Collector::plan(const PointRun& run) {
  FrontierPlan plan;
  plan.run = run;
  MatesetTable table;
  table.assign(1, selection_.nmatings);
  set_matings(folders_.mating_list(run), plan, table(1));
  const Problem problem{selection_, relationship_, objective_of(run, selection_.goal)};
  Journal journal;
  plan.value = value_of(problem, rows_, table(1), journal);
  if (problem.objective.criterion == Criterion::kConstraint)
    plan.constraint = problem.objective.constraint;
  const auto [at, is_new] = reach_.try_emplace(run.point.name);
  if (is_new) at->second = possible_.reach(problem.objective);
  plan.reach = at->second;
  plan.degrees = degrees(plan.value.scaled_merit, plan.value.relationship);
  const LogOfPlan log = read_log(folders_.log(run));
  plan.seconds = log.seconds;
  plan.how = run.is_search() ? "search" : log.exchanges > 0 ? "exchanges" : "greedy";
  return plan;
}

std::vector<CurvePoint> Collector::curve() {
  std::vector<CurvePoint> points;
  if (!possible_.is_any()) return points;
  BestPossible& curve = possible_.curve();
  curve.trace(kShare);
  const Goal& goal = selection_.goal;
  for (const auto& [scaled_merit, relationship, steeper] : curve.border())
    points.push_back({std::abs(steeper.relationship / steeper.scaled_merit), scaled_merit,
                      relationship,
                      (relationship - goal.last_rel) * goal.last_genint / (2.0 - goal.last_rel),
                      degrees(scaled_merit, relationship)});
  return points;
}

// The best of a target's plans, or of the herd's own.
std::size_t marked(const std::vector<FrontierPlan>& plans) {
  const auto wanted = [&](const FrontierPlan& plan) {
    const double share = std::isnan(plan.share()) ? 0.0 : plan.share();
    return (plan.run.point.target ? 20.0 : plan.run.point.is_own ? 10.0 : 0.0) + share;
  };
  const auto found =
      std::max_element(plans.begin(), plans.end(),
                       [&](const auto& a, const auto& b) { return wanted(a) < wanted(b); });
  return static_cast<std::size_t>(found - plans.begin());
}

}  // namespace

double FrontierPlan::share() const { return reach ? reach->share(value.fitness) : kNaN; }

double effective_size(double rate) { return rate > 0.0 ? 0.5 / rate : kNaN; }

Frontier collect(const SharedHerd& herd, Possible& possible, const FrontierFolders& folders,
                 const std::vector<PointRun>& finished) {
  Collector collector(herd, possible, folders);
  Frontier frontier;
  for (const PointRun& run : finished) frontier.plans.push_back(collector.plan(run));
  frontier.curve = collector.curve();
  frontier.marked = marked(frontier.plans);
  return frontier;
}

}  // namespace qob
