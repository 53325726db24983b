// What a bound of plans needs to know of their matings being whole.
//
// A candidate without descendants among the candidates enters the relationships of a plan by its
// parents, and by a term of its own: the square of its contribution times its Mendelian sampling
// variance, which nobody shares (Henderson 1976, Biometrics 32:69). Of plans in whole matings that
// square is known only at whole matings; between them its chord may stand for it, which lies above:
//
//   square   *         |         *       chords from 0 to 1, 1 to 2 matings: a plan of whole
//   chord      *   *   |   *   *         matings is valued as it is, one of parts of matings
//                                        as no better than it is
//
// So a bound over parts of matings comes down to the best plan of whole ones.
#pragma once

#include "core/tables.h"
#include "ocs/selection.h"
#include "pedigree/pedigree.h"

namespace qob {

//
// Rules may have decided matings, and ask for some units of a candidate in every plan.
struct WholeMatings {
  Table<std::int32_t> unit;         // by candidate: matings that it takes at once
  Table<std::int32_t> least, most;  // units that a plan gives it besides the decided matings
  Table<std::int32_t> decided;      // matings
  Table<double> own;                // the variance that it shares with no candidate, 0 if not known

  // Matings, in parts of them, and whole units of it besides the decided ones.
  double fewest(std::int32_t i) const {
    return decided(i) + static_cast<double>(unit(i)) * least(i);
  }
  double largest(std::int32_t i) const {
    return decided(i) + static_cast<double>(unit(i)) * most(i);
  }
  double units(std::int32_t i, double matings) const { return (matings - decided(i)) / unit(i); }
};

// By animal: the Mendelian sampling variance, in units of the additive genetic variance of a base
// population, of those that have no descendants among the candidates (matings above 0); else 0.
Table<double> own_variances(const Pedigree& pedigree);

// own: of the pedigree by which the candidates are related; empty where a file relates them.
WholeMatings whole_matings(const Selection& selection, const Table<double>& own);

}  // namespace qob
