// The relationship matrix of the selection candidates.
#pragma once

#include "core/qobtypestools.h"

namespace qob {

// Reads the group RelationshipMatrix, gives every candidate a row and fills model.relationship,
// from the pedigree or from a relationship file. What is computed is also written to `gfile`, for
// all animals that matter for the selection, if one is named. A negative `timesteps` computes
// nothing and sets progstatus to 0.
void setup_nrm(Model& model);

}  // namespace qob
