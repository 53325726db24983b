#include "prepare/parent_ages.h"

#include <algorithm>
#include <vector>

namespace qob {
namespace {

constexpr std::size_t kEnough = 20;  // parentages

}  // namespace

std::optional<AgeRange> usual_ages(const Herd& herd, const TimeSteps& steps, int parent) {
  std::vector<std::int32_t> ages;
  for (std::int32_t i = 1; i <= herd.count(); ++i) {
    const std::int32_t p = herd.parents(parent, i);
    if (p == 0 || !herd.birth(p).is_known() || !herd.birth(i).is_known()) continue;
    ages.push_back(std::max(0, steps.age_at(herd, p, i)));
  }
  if (ages.size() < kEnough) return std::nullopt;
  std::sort(ages.begin(), ages.end());
  const std::size_t beyond = ages.size() / 20;
  return AgeRange{ages[beyond], ages[ages.size() - 1 - beyond]};
}

}  // namespace qob
