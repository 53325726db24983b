#include "analysis/animal_statistics.h"

#include <algorithm>

#include "analysis/parents.h"
#include "core/qobtypestools.h"

namespace qob {
namespace {

// pci(k, p): the share of parent p's ancestors k generations back that are known. Rows beyond the
// longest line of ancestors would hold zeros alone and are left out.
class Completeness {
 public:
  Completeness(const Table2<std::int32_t>& newped, std::int32_t pci_ngen)
      : newped_(newped), parents_(pedigree_of_parents(newped)) {
    const std::int32_t rows = std::min(pci_ngen, longest_line());
    Table2<double> pci(std::max(rows, 1), parents_.count(), 0.0);
    mean_.assign(std::int64_t{parents_.count()} + 1, 0.0);
    for (std::int32_t p = 1; p <= parents_.count(); ++p) {
      for (int which = 1; which <= 2; ++which) {
        const std::int32_t parent = parents_.newped(which, p);
        if (parent == 0) continue;
        pci(1, p) += 0.5;
        for (std::int32_t k = 2; k <= rows; ++k) pci(k, p) += 0.5 * pci(k - 1, parent);
      }
      double sum = 0.0;
      for (std::int32_t k = 1; k <= rows; ++k) sum += pci(k, p);
      mean_(p) = 1.0 / pci_ngen * sum;
    }
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
  std::int32_t longest_line() const {
    Table<std::int32_t, 0> depth(std::int64_t{parents_.count()} + 1, -1);
    std::int32_t longest = 0;
    for (std::int32_t p = 1; p <= parents_.count(); ++p) {
      depth(p) = std::max(depth(parents_.newped(1, p)), depth(parents_.newped(2, p))) + 1;
      longest = std::max(longest, depth(p));
    }
    return longest;
  }

  const Table2<std::int32_t>& newped_;
  ParentPedigree parents_;
  Table<double, 0> mean_;  // over the generations, by parent
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
