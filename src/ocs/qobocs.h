// Optimal contribution selection: the search for the set of matings with the best balance of merit
// and relationship. The doors of the room, in the order in which a run goes through them, and a
// check that the first two share.
//
// The value of a plan lies in how much each candidate contributes to the next generation: many
// offspring of the best raise merit, and the relationship of all that are born (Meuwissen 1997,
// J. Anim. Sci. 75:934). The room first sets down among whom and against what is chosen (setup,
// age_tables, realised_contributions: a Selection). Then it searches (search.h; a generation is in
// mate_and_select.cpp, which calls recombination, mutation, directed_mutation, repair and
// evaluation, whose fields are the value of a mateset), and reports (plan_report). The breeder's
// own rules are in rules/. What needs speed is in kernels/; the plain forms that judge it are in
// tests/plain.
#pragma once

#include "analysis/relationship.h"
#include "core/qobtypestools.h"
#include "ocs/search.h"
#include "ocs/selection.h"
#include "pedigree/pedigree.h"

namespace qob {

// Sets the weights and the constraint as the criterion takes them.
void complete_weights(OCSParameters& p);

// Completes the parameters of selection and search, echoes them to the log and to standard output
// and checks them. A fault stops the run.
void initialize_qob(Run& run);

// Numbers the candidates, and finds what earlier contributions, age structure and merit amount to.
// Writes the age tables. Lowers `nmatings`, with a warning, to what the candidates' mating limits
// allow. The pedigree ends here: later phases know candidates alone.
Selection set_up_selection(Run& run, Pedigree pedigree, const Relationship& relationship);

// Reports the selection, searches, and reports the best mateset found. Stops the run when none is
// legal.
Plan ocs(Run& run, const Selection& selection, const Relationship& relationship);

// Stops the run unless 1 <= limitmalematings <= nmatings.
void check_male_limit(std::int32_t limitmalematings, std::int32_t nmatings, Units& units);

}  // namespace qob
