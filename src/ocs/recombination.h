// Recombination of two matesets.
#pragma once

#include "core/random.h"
#include "core/watches.h"
#include "ocs/mateset.h"
#include "ocs/selection.h"

namespace qob {

// Makes `offspring` from two parents by gene-wise crossover within the mating limits: entry by
// entry from one parent, which changes with this probability. What the limits then leave empty is
// taken from the parents' other rows, in a random order.
void recombine(const Selection& selection, double crossover_probability, Mateset parent1,
               Mateset parent2, Mateset offspring, Random& random, Journal& journal);

}  // namespace qob
