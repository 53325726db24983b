// Maximum avoidance of inbreeding among the offspring of the selected parents.
#pragma once

#include "core/units.h"
#include "ocs/search.h"

namespace qob {

// Rearranges the females of the plan and updates the mean inbreeding in its value. Blocks of four
// matings, drawn at random, get the pairing of least inbreeding among their 24, pass after pass,
// until 20 passes in a row change nothing. Without `repeatedmatings` a pair that stands in another
// row as well costs 2.0. Draws from the plan's random stream.
void maximum_avoidance(const Candidates& candidates, const Relationship& relationship,
                       bool repeatedmatings, Plan& plan, Units& units);

}  // namespace qob
