// A plan made mating by mating, each given to the candidate that gains most by it: quickly made,
// and mostly close to the best.
#pragma once

#include "core/random.h"
#include "ocs/kernels/row_cache.h"
#include "ocs/mateset.h"
#include "ocs/objective.h"

namespace qob {

// The weights by which merit and relationship are added up.
struct Weights {
  double scaled_merit = 1.0;
  double relationship = 0.0;  // at most 0
};

// How often the plan uses each candidate. A sex whose candidates have no room for all matings, in
// whole units, stays short of them.
Uses greedy_uses(const Problem& problem, const Weights& weights, RowCache& rows);

// Makes the plan, its pairs drawn at random. False, with an incomplete plan: there is no room.
bool greedy_plan(const Problem& problem, RowCache& rows, Random& random, Mateset plan);

// The weights at which greedy plans come closest to the objective: its own under the penalty; under
// the constraint those of least weight on relationship at which the plan keeps it, found by
// halving.
Weights greedy_weights(const Problem& problem, RowCache& rows);

}  // namespace qob
