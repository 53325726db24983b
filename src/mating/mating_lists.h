// The mating list, the list of selected males and the list of candidates.
#pragma once

#include "core/qobtypestools.h"
#include "ocs/candidates.h"
#include "ocs/mateset.h"
#include "ocs/selection.h"

namespace qob {

// The rows of the mateset in the order of the list: decided ones first; sire by sire, and by
// ascending female number within a sire.
Table<std::int32_t> rows_in_order(const Selection& selection, Mateset mateset);

// Writes `lst_file`, `male_file` and `candfile` for this mateset. Its decided rows are the last.
void write_lists(Run& run, const Selection& selection, const Relationship& relationship,
                 Mateset mateset);

}  // namespace qob
