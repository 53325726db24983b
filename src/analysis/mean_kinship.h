// Mean kinship: how much of what an animal carries the others carry too.
//
// The coancestry of two animals is half their additive relationship. Keepers of small populations
// breed from those whose mean kinship is least (Ballou & Lacy 1995, in: Population management for
// survival and recovery, Columbia University Press, 76-111).
#pragma once

#include <cstdint>

#include "core/tables.h"

namespace qob {

struct MeanKinship {
  Table<double> of;  // by animal: mean coancestry with the reference, itself included if it belongs
  double mean = 0.0;  // of the reference: 1'A1 / 2N^2, each animal with itself included
  double diversity() const { return 1.0 - mean; }  // of genes: expected heterozygosity, founders 1
  // So many unrelated founders that lost no genes would be as diverse (Lacy 1989, Zoo Biol. 8:111).
  double founder_genomes() const { return 1.0 / (2.0 * mean); }
};

// One product A x, x = 1/N for the N animals of the reference. NaN without a reference. newped: 2 x
// maxid; f: from index 0, -1 there; reference: by animal, 1 = belongs to it.
MeanKinship mean_kinship(const Table2<std::int32_t>& newped, const Table<double, 0>& f,
                         const Table<char>& reference);

}  // namespace qob
