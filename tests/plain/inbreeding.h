// Inbreeding by one walk through the ancestors of each animal (Meuwissen & Luo 1992): the form that
// the fast ones are judged and measured by.
#pragma once

#include <algorithm>
#include <cstdint>
#include <utility>

#include "core/tables.h"

namespace qob::plain {

inline Table<double, 0> inbreeding_coefficients(const Table2<std::int32_t>& newped) {
  const std::int64_t maxid = newped.columns();
  Table<double, 0> f(maxid + 1, 0.0);
  f(0) = -1.0;
  Table<double> d(maxid, 0.0), l(maxid, 0.0);
  Table<std::int32_t> link(maxid, 0);  // the ancestors, from higher to lower numbers
  const auto pass = [&](std::int32_t j, std::int32_t p, double h) {
    if (p == 0) return;
    while (link(j) > p) j = link(j);
    if (link(j) != p) link(p) = std::exchange(link(j), p);
    l(p) += h;
  };
  for (std::int32_t i = 1; i <= maxid; ++i) {
    const std::int32_t sire = newped(1, i), dam = newped(2, i);
    d(i) = 0.5 - 0.25 * (f(sire) + f(dam));
    if (sire == 0 || dam == 0) continue;
    const bool full_sib = i > 1 && sire == newped(1, i - 1) && dam == newped(2, i - 1);
    double acc = full_sib ? f(i - 1) : -1.0;
    l(i) = full_sib ? 0.0 : 1.0;
    for (std::int32_t j = full_sib ? 0 : i; j != 0; j = std::exchange(link(j), 0)) {
      const double h = 0.5 * l(j);
      pass(j, std::max(newped(1, j), newped(2, j)), h);
      pass(j, std::min(newped(1, j), newped(2, j)), h);
      acc += l(j) * l(j) * d(j);
      l(j) = 0.0;
    }
    f(i) = acc;
  }
  return f;
}

}  // namespace qob::plain
