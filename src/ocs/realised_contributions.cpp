#include "ocs/realised_contributions.h"

#include <algorithm>
#include <vector>

#include "analysis/pedigree_products.h"
#include "core/memory.h"
#include "core/numbers.h"

namespace qob {
namespace {

// share(i, a): the part of the parenthood of age class a that is animal i's. Only the classes in
// which an animal has offspring are kept, in ascending order, animal after animal.
class OffspringShares {
 public:
  OffspringShares(const Pedigree& pedigree, std::int64_t birth_time, std::int64_t nage)
      : start_(std::int64_t{pedigree.maxid} + 1, 0) {
    Table<double> parents(nage, 0.0);  // known parents of each age class
    const auto for_each_parent = [&](auto action) {
      for (std::int32_t i = 1; i <= pedigree.maxid; ++i) {
        const std::int64_t a = birth_time - pedigree.btime(i);
        if (a > nage) continue;
        if (pedigree.sire(i) > 0) action(pedigree.sire(i), a);
        if (pedigree.dam(i) > 0) action(pedigree.dam(i), a);
      }
    };
    for_each_parent([&](std::int32_t parent, std::int64_t a) {
      ++start_(parent + 1);
      parents(a) += 1.0;
    });
    for (std::int64_t i = 2; i <= start_.size(); ++i) start_(i) += start_(i - 1);
    std::vector<std::int64_t> ages(static_cast<std::size_t>(start_(start_.size())));
    Table<std::int64_t> next = start_;
    for_each_parent([&](std::int32_t parent, std::int64_t a) {
      ages[static_cast<std::size_t>(next(parent)++)] = a;
    });
    merge(ages, parents);
  }

  // Sum over the age classes a of weight(a) * share(i, a), from class 1 upwards.
  double weighted_sum(std::int32_t i, const Table<double>& weight) const {
    double sum = 0.0;
    for (std::int64_t e = start_(i); e < start_(i + 1); ++e) {
      const Entry& entry = entries_[static_cast<std::size_t>(e)];
      sum += weight(entry.age) * entry.share;
    }
    return sum;
  }

 private:
  struct Entry {
    std::int64_t age;
    double share;
  };

  // Counts equal ages within each animal's stretch of `ages` and turns the counts into shares.
  void merge(std::vector<std::int64_t>& ages, const Table<double>& parents) {
    const auto at = [&](std::int64_t e) { return ages.begin() + static_cast<std::ptrdiff_t>(e); };
    std::int64_t begin = 0;
    for (std::int64_t i = 1; i < start_.size(); ++i) {
      const std::int64_t end = start_(i + 1);
      std::sort(at(begin), at(end));
      start_(i) = static_cast<std::int64_t>(entries_.size());
      for (std::int64_t first = begin; first < end;) {
        const std::int64_t age = ages[static_cast<std::size_t>(first)];
        const auto past = std::upper_bound(at(first), at(end), age);
        const std::int64_t last = past - ages.begin();
        entries_.push_back({age, static_cast<double>(last - first) / parents(age)});
        first = last;
      }
      begin = end;
    }
    start_(start_.size()) = static_cast<std::int64_t>(entries_.size());
  }

  Table<std::int64_t> start_;  // animal i's entries: start_(i) .. start_(i+1)-1, from 0
  std::vector<Entry> entries_;
};

double inner_product(const Table<double>& a, const Table<double>& b) {
  double sum = 0.0;
  for (std::int64_t i = 1; i <= a.size(); ++i) sum += a(i) * b(i);
  return sum;
}

}  // namespace

void realised_contributions(const Pedigree& pedigree, const Candidates& candidates,
                            const AgeStructure& ages, double cohortrel, Units& units, Goal& goal) {
  const OffspringShares shares(pedigree, candidates.birth_time, ages.nage);
  // The weights once every age class has grown one step older.
  Table<double> next_weight(ages.nage, 0.0);
  for (std::int64_t a = 1; a < ages.nage; ++a) next_weight(a) = ages.weight(a + 1);

  Table<double> x(pedigree.maxid, 0.0);
  Table<double> y(pedigree.maxid, 0.0);
  double sum_x = 0.0;
  for (std::int32_t i = 1; i <= pedigree.maxid; ++i) {
    x(i) = shares.weighted_sum(i, ages.weight);
    y(i) = shares.weighted_sum(i, next_weight);
    sum_x += x(i);
  }
  Table<double> product = x;
  ak(pedigree.newped, pedigree.f, product, pedigree.maxid);
  const bool none_known = sum_x < kTiny;
  goal.last_rel =
      none_known ? cohortrel : inner_product(x, product) / (goal.last_genint * goal.last_genint);
  product = y;
  ak(pedigree.newped, pedigree.f, product, pedigree.maxid);
  goal.vpapv = inner_product(y, product);
  allocate(units, "ERROR in allocating memory APv2 in subroutine setup_cNRM",
           [&] { goal.apv2.assign(candidates.ncands, 0.0); });
  for (std::int32_t k = 1; k <= candidates.ncands; ++k) {
    goal.apv2(k) = 2.0 * product(candidates.cands(k));
  }
}

}  // namespace qob
