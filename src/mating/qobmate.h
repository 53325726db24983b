// Pairs the selected parents and writes the mating list and the lists of candidates.
//
// How often each parent is used is settled; who goes with whom is free, and decides how inbred the
// offspring are: F = A(sire, dam) / 2 (Wright 1922). Maximum avoidance lowers mean F by exchanges
// among four pairs at a time, drawn at random, until they no longer help. Draws go on from where
// the search left its stream. The lists name animals as the data file does.
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
