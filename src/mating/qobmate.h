// Pairs the selected parents and writes the mating list and the lists of candidates.
#pragma once

#include "core/qobtypestools.h"

namespace qob {

// Rearranges the females of the best mateset as `matingstrategy` says, updates the mean inbreeding
// in its value, and writes the closing report and the lists. How often each parent is used does
// not change.
void mating(Model& model);

}  // namespace qob
