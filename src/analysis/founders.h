// Where the genes of some animals come from: shares of founders and founder equivalents.
//
// A founder is an animal without a known parent. The genes that an animal with one known parent has
// from the other come from a founder of its own, which nobody knows.
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
  std::vector<FounderShare>
      ranked;                  // the known ones, the largest shares first, of equals the oldest
  double unknown_genes = 0.0;  // the shares of all unknown ones
  // 1 / sum q^2, q the shares of all founders: so many that contribute equally would be expected to
  // give the same diversity (Lacy 1989, Zoo Biol. 8:111).
  double equivalents = 0.0;
  std::int64_t contributing = 0;  // founders of both kinds with a share above 0
};

// Shares q = T'x, x = 1/N for the N animals of the reference; all shares sum to 1. Without a
// reference they are NaN. newped: 2 x maxid; reference: by animal, 1 = belongs to it.
Founders founders_of(const Table2<std::int32_t>& newped, const Table<char>& reference);

}  // namespace qob
