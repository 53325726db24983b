#include "ocs/kernels/parent_sums.h"

#include <algorithm>
#include <array>

#include "core/lanes.h"
#include "ocs/kernels/rounding.h"

namespace qob {
namespace {

// After so many rows the sums begin anew: their error grows with each.
constexpr std::int64_t kMostRows = 100000;

// sum += delta[0] * row[0] + ... , from first to last. A block of rows costs one pass over the
// sums.
QOB_VECTOR_CLONES
void add_block(double* __restrict sum, const double* const* row, const double* delta,
               std::int32_t first, std::int32_t last) {
  const double *r0 = row[0], *r1 = row[1], *r2 = row[2], *r3 = row[3];
  const double *r4 = row[4], *r5 = row[5], *r6 = row[6], *r7 = row[7];
  for (std::int32_t k = first; k <= last; ++k) {
    sum[k] += ((delta[0] * r0[k] + delta[1] * r1[k]) + (delta[2] * r2[k] + delta[3] * r3[k])) +
              ((delta[4] * r4[k] + delta[5] * r5[k]) + (delta[6] * r6[k] + delta[7] * r7[k]));
  }
}

}  // namespace

void ParentSums::follow(const Uses& uses, RowCache& rows, std::int32_t first, std::int32_t last) {
  const auto n = static_cast<std::size_t>(uses.size());
  if (uses_.size() != uses.size()) {
    uses_.assign(uses.size(), 0);
    rows_added_ = kMostRows + 1;
    used_.resize(n);
    changed_.resize(n);
  }
  std::size_t used = 0, changed = 0;
  for (std::int32_t j = 1; j <= uses.last(); ++j) {
    used_[used] = changed_[changed] = j;
    used += uses(j) != 0;
    changed += uses(j) != uses_(j);
  }
  if (rows_added_ > kMostRows || changed > used) {
    sum_.assign(n, 0.0);
    uses_.fill(0);
    rows_added_ = 0;
    changed = used;
    std::swap(changed_, used_);
  }
  add_rows({changed_.data(), changed}, uses, rows, first, last);
  error_ = error_of_parent_sums(rows_added_, static_cast<std::int64_t>(used), rows.largest());
}

void ParentSums::add_rows(std::span<const std::int32_t> changed, const Uses& uses, RowCache& rows,
                          std::int32_t first, std::int32_t last) {
  constexpr std::size_t kBlock = RowCache::kBlock;
  for (std::size_t at = 0; at < changed.size(); at += kBlock) {
    const auto block = changed.subspan(at, std::min(kBlock, changed.size() - at));
    std::array<const double*, kBlock> row;
    std::array<double, kBlock> delta{};
    rows.read(block, RowCache::Keep::kRows, row.data());
    for (std::size_t b = 0; b < kBlock; ++b) {
      if (b >= block.size()) {
        row[b] = row[0];
        continue;
      }
      const std::int32_t j = block[b];
      delta[b] = static_cast<double>(uses(j) - uses_(j));
      uses_(j) = uses(j);
    }
    add_block(sum_.data(), row.data(), delta.data(), first, last);
  }
  rows_added_ += std::ssize(changed);
}

}  // namespace qob
