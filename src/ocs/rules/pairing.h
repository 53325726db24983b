// Who is mated with whom in a plan that has rules, or is to have exactly the least inbreeding.
#pragma once

#include <span>
#include <vector>

#include "analysis/relationship.h"
#include "core/random.h"
#include "ocs/mateset.h"
#include "ocs/rules/breaches.h"
#include "ocs/selection.h"

namespace qob {

std::vector<Pair> pairs_of(Mateset mateset);

// Swaps females of free rows where that keeps rules of pairs that rows break: cheap, and mostly
// enough. Rows may be left that break rules.
void mend_pairs(const Selection& selection, Mateset mateset);

// Whether the parents of a mateset can be paired so that all rules of pairs are kept.
bool can_be_paired(const Selection& selection, Mateset mateset);
// The same of uses, as many of each sex. matings: any that come close; a pairing of these uses
// takes their place if there is one.
bool can_be_paired(const Selection& selection, const Uses& uses, std::vector<Pair>& matings);

// Pairs the parents of a mateset so that the mean inbreeding of their offspring is the least that
// the rules permit, decided matings as they are: an assignment of least cost. Costs are inbreeding
// coefficients rounded to 2^-40 (more coarsely where a file has relationships beyond 2); each
// mating that repeats a pair costs 2 more unless that is welcome. None where the rules permit no
// pairing.
std::vector<Pair> least_inbred_pairs(const Selection& selection, const Relationship& relationship,
                                     bool repeatedmatings, Mateset mateset);
// Pairs them at random as far as rules permit it. None where they permit no pairing.
std::vector<Pair> random_pairs(const Selection& selection, Mateset mateset, Random& random);

// Enters a pairing of the mateset's parents: decided ones in the rows of those, the females of
// others in the rows of their males.
void enter_pairs(const Selection& selection, const std::vector<Pair>& pairs, Mateset mateset);

}  // namespace qob
