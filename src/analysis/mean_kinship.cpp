#include "analysis/mean_kinship.h"

#include <algorithm>

#include "analysis/pedigree_products.h"

namespace qob {

MeanKinship mean_kinship(const Table2<std::int32_t>& newped, const Table<double, 0>& f,
                         const Table<char>& reference) {
  MeanKinship kinship;
  kinship.of.assign(newped.columns(), 0.0);
  // From 1 and not from 1/N, as weights below 1e-8 are not passed on.
  std::copy(reference.begin(), reference.end(), kinship.of.begin());
  ax(newped, f, kinship.of);
  const auto n = static_cast<double>(std::count(reference.begin(), reference.end(), 1));
  for (double& relationships : kinship.of) relationships /= 2.0 * n;
  for (std::int64_t i = 1; i <= kinship.of.size(); ++i) {
    if (reference(i) == 1) kinship.mean += kinship.of(i);
  }
  kinship.mean /= n;
  return kinship;
}

}  // namespace qob
