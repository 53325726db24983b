// Birth-time groups in order of first appearance.
#pragma once

#include <cstdint>

#include "core/tables.h"

namespace qob {

struct Cohorts {
  Table<std::int32_t> btime;   // per group: its birth time
  Table<std::int32_t> size;    // per group: its number of animals
  Table<std::int32_t> cohort;  // per animal: its group, 1..count()

  std::int32_t count() const { return static_cast<std::int32_t>(btime.size()); }
  std::int32_t n(std::int32_t group) const { return size(group); }
  // The first group with this birth time, 0 if there is none.
  std::int32_t find(std::int32_t birth_time) const;
};

// Groups the animals with one birth time, numbering the groups as the animals meet them.
Cohorts group_by_birth_time(const Table<std::int32_t>& btime);

}  // namespace qob
