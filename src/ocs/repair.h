// Repair of a mateset that was drawn at random or changed: back within the mating limits.
#pragma once

#include "core/random.h"
#include "core/watches.h"
#include "ocs/mateset.h"
#include "ocs/selection.h"

namespace qob {

// Makes the mateset legal as far as the draws allow: no female above max_matings, males in slots.
// Over-used males are left alone unless a female is over-used: so because females alone call for
// the repair; a mateset whose males alone are over-used stays in the population as an illegal one,
// which can never become the best. Entries that are no candidates of their sex are reported; an
// entry may stay empty (0) where no candidate has a mating left.
void repair_mateset(const Selection& selection, Mateset mateset, Random& random, Journal& journal);

}  // namespace qob
