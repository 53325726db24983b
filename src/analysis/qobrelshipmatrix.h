// The relationship matrix of the selection candidates.
#pragma once

#include "core/qobtypestools.h"

namespace qob {

// Reads the group RelationshipMatrix, gives every candidate a row and fills model.relationship.
// A negative `timesteps` computes nothing and sets progstatus to 0.
void setup_nrm(Model& model);

}  // namespace qob
