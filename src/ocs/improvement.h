// What a run may do after the search: exchanges, which find what it has left.
#pragma once

#include "core/watches.h"
#include "ocs/objective.h"
#include "ocs/search.h"

namespace qob {

// Exchanges on a legal plan until none helps, and tells the log and standard output what was
// gained. A plan that is beyond the constraint, where that pays, gives way to the best that
// exchanges find within it.
void exchange_on_best(const Problem& problem, Plan& plan, Journal& journal);

}  // namespace qob
