// The age structure of candidates and parents: how old candidates are, and at which ages the
// parents of the last time step had their offspring. The generation interval follows from it, and
// what of the contributions of earlier parents still counts (Grundy, Villanueva & Woolliams 2000,
// Anim. Sci. 70:373).
#pragma once

#include <cstdint>

#include "core/tables.h"
#include "core/units.h"
#include "ocs/candidates.h"
#include "pedigree/pedigree.h"

namespace qob {

struct AgeStructure {
  std::int64_t nage = 0;     // age classes 1..nage, 1 = born in the last time step
  Table<double> weight;      // of each class's parents in earlier contributions: the share of
                             // offspring that parents of this age or older have
  double last_genint = 1.0;  // generation interval: mean age of parents of the last time step
};

// The number of age classes: the oldest candidate's or the oldest parent's of the last time step.
// next: the time step of the coming offspring.
std::int64_t count_age_classes(const Pedigree& pedigree, std::int64_t next);

// Writes the age tables to the log and to the summary.
AgeStructure age_structure(const Pedigree& pedigree, const Candidates& candidates,
                           std::int64_t nage, Units& units);

}  // namespace qob
