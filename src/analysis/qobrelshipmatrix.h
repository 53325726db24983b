// The relationship matrix of the selection candidates.
//
// A(i,j) is twice the coancestry of i and j, 1 + F on the diagonal (Wright 1922). Only candidates
// have rows, so that memory grows with their square and not with the pedigree's: each column is the
// product of A with a unit vector, through the pedigree (Colleau 2002), eight at a time
// (kernels/product_lanes). Or the relationships come from a file, from markers for example. Which
// animals matter besides is told by how far the selection looks back, `maxage` time steps. The
// matrix is constant from then on: any number of searches read it.
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

// The same for a group that is read already and asks for a matrix.
Relationship relationships(Run& run, Pedigree& pedigree);

}  // namespace qob
