#include "report/common_ancestors.h"

#include <algorithm>

namespace qob {
namespace {

// What is left of a product of gene flows when its parts are taken away may be their rounding.
constexpr double kRounding = 1.0e-10;

std::size_t at(std::int32_t number) { return static_cast<std::size_t>(number); }

}  // namespace

CommonAncestors::CommonAncestors(const Pedigree& pedigree, const std::vector<std::int32_t>& parents)
    : pedigree_(pedigree), ancestry_(pedigree.newped) {
  for (const std::int32_t parent : parents) ancestry_.add(parent);
  ancestry_.close();
  for (auto* table : {&of_sire_, &of_dam_, &of_meeting_, &met_before_})
    table->assign(at(ancestry_.size()) + 1, 0.0);
}

void CommonAncestors::flow(std::int32_t from, std::vector<double>& share) const {
  std::fill(share.begin(), share.end(), 0.0);
  share[at(from)] = 1.0;
  for (std::int32_t k = from; k >= 1; --k) {
    if (share[at(k)] == 0.0) continue;
    const Ancestry::Parents& parents = ancestry_.parents()(k);
    share[at(parents.sire)] += 0.5 * share[at(k)];
    share[at(parents.dam)] += 0.5 * share[at(k)];
  }
  share[0] = 0.0;  // what comes from unknown parents
}

CommonAncestors::Result CommonAncestors::of(std::int32_t sire, std::int32_t dam) {
  if (sire != sire_) flow(ancestry_.number(sire), of_sire_);
  sire_ = sire;
  flow(ancestry_.number(dam), of_dam_);
  std::fill(met_before_.begin(), met_before_.end(), 0.0);
  Result result;
  int looked_at = 0;
  for (std::int32_t a = std::min(ancestry_.number(sire), ancestry_.number(dam)); a >= 1; --a) {
    const double both = of_sire_[at(a)] * of_dam_[at(a)];
    if (both == 0.0) continue;
    if (looked_at == kMost) {
      ++result.others;
      continue;
    }
    const double c = both - met_before_[at(a)];
    if (c <= kRounding * both) continue;
    ++looked_at;
    const std::int32_t animal = ancestry_.animal(a);
    result.shares.push_back({animal, 0.5 * c * (1.0 + pedigree_.f(animal))});
    flow(a, of_meeting_);
    for (std::int32_t k = a - 1; k >= 1; --k)
      met_before_[at(k)] += c * of_meeting_[at(k)] * of_meeting_[at(k)];
  }
  std::stable_sort(result.shares.begin(), result.shares.end(),
                   [](const Share& a, const Share& b) { return a.f > b.f; });
  return result;
}

}  // namespace qob
