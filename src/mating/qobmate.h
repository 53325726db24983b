// Pairs the selected parents and writes the mating list and the lists of candidates.
#pragma once

#include "core/qobtypestools.h"
#include "ocs/search.h"
#include "ocs/selection.h"

namespace qob {

// Rearranges the females of the plan as `matingstrategy` says, updates the mean inbreeding in its
// value, and writes the closing report and the lists. How often each parent is used does not
// change.
void mating(Run& run, const Selection& selection, const Relationship& relationship, Plan& plan);

}  // namespace qob
