// How far a relationship matrix is from being one of variances. From a pedigree it has no negative
// eigenvalue; from markers, rounded or put together from several sources, it may have.
#pragma once

#include "ocs/candidates.h"

namespace qob {

// As much as may be added to each candidate's relationship with itself so that no eigenvalue is
// negative: a millionth of the largest relationship if that is enough, else no more than 16 times
// what is needed, in powers of 16. About (the number of candidates)^3 / 3 operations for each
// power.
double shift_to_definite(const Relationship& relationship, const Candidates& candidates);

}  // namespace qob
