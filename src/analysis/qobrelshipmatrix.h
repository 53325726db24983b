// The relationship matrix of the selection candidates.
#pragma once

#include <optional>

#include "analysis/relationship.h"
#include "core/qobtypestools.h"
#include "pedigree/pedigree.h"

namespace qob {

// Reads the group RelationshipMatrix, gives every candidate a row and fills the matrix, from the
// pedigree or from a relationship file. What is computed is also written to `gfile`, for all
// animals that matter for the selection, if one is named. A file sets the pedigree's inbreeding
// coefficients, and candidates that it lacks are none any more. Nothing when `timesteps` is
// negative: the run ends with the history.
std::optional<Relationship> setup_nrm(Run& run, Pedigree& pedigree);

}  // namespace qob
