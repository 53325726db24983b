#include "analysis/generation_intervals.h"

#include <cmath>

namespace qob {
namespace {

// Calls visit(path, age) for each offspring of each path.
template <class Visit>
void for_each_age(const Pedigree& pedigree, std::int32_t since, Visit visit) {
  Table2<char> became(2, pedigree.maxid, 0);  // sire, dam
  for (std::int32_t i = 1; i <= pedigree.maxid; ++i) {
    for (int k = 1; k <= 2; ++k) {
      if (pedigree.newped(k, i) > 0) became(k, pedigree.newped(k, i)) = 1;
    }
  }
  for (std::int32_t i = 1; i <= pedigree.maxid; ++i) {
    if (!birth_time_is_known(pedigree.btime(i)) || pedigree.btime(i) < since) continue;
    for (int k = 1; k <= 2; ++k) {
      const std::int32_t parent = pedigree.newped(k, i);
      if (parent == 0 || !birth_time_is_known(pedigree.btime(parent))) continue;
      const double age = static_cast<double>(pedigree.btime(i)) - pedigree.btime(parent);
      for (int as = 1; as <= 2; ++as) {
        if (became(as, i) == 1) visit(static_cast<std::size_t>(2 * (k - 1) + as - 1), age);
      }
    }
  }
}

// The mean of independent means.
PathAges mean_of(const std::array<PathAges, 4>& paths) {
  PathAges all;
  double number = 0.0, variance = 0.0;
  for (const PathAges& path : paths) {
    if (path.n == 0) continue;
    ++number;
    all.n += path.n;
    all.mean += path.mean;
    variance += path.se * path.se;
  }
  all.mean /= number;
  all.se = std::sqrt(variance) / number;
  return all;
}

}  // namespace

GenerationIntervals generation_intervals(const Pedigree& pedigree, std::int32_t since) {
  GenerationIntervals intervals;
  auto& paths = intervals.path;
  for_each_age(pedigree, since, [&](std::size_t path, double age) {
    ++paths[path].n;
    paths[path].mean += age;
  });
  for (PathAges& path : paths) path.mean /= static_cast<double>(path.n);
  for_each_age(pedigree, since, [&](std::size_t path, double age) {
    paths[path].se += (age - paths[path].mean) * (age - paths[path].mean);
  });
  for (PathAges& path : paths) {
    const auto n = static_cast<double>(path.n);
    path.se = path.n < 2 ? std::nan("") : std::sqrt(path.se / (n - 1.0) / n);
  }
  intervals.all = mean_of(paths);
  return intervals;
}

}  // namespace qob
