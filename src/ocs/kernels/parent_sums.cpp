#include "ocs/kernels/parent_sums.h"

#include <algorithm>
#include <array>

#include "core/lanes.h"
#include "ocs/kernels/rounding.h"

namespace qob {
namespace {

// After so many rows the sums begin anew: their error grows with each.
constexpr std::int64_t kMostRows = 100000;

// About how many relationships are added in a nanosecond.
constexpr std::int64_t kElementsANanosecond = 2;

// Rows that are added at once, each its `delta` times; those beyond `count` count for nothing.
struct Block {
  std::array<KeptRow, RowCache::kBlock> row;
  std::array<double, RowCache::kBlock> delta{};
  std::size_t count = 0;

  void add(const KeptRow& kept, double uses) {
    if (count == 0) row.fill(kept);
    row[count] = kept;
    delta[count++] = kept.real != nullptr ? uses : KeptRow::kUnit * uses;
  }
};

// sum += delta[0] * row[0] + ... , for n candidates. All rows cost one pass over the sums.
template <class Element>
QOB_VECTOR_CLONES void add_rows(double* __restrict sum, const Element* const* row,
                                const double* delta, std::size_t n) {
  const Element *r0 = row[0], *r1 = row[1], *r2 = row[2], *r3 = row[3];
  const Element *r4 = row[4], *r5 = row[5], *r6 = row[6], *r7 = row[7];
  for (std::size_t k = 0; k < n; ++k) {
    sum[k] += ((delta[0] * r0[k] + delta[1] * r1[k]) + (delta[2] * r2[k] + delta[3] * r3[k])) +
              ((delta[4] * r4[k] + delta[5] * r5[k]) + (delta[6] * r6[k] + delta[7] * r7[k]));
  }
}

// The same for two, as many as a replacement changes.
template <class Element>
QOB_VECTOR_CLONES void add_two_rows(double* __restrict sum, const Element* const* row,
                                    const double* delta, std::size_t n) {
  const Element *r0 = row[0], *r1 = row[1];
  for (std::size_t k = 0; k < n; ++k) sum[k] += delta[0] * r0[k] + delta[1] * r1[k];
}

template <class Element>
void add_block(const Block& block, const Element* KeptRow::*elements, std::size_t first,
               std::size_t n, double* sum) {
  std::array<const Element*, RowCache::kBlock> row;
  for (std::size_t b = 0; b < row.size(); ++b) row[b] = block.row[b].*elements + first;
  const auto add = block.count > 2 ? add_rows<Element> : add_two_rows<Element>;
  add(sum + first, row.data(), block.delta.data(), n);
}

// To the sums of n candidates from `first` on.
void add_block(const Block& block, std::size_t first, std::size_t n, double* sum) {
  if (block.row[0].real != nullptr) return add_block(block, &KeptRow::real, first, n, sum);
  add_block(block, &KeptRow::fixed, first, n, sum);
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
  const auto n = static_cast<std::size_t>(std::int64_t{last} - first + 1);
  std::vector<RowCache::Want> wanted;
  for (const std::int32_t j : changed) wanted.push_back({j, sum_.size()});
  rows.prepare(wanted);
  std::vector<Block> blocks;
  std::vector<std::int32_t> unkept;
  for (const std::int32_t j : changed) {
    const KeptRow row = rows.find(j);
    if (!row.is_kept()) {
      unkept.push_back(j);
      continue;
    }
    if (blocks.empty() || blocks.back().count == RowCache::kBlock) blocks.emplace_back();
    blocks.back().add(row, static_cast<double>(uses(j) - uses_(j)));
  }
  const auto nanoseconds = static_cast<std::int64_t>(changed.size() * n) / kElementsANanosecond;
  const auto threads = static_cast<std::size_t>(rows.parallel().threads_for(nanoseconds));
  const std::span<double> sums = std::span(sum_).subspan(static_cast<std::size_t>(first), n);
  const auto add = [&](std::span<const double> some, int) {
    const std::size_t from = static_cast<std::size_t>(some.data() - sum_.data());
    for (const Block& block : blocks) add_block(block, from, some.size(), sum_.data());
  };
  rows.parallel().for_each_block(std::span<const double>(sums), (n + threads - 1) / threads,
                                 nanoseconds, add);
  for (const std::int32_t j : unkept) {
    Block block;
    block.add(rows.find_or_read(j), static_cast<double>(uses(j) - uses_(j)));
    add_block(block, static_cast<std::size_t>(first), n, sum_.data());
  }
  for (const std::int32_t j : changed) uses_(j) = uses(j);
  rows_added_ += std::ssize(changed);
}

}  // namespace qob
