// The relationships of the candidates, computed from the pedigree.
#pragma once

#include "analysis/relationship.h"
#include "core/qobtypestools.h"
#include "pedigree/pedigree.h"

namespace qob {

// Fills relationship.nrm, which is large enough for the rows given in nrm_id, and writes the
// relationships of all marked animals to `gfile`, if one is named. mark: by animal, 1 = it matters
// for the selection, as all candidates do. Reports every 1000 marked animals on standard output.
void compute_relationships(Run& run, const Pedigree& pedigree, const Table<char>& mark,
                           Relationship& relationship);

}  // namespace qob
