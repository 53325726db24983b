// Generation intervals by the four paths of inheritance: the age of parents at the birth of those
// of their offspring that became parents themselves (James 1977, Anim. Prod. 24:109).
#pragma once

#include <array>
#include <cstdint>

#include "pedigree/pedigree.h"

namespace qob {

// Ages in time steps. NaN: no mean of none, no standard error of fewer than two.
struct PathAges {
  std::int64_t n = 0;  // offspring with a parent of known age
  double mean = 0.0, se = 0.0;
};

struct GenerationIntervals {
  std::array<PathAges, 4> path;  // sire-son, sire-daughter, dam-son, dam-daughter
  // Half of all genes go through males and half through females, however many they are: the mean of
  // the means of the paths, as far as there are any, and its standard error.
  PathAges all;
};

// Of offspring born at `since` or later. A son is an animal that became a sire, a daughter one that
// became a dam; who became both counts as each.
GenerationIntervals generation_intervals(const Pedigree& pedigree,
                                         std::int32_t since = kNoBirthTime + 1);

}  // namespace qob
