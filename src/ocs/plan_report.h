// The reports around the search: with which parameters, and what it found.
#pragma once

#include "core/parameters.h"
#include "core/units.h"
#include "ocs/candidates.h"
#include "ocs/search.h"

namespace qob {

// To the log and to standard output. p: only read; the groups' tables bind to variables.
void report_parameters(Parameters& p, Units& units);

// To standard output and to the summary. Stops the run when no legal mateset was found.
void report_best_mateset(const OCSParameters& p, const Candidates& candidates, Plan& plan,
                         Units& units);

}  // namespace qob
