// How close plans come to what is possible, and in what time: a row of a table for each finished
// run that is named by the prefix of its results. Shares are those of the way from using all
// candidates alike to the bound in whole matings; the bound in parts of matings is told by how much
// of that way it lies beyond.
#include <chrono>
#include <cstdio>

#include "frontier/possible.h"
#include "ocs/exchanges.h"
#include "ocs/kernels/plan_in_making.h"
#include "report/finished_run.h"
#include "system/process.h"

namespace qob {
namespace {

// Calls action and adds its wall time to `milliseconds`.
template <class Action>
auto timed(double& milliseconds, Action action) {
  const auto start = std::chrono::steady_clock::now();
  auto result = action();
  milliseconds +=
      std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - start).count();
  return result;
}

double fitness(const Problem& problem, RowCache& rows, const Uses& uses) {
  PlanInMaking plan(problem, rows);
  for (std::int32_t i = 1; i <= problem.selection.candidates.ncands; ++i)
    if (uses(i) > 0) plan.add(i, uses(i));
  const Worth& worth = plan.worth();
  return fitness_of(problem.objective, worth.scaled_merit, worth.merit, worth.relationship);
}

const char* name_of(Criterion criterion) {
  if (criterion == Criterion::kMerit) return "merit";
  return criterion == Criterion::kPenalty ? "penalty" : "constraint";
}

void measure(const char* prefix) {
  FinishedRun run;
  take_up_run(prefix, run);
  FinishedRun::Planned& planned = *run.planned;
  const Selection& selection = planned.selection;
  const Problem problem{selection, planned.relationship,
                        objective_of(run.run.parameters.ocs, selection.goal)};
  RowCache rows(planned.relationship, selection.candidates);
  double greedy_ms = 0.0, exchange_ms = 0.0, whole_ms = 0.0, parts_ms = 0.0, curve_ms = 0.0;
  const Weights weights = timed(greedy_ms, [&] { return greedy_weights(problem, rows); });
  Uses uses = timed(greedy_ms, [&] { return greedy_uses(problem, weights, rows); });
  const double greedy = fitness(problem, rows, uses);
  timed(exchange_ms, [&] { return exchange_until_best(problem, weights, rows, uses); });
  const double exchanged = fitness(problem, rows, uses);

  Possible possible(selection, planned.relationship, run.pedigree);
  const std::optional<Reach> whole =
      timed(whole_ms, [&] { return possible.reach(problem.objective); });
  Relationship as_from_file = planned.relationship;
  as_from_file.pedsource = false;
  Possible in_parts(selection, as_from_file, run.pedigree);
  const std::optional<Reach> parts =
      timed(parts_ms, [&] { return in_parts.reach(problem.objective); });
  timed(curve_ms, [&] {
    possible.curve().trace(1.0e-3);
    return 0;
  });
  if (!whole || !parts) return;
  std::printf(
      "| %s | %d | %s | %.6f | %.6f | %.6f | +%.6f | %.1f | %.1f | %.1f | %.1f | %.1f, %zu points |\n",
      prefix, selection.candidates.ncands, name_of(problem.objective.criterion),
      whole->share(planned.value.fitness), whole->share(greedy), whole->share(exchanged),
      (parts->bound - whole->bound) / (whole->bound - whole->base), greedy_ms, exchange_ms,
      whole_ms, parts_ms, curve_ms, possible.curve().tangents().size());
}

}  // namespace
}  // namespace qob

int main(int argc, char** argv) {
  qob::prepare_process();
  std::puts(
      "| run | candidates | criterion | search | greedy | exchanges | in parts | greedy ms | exchanges ms | bound ms | bound in parts ms | curve ms |");
  std::puts("|---|--:|---|--:|--:|--:|--:|--:|--:|--:|--:|--:|");
  for (int k = 1; k < argc; ++k) qob::measure(argv[k]);
}
