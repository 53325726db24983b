#include "analysis/animal_statistics.h"

#include <utility>

#include "analysis/kernels/parent_pedigree.h"
#include "core/numbers.h"
#include "pedigree/pedigree.h"

namespace qob {
namespace {

// The share of a parent's ancestors k generations back that are known, as the mean over k.
class Completeness {
 public:
  Completeness(const Table2<std::int32_t>& newped, std::int32_t pci_ngen)
      : newped_(newped), parents_(pedigree_of_parents(newped)) {
    const std::int32_t n = parents_.count();
    mean_.assign(std::int64_t{n} + 1, 0.0);
    Table<double, 0> before(std::int64_t{n} + 1, 1.0);  // one generation less far back
    Table<double, 0> known = before;
    bool any = true;  // beyond the longest line of ancestors none is known
    for (std::int32_t k = 1; k <= pci_ngen && any; ++k) {
      any = false;
      for (std::int32_t p = 1; p <= n; ++p) {
        known(p) = 0.0;
        for (int which = 1; which <= 2; ++which) {
          const std::int32_t parent = parents_.newped(which, p);
          if (parent > 0) known(p) += 0.5 * before(parent);
        }
        mean_(p) += known(p);
        any = any || known(p) > 0.0;
      }
      std::swap(before, known);
    }
    for (double& mean : mean_) mean *= 1.0 / pci_ngen;
  }

  double index(std::int64_t i) const {
    const std::int32_t sire = newped_(1, i);
    const std::int32_t dam = newped_(2, i);
    if (sire == 0 || dam == 0) return 0.0;
    const double cs = mean_(parents_.number(sire));
    const double cd = mean_(parents_.number(dam));
    return cs * cd > kTiny ? 2.0 * cs * cd / (cs + cd) : 0.0;
  }

 private:
  const Table2<std::int32_t>& newped_;
  ParentPedigree parents_;
  Table<double, 0> mean_;  // by parent
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
      if (parent == 0 || !birth_time_is_known(btime(parent))) continue;
      const float age = single(std::int64_t{btime(i)} - btime(parent));
      animals.genint(i) += 0.5 * static_cast<double>(age);
    }
    animals.pcin(i) = completeness.index(i);
  }
  return animals;
}

}  // namespace qob
