// Repair of a mateset that was drawn at random or changed: back within the mating limits.
#pragma once

#include "core/random.h"
#include "core/watches.h"
#include "ocs/mateset.h"
#include "ocs/selection.h"

namespace qob {

// Makes the mateset legal as far as the draws allow: no female above max_matings, males in slots.
// Over-used males are left alone unless a female is over-used: so because the search can live with
// them. Such a mateset is illegal and never replaces the best, but what else it holds stays in the
// population. Entries that are no candidates of their sex are reported; an entry may stay empty (0)
// where no candidate has a mating left.
void repair_mateset(const Selection& selection, Mateset mateset, Random& random, Journal& journal);

}  // namespace qob
