// What a user had better know of a selection, and of what was chosen from it, before animals are
// mated by it.
#pragma once

#include "core/parameters.h"
#include "core/units.h"
#include "ocs/candidates.h"
#include "ocs/mateset.h"
#include "pedigree/pedigree.h"

namespace qob {

// Tells on what weak ground the generation interval and the rate of inbreeding stand: few animals
// in the last time step, none with known parents, parents of unknown age.
void remark_on_last_time_step(const Pedigree& pedigree, const Candidates& candidates, Units& units);

// Tells how many candidates have an unknown parent, which counts as related to nobody, and how much
// they are used. Nothing for relationships that do not come from the pedigree.
void remark_on_unknown_parents(const Candidates& candidates, Units& units);
void remark_on_unknown_parents(const Candidates& candidates, Mateset best, Units& units);

// Tells of a constraint that the plan does not meet.
void remark_on_constraint(const OCSParameters& p, const MatesetValue& best, Units& units);

}  // namespace qob
