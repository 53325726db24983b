// How far a relationship matrix is from being one of variances. From a pedigree it has no negative
// eigenvalue; from markers, rounded or put together from several sources, it may have.
#pragma once

#include "ocs/candidates.h"

namespace qob {

// As much as may be added to each candidate's relationship with itself so that no eigenvalue is
// negative: 0 if that needs nothing, else no more than 16 times what it needs, or a millionth of
// the largest relationship. About (the number of candidates)^3 / 3 operations, and once more for
// each time that it was too little.
double shift_to_definite(const Relationship& relationship, const Candidates& candidates);

}  // namespace qob
