// The change of the average relationship when a candidate takes one mating of another, and bounds
// of it for all candidates of a sex at once.
#pragma once

#include <cstdint>
#include <vector>

#include "core/qobtypestools.h"

namespace qob {

// A number lies between the two. One that is not a number bounds nothing.
struct Bounds {
  double low = 0.0;
  double high = 0.0;
};

// The change for y in the place of x: d is the contribution of a mating, apv2, a and squares are
//
//   apv2(y) - apv2(x),   A(y) - A(x),   cnrm(y,y) + cnrm(x,x) - 2 cnrm(y,x)
//
// with A(y) the sum of contribution(j) cnrm(y,j) over the parents j. It never falls when a rises,
// neither do its rounded operations.
inline double relationship_change(double d, double apv2, double a, double squares, double genint) {
  return (d * apv2 + 2.0 * d * a + d * d * squares) / (genint * genint);
}

// Sets bounds[y - first(sex)] for each candidate y of the sex, from sums that follow the mateset.
// row_x: relationships of x by candidate; a_x: A(x).
void bound_relationship_changes(const Model& model, int sex, double d, std::int32_t x, double a_x,
                                const double* row_x, std::vector<Bounds>& bounds);

}  // namespace qob
