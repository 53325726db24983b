// The relationships of each candidate with every candidate, some candidates at a time: one walk
// over the packed triangle, in which each element is met in its row and in its column, and which
// keeps no more of the matrix than the rows of the candidates at hand. For what is wanted once of
// all candidates; what a search wants again and again of some of them is in row_cache.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>

#include "core/lanes.h"
#include "ocs/candidates.h"

namespace qob {

// After each next(), lane l of every column stands for candidate(l); lanes from size() on repeat
// the last candidate. Candidates come in the order of their rows in the matrix, which they do not
// share, so that those of a sex come in ascending order.
class TriangleWalk {
 public:
  // 16 take two or three cache lines of each row below; with 8 the walk takes half as long again.
  static constexpr std::size_t kLanes = 16;
  using Column = Lanes<double, kLanes>;

  // Asks for memory for kLanes * ncands elements.
  TriangleWalk(const Relationship& relationship, const Candidates& candidates);

  // Goes on to the next candidates. False: there are no more.
  bool next();
  std::size_t size() const { return size_; }
  std::int32_t candidate(std::size_t lane) const { return number_[lane]; }

  // The relationships with candidate j = 1..ncands; one after the other in memory.
  const Column& column(std::int64_t j) const { return columns_[static_cast<std::size_t>(j - 1)]; }
  Column& column(std::int64_t j) { return columns_[static_cast<std::size_t>(j - 1)]; }
  // The lanes of column j as an array; a vector may be accessed by its elements' type.
  double* lanes(std::int64_t j) { return reinterpret_cast<double*>(&column(j)); }

  // Adds the columns first..last to `sum`, in this order in each lane.
  void add_columns(std::int64_t first, std::int64_t last, Column& sum) const;
  // Adds the columns of the n candidates `number`, in the order given.
  void add_columns(const std::int32_t* number, std::int64_t n, Column& sum) const;

 private:
  struct Place {
    std::int32_t row;
    std::int32_t candidate;
  };
  void fill_columns(const std::array<std::int32_t, kLanes>& row, std::int64_t before);

  const double* nrm_;
  Table<Place> places_;  // in ascending order of rows
  std::unique_ptr<Column[]> columns_;
  std::int64_t done_ = 0;  // places that have been in the lanes
  std::size_t size_ = 0;
  std::array<std::int32_t, kLanes> number_{};
};

}  // namespace qob
