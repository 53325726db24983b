// The mating list, the list of selected males and the list of candidates.
#pragma once

#include "core/qobtypestools.h"
#include "ocs/candidates.h"
#include "ocs/mateset.h"

namespace qob {

// Writes `lst_file`, `male_file` and `candfile` for this mateset.
void write_lists(Run& run, const Candidates& candidates, const Relationship& relationship,
                 Mateset mateset);

}  // namespace qob
