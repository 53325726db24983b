#include "analysis/kernels/ancestry.h"

namespace qob {

void Ancestry::close() {
  animal_.clear();
  set_.descend(youngest_, [&](std::int32_t j) {
    set_.insert(newped_(1, j));
    set_.insert(newped_(2, j));
    animal_.push_back(j);
  });
  set_.clear(youngest_);
  youngest_ = 0;
  if (parents_.last() < size()) parents_.assign(std::int64_t{size()} + 1, {});
  for (std::int32_t k = 1; k <= size(); ++k) {
    const std::int32_t j = animal(k);
    number_(j) = k;
    parents_(k) = {number_(newped_(1, j)), number_(newped_(2, j))};
  }
}

}  // namespace qob
