// The candidates' relationship matrix from a relationship file instead of the pedigree.
#pragma once

#include "core/qobtypestools.h"

namespace qob {

// Fills model.relationship.nrm, whose rows are given and whose elements are 0, and sets
// model.pedigree.f from the file's diagonal (0 for animals that it lacks) and `cohortrel`. A
// candidate without a diagonal record is no candidate any more. Appends a summary by birth-time
// group to the summary file. A fault of the file stops the run.
void read_relationships(Model& model);

}  // namespace qob
