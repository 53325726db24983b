// The average relationship of the next generation for several matesets at once: a quadratic form in
// their contributions. The terms of each must be added one after another, as contributions are
// rounded and so are their products; with several sums side by side no addition has to wait for the
// one before, and a row of relationships is fetched once for all. Each sum has the order, and so
// the bits, that it has alone. Threads take sets, which leaves every sum as it is, though rows that
// they have in common are fetched by each thread.
#pragma once

#include <cstdint>
#include <span>
#include <vector>

#include "ocs/kernels/row_cache.h"
#include "ocs/mateset.h"
#include "ocs/selection.h"

namespace qob {

// The parents of a mateset, ascending, each with its genetic contribution to the next generation:
// the share of the rows' places in which it stands.
struct ParentShares {
  std::vector<std::int32_t> candidate;
  std::vector<double> c;
};

// Turns uses into contributions, d each. Every parent counts: a threshold of 1/3n, below the 1/2n
// of one row, would only guard against rounding, and uses are counted in integers.
void take_shares(const Uses& uses, double d, ParentShares& parents);

// Most sets of parents in one call.
inline constexpr std::size_t kParentSets = 16;

// result[l] becomes (y + c)'A(y + c) / last_genint^2 for the contributions c of set l and the
// earlier ones y, summed in this order: vpapv; then for each candidate i of the set, ascending, its
// own terms and those with each later candidate k:
//
//   cnrm(i,i) c(i)^2 + apv2(i) c(i),   2 c(i) c(k) cnrm(k,i)
//
// Rows that are wanted often are kept. Sets are shared among the threads of `rows`.
void average_relationships(const Goal& goal, std::span<const ParentShares* const> sets,
                           RowCache& rows, double* result);
// The same for one set, once: no row is kept.
double average_relationship(const Goal& goal, const ParentShares& parents, RowCache& rows);

}  // namespace qob
