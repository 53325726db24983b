// The optimisation, from the selection to the plan.
#include "ocs/plan_report.h"
#include "ocs/qobocs.h"
#include "ocs/selection_report.h"

namespace qob {

Plan ocs(Run& run, const Selection& selection, const Relationship& relationship) {
  const TimedPhase timed(run.journal, run.journal.watches.ocs);
  Units& units = run.journal.units;
  const OCSParameters& parameters = run.parameters.ocs;
  report_selection_data(selection, relationship, units.summary);
  write_list(units.out, "QOB initialised: starting Evolutionary Algorithm");
  const Problem problem{selection, relationship, objective_of(parameters, selection.goal)};
  Search search(problem, run.parameters.algorithm, run);
  for (bool more = search.begin(); more;) more = search.generation();
  Plan plan = search.finish();
  report_best_mateset(parameters, selection.candidates, plan, units);
  write_list(units.out);
  write_list(units.out, "Optimal contribution selection finished");
  return plan;
}

}  // namespace qob
