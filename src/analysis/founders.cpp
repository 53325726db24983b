#include "analysis/founders.h"

#include <algorithm>

#include "analysis/pedigree_products.h"

namespace qob {

Founders founders_of(const Table2<std::int32_t>& newped, const Table<char>& reference) {
  // From 1 and not from 1/N, as weights below 1e-8 are not passed on.
  Table<double> genes(newped.columns(), 0.0);
  std::copy(reference.begin(), reference.end(), genes.begin());
  const auto n = static_cast<double>(std::count(reference.begin(), reference.end(), 1));
  gen_cont(newped, genes);
  Founders founders;
  double sum_squares = 0.0;
  for (std::int32_t i = 1; i <= newped.columns(); ++i) {
    const int known = (newped(1, i) > 0) + (newped(2, i) > 0);
    if (known == 2) continue;
    const double share = known == 0 ? genes(i) : 0.5 * genes(i);
    sum_squares += share * share;
    if (share > 0.0) ++founders.contributing;
    if (known == 0) {
      founders.ranked.push_back({i, share});
    } else {
      founders.unknown_genes += share;
    }
  }
  std::stable_sort(founders.ranked.begin(), founders.ranked.end(),
                   [](const auto& a, const auto& b) { return a.share > b.share; });
  for (FounderShare& founder : founders.ranked) founder.share /= n;
  founders.unknown_genes /= n;
  founders.equivalents = n * n / sum_squares;
  return founders;
}

}  // namespace qob
