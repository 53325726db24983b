#include "ocs/improvement.h"

#include "ocs/evaluation.h"
#include "ocs/exchanges.h"

namespace qob {
namespace {

constexpr double kStrict = 1.0e6;  // loss by unit beyond the constraint at which nothing pays

bool keeps_constraint(const Problem& problem, const MatesetValue& value) {
  return problem.objective.criterion != Criterion::kConstraint ||
         value.relationship <= problem.objective.constraint;
}

// Exchanges on a copy of the plan, which takes its place if it is better.
std::int64_t exchange(const Problem& problem, RowCache& rows, Plan& plan, Journal& journal) {
  MatesetTable changed;
  changed.assign(1, problem.selection.nmatings);
  changed(1).copy_from(plan.best());
  const std::int64_t count =
      exchange_until_best(problem, greedy_weights(problem, rows), rows, changed(1));
  const MatesetValue value = value_of(problem, rows, changed(1), journal);
  const bool repairs =
      !keeps_constraint(problem, plan.best_value) && keeps_constraint(problem, value);
  if (!value.legal || !(value.fitness > plan.best_value.fitness || repairs)) return 0;
  plan.best().copy_from(changed(1));
  plan.best_value = value;
  return count;
}

}  // namespace

void exchange_on_best(const Problem& problem, Plan& plan, Journal& journal) {
  if (!plan.best_value.legal) return;  // the report stops the run
  RowCache rows(problem.relationship, problem.selection.candidates);
  const double before = plan.best_value.fitness;
  std::int64_t count = exchange(problem, rows, plan, journal);
  if (!keeps_constraint(problem, plan.best_value)) {
    Problem strict = problem;
    strict.objective.breach = kStrict;
    count += exchange(strict, rows, plan, journal);
    plan.best_value = value_of(problem, rows, plan.best(), journal);
  }
  both_list(journal.units.out, journal.units.log, "Improvement: ", count,
            " exchanges took the evaluation value from ", before, " to ", plan.best_value.fitness);
}

}  // namespace qob
