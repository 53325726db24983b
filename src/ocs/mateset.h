// A mateset: the matings of a plan, and what it is worth.
//
// Row j mates a male with a female, both by their candidate numbers. The male column lies before
// the female column. What a mateset is worth depends on how often it uses each candidate; the order
// of rows only says which of them make a male's slot, and who is paired with whom only decides the
// inbreeding of the offspring that is reported.
#pragma once

#include <cstdint>

#include "core/tables.h"
#include "ocs/candidates.h"

namespace qob {

// A view of nmatings rows. An entry of 0 is empty.
class Mateset {
 public:
  Mateset(std::int32_t* entries, std::int64_t nmatings) : entries_(entries), nmatings_(nmatings) {}

  std::int32_t& male(std::int64_t j) const { return entries_[j - 1]; }
  std::int32_t& female(std::int64_t j) const { return entries_[nmatings_ + j - 1]; }
  std::int32_t& operator()(std::int64_t j, int sex) const {
    return sex == kMale ? male(j) : female(j);
  }
  // Entry p = 1..2*nmatings counted down the male column and on down the female column.
  std::int32_t& entry(std::int64_t p) const { return entries_[p - 1]; }
  std::int64_t nmatings() const { return nmatings_; }

  void fill(std::int32_t value) const {
    for (std::int64_t p = 1; p <= 2 * nmatings_; ++p) entry(p) = value;
  }
  void copy_from(const Mateset& other) const {
    for (std::int64_t p = 1; p <= 2 * nmatings_; ++p) entry(p) = other.entry(p);
  }
  bool has_empty_entry() const {
    for (std::int64_t p = 1; p <= 2 * nmatings_; ++p) {
      if (entry(p) == 0) return true;
    }
    return false;
  }

 private:
  std::int32_t* entries_;
  std::int64_t nmatings_;
};

// Matesets of equal size, numbered from 1.
class MatesetTable {
 public:
  void assign(std::int64_t count, std::int64_t nmatings) {
    entries_.assign(count * nmatings * 2, 0);
    nmatings_ = nmatings;
  }
  Mateset operator()(std::int64_t k) {
    return {entries_.data() + (k - 1) * 2 * nmatings_, nmatings_};
  }

 private:
  Table<std::int32_t> entries_;
  std::int64_t nmatings_ = 0;
};

// How often a mateset uses each candidate: the rows in which it stands. Element 0 counts the
// entries that are no candidate.
using Uses = Table<std::int32_t, 0>;

// Adds `step` for each entry of a mateset to its candidate's element of `table`, which has one for
// every candidate.
template <class Number>
void count_uses(Mateset mateset, Table<Number, 0>& table, Number step = 1) {
  for (std::int64_t p = 1; p <= 2 * mateset.nmatings(); ++p) {
    const std::int32_t i = mateset.entry(p);
    table(i > 0 && i <= table.last() ? i : 0) += step;
  }
}
inline Uses uses_of(const Candidates& candidates, Mateset mateset) {
  Uses uses(std::int64_t{candidates.ncands} + 1, 0);
  count_uses(mateset, uses);
  return uses;
}

// What a mateset is worth.
struct MatesetValue {
  double inbreeding = 0.0;    // 1: mean inbreeding of the offspring
  double rate = 0.0;          // 2: predicted rate of inbreeding per generation
  double relationship = 0.0;  // 3: average relationship of the next generation
  double merit = 0.0;         // 4: mean merit of the parents
  double scaled_merit = 0.0;  // 5: scaled mean merit less its expectation
  double fitness = 0.0;       // 6: larger is better
  double age = 0.0;           // 7: mean age class of the parents
  bool legal = false;         // 8: mating limits are kept, and males in whole slots
};

}  // namespace qob
