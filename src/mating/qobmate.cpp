#include "mating/qobmate.h"

#include <string>

#include "mating/mating_lists.h"
#include "mating/maximum_avoidance.h"

namespace qob {
namespace {

void choose_pairing(Model& model) {
  Unit& log = model.units.log;
  const std::string strategy = option_text(model.parameters.mating.matingstrategy);
  if (strategy == "mai") {
    write_list(log, "MatingStrategy=MAI maximum avoidance of inbreeding");
    maximum_avoidance(model);
  } else if (strategy == "mcac") {
    write(log, "(/,A75)",
          "Option MatingStrategy=MCAC in MAtingOptions not yet implemented. Random assumed");
  } else {
    write(log, "(/,A75)", "MatingStrategy=random is used");  // the search left a random pairing
  }
}

}  // namespace

void mating(Model& model) {
  Units& units = model.units;
  write_list(units.out);
  write_list(units.out, "Optimising matings starting");
  choose_pairing(model);
  both_list(units.summary, units.out,
            "-------------------------------- Mating done ----------------------------------");
  both(units.summary, units.out, "(A,A)",
       " Mating Strategy         :", model.parameters.mating.matingstrategy.trimmed());
  both(units.summary, units.out, "(A,F12.6,/)",
       " Average inbreeding      :", model.search.best_value.inbreeding);
  both(units.summary, units.out, "(A75,/)", std::string(75, '-'));
  write_list(units.out, "Writing optimal mateset to file");
  allocate(model, "ERROR in allocating memory in subroutine Mating", [&] { write_lists(model); });
  write_list(units.out, "Mating module finished");
}

}  // namespace qob
