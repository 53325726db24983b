// Pairs the selected parents and writes the mating list and the lists of candidates.
#pragma once

#include "core/qobtypestools.h"

namespace qob {

// Rearranges the females of the best mateset as `matingstrategy` says, updates the mean inbreeding
// in its value, and writes the closing report and the lists. How often each parent is used does
// not change.
void mating(Model& model);

// Maximum avoidance of inbreeding: blocks of four matings, drawn at random, get the pairing of
// least inbreeding among their 24, pass after pass, until 20 passes in a row change nothing.
// Without `repeatedmatings` a pair that stands in another row as well costs 2.0.
void maximum_avoidance(Model& model);

}  // namespace qob
