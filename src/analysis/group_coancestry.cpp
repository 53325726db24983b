#include "analysis/group_coancestry.h"

#include <algorithm>
#include <memory>
#include <vector>

#include "analysis/kernels/product_lanes.h"

namespace qob {
namespace {

using Ids = std::vector<std::int32_t>;

// The members of each group, in animal order.
Table<Ids> members_of(const Cohorts& cohorts) {
  Table<Ids> members(cohorts.count());
  for (std::int32_t g = 1; g <= cohorts.count(); ++g) {
    members(g).reserve(static_cast<std::size_t>(cohorts.n(g)));
  }
  for (std::int32_t i = 1; i <= cohorts.cohort.size(); ++i) members(cohorts.cohort(i)).push_back(i);
  return members;
}

// Eight groups at a time; each worker has its own.
class GroupProducts {
 public:
  GroupProducts(const Table2<std::int32_t>& newped, const Table<double, 0>& f,
                const Table<Ids>& members)
      : newped_(newped), f_(f), members_(members), ancestry_(newped) {}

  // Fills the results of groups first..past-1, one for each lane.
  void compute(std::int32_t first, std::int32_t past, Table<GroupCoancestry>& results) {
    for (std::int32_t g = first; g < past; ++g) {
      for (const std::int32_t i : members_(g)) ancestry_.add(i);
    }
    ancestry_.close();
    product_.start(ancestry_, newped_, f_);
    for (std::int32_t g = first; g < past; ++g) add_members(members_(g), g - first);
    product_.multiply(ancestry_.size());
    for (std::int32_t g = first; g < past; ++g) {
      results(g).average = average_coancestry(members_(g), g - first);
    }
    std::int32_t last = 1;
    for (std::int32_t g = first; g < past; ++g) {
      last = std::max(last, add_sires(members_(g), g - first));
    }
    product_.multiply(last);
    for (std::int32_t g = first; g < past; ++g) {
      results(g).expected = expected_inbreeding(members_(g), g - first);
    }
  }

 private:
  std::int32_t sire(std::int32_t i) const { return ancestry_.number(newped_(1, i)); }
  std::int32_t dam(std::int32_t i) const { return ancestry_.number(newped_(2, i)); }

  void add_members(const Ids& members, int lane) {
    const double n = static_cast<double>(members.size());
    for (const std::int32_t i : members) product_.add(ancestry_.number(i), lane, 1.0 / n);
  }

  // Counts each member at its sire. Returns the largest number of a parent.
  std::int32_t add_sires(const Ids& members, int lane) {
    std::int32_t last = 0;
    for (const std::int32_t i : members) {
      if (sire(i) > 0) product_.add(sire(i), lane, 1.0);
      last = std::max({last, sire(i), dam(i)});
    }
    return last;
  }

  double average_coancestry(const Ids& members, int lane) const {
    const double n = static_cast<double>(members.size());
    double sum = 0.0;
    for (const std::int32_t i : members) sum += product_(ancestry_.number(i), lane);
    return sum / (2.0 * n);
  }

  double expected_inbreeding(const Ids& members, int lane) {
    const double n = static_cast<double>(members.size());
    Ids dams;
    for (const std::int32_t i : members) {
      if (dam(i) > 0) dams.push_back(dam(i));
    }
    std::sort(dams.begin(), dams.end());
    double sum = 0.0;
    for (auto at = dams.begin(); at != dams.end();) {
      const auto other = std::upper_bound(at, dams.end(), *at);
      sum += static_cast<double>(other - at) * product_(*at, lane);
      at = other;
    }
    return sum / (2.0 * n * n);
  }

  const Table2<std::int32_t>& newped_;
  const Table<double, 0>& f_;
  const Table<Ids>& members_;  // by group
  Ancestry ancestry_;
  ProductLanes product_{0.0};
};

}  // namespace

// The last groups have the most ancestors, so they come first: no worker is left with much at the
// end.
Table<GroupCoancestry> group_coancestries(const Table2<std::int32_t>& newped,
                                          const Table<double, 0>& f, const Cohorts& cohorts,
                                          Parallel& parallel) {
  constexpr std::int32_t kLanes = ProductLanes::kLanes;
  Table<GroupCoancestry> results(cohorts.count());
  const Table<Ids> members = members_of(cohorts);
  PerWorker<GroupProducts> products(
      parallel, [&] { return std::make_unique<GroupProducts>(newped, f, members); });
  const std::int32_t parts = (cohorts.count() + kLanes - 1) / kLanes;
  parallel.for_each(parts, newped.columns() * 100, [&](std::int64_t part, int worker) {
    const std::int32_t first = (parts - static_cast<std::int32_t>(part) - 1) * kLanes + 1;
    products(worker).compute(first, std::min(first + kLanes, cohorts.count() + 1), results);
  });
  return results;
}

}  // namespace qob
