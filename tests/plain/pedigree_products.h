// Coancestry of birth-time groups, one product over all animals at a time: the form that the fast
// one is judged and measured by.
#pragma once

#include "analysis/group_coancestry.h"
#include "analysis/pedigree_products.h"

namespace qob::plain {

inline GroupCoancestry group_coancestry(const Table2<std::int32_t>& newped,
                                        const Table<double, 0>& f, const Cohorts& cohorts,
                                        std::int32_t group) {
  const double n = cohorts.n(group);
  GroupCoancestry sums;
  Table<double> x(newped.columns(), 0.0), sires = x, dams = x;
  for (std::int64_t i = 1; i <= x.size(); ++i) {
    if (cohorts.cohort(i) != group) continue;
    x(i) = 1.0 / n;
    if (newped(1, i) > 0) sires(newped(1, i)) += 1.0;
    if (newped(2, i) > 0) dams(newped(2, i)) += 1.0;
  }
  ax(newped, f, x);
  ax(newped, f, sires);
  for (std::int64_t i = 1; i <= x.size(); ++i) {
    if (cohorts.cohort(i) == group) sums.average += x(i);
    sums.expected += dams(i) * sires(i);
  }
  return {sums.average / (2.0 * n), sums.expected / (2.0 * n * n)};
}

}  // namespace qob::plain
