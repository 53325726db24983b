// Exchanges: a plan is made better by giving matings of one candidate to another until no such
// exchange, and no two of them together, makes it better.
#pragma once

#include "ocs/greedy_plan.h"
#include "ocs/kernels/row_cache.h"
#include "ocs/mateset.h"
#include "ocs/objective.h"

namespace qob {

// Changes how often a legal plan uses each candidate until single exchanges no longer help, nor two
// at once among the 3,000 that are best alone, ranked by `weights`. Mating limits and whole units
// of males are kept, and the matings of each sex. Returns the number of exchanges.
std::int64_t exchange_until_best(const Problem& problem, const Weights& weights, RowCache& rows,
                                 Uses& uses);

// The same for a plan, each new parent in rows of the one that it replaces, so that the others stay
// paired as they are.
std::int64_t exchange_until_best(const Problem& problem, const Weights& weights, RowCache& rows,
                                 Mateset plan);

}  // namespace qob
