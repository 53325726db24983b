// Random mutation of a mateset.
#pragma once

#include "core/random.h"
#include "core/watches.h"
#include "ocs/mateset.h"
#include "ocs/selection.h"

namespace qob {

// Replaces males of slots and females of rows, each with this probability, by candidates drawn in
// proportion to their free matings. Each is a trial of its own.
void mutate(const Selection& selection, double probability, Mateset mateset, Random& random,
            Watches& watches);

}  // namespace qob
