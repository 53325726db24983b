// The relationship matrix one column at a time over all animals: the form that the fast one is
// judged and measured by.
#pragma once

#include "analysis/pedigree_products.h"

namespace qob::plain {

// Calls keep(i, j, a) for each marked animal i and each marked j <= i, both ascending.
template <class Keep>
void relationships(const Table2<std::int32_t>& newped, const Table<double, 0>& f,
                   const Table<char>& mark, Keep keep) {
  Table<double> cx(newped.columns(), 0.0);
  for (std::int32_t i = 1; i <= newped.columns(); ++i) {
    if (mark(i) == 0) continue;
    cx.fill(0.0);
    cx(i) = 1.0;
    ak(newped, f, cx, i);
    for (std::int32_t j = 1; j <= i; ++j) mark(j) != 0 ? keep(i, j, cx(j)) : void();
  }
}

}  // namespace qob::plain
