// Inbreeding coefficients and the other statistics of single animals.
#pragma once

#include <cstdint>

#include "core/tables.h"
#include "core/unit.h"

namespace qob {

// Per animal; index 0 stands for the unknown parent.
struct AnimalStatistics {
  Table<double, 0> gen;  // generation coefficient: 1 for a founder
  Table<double> genint;  // mean age of its recorded parents at its birth, time steps
  Table<double> pcin;    // pedigree completeness index
};

// Fills f(0..maxid), the inbreeding coefficients (Meuwissen & Luo 1992, Genet. Sel. Evol. 24:305):
//
//   F(i) = sum over i and its ancestors j of L(j)^2 d(j), less 1,
//
// L(j) the share of i's genes that flowed through j, d(j) the Mendelian sampling variance of j,
// summed from the youngest ancestor to the oldest. An animal with an unknown parent has F = 0.
// newped: 2 x maxid. Reports every 1000 animals to `out`.
void inbreeding_coefficients(const Table2<std::int32_t>& newped, Table<double, 0>& f, Unit& out);

// Generation coefficients, parents' ages and completeness over pci_ngen generations of ancestors
// (MacCluer et al. 1983, J. Hered. 74:394): the harmonic mean of the two parents' completeness.
// btime: by animal; a parent born at kNoBirthTime has no age.
AnimalStatistics animal_statistics(const Table2<std::int32_t>& newped,
                                   const Table<std::int32_t>& btime, std::int32_t pci_ngen);

}  // namespace qob
