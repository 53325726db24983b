// The selection, set up from the pedigree: candidates, capacity, the scale of merit.
//
// Merit is measured in standard deviations of each sex, each candidate weighted by its mating limit
// w: mean = sum w merit / W with W the capacity of the sex, variance = (sum w merit^2 - mean^2 W) /
// ((n - 1) W / n). So a unit of merit weighs the same against relationship whatever the trait is
// measured in, and a sex of few, alike candidates does not count for less. Less what use of all in
// proportion to their limits would give (expmerit), it is the selection's gain.
#include <algorithm>
#include <cmath>

#include "core/numbers.h"
#include "ocs/age_tables.h"
#include "ocs/allowances.h"
#include "ocs/missing_candidates.h"
#include "ocs/qobocs.h"
#include "ocs/realised_contributions.h"
#include "ocs/remarks.h"
#include "ocs/rules/set_up_rules.h"

namespace qob {
namespace {

void count_candidates(const Pedigree& pedigree, Candidates& candidates, Units& units) {
  for (std::int32_t i = 1; i <= pedigree.maxid; ++i) {
    if (pedigree.matings(i) > 0) ++(pedigree.sex(i) == 1 ? candidates.nmcands : candidates.nfcands);
  }
  if (candidates.nmcands == 0) handle_error(units, "ERROR: No male candidates");
  if (candidates.nfcands == 0) handle_error(units, "ERROR: No female candidates");
  candidates.ncands = candidates.nmcands + candidates.nfcands;
  candidates.birth_time = *std::max_element(pedigree.btime.begin(), pedigree.btime.end()) + 1;
}

// Enters animal i as candidate number k.
void enter_candidate(const Pedigree& pedigree, std::int32_t i, Candidates& candidates,
                     std::int32_t k) {
  candidates.cands(k) = i;
  candidates.max_matings(k) = pedigree.matings(i);
  candidates.merit(k) = pedigree.ebv(i);
  candidates.age(k) = std::int64_t{candidates.birth_time} - pedigree.btime(i);
  candidates.f(k) = pedigree.f(i);
  candidates.old_id(k) = pedigree.oldped(i, 1);
  candidates.description(k) = pedigree.txt(i);
  candidates.unknown_parents(k) = pedigree.sire(i) == 0 || pedigree.dam(i) == 0 ? 1 : 0;
}

void fill_candidates(const Pedigree& pedigree, Candidates& candidates, Units& units) {
  const std::int32_t n = candidates.ncands;
  candidates.cands.assign(n, 0);
  candidates.max_matings.assign(n, 0);
  candidates.merit.assign(n, 0.0);
  candidates.age.assign(n, 0);
  candidates.f.assign(n, 0.0);
  candidates.old_id.assign(n, 0);
  candidates.description.assign(n, "");
  candidates.unknown_parents.assign(n, 0);
  std::int32_t males = 0;
  std::int32_t females = candidates.nmcands;
  for (std::int32_t i = 1; i <= pedigree.maxid; ++i) {
    if (pedigree.matings(i) <= 0) continue;
    if (pedigree.sex(i) != 1 && pedigree.sex(i) != 2) {
      handle_error(units, "Error in sex codes. Assumed to be 1 (males) or 2 (females)");
    }
    enter_candidate(pedigree, i, candidates, pedigree.sex(i) == 1 ? ++males : ++females);
  }
}

// Every animal's offspring as a sire and as a dam; a candidate has those of its sex.
void count_previous_offspring(const Pedigree& pedigree, Candidates& candidates) {
  Table<std::int32_t> offspring[2];
  for (int k = 1; k <= 2; ++k) {
    offspring[k - 1].assign(pedigree.maxid, 0);
    for (std::int32_t i = 1; i <= pedigree.maxid; ++i) {
      if (pedigree.newped(k, i) > 0) ++offspring[k - 1](pedigree.newped(k, i));
    }
  }
  candidates.previous_offspring.assign(candidates.ncands, 0);
  for (std::int32_t i = 1; i <= candidates.ncands; ++i) {
    candidates.previous_offspring(i) =
        offspring[candidates.is_male(i) ? 0 : 1](candidates.cands(i));
  }
}

void describe_last_generation(const Pedigree& pedigree, Candidates& candidates, Goal& goal) {
  double sum_f = 0.0;
  double sum_merit = 0.0;
  for (std::int32_t i = 1; i <= pedigree.maxid; ++i) {
    if (pedigree.btime(i) != candidates.birth_time - 1) continue;
    ++candidates.nlast;
    sum_f += pedigree.f(i);
    sum_merit += pedigree.ebv(i);
  }
  goal.last_f = sum_f / candidates.nlast;
  goal.last_merit = sum_merit / candidates.nlast;
}

// Tells of matings that males cannot have in whole units. By rules some may be decided, which need
// not come so: those tell by themselves what does not fit.
void remark_on_units(const Selection& selection, bool lowered, bool has_rules, Units& units) {
  const Candidates& candidates = selection.candidates;
  const std::int32_t unit = selection.limitmalematings;
  if (unit <= 1 || has_rules) return;
  std::int64_t room = 0;
  for (std::int32_t i = 1; i <= candidates.nmcands; ++i) {
    room += candidates.max_matings(i) / unit * unit;
  }
  const bool fit = selection.nmatings % unit == 0 && room >= selection.nmatings;
  if (fit && !lowered) return;
  units.tell("Units of " + std::to_string(unit) + " matings of a male " +
             (fit ? "fit into " : "do not fit into ") + std::to_string(selection.nmatings) +
             " matings : males have room for " + std::to_string(room) + " in whole units");
}

// Lowers the matings to what the candidates allow.
void check_capacity(Selection& selection, bool has_rules, Units& units) {
  const Candidates& candidates = selection.candidates;
  Unit& log = units.log;
  const std::int32_t requested = selection.nmatings;
  const std::int64_t males = mating_capacity(candidates, kMale);
  const std::int64_t females = mating_capacity(candidates, kFemale);
  if (selection.nmatings > std::min(males, females)) {
    write_list(log);
    write_list(log, " WARNING : More matings attempted than possible");
    write_list(log, " Matings requested        : ", selection.nmatings);
    write_list(log, " Male matings available   : ", males);
    write_list(log, " Female matings available : ", females);
    units.tell("nmatings = " + std::to_string(selection.nmatings) + " : expected at most " +
               std::to_string(males) + " male and " + std::to_string(females) +
               " female matings; " + std::to_string(std::min(males, females)) + " are planned");
    selection.nmatings = static_cast<std::int32_t>(std::min(males, females));
    write_list(log, " Matings selected         : ", selection.nmatings);
  }
  remark_on_units(selection, selection.nmatings < requested, has_rules, units);
  const auto most = *std::max_element(candidates.max_matings.begin(),
                                      candidates.max_matings.begin() + candidates.nmcands);
  if (most < selection.limitmalematings) {
    handle_error(units,
                 "ERROR: Male candidates should have at least LimitMaleMatings matings in dataset");
  }
  check_male_limit(selection.limitmalematings, selection.nmatings, units);  // may be lowered by now
}

// Mean merit of a sex and the standard deviation, which becomes the unit of merit.
void scale_merit(const Candidates& candidates, int sex, Goal& goal, Units& units) {
  const std::int64_t capacity = mating_capacity(candidates, sex);
  const auto [least, most] =
      std::minmax_element(candidates.merit.begin() + (candidates.first(sex) - 1),
                          candidates.merit.begin() + candidates.last(sex));
  double sum = 0.0;
  double sum_of_squares = 0.0;
  for (std::int32_t i = candidates.first(sex); i <= candidates.last(sex); ++i) {
    const double w = candidates.max_matings(i);
    const double merit = candidates.merit(i);
    sum += w * merit;
    sum_of_squares += w * (merit * merit);
  }
  const double total = static_cast<double>(capacity);
  const double n = candidates.last(sex) - candidates.first(sex) + 1;
  const double mean = sum / static_cast<double>(single(capacity));
  const double divisor = n > 1.0 ? (n - 1.0) * total / n : 1.0;
  const double variance = (sum_of_squares - mean * mean * total) / divisor;
  if (!std::isfinite(variance)) {
    handle_error(units, "ERROR in data : EBVs are too large, from ", *least, " to ", *most);
  }
  const double deviation = std::sqrt(std::max(variance, 0.0));
  goal.mean_merit[sex - 1] = mean;
  goal.k_factor[sex - 1] = *least == *most || deviation < kTiny ? 1.0 : deviation;
}

}  // namespace

Selection set_up_selection(Run& run, Pedigree pedigree, const Relationship& relationship) {
  Watches& watches = run.journal.watches;
  const Timed phase(watches, watches.ocs);
  const Timed timed(watches, watches.nrm);
  Units& units = run.journal.units;
  const OCSParameters& parameters = run.parameters.ocs;
  Selection selection{{}, {}, parameters.nmatings, parameters.limitmalematings, {}};
  Candidates& candidates = selection.candidates;
  Goal& goal = selection.goal;
  count_candidates(pedigree, candidates, units);
  const std::int64_t nage = count_age_classes(pedigree, candidates.birth_time);
  both_list(units.out, units.log, "Computing realised contributions for the previous", nage,
            " periods");
  fill_candidates(pedigree, candidates, units);
  FoundRules rules = find_rules(run, pedigree, candidates);
  pedigree.sex.release();  // the candidates' own tables are used from here on
  pedigree.oldped.release();
  pedigree.matings.release();
  pedigree.txt.release();
  AgeStructure ages;
  allocate(units, "ERROR in allocating memory in Subroutine setup_f_ped.",
           [&] { ages = age_structure(pedigree, candidates, nage, units); });
  goal.last_genint = ages.last_genint;
  describe_last_generation(pedigree, candidates, goal);
  remark_on_last_time_step(pedigree, candidates, units);
  if (relationship.pedsource) {
    remark_on_unknown_parents(candidates, units);
  } else {
    candidates.unknown_parents.fill(0);
  }
  allocate(units, "ERROR in allocating memory in subroutine OCS (contrib) ", [&] {
    realised_contributions(pedigree, candidates, ages, relationship.cohortrel, units, goal);
    count_previous_offspring(pedigree, candidates);
  });
  if (!relationship.pedsource) {
    allocate(units, "ERROR in allocating memory ReadID in subroutine Setup_Cnrm",
             [&] { check_missing_candidates(run, pedigree, candidates); });
  }
  check_capacity(selection, run.parameters.rules.has_file(), units);
  for (const int sex : {kMale, kFemale}) scale_merit(candidates, sex, goal, units);
  goal.expmerit =
      0.5 * (goal.mean_merit[0] / goal.k_factor[0] + goal.mean_merit[1] / goal.k_factor[1]);
  allocate(units, "ERROR in allocating memory for rules of matings",
           [&] { set_up_rules(run, std::move(rules), relationship, selection); });
  return selection;
}

}  // namespace qob
