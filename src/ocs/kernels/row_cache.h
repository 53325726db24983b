// Rows of the relationship matrix in candidate order, contiguous, beside the packed triangle: half
// of a candidate's relationships lie scattered over the triangle. Rows are made when they are first
// wanted and kept within a bound of memory, those lately used before others, as long as there is
// plenty of it. A row holds the elements of the triangle, copied: nothing is computed here. Each
// search has a cache of its own, over the one matrix.
#pragma once

#include <cstdint>
#include <cstdlib>
#include <memory>
#include <span>
#include <vector>

#include "ocs/candidates.h"

namespace qob {

class RowCache {
 public:
  // Most rows that one reading takes: the elements of a few rows lie close in the triangle.
  static constexpr std::size_t kBlock = 8;
  // Most bytes of kept rows by default: all rows of 11,500 candidates.
  static constexpr std::size_t kMostBytes = std::size_t{1} << 30;

  enum class Keep {
    kRows,     // new rows are kept if there is room
    kOften,    // rows that have been wanted often are made and kept; others are nullptr
    kNothing,  // new rows are good for one reading
  };

  // `relationship` stays as it is while this is in use.
  RowCache(const Relationship& relationship, const Candidates& candidates,
           std::size_t most_bytes = kMostBytes);

  // Sets row[b] to the relationships of candidate wanted[b] (at most kBlock of them, none twice, 0
  // stops the run): row[b][k] is that with candidate k = 1..ncands. Valid until the next call.
  void read(std::span<const std::int32_t> wanted, Keep keep, const double** row);

  // The relationship of candidates i and k.
  double element(std::int32_t i, std::int32_t k) const {
    return nrmelement(*relationship_, id_[static_cast<std::size_t>(i)],
                      id_[static_cast<std::size_t>(k)]);
  }
  // The relationship of each candidate k = 1..ncands with itself, at [k].
  const double* own() const { return own_.data(); }
  // The greatest absolute value in any row read so far.
  double largest() const { return largest_; }

 private:
  struct FreeMemory {
    void operator()(double* memory) const { std::free(memory); }
  };
  using Row = std::unique_ptr<double, FreeMemory>;
  struct Place {
    Row row;
    std::int32_t candidate = 0;
    std::int64_t last_used = 0;  // `calls_` then
  };

  bool is_worth_making(std::int32_t candidate, Keep keep);
  double* new_row(std::int32_t candidate);
  void fill(std::span<const std::int32_t> wanted, std::span<double* const> rows);

  const Relationship* relationship_;
  std::vector<std::int32_t> id_;  // by candidate: its row in the triangle
  std::vector<double> own_;
  std::vector<std::int32_t> place_of_;      // by candidate: place of its row, -1 = none
  std::vector<std::uint8_t> times_wanted_;  // by candidate, kOften only
  std::vector<Place> places_;
  std::vector<double> scratch_;  // kBlock rows that are not kept
  std::size_t most_places_;
  std::size_t hand_ = 0;  // the place that is looked at next for an old row
  std::int64_t calls_ = 0;
  double largest_ = 0.0;
};

}  // namespace qob
