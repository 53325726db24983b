#include "analysis/animal_statistics.h"

#include <algorithm>

#include "core/qobtypestools.h"

namespace qob {
namespace {

// pci(k, i): the share of animal i's ancestors k generations back that are known. Rows beyond the
// longest line of ancestors would hold zeros alone and are left out.
class Completeness {
 public:
  Completeness(const Table2<std::int32_t>& newped, std::int32_t pci_ngen)
      : newped_(newped), ngen_(pci_ngen), rows_(std::min(pci_ngen, longest_line(newped))) {
    pci_.assign(std::max(rows_, 1), newped.columns(), 0.0);
    for (std::int64_t i = 1; i <= newped.columns(); ++i) {
      for (int k = 1; k <= 2; ++k) {
        if (newped(k, i) > 0) add_parent(i, newped(k, i));
      }
    }
  }

  double index(std::int64_t i) const {
    const std::int32_t sire = newped_(1, i);
    const std::int32_t dam = newped_(2, i);
    if (sire == 0 || dam == 0) return 0.0;
    const double cs = mean(sire);
    const double cd = mean(dam);
    return cs * cd > kTiny ? 2.0 * cs * cd / (cs + cd) : 0.0;
  }

 private:
  static std::int32_t longest_line(const Table2<std::int32_t>& newped) {
    Table<std::int32_t, 0> depth(newped.columns() + 1, 0);
    std::int32_t longest = 0;
    for (std::int64_t i = 1; i <= newped.columns(); ++i) {
      const std::int32_t sire = newped(1, i);
      const std::int32_t dam = newped(2, i);
      if (sire == 0 && dam == 0) continue;
      depth(i) = std::max(depth(sire), depth(dam)) + 1;
      longest = std::max(longest, depth(i));
    }
    return longest;
  }

  void add_parent(std::int64_t i, std::int32_t parent) {
    pci_(1, i) += 0.5;
    for (std::int32_t k = 2; k <= rows_; ++k) pci_(k, i) += 0.5 * pci_(k - 1, parent);
  }

  double mean(std::int32_t i) const {
    double sum = 0.0;
    for (std::int32_t k = 1; k <= rows_; ++k) sum += pci_(k, i);
    return 1.0 / ngen_ * sum;
  }

  const Table2<std::int32_t>& newped_;
  std::int32_t ngen_;
  std::int32_t rows_;
  Table2<double> pci_;
};

}  // namespace

AnimalStatistics animal_statistics(const Table2<std::int32_t>& newped,
                                   const Table<std::int32_t>& btime, std::int32_t pci_ngen) {
  const std::int64_t maxid = newped.columns();
  AnimalStatistics animals;
  animals.gen.assign(maxid + 1, 0.0);
  animals.genint.assign(maxid, 0.0);
  animals.pcin.assign(maxid, 0.0);
  const Completeness completeness(newped, pci_ngen);
  for (std::int64_t i = 1; i <= maxid; ++i) {
    animals.gen(i) = 0.5 * (animals.gen(newped(1, i)) + animals.gen(newped(2, i))) + 1.0;
    for (int k = 1; k <= 2; ++k) {
      const std::int32_t parent = newped(k, i);
      if (parent == 0 || btime(parent) <= kNoBirthTime) continue;
      const float age = single(std::int64_t{btime(i)} - btime(parent));
      animals.genint(i) += 0.5 * static_cast<double>(age);
    }
    animals.pcin(i) = completeness.index(i);
  }
  return animals;
}

}  // namespace qob
