// Rows of the relationship matrix in candidate order, contiguous, beside the packed triangle: half
// of a candidate's relationships lie scattered over the triangle. Rows are made when they are
// wanted and kept within a bound of memory, those lately used before others, as long as there is
// plenty of it. A row holds the elements of the triangle, copied: nothing is computed here. Each
// search has a cache of its own, over the one matrix.
//
// Relationships by a pedigree of less than 15 levels are multiples of 2^-29, as each level of
// either animal halves them once, and below 4. Such rows are kept as 32-bit integers: what a search
// waits for is the memory. An integer times its unit, a power of two, is the double again, so that
// what is computed has the same bits. Each element is tried when its row is made; the first that
// would lose a bit makes doubles of all rows.
#pragma once

#include <cstdint>
#include <cstdlib>
#include <memory>
#include <span>
#include <vector>

#include "ocs/candidates.h"
#include "system/parallel.h"

namespace qob {

// A kept row: the relationship with candidate k is real[k], or kUnit * fixed[k].
struct KeptRow {
  static constexpr double kUnit = 1.0 / (1 << 29);

  const double* real = nullptr;
  const std::int32_t* fixed = nullptr;

  bool is_kept() const { return real != nullptr || fixed != nullptr; }
};

class RowCache {
 public:
  // Most rows that one reading takes.
  static constexpr std::size_t kBlock = 8;
  // Most bytes of kept rows by default: all rows of 16,000 candidates, or 11,500 of doubles.
  static constexpr std::size_t kMostBytes = std::size_t{1} << 30;

  enum class Keep {
    kRows,     // new rows are kept if there is room
    kNothing,  // new rows are good for one reading
  };

  // So many elements of a candidate's row are to be looked at.
  struct Want {
    std::int32_t candidate;
    std::size_t elements;
  };

  // `relationship` stays as it is while this is in use, and so do the threads that share the work
  // on its rows; nullptr: none do.
  RowCache(const Relationship& relationship, const Candidates& candidates,
           std::size_t most_bytes = kMostBytes, Parallel* parallel = nullptr);

  // Sets row[b] to the relationships of candidate wanted[b] (at most kBlock of them, none twice, 0
  // stops the run): row[b][k] is that with candidate k = 1..ncands. Valid until the next call.
  void read(std::span<const std::int32_t> wanted, Keep keep, const double** row);

  // Makes and keeps the rows of these candidates, none twice, of which so much has been wanted, now
  // and before, that they are worth it, while there is room. 0 stops the run.
  void prepare(std::span<const Want> wanted);
  // The row of a candidate if it is kept. Valid until the next reading or preparation; several
  // threads may ask.
  KeptRow find(std::int32_t candidate) const;
  // The same, or the row as doubles if it is not kept.
  KeptRow find_or_read(std::int32_t candidate);
  // Whether the kept rows are integers.
  bool is_fixed() const { return is_fixed_; }

  // The threads that share the work on the rows.
  Parallel& parallel() { return parallel_ != nullptr ? *parallel_ : alone_; }

  // The relationship of candidates i and k.
  double element(std::int32_t i, std::int32_t k) const {
    return nrmelement(*relationship_, id_[static_cast<std::size_t>(i)],
                      id_[static_cast<std::size_t>(k)]);
  }
  // The relationship of each candidate k = 1..ncands with itself, at [k].
  const double* own() const { return own_.data(); }
  // The greatest absolute value in any row read or made so far.
  double largest() const { return largest_; }

 private:
  struct FreeMemory {
    void operator()(void* memory) const { std::free(memory); }
  };
  struct Place {
    std::unique_ptr<void, FreeMemory> row;
    std::int32_t candidate = 0;
    std::int64_t last_used = 0;  // `calls_` then
  };

  std::size_t element_size() const { return is_fixed_ ? sizeof(std::int32_t) : sizeof(double); }
  Place* place(std::int32_t candidate);
  bool take_place(std::int32_t candidate);
  void keep(std::span<const std::int32_t> candidates);
  bool make(std::span<const std::int32_t> candidates);
  template <class Element>
  bool fill(std::span<const std::int32_t> candidates, Element* const* rows, double& largest) const;
  template <class Element>
  bool fill_places(std::span<const std::int32_t> candidates, double& largest);
  void keep_doubles();
  const double* as_doubles(const KeptRow& row, double* scratch) const;

  const Relationship* relationship_;
  Parallel* parallel_;
  Parallel alone_;                // of one thread
  std::vector<std::int32_t> id_;  // by candidate: its row in the triangle
  std::vector<double> own_;
  std::vector<std::int32_t> place_of_;  // by candidate: place of its row, -1 = none
  std::vector<std::size_t> looked_at_;  // by candidate: elements wanted while it had no row
  std::vector<Place> places_;
  std::vector<double> scratch_;  // kBlock rows that are not kept
  std::size_t most_bytes_, most_places_;
  std::size_t hand_ = 0;  // the place that is looked at next for an old row
  std::int64_t calls_ = 0;
  double largest_ = 0.0;
  bool is_fixed_ = true;
};

}  // namespace qob
