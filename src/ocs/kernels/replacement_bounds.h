// What changes when a candidate takes one mating of another, for all candidates of a sex at once:
// the gain of scaled merit, and bounds of the change of the average relationship.
#pragma once

#include <cstdint>
#include <vector>

#include "ocs/kernels/parent_sums.h"
#include "ocs/selection.h"

namespace qob {

// The gain of merit, scaled by k, when a mating of contribution d passes to a parent that is better
// by `merit`.
inline double merit_gain(double d, double merit, double k) { return merit * d / k; }

// The change of the average relationship when y takes a mating of x, with
//
//   apv2 = apv2(y) - apv2(x),  a = A(y) - A(x),  squares = cnrm(y,y) + cnrm(x,x) - 2 cnrm(y,x)
//
// and A(y) the sum of contribution(j) cnrm(y,j) over the parents j. It does not fall when A(y)
// rises, nor does any of its rounded operations.
inline double relationship_change(double d, double apv2, double a, double squares, double genint) {
  return (d * apv2 + 2.0 * d * a + d * d * squares) / (genint * genint);
}

// By candidate y - first(sex). A bound that is not a number bounds nothing.
struct ReplacementBounds {
  std::vector<double> gain;       // exactly
  std::vector<double> low, high;  // the change of relationship lies between them
};

// The candidate that loses a mating, and what the change depends on of it.
struct Loser {
  std::int32_t x;
  int sex;
  double a_x;     // A(x)
  KeptRow row_x;  // its relationships
};

// d: the contribution of one mating; own: the relationship of each candidate with itself; sums: of
// the loser's sex, following the mateset.
void bound_replacements(const Selection& selection, const Loser& loser, double d,
                        const ParentSums& sums, const double* own, ReplacementBounds& bounds);

}  // namespace qob
