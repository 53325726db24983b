// The mating list, the list of selected males and the list of candidates.
#pragma once

#include "core/qobtypestools.h"
#include "ocs/candidates.h"
#include "ocs/mateset.h"

namespace qob {

// The rows of the mateset in the order of the list: sire by sire, and by ascending female number
// within a sire.
Table<std::int32_t> rows_in_order(Mateset mateset);

// Writes `lst_file`, `male_file` and `candfile` for this mateset.
void write_lists(Run& run, const Candidates& candidates, const Relationship& relationship,
                 Mateset mateset);

}  // namespace qob
