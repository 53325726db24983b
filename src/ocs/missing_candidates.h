// Whether the relationship file holds every candidate.
#pragma once

#include "core/qobtypestools.h"
#include "ocs/candidates.h"
#include "pedigree/pedigree.h"

namespace qob {

// Reads the relationship file once more (it may have changed since the matrix was read) and stops
// the run if it lacks a candidate. Appends a summary by birth-time group to the summary file.
void check_missing_candidates(Run& run, const Pedigree& pedigree, const Candidates& candidates);

}  // namespace qob
