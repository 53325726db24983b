#include "mating/qobmate.h"

#include <set>
#include <string>
#include <utility>

#include "mating/mating_lists.h"
#include "mating/maximum_avoidance.h"

namespace qob {
namespace {

// Avoiding repeats may be impossible, or not be worth the inbreeding.
void remark_on_repeats(Mateset mateset, Units& units) {
  std::set<std::pair<std::int32_t, std::int32_t>> pairs;
  for (std::int64_t j = 1; j <= mateset.nmatings(); ++j) {
    pairs.emplace(mateset.male(j), mateset.female(j));
  }
  const std::int64_t repeats = mateset.nmatings() - std::ssize(pairs);
  if (repeats > 0) {
    units.tell("Matings that repeat a pair in spite of repeatedmatings=F : " +
               std::to_string(repeats));
  }
}

void choose_pairing(const MatingOptions& options, const Selection& selection,
                    const Relationship& relationship, Plan& plan, Units& units) {
  Unit& log = units.log;
  const std::string strategy = option_text(options.matingstrategy);
  if (strategy == "mai") {
    write_list(log, "MatingStrategy=MAI maximum avoidance of inbreeding");
    maximum_avoidance(selection.candidates, relationship, options.repeatedmatings, plan, units);
    if (!options.repeatedmatings) remark_on_repeats(plan.best(), units);
  } else if (strategy == "mcac") {
    write(log, "(/,A75)",
          "Option MatingStrategy=MCAC in MAtingOptions not yet implemented. Random assumed");
  } else {
    write(log, "(/,A75)", "MatingStrategy=random is used");  // the search left a random pairing
  }
}

}  // namespace

void mating(Run& run, const Selection& selection, const Relationship& relationship, Plan& plan) {
  const TimedPhase timed(run.journal, run.journal.watches.mating);
  Units& units = run.journal.units;
  const MatingOptions& options = run.parameters.mating;
  write_list(units.out);
  write_list(units.out, "Optimising matings starting");
  choose_pairing(options, selection, relationship, plan, units);
  both_list(units.summary, units.out,
            "-------------------------------- Mating done ----------------------------------");
  both(units.summary, units.out, "(A,A)",
       " Mating Strategy         :", options.matingstrategy.trimmed());
  both(units.summary, units.out, "(A,F12.6,/)",
       " Average inbreeding      :", plan.best_value.inbreeding);
  both(units.summary, units.out, "(A75,/)", std::string(75, '-'));
  write_list(units.out, "Writing optimal mateset to file");
  allocate(units, "ERROR in allocating memory in subroutine Mating",
           [&] { write_lists(run, selection.candidates, relationship, plan.best()); });
  write_list(units.out, "Mating module finished");
}

}  // namespace qob
