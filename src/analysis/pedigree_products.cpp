#include "analysis/pedigree_products.h"

#include <cmath>

#include "core/numbers.h"

namespace qob {
namespace {

// Adds half of x(i) to each known parent.
void pass_to_parents(const Table2<std::int32_t>& newped, Table<double>& x, std::int64_t i) {
  const double half = 0.5 * x(i);
  const std::int32_t sire = newped(1, i);
  const std::int32_t dam = newped(2, i);
  if (sire > 0) x(sire) += half;
  if (dam > 0) x(dam) += half;
}

void product(const Table2<std::int32_t>& newped, const Table<double, 0>& f, Table<double>& x,
             std::int64_t n, double passed_on_above) {
  for (std::int64_t i = n; i >= 1; --i) {
    if (std::abs(x(i)) < kTiny) continue;
    pass_to_parents(newped, x, i);
    x(i) *= mendelian_factor(newped, f, i);
  }
  for (std::int64_t i = 1; i <= n; ++i) {
    for (int k = 1; k <= 2; ++k) {
      const std::int32_t parent = newped(k, i);
      if (parent > 0 && std::abs(x(parent)) > passed_on_above) x(i) += 0.5 * x(parent);
    }
  }
}

}  // namespace

void ax(const Table2<std::int32_t>& newped, const Table<double, 0>& f, Table<double>& x) {
  product(newped, f, x, newped.columns(), 0.0);
}

void ak(const Table2<std::int32_t>& newped, const Table<double, 0>& f, Table<double>& x,
        std::int64_t n) {
  product(newped, f, x, n, kTiny);
}

void gen_cont(const Table2<std::int32_t>& newped, Table<double>& x) {
  for (std::int64_t i = newped.columns(); i >= 1; --i) {
    if (std::abs(x(i)) >= kTiny) pass_to_parents(newped, x, i);
  }
}

}  // namespace qob
