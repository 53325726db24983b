// Some animals and all their ancestors, numbered compactly, and the set through which ancestors
// are met in descending order.
//
// Parents have smaller numbers than their offspring. So a set that yields its largest member, to
// which the parents of each animal met are added, meets every ancestor once, after all its
// offspring.
#pragma once

#include <bit>
#include <cstdint>
#include <vector>

#include "core/tables.h"

namespace qob {

// A set of numbers 0..n, a bit each; 0, the unknown parent, is taken in and never met.
class DescendingSet {
 public:
  explicit DescendingSet(std::int64_t n = 0) : words_(static_cast<std::size_t>(n / 64 + 1), 0) {}

  // The part of the set that holds j.
  static std::size_t word(std::int32_t j) { return static_cast<std::size_t>(j) / 64; }

  // Returns whether j was in the set before, as 1 or 0.
  std::uint64_t insert(std::int32_t j) {
    const std::uint64_t before = words_[word(j)];
    words_[word(j)] = before | std::uint64_t{1} << (j % 64);
    return before >> (j % 64) & 1;
  }
  // 1 or 0.
  std::uint64_t contains(std::int32_t j) const { return words_[word(j)] >> (j % 64) & 1; }

  // Calls visit(j) for all members j <= top, the largest first; what it inserts below j is visited
  // too.
  template <class Visit>
  void descend(std::int32_t top, Visit visit) const {
    for (std::size_t w = word(top) + 1; w-- > 0;) {
      std::uint64_t below = w > 0 ? ~std::uint64_t{0} : ~std::uint64_t{1};
      while (const std::uint64_t rest = words_[w] & below) {
        const int bit = 63 - std::countl_zero(rest);
        below &= (std::uint64_t{1} << bit) - 1;
        visit(static_cast<std::int32_t>(w * 64) + bit);
      }
    }
  }

  // Takes out all members up to `top`.
  void clear(std::int32_t top) {
    for (std::size_t w = 0; w <= word(top); ++w) words_[w] = 0;
  }

 private:
  std::vector<std::uint64_t> words_;
};

// The animals that have been added, with all their ancestors, as numbers 1..size() in animal
// order:
//
//   add(9), close():    9 <- 7, 4    7 <- 4, 2    animals  2 4 7 9
//                                                 numbers  1 2 3 4
class Ancestry {
 public:
  struct Parents {
    std::int32_t sire, dam;  // numbers, 0 = unknown
  };

  // newped: 2 x n, parents by animal, 0 = unknown.
  explicit Ancestry(const Table2<std::int32_t>& newped)
      : newped_(newped), set_(newped.columns()), number_(newped.columns() + 1, 0) {}

  void add(std::int32_t animal) {
    set_.insert(animal);
    if (animal > youngest_) youngest_ = animal;
  }
  // Numbers the animals added since the last time and their ancestors.
  void close();

  std::int32_t size() const { return static_cast<std::int32_t>(animal_.size()); }
  // Of an animal that is among them; 0 for 0.
  std::int32_t number(std::int32_t animal) const { return number_(animal); }
  // By number.
  std::int32_t animal(std::int32_t k) const {
    return animal_[static_cast<std::size_t>(size() - k)];
  }
  const Table<Parents, 0>& parents() const { return parents_; }

 private:
  const Table2<std::int32_t>& newped_;
  DescendingSet set_;
  std::int32_t youngest_ = 0;
  std::vector<std::int32_t> animal_;  // in descending order
  Table<std::int32_t, 0> number_;     // by animal, out of date for those that are not among them
  Table<Parents, 0> parents_;         // by number; may be longer than needed
};

}  // namespace qob
