// How far the fast forms of the search may be from the sums that they stand for.
//
// Directed mutation looks at every candidate of a sex for each entry that it replaces, and a proper
// sum for each would cost as many products as there are parents. Instead it keeps approximate sums
// (parent_sums) with a bound of their error; only candidates that the bounds leave open get the
// proper sum, in its proper order, which alone decides. A choice is so the one of the plain form,
// to the last bit, as long as these bounds hold. Being too wide costs time alone; they are about
// twice what is derived here.
//
// Model (Higham 2002, Accuracy and Stability of Numerical Algorithms, 2nd ed., sections 2.2
// and 4.2): each operation gives the exact result times 1 + delta, |delta| <= u = epsilon / 2; a
// sum so errs by at most u times the sum of its partial sums' magnitudes, whatever its order. The
// model fails where products underflow or sums overflow: there nothing is bounded.
#pragma once

#include <cmath>
#include <cstdint>
#include <limits>

namespace qob {

inline constexpr double kEpsilon = std::numeric_limits<double>::epsilon();

// Approximate sums S(y) = sum over j of uses(j) a(y,j), made by adding rows of the matrix times
// changes of uses, against the proper sum of a(y,j) times the rounded contribution uses(j) / U,
// with U uses in all and |a| <= `largest`: how far S(y) / U and the proper sum may be apart.
//
// While rows are added the uses are a mixture of old and new ones, so that no partial sum exceeds
// 2 U largest. A row rounds its product (at most U largest) and an addition: with R rows at most
// 4 R u U largest, divided by U: 2 R epsilon largest. The proper sum has partial sums of at most
// `largest`; each of its P terms rounds an addition, and product, contribution and 1 / U round
// the whole by 3 u more: (P / 2 + 2) epsilon largest.
inline double error_of_parent_sums(std::int64_t rows_added, std::int64_t parents, double largest) {
  constexpr double kHuge = 1e290;
  if (largest > kHuge || (largest > 0.0 && largest < 1.0 / kHuge)) {
    return std::numeric_limits<double>::infinity();
  }
  return static_cast<double>(8 * rows_added + 8 * parents + 64) * kEpsilon * largest;
}

// The average relationship of a mateset, before it is divided by the squared generation interval,
// made from the sums of either sex, against the sum of its P (P + 1) / 2 + 1 terms in their order.
// No partial sum exceeds `most` = |vpapv| + largest + |apv2| at its largest. Each term of the
// proper sum rounds three products and an addition, at most P^2 / 2 additions in all: P^2 / 4
// epsilon most, and less than as much for the products. error_of_sums: of the sums of both sexes
// together.
inline double error_of_average_relationship(std::size_t parents, double most,
                                            double error_of_sums) {
  const auto p = static_cast<double>(parents);
  return (p * p + 16.0 * p + 64.0) * kEpsilon * most + error_of_sums;
}

// Two changes that differ by more than this differ also when the predicted relationship `now` has
// been added to each: either sum rounds by u (now + change).
inline double rounding_of_prediction(double now, double change) {
  return 4.0 * kEpsilon * (std::abs(now) + std::abs(change));
}

}  // namespace qob
