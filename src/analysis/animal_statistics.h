// Statistics of single animals: generation, age of the parents, completeness of the pedigree.
#pragma once

#include <cstdint>

#include "core/tables.h"

namespace qob {

// Per animal; gen(0) is that of the unknown parent.
struct AnimalStatistics {
  Table<double, 0>
      gen;  // generation coefficient: 1 for a founder; 1 + complete generations equivalent
  Table<double> genint;  // mean age of its recorded parents at its birth, time steps
  Table<double> pcin;    // pedigree completeness index
};

// Generation coefficients, parents' ages and completeness over pci_ngen generations of ancestors
// (MacCluer et al. 1983, J. Hered. 74:394): the harmonic mean of the two parents' completeness.
// btime: by animal; a parent whose birth time is not known has no age.
AnimalStatistics animal_statistics(const Table2<std::int32_t>& newped,
                                   const Table<std::int32_t>& btime, std::int32_t pci_ngen);

}  // namespace qob
