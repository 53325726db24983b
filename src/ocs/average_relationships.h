// The average relationship of the next generation for several sets of contributions at once. The
// terms of a set must be added one after another; with several sums side by side no addition has to
// wait for the one before, and a row of relationships is fetched once for all sets. Plain over
// fast, measured for offspring of a search: 5 for 500 matings of 5,000 candidates, where the memory
// is the limit, 2 for 100 of 1,000.
#pragma once

#include <cstdint>
#include <span>
#include <vector>

#include "core/qobtypestools.h"

namespace qob {

// What the candidates contribute to the next generation: candidate[k] contributes c[k], the others
// nothing. Candidates ascend.
struct Contributions {
  std::vector<std::int32_t> candidate;
  std::vector<double> c;
};

// Most sets of one call.
inline constexpr std::size_t kContributionSets = 16;

// result[l] becomes (y + c)'A(y + c) / last_genint^2 for the contributions c of set l and the
// earlier ones y, summed in this order: vpapv; then for each candidate i of the set, ascending, its
// own terms and those with each later candidate k:
//
//   cnrm(i,i) c(i)^2 + apv2(i) c(i),   2 c(i) c(k) cnrm(k,i)
//
// rows: of the candidates; keep: whether those that are made for it are kept for later.
void average_relationships(const Model& model, std::span<const Contributions* const> sets,
                           RelationshipRows& rows, RelationshipRows::Keep keep, double* result);

}  // namespace qob
