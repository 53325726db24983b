#include "analysis/last_birth_time.h"

#include <algorithm>
#include <map>
#include <vector>

#include "pedigree/pedigree.h"

namespace qob {
namespace {

constexpr std::size_t kUsualSteps = 5;

}  // namespace

LastBirthTime last_birth_time(const Table<std::int32_t>& btime) {
  std::map<std::int32_t, std::int64_t> count;
  for (const std::int32_t time : btime) {
    if (birth_time_is_known(time)) ++count[time];
  }
  if (count.empty()) return {};
  LastBirthTime last{count.rbegin()->first, count.rbegin()->second, 0};
  std::vector<std::int64_t> before;
  for (auto row = ++count.rbegin(); row != count.rend() && before.size() < kUsualSteps; ++row)
    before.push_back(row->second);
  if (before.size() < 2) return last;
  std::sort(before.begin(), before.end());
  last.usual = before[before.size() / 2];
  return last;
}

}  // namespace qob
