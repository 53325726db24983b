// The optimisation, from the selection to the plan.
#include <algorithm>

#include "core/progress.h"
#include "ocs/improvement.h"
#include "ocs/plan_report.h"
#include "ocs/qobocs.h"
#include "ocs/remarks.h"
#include "ocs/selection_report.h"

namespace qob {
namespace {

// A search ends with its generations, or with those without improvement.
void show(const Standing& standing, const AlgorithmParameters& p, Progress& progress) {
  const double g = standing.igeneration;
  const double unimproved = g - standing.last_gen_improved;
  progress.show(std::max(g / std::max(p.generations, 1),
                         unimproved / std::max(p.ngenerationsnoimprovement, 1)),
                formatted("(A,I8,A,G12.6)", ", generation", standing.igeneration, ", best ",
                          standing.best_value.fitness));
}

}  // namespace

Plan ocs(Run& run, const Selection& selection, const Relationship& relationship) {
  const TimedPhase timed(run.journal, run.journal.watches.ocs);
  Units& units = run.journal.units;
  const OCSParameters& parameters = run.parameters.ocs;
  report_selection_data(selection, relationship, units.summary);
  write_list(units.out, "QOB initialised: starting Evolutionary Algorithm");
  const Problem problem{selection, relationship, objective_of(parameters, selection.goal)};
  Search search(problem, run.parameters.algorithm, run);
  Progress progress("Search");
  for (bool more = search.begin(); more;) {
    if (progress.is_seen()) show(search.standing(), run.parameters.algorithm, progress);
    more = search.generation();
  }
  Plan plan = search.finish();
  if (run.parameters.improvement.finish) exchange_on_best(problem, plan, run.journal);
  report_best_mateset(parameters, selection.candidates, plan, units);
  remark_on_constraint(parameters, plan.best_value, units);
  remark_on_unknown_parents(selection.candidates, plan.best(), units);
  write_list(units.out);
  write_list(units.out, "Optimal contribution selection finished");
  return plan;
}

}  // namespace qob
