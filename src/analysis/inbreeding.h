// Inbreeding coefficients.
#pragma once

#include <cstdint>

#include "core/tables.h"
#include "core/unit.h"
#include "system/parallel.h"

namespace qob {

// Fills f(0..maxid), the inbreeding coefficients (Meuwissen & Luo 1992, Genet. Sel. Evol. 24:305):
//
//   F(i) = sum over i and its ancestors j of L(j)^2 d(j), less 1,
//
// L(j) the share of i's genes that flowed through j, d(j) the Mendelian sampling variance of j,
// summed from the youngest ancestor to the oldest. An animal with an unknown parent has F = 0.
// newped: 2 x maxid. Reports every 1000 animals to `out`.
void inbreeding_coefficients(const Table2<std::int32_t>& newped, Table<double, 0>& f, Unit& out,
                             Parallel& parallel);

}  // namespace qob
