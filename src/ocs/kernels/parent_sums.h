// Approximate sums of relationships to the parents of a mateset, for all candidates of one sex at
// once. They bound what a sum in its proper order can be (see rounding.h), so that only the few
// candidates that the bounds leave open need that sum. From mateset to mateset and from replacement
// to replacement the sums go on by the rows of the candidates whose uses have changed. Threads take
// candidates, each the same rows.
#pragma once

#include <cstdint>
#include <span>
#include <vector>

#include "ocs/kernels/row_cache.h"
#include "ocs/mateset.h"

namespace qob {

class ParentSums {
 public:
  // Makes sum(y), for the candidates y = first..last, that of uses(j) * cnrm(y, j) over all
  // candidates j. `first`, `last` and `rows` must be those of all calls before.
  void follow(const Uses& uses, RowCache& rows, std::int32_t first, std::int32_t last);

  // The sum of candidate y at [y].
  const double* data() const { return sum_.data(); }

  // With U uses in all, how far sum(y) / U may be from the same sum of cnrm(y, j) times the rounded
  // contributions uses(j) / U, each product and each addition rounded in any order.
  double error() const { return error_; }

 private:
  void add_rows(std::span<const std::int32_t> changed, const Uses& uses, RowCache& rows,
                std::int32_t first, std::int32_t last);

  std::vector<double> sum_;
  Uses uses_;                                 // that the sums stand for
  std::vector<std::int32_t> used_, changed_;  // work tables
  std::int64_t rows_added_ = 0;               // since the sums began at 0
  double error_ = 0.0;
};

}  // namespace qob
