// The first population of the search: an old solution if its file exists, random solutions, and one
// that uses the candidates of highest merit.
#pragma once

#include <cstdint>
#include <string_view>

#include "core/random.h"
#include "core/watches.h"
#include "ocs/evaluation.h"
#include "ocs/population.h"
#include "ocs/selection.h"

namespace qob {

// Fills the population, whose tables are made; the last solution is the one by merit. oldsol_file:
// its matesets are named by candidate numbers; a fault of it stops the run.
void base_population(const Selection& selection, std::string_view oldsol_file,
                     Population& population, Random& random, Evaluator& evaluator,
                     Journal& journal);

}  // namespace qob
