#include "ocs/kernels/twins.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <numeric>
#include <tuple>
#include <utility>

namespace qob {
namespace {

using Mark = std::pair<std::uint64_t, std::int32_t>;  // of a row, and its candidate

std::uint64_t bits(double value) {
  std::uint64_t as_integer;
  std::memcpy(&as_integer, &value, sizeof value);
  return as_integer;
}

std::uint64_t mixed(std::uint64_t x) {
  x = (x ^ (x >> 31U)) * 0x9e3779b97f4a7c15U;
  return x ^ (x >> 29U);
}

// The same for twins, among which a candidate's own place differs: of the alike candidates it only
// counts what stands in their places, not where.
std::uint64_t mark_of(const double* row, std::int32_t y, const std::vector<char>& is_alike) {
  std::uint64_t mark = 0;
  for (std::size_t k = 1; k < is_alike.size(); ++k) {
    if (std::cmp_equal(k, y)) continue;
    mark += mixed(bits(row[k]) + (is_alike[k] != 0 ? 0 : mixed(k)));
  }
  return mark;
}

bool is_zero_but_for(const double* row, std::size_t n, std::int32_t y) {
  for (std::size_t k = 1; k < n; ++k) {
    if (row[k] != 0.0 && std::cmp_not_equal(k, y)) return false;
  }
  return true;
}

bool are_twins(const double* a, std::int32_t i, const double* b, std::int32_t j, std::size_t n) {
  for (std::size_t k = 1; k < n; ++k) {
    if (a[k] != b[k] && std::cmp_not_equal(k, i) && std::cmp_not_equal(k, j)) return false;
  }
  return true;
}

// Not every library makes a span of iterators.
template <class Iterator>
auto span_of(Iterator begin, Iterator end) {
  return std::span(&*begin, static_cast<std::size_t>(end - begin));
}

}  // namespace

Twins::Twins(const Selection& selection, RowCache& rows) {
  const Candidates& candidates = selection.candidates;
  const auto n = static_cast<std::size_t>(candidates.ncands) + 1;
  first_.resize(n);
  std::iota(first_.begin(), first_.end(), 0);
  unrelated_.assign(n, 0);
  is_alike_.assign(n, 0);
  const auto key = [&](std::int32_t y) {
    return std::tuple(candidates.is_male(y), bits(candidates.merit(y)),
                      bits(selection.goal.apv2(y)), bits(rows.own()[y]));
  };
  std::vector<std::int32_t> order(first_.begin() + 1, first_.end());
  std::sort(order.begin(), order.end(), [&](auto a, auto b) { return key(a) < key(b); });
  for (auto begin = order.begin(); begin != order.end();) {
    const auto end =
        std::find_if(begin, order.end(), [&](auto y) { return key(y) != key(*begin); });
    if (end - begin > 1) find_among(span_of(begin, end), rows);
    begin = end;
  }
}

void Twins::find_among(std::span<const std::int32_t> alike, RowCache& rows) {
  std::vector<Mark> marked;
  std::array<const double*, RowCache::kBlock> row;
  for (const std::int32_t y : alike) is_alike_[static_cast<std::size_t>(y)] = 1;
  for (std::size_t at = 0; at < alike.size(); at += row.size()) {
    const auto block = alike.subspan(at, std::min(row.size(), alike.size() - at));
    rows.read(block, RowCache::Keep::kNothing, row.data());
    for (std::size_t b = 0; b < block.size(); ++b) {
      const std::int32_t y = block[b];
      unrelated_[static_cast<std::size_t>(y)] = is_zero_but_for(row[b], first_.size(), y) ? 1 : 0;
      marked.emplace_back(mark_of(row[b], y, is_alike_), y);
    }
  }
  for (const std::int32_t y : alike) is_alike_[static_cast<std::size_t>(y)] = 0;
  std::sort(marked.begin(), marked.end());
  for (auto begin = marked.begin(); begin != marked.end();) {
    const auto end =
        std::find_if(begin, marked.end(), [&](const Mark& m) { return m.first != begin->first; });
    join(span_of(begin, end), rows);
    begin = end;
  }
}

// Makes twins of the first and those that are.
void Twins::join(std::span<const Mark> marked, RowCache& rows) {
  const std::int32_t first = marked.front().second;
  for (const Mark& mark : marked.subspan(1)) {
    const std::int32_t y = mark.second;
    const std::array<std::int32_t, 2> wanted = {first, y};
    std::array<const double*, 2> row;
    rows.read(wanted, RowCache::Keep::kNothing, row.data());
    if (are_twins(row[0], first, row[1], y, first_.size())) {
      first_[static_cast<std::size_t>(y)] = first;
    }
  }
}

}  // namespace qob
