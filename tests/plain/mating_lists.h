// The average relationships of a candidate, element by element: the judge of the fast form.
#pragma once
#include "mating/list_columns.h"
namespace qob::plain {
inline ListColumns averages_of(const Relationship& r, const Candidates& c, Mateset rows, int i) {
  ListColumns sum;
  for (int j = 1; j <= c.ncands; ++j) (c.is_male(j) ? sum.males : sum.females) += cnrm(r, c, i, j);
  for (std::int64_t k = 1; k <= rows.nmatings(); ++k) {
    sum.males_sel += cnrm(r, c, i, rows.male(k));
    sum.females_sel += cnrm(r, c, i, rows.female(k));
  }
  const auto n = static_cast<double>(rows.nmatings());
  return {sum.males / c.nmcands, sum.females / c.nfcands, sum.males_sel / n, sum.females_sel / n};
}
}  // namespace qob::plain
