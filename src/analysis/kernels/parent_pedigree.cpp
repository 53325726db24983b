#include "analysis/kernels/parent_pedigree.h"

namespace qob {

ParentPedigree pedigree_of_parents(const Table2<std::int32_t>& newped) {
  ParentPedigree parents;
  parents.number.assign(newped.columns() + 1, 0);
  for (std::int64_t i = 1; i <= newped.columns(); ++i) {
    for (int k = 1; k <= 2; ++k) parents.number(newped(k, i)) = 1;
  }
  parents.number(0) = 0;
  std::int32_t count = 0;
  for (std::int64_t i = 1; i <= newped.columns(); ++i) {
    if (parents.number(i) != 0) parents.number(i) = ++count;
  }
  parents.animal.assign(count, 0);
  parents.newped.assign(2, count, 0);
  for (std::int32_t i = 1; i <= newped.columns(); ++i) {
    const std::int32_t p = parents.number(i);
    if (p == 0) continue;
    parents.animal(p) = i;
    for (int k = 1; k <= 2; ++k) parents.newped(k, p) = parents.number(newped(k, i));
  }
  return parents;
}

}  // namespace qob
