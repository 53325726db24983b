#include "mating/qobmate.h"

#include <set>
#include <string>
#include <utility>

#include "mating/mating_lists.h"
#include "mating/maximum_avoidance.h"
#include "ocs/rules/pairing.h"
#include "ocs/rules/set_up_rules.h"

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

void enter(const Selection& selection, const Relationship& relationship,
           const std::vector<Pair>& pairs, Plan& plan, Units& units) {
  if (pairs.empty()) handle_error(units, "ERROR: the rules permit no pairing of the plan");
  enter_pairs(selection, pairs, plan.best());
  double inbreeding = 0.0;
  for (std::int64_t j = 1; j <= selection.nmatings; ++j)
    inbreeding +=
        0.5 * cnrm(relationship, selection.candidates, plan.best().male(j), plan.best().female(j));
  plan.best_value.inbreeding = inbreeding / static_cast<double>(selection.nmatings);
}

bool pairs_least_inbred(const Parameters& p) {
  return p.rules.is_least() ||
         (p.rules.has_file() && option_text(p.mating.matingstrategy) == "mai");
}

void choose_pairing(const Parameters& parameters, const Selection& selection,
                    const Relationship& relationship, Plan& plan, Units& units) {
  Unit& log = units.log;
  const MatingOptions& options = parameters.mating;
  const std::string strategy = option_text(options.matingstrategy);
  if (pairs_least_inbred(parameters)) {
    write_list(log, "MatingStrategy=LEAST exactly the least mean inbreeding");
    enter(selection, relationship,
          least_inbred_pairs(selection, relationship, options.repeatedmatings, plan.best()), plan,
          units);
    if (!options.repeatedmatings) remark_on_repeats(plan.best(), units);
  } else if (!selection.rules.empty()) {
    write_list(log, "MatingStrategy=random among pairs that the rules permit");
    enter(selection, relationship, random_pairs(selection, plan.best(), plan.random), plan, units);
  } else if (strategy == "mai") {
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
  choose_pairing(run.parameters, selection, relationship, plan, units);
  if (tell_breaches(selection, relationship, plan.best(), units) > selection.rules.violations)
    handle_error(units, "ERROR: the plan breaks rules that could be kept");
  both_list(units.summary, units.out,
            "-------------------------------- Mating done ----------------------------------");
  both(units.summary, units.out, "(A,A)", " Mating Strategy         :",
       pairs_least_inbred(run.parameters) ? "least" : options.matingstrategy.trimmed());
  both(units.summary, units.out, "(A,F12.6,/)",
       " Average inbreeding      :", plan.best_value.inbreeding);
  both(units.summary, units.out, "(A75,/)", std::string(75, '-'));
  write_list(units.out, "Writing optimal mateset to file");
  allocate(units, "ERROR in allocating memory in subroutine Mating",
           [&] { write_lists(run, selection, relationship, plan.best()); });
  write_list(units.out, "Mating module finished");
}

}  // namespace qob
