// The effective number of ancestors: founders or not, the fewest that account for a gene pool.
//
// It counts what founder equivalents do not see: genes lost where a line went through few animals
// (Boichard, Maignan & Verrier 1997, Genet. Sel. Evol. 29:5). Ancestors are taken one after the
// other, each time the one with the largest marginal contribution
//
//   p = q (1 - a),  q: share of the genes of the reference that flow through it and then through no
//                      ancestor taken before (those have lost their parents),
//                   a: share of its own genes that come from ancestors taken before,
//
// and the effective number is 1 / sum p^2. Members of the reference are among the ancestors, as
// generations overlap. Which of equals is taken changes the result: the oldest, but a member that
// is nobody's ancestor last. What differs by rounding alone is equal.
#pragma once

#include <cstdint>
#include <limits>

#include "core/tables.h"

namespace qob {

// With c the sum of n marginal contributions taken, the last of them p, and m founders: what is
// left came from (1 - c) / p further ancestors that contribute p each, or evenly from m - n
// founders.
struct EffectiveAncestors {
  double low = std::numeric_limits<double>::quiet_NaN();   // 1 / (sum p^2 + (1 - c) p)
  double high = std::numeric_limits<double>::quiet_NaN();  // 1 / (sum p^2 + (1 - c)^2 / (m - n));
                                                           // the same once all are taken
  std::int64_t taken = 0;
};

// Ancestors are looked through at most about so many times, all together. Of 1,000,000 animals,
// 200,000 of them living, it takes 2,000 ancestors in two seconds, and the bounds are 0.03 % apart.
inline constexpr std::int64_t kMostAncestorSteps = 200'000'000;

// newped: 2 x maxid; reference: by animal, 1 = belongs to it; founders: that contribute to it. NaN
// without a reference. At least one ancestor is taken, whatever most_steps.
EffectiveAncestors effective_ancestors(const Table2<std::int32_t>& newped,
                                       const Table<char>& reference, std::int64_t founders,
                                       std::int64_t most_steps = kMostAncestorSteps);

}  // namespace qob
