// The average relationships of a candidate, element by element: the judge of the fast form.
#pragma once

#include "mating/average_relationships.h"

namespace qob::plain {

inline Averages averages_of(const Relationship& relationship, const Candidates& candidates,
                            Mateset mateset, std::int32_t i) {
  Averages sum;
  for (std::int32_t j = 1; j <= candidates.ncands; ++j) {
    (candidates.is_male(j) ? sum.males : sum.females) += cnrm(relationship, candidates, i, j);
  }
  for (std::int64_t k = 1; k <= mateset.nmatings(); ++k) {
    sum.males_sel += cnrm(relationship, candidates, i, mateset.male(k));
    sum.females_sel += cnrm(relationship, candidates, i, mateset.female(k));
  }
  const auto n = static_cast<double>(mateset.nmatings());
  return {sum.males / candidates.nmcands, sum.females / candidates.nfcands, sum.males_sel / n,
          sum.females_sel / n};
}

}  // namespace qob::plain
