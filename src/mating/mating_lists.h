// The mating list, the list of selected males and the list of candidates.
#pragma once

#include "core/qobtypestools.h"

namespace qob {

// Writes `lst_file`, `male_file` and `candfile` from the best mateset.
void write_lists(Model& model);

}  // namespace qob
