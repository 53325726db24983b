// The summary of the data used for the selection.
#pragma once

#include "core/unit.h"
#include "ocs/selection.h"

namespace qob {

// Merit, inbreeding and relationships of the candidates, what use at random would give, and how the
// last generation was.
void report_selection_data(const Selection& selection, const Relationship& relationship,
                           Unit& summary);

}  // namespace qob
