// Whether the last birth time of a population is over: rates of inbreeding are reckoned from its
// animals.
#pragma once

#include <cstdint>

#include "core/tables.h"

namespace qob {

struct LastBirthTime {
  std::int32_t birth_time = 0;
  std::int64_t animals = 0;
  std::int64_t usual = 0;  // median of the five times before it; 0 where these are fewer than two

  // Few animals, compared with those before: more may be on their way.
  bool is_unfinished() const { return 2 * animals < usual; }
};

// btime: by animal; unknown ones do not count.
LastBirthTime last_birth_time(const Table<std::int32_t>& btime);

}  // namespace qob
