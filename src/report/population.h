// The population behind a plan: its structure, inbreeding, effective size and founders.
//
// The measures are those of `analysis`, one a file there, with formula and source; here they are
// taken over the right animals and put into the model. Reference of all measures of founders,
// ancestors and kinship are the living; where none lives these are none (NaN). Rates are per
// generation interval of all time: recent intervals rest on few animals, those that are parents
// already. An effective size has no upper limit where the error of the rate reaches the rate.
#pragma once

#include <cstdint>
#include <functional>
#include <vector>

#include "analysis/animal_statistics.h"
#include "analysis/founders.h"
#include "core/tables.h"
#include "pedigree/pedigree.h"
#include "report/report.h"

namespace qob {

struct PopulationInput {
  const Pedigree& pedigree;            // f filled
  const AnimalStatistics& statistics;  // of the same animals
  const Table<char>& living;           // by animal: 1 = lives
  const Table<char>& chosen;           // by animal: 1 = in the plan
  // The place of an animal among the reported ones; called for the founders that are told.
  std::function<std::int32_t(std::int32_t)> place;
};

// Tables are by animal.
struct PopulationMeasures {
  // All but living_by and living_since. `birth` of trend and ages is the time step, "" where it is
  // not known; who has the herd book's texts may put them there.
  ReportedPopulation reported;
  Table<double> mean_kinship;          // with the living, itself included if it lives
  Table<double> complete_generations;  // complete generations equivalent
  Table<double> contribution_so_far;   // to the last birth time, through offspring
  std::vector<FounderShare> founders;  // all, the largest shares of the living's genes first
};

PopulationMeasures measure_population(const PopulationInput& input);

}  // namespace qob
