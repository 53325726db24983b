// Where the genes of some animals come from: founders and founder equivalents.
//
// Founders are animals without a known parent. What an unknown parent of an animal with a known one
// gave comes from a founder of its own, that nobody knows.
#pragma once

#include <cstdint>
#include <vector>

#include "core/tables.h"

namespace qob {

struct FounderShare {
  std::int32_t animal = 0;
  double share = 0.0;  // of the genes of the reference
};

struct Founders {
  std::vector<FounderShare> ranked;  // all founders, the largest shares first, of equals the oldest
  double unknown_genes = 0.0;        // from unknown parents of animals with a known one
  // 1 / sum q^2 over founders, known or not, q their shares: so many founders that contribute
  // equally would give the same expected diversity (Lacy 1989, Zoo Biol. 8:111).
  double equivalents = 0.0;
  std::int64_t contributing = 0;  // founders, known or not, with a share above 0
};

// Shares q = T'x, x = 1/N for the N animals of the reference (by animal, 1 = belongs to it); they
// and unknown_genes sum to 1. Without a reference all shares are NaN. newped: 2 x maxid.
Founders founders_of(const Table2<std::int32_t>& newped, const Table<char>& reference);

}  // namespace qob
