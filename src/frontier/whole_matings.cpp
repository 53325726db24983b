#include "frontier/whole_matings.h"

#include <algorithm>

namespace qob {

Table<double> own_variances(const Pedigree& pedigree) {
  const std::int32_t n = pedigree.maxid;
  Table<char, 0> leads_to_candidate(std::int64_t{n} + 1,
                                    0);  // by animal: one of its descendants is
  Table<double> own(n, 0.0);
  for (std::int32_t i = n; i >= 1; --i) {  // offspring before parents
    const std::int32_t sire = pedigree.sire(i), dam = pedigree.dam(i);
    const bool is_candidate = pedigree.matings(i) > 0;
    if (is_candidate && leads_to_candidate(i) == 0)
      own(i) = 0.5 - 0.25 * (pedigree.f(sire) + pedigree.f(dam));
    if (is_candidate || leads_to_candidate(i) != 0)
      leads_to_candidate(sire) = leads_to_candidate(dam) = 1;
  }
  return own;
}

WholeMatings whole_matings(const Selection& selection, const Table<double>& own) {
  const Candidates& candidates = selection.candidates;
  const std::int32_t n = candidates.ncands;
  const Table<std::int32_t> none(n, 0);
  WholeMatings whole{none, none, none, none, Table<double>(n, 0.0)};
  for (std::int32_t i = 1; i <= n; ++i) {
    const std::int32_t unit = selection.unit(i), decided = selection.decided(i);
    whole.unit(i) = unit;
    whole.decided(i) = decided;
    whole.least(i) = (selection.least(i) - decided) / unit;
    whole.most(i) = (std::min(selection.most(i), selection.nmatings) - decided) / unit;
    if (own.size() > 0) whole.own(i) = own(candidates.cands(i));
  }
  return whole;
}

}  // namespace qob
