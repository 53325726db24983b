// The selection: among whom, how often, and what the population brings along. Set up once and
// constant from then on, so that any number of searches can work on one selection at the same time.
#pragma once

#include <cstdint>

#include "core/tables.h"
#include "ocs/candidates.h"

namespace qob {

// The population as it stands, the ground on which a mateset is judged.
struct Goal {
  double last_f = 0.0;                // mean inbreeding of the last time step's animals
  double last_merit = 0.0;            // their mean breeding value
  double last_genint = 1.0;           // generation interval, time steps
  double last_rel = 0.0;              // average relationship of the last generation
  double vpapv = 0.0;                 // what earlier contributions add to the average relationship,
  Table<double> apv2;                 // and the linear term by candidate
  double mean_merit[2] = {0.0, 0.0};  // by sex, weighted by max_matings
  double k_factor[2] = {1.0, 1.0};    // scale of merit by sex
  double expmerit = 0.0;              // scaled merit when all are used in proportion to max_matings
};

struct Selection {
  Candidates candidates;
  Goal goal;
  std::int32_t nmatings = 0;          // rows of every mateset
  std::int32_t limitmalematings = 1;  // a male is used in multiples of so many rows

  // The male slots of a mateset: slot j is the rows j, j+S, j+2S, ..., which hold one male.
  std::int64_t male_slots() const { return nmatings / limitmalematings; }
};

}  // namespace qob
