// Average coancestry within birth-time groups, and the inbreeding expected of them.
#pragma once

#include <cstdint>

#include "analysis/cohorts.h"
#include "core/tables.h"
#include "system/parallel.h"

namespace qob {

struct GroupCoancestry {
  double average = 0.0;   // of the members, each with itself included: 1'A1 / 2N^2
  double expected = 0.0;  // F had the members' sires and dams been paired at random
};

// By group. newped: 2 x maxid, parents by animal; f: from index 0, -1 there. Eight groups at a time
// go through the pedigree of their members and ancestors alone, of which each thread has tables of
// its own, 80 bytes an animal. Plain over fast, measured:
//
//   1,000,000 animals in 40 groups     3
//   1,000,000 animals in 1,000 groups  53
Table<GroupCoancestry> group_coancestries(const Table2<std::int32_t>& newped,
                                          const Table<double, 0>& f, const Cohorts& cohorts,
                                          Parallel& parallel);

}  // namespace qob
