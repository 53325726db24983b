// The breeder's rules: whether a plan keeps each of them, and what each of them costs.
#pragma once

#include <vector>

#include "ocs/mateset.h"
#include "report/finished_run.h"
#include "report/names.h"
#include "report/report.h"

namespace qob {

// The rules of the run, and by how many matings a mateset of its candidates breaks each.
std::vector<ReportedRule> told_rules(const FinishedRun& finished, const Names& names,
                                     Mateset mateset);

// The same of the run's own plan, with what each rule costs: how much more the plan is worth
// without it. That is an estimate. Exchanges improve the plan as long as one helps, first within
// all rules and from there without the one; of 60 rules at most, and no decided matings if there
// are more.
ReportedRules reported_rules(FinishedRun& finished, const Names& names);

}  // namespace qob
