// Products of the relationship matrix, and of the gene-flow matrix, with a vector over animals,
// computed through the pedigree without forming a matrix (Colleau 2002, Genet. Sel. Evol. 34:409).
//
// A = T D T': T' passes each animal's weight half to each parent (youngest first), D holds the
// Mendelian sampling variances, T passes half of each parent's value to the offspring (oldest
// first).
#pragma once

#include <cstdint>

#include "core/tables.h"

namespace qob {

// The Mendelian sampling variance of animal i: 1 less a quarter of 1 + F for each known parent.
inline double mendelian_factor(const Table2<std::int32_t>& newped, const Table<double, 0>& f,
                               std::int64_t i) {
  double factor = 1.0;
  const std::int32_t sire = newped(1, i);
  const std::int32_t dam = newped(2, i);
  if (sire > 0) factor = factor - 0.25 * (1.0 + f(sire));
  if (dam > 0) factor = factor - 0.25 * (1.0 + f(dam));
  return factor;
}

// newped: 2 x maxid, numbers of sire and dam, 0 = unknown; f: inbreeding coefficients from index
// 0; x: by animal, changed in place.

// x becomes A x over all animals. Weights below 1e-8 are not passed to parents.
void ax(const Table2<std::int32_t>& newped, const Table<double, 0>& f, Table<double>& x);

// The same over animals 1..n alone, and values up to 1e-8 are not passed to offspring either.
void ak(const Table2<std::int32_t>& newped, const Table<double, 0>& f, Table<double>& x,
        std::int64_t n);

// x becomes T'x: from 1/N for each of N animals, the share of their genes that is expected to come
// from each ancestor (an animal counts in full as an ancestor of itself).
void gen_cont(const Table2<std::int32_t>& newped, Table<double>& x);

}  // namespace qob
