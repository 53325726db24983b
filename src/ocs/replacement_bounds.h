// What changes when a candidate takes one mating of another, for all candidates of a sex at once:
// the gain of scaled merit, and bounds of the change of the average relationship.
#pragma once

#include <cstdint>
#include <vector>

#include "core/qobtypestools.h"

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

// x: the candidate that loses a mating of contribution d, row_x: its relationships by candidate,
// a_x: A(x). model.sums of the sex must follow the mateset.
void bound_replacements(const Model& model, int sex, double d, std::int32_t x, double a_x,
                        const double* row_x, ReplacementBounds& bounds);

}  // namespace qob
