// What a search has: its population, and how it stands.
#pragma once

#include <cstdint>

#include "core/tables.h"
#include "ocs/mateset.h"

namespace qob {

// Matesets with their values, numbered 1..popsize.
struct Population {
  MatesetTable pop;
  Table<MatesetValue> pop_value;

  std::int32_t popsize() const { return static_cast<std::int32_t>(pop_value.size()); }
};

// How a search stands.
struct Standing {
  MatesetTable best_mating;  // one mateset: the best so far
  MatesetValue best_value;
  std::int32_t igeneration = 0;        // the generation under way
  std::int32_t last_gen_improved = 0;  // that of the last improvement
  std::int32_t last_change = 1;        // that of the last improvement or restart

  Mateset best() { return best_mating(1); }
};

}  // namespace qob
