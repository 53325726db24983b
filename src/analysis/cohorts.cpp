#include "analysis/cohorts.h"

#include <map>
#include <vector>

namespace qob {

std::int32_t Cohorts::find(std::int32_t birth_time) const {
  for (std::int32_t group = 1; group <= count(); ++group) {
    if (btime(group) == birth_time) return group;
  }
  return 0;
}

Cohorts group_by_birth_time(const Table<std::int32_t>& btime) {
  std::map<std::int32_t, std::int32_t> number;  // no choice of times makes a look-up long
  std::vector<std::int32_t> times;
  Cohorts cohorts;
  cohorts.cohort.assign(btime.size(), 0);
  for (std::int64_t i = 1; i <= btime.size(); ++i) {
    const auto next = static_cast<std::int32_t>(times.size()) + 1;
    const auto [group, is_new] = number.try_emplace(btime(i), next);
    if (is_new) times.push_back(btime(i));
    cohorts.cohort(i) = group->second;
  }
  const auto groups = static_cast<std::int64_t>(times.size());
  cohorts.btime.assign(groups, 0);
  cohorts.size.assign(groups, 0);
  for (std::int64_t g = 1; g <= groups; ++g) {
    cohorts.btime(g) = times[static_cast<std::size_t>(g - 1)];
  }
  for (const std::int32_t g : cohorts.cohort) ++cohorts.size(g);
  return cohorts;
}

}  // namespace qob
