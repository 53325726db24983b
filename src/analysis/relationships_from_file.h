// The candidates' relationship matrix from a relationship file instead of the pedigree.
#pragma once

#include "analysis/relationship.h"
#include "core/qobtypestools.h"
#include "pedigree/pedigree.h"

namespace qob {

// Fills relationship.nrm, whose rows are given and whose elements are 0, and sets pedigree.f from
// the file's diagonal (0 for animals that it lacks) and `cohortrel`. A candidate without a diagonal
// record is no candidate any more: its `matings` become 0. Appends a summary by birth-time group to
// the summary file. A fault of the file stops the run.
void read_relationships(Run& run, Pedigree& pedigree, Relationship& relationship);

}  // namespace qob
