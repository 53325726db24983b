// The population of a search.
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

}  // namespace qob
