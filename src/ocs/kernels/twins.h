// Candidates that no objective tells apart, as full sibs without breeding values or animals without
// relatives: of equally good replacements the first is taken, so that only the first need be looked
// at. A herd in which all are equal would cost directed mutation a sum for every candidate
// otherwise (2,800 unrelated ones of equal merit: 50 times the time and more).
#pragma once

#include <cstdint>
#include <span>
#include <utility>
#include <vector>

#include "ocs/kernels/row_cache.h"
#include "ocs/selection.h"

namespace qob {

class Twins {
 public:
  // Looks at the rows of those alone that have merit, earlier contributions and relationship with
  // themselves in common with another candidate of their sex.
  Twins(const Selection& selection, RowCache& rows);

  // The lowest-numbered twin of y, or y. Twins have the same merit, earlier contributions and
  // relationship with themselves, and the same relationships with every third candidate.
  std::int32_t first(std::int32_t y) const { return first_[static_cast<std::size_t>(y)]; }
  // Whether y is known to have relationship 0 with every other candidate.
  bool is_unrelated(std::int32_t y) const { return unrelated_[static_cast<std::size_t>(y)] != 0; }

 private:
  void find_among(std::span<const std::int32_t> alike, RowCache& rows);
  void join(std::span<const std::pair<std::uint64_t, std::int32_t>> marked, RowCache& rows);

  std::vector<std::int32_t> first_;
  std::vector<char> unrelated_;
  std::vector<char> is_alike_;  // of the group under way, by candidate
};

}  // namespace qob
