#include "report/plan.h"

#include <algorithm>
#include <cmath>
#include <map>
#include <set>
#include <utility>

#include "ocs/objective.h"
#include "report/common_ancestors.h"

namespace qob {
namespace {

constexpr int kDrawn = 4;             // generations of ancestors of a parent that are drawn
constexpr std::size_t kShown = 12;    // common ancestors of one mating that are told one by one,
constexpr double kShownShare = 0.01;  // each with this part of F at least
constexpr std::size_t kAlternatives = 3;
constexpr double kMatrixUnit = 1.0e5;

double relationship(const FinishedRun::Planned& planned, std::int32_t a, std::int32_t b) {
  return cnrm(planned.relationship, planned.selection.candidates, a, b);
}

// The chosen of a sex in the order of their numbers, which is that of the mating list.
std::vector<std::int32_t> chosen_of(const Candidates& candidates, const Uses& uses, int sex) {
  std::vector<std::int32_t> chosen;
  for (std::int32_t i = candidates.first(sex); i <= candidates.last(sex); ++i)
    if (uses(i) > 0) chosen.push_back(i);
  return chosen;
}

class PlanTeller {
 public:
  PlanTeller(FinishedRun& finished, AnimalList& animals)
      : pedigree_(finished.pedigree),
        planned_(*finished.planned),
        candidates_(planned_.selection.candidates),
        animals_(animals),
        mateset_(planned_.mateset()),
        sires_(chosen_of(candidates_, uses_of(candidates_, mateset_), kMale)),
        dams_(chosen_of(candidates_, uses_of(candidates_, mateset_), kFemale)) {}

  void tell_matings(ReportedPlan& plan);
  void tell_decided(ReportedPlan& plan) const;
  void tell_alternatives(ReportedPlan& plan);
  void tell_matrix(ReportedPlan& plan);
  double unknown_genes() const;

 private:
  std::int32_t animal(std::int32_t candidate) const { return candidates_.cands(candidate); }
  std::int32_t place(std::int32_t candidate) { return animals_.place(animal(candidate)); }
  void tell_ancestors(CommonAncestors& ancestors, std::int32_t sire, std::int32_t dam,
                      ReportedMating& mating);

  const Pedigree& pedigree_;
  FinishedRun::Planned& planned_;
  const Candidates& candidates_;
  AnimalList& animals_;
  Mateset mateset_;
  std::vector<std::int32_t> sires_, dams_;
};

void PlanTeller::tell_ancestors(CommonAncestors& ancestors, std::int32_t sire, std::int32_t dam,
                                ReportedMating& mating) {
  const CommonAncestors::Result result = ancestors.of(animal(sire), animal(dam));
  std::size_t shown = 0;
  while (shown < std::min(result.shares.size(), kShown) &&
         result.shares[shown].f >= kShownShare * mating.f)
    ++shown;
  mating.other_f = mating.f;
  for (std::size_t k = 0; k < shown; ++k) {
    const auto& [ancestor, f] = result.shares[k];
    mating.common.push_back({animals_.place(ancestor), f});
    mating.other_f -= f;
  }
  mating.other_common = static_cast<std::int32_t>(result.shares.size() - shown) +
                        static_cast<std::int32_t>(result.others);
  if (mating.other_common == 0) mating.other_f = 0.0;  // what rounding leaves
}

// Relationships from a file have no ancestors behind them.
void PlanTeller::tell_matings(ReportedPlan& plan) {
  plan.matings = reported_matings(planned_, mateset_, animals_);
  std::vector<std::int32_t> parents;
  for (const auto* sex : {&sires_, &dams_})
    for (const std::int32_t i : *sex) parents.push_back(animal(i));
  for (const std::int32_t parent : parents) animals_.add_ancestors(parent, kDrawn);
  if (!planned_.relationship.pedsource) return;
  CommonAncestors ancestors(pedigree_, parents);
  std::map<std::pair<std::int32_t, std::int32_t>, std::size_t> first;  // mating of a pair
  for (std::int64_t j = 1; j <= mateset_.nmatings(); ++j) {
    const auto at = static_cast<std::size_t>(j - 1);
    const auto [same, is_new] = first.try_emplace({mateset_.male(j), mateset_.female(j)}, at);
    if (is_new) {
      tell_ancestors(ancestors, mateset_.male(j), mateset_.female(j), plan.matings[at]);
    } else {
      plan.matings[at] = plan.matings[same->second];
    }
  }
}

// As often as rules decide the pair.
void PlanTeller::tell_decided(ReportedPlan& plan) const {
  const std::vector<Pair>& decided = planned_.selection.rules.decided;
  std::multiset<Pair> left(decided.begin(), decided.end());
  for (std::int64_t j = 1; j <= mateset_.nmatings(); ++j) {
    const auto found = left.find({mateset_.male(j), mateset_.female(j)});
    if (found == left.end()) continue;
    left.erase(found);
    plan.matings[static_cast<std::size_t>(j - 1)].decided = true;
  }
}

void PlanTeller::tell_alternatives(ReportedPlan& plan) {
  std::map<std::int32_t, std::set<std::int32_t>> mates;
  for (std::int64_t j = 1; j <= mateset_.nmatings(); ++j)
    mates[mateset_.female(j)].insert(mateset_.male(j));
  for (const std::int32_t dam : dams_) {
    std::vector<std::pair<double, std::int32_t>> others;
    for (const std::int32_t sire : sires_)
      if (!mates[dam].contains(sire) && planned_.selection.rules.pairs.most(sire, dam) > 0)
        others.emplace_back(0.5 * relationship(planned_, sire, dam), sire);
    std::sort(others.begin(), others.end());
    others.resize(std::min(others.size(), kAlternatives));
    Alternatives told{place(dam), {}};
    for (const auto& [f, sire] : others) told.males.push_back({place(sire), f});
    plan.alternatives.push_back(std::move(told));
  }
}

void PlanTeller::tell_matrix(ReportedPlan& plan) {
  for (const std::int32_t sire : sires_) plan.sires.push_back(place(sire));
  for (const std::int32_t dam : dams_) plan.dams.push_back(place(dam));
  for (const std::int32_t sire : sires_) {
    for (const std::int32_t dam : dams_) {
      const double f = 0.5 * relationship(planned_, sire, dam);
      plan.matrix.push_back(static_cast<std::int32_t>(std::lround(f * kMatrixUnit)));
    }
  }
}

double PlanTeller::unknown_genes() const {
  std::int64_t unknown = 0;
  for (std::int64_t p = 1; p <= 2 * mateset_.nmatings(); ++p) {
    const std::int32_t i = animal(mateset_.entry(p));
    unknown += (pedigree_.sire(i) == 0) + (pedigree_.dam(i) == 0);
  }
  return static_cast<double>(unknown) / static_cast<double>(4 * mateset_.nmatings());
}

void tell_ground(const Selection& selection, ReportedPlan& plan) {
  const Goal& goal = selection.goal;
  plan.last_birth_time = selection.candidates.birth_time - 1;
  plan.last_animals = selection.candidates.nlast;
  plan.last_f = goal.last_f;
  plan.last_merit = goal.last_merit;
  plan.last_relationship = goal.last_rel;
  plan.generation_interval = goal.last_genint;
  plan.gain = plan.value.merit - goal.last_merit;
}

}  // namespace

PlanValue reported_value(const MatesetValue& value) {
  return {.inbreeding = value.inbreeding,
          .rate = value.rate,
          .relationship = value.relationship,
          .merit = value.merit,
          .scaled_merit = value.scaled_merit,
          .fitness = value.fitness,
          .age = value.age,
          .legal = value.legal};
}

SexUse use_of(const Candidates& candidates, Mateset mateset, int sex) {
  const Uses uses = uses_of(candidates, mateset);
  SexUse use;
  double matings = 0.0, squares = 0.0, merit = 0.0;
  for (std::int32_t i = candidates.first(sex); i <= candidates.last(sex); ++i) {
    ++use.candidates;
    merit += candidates.merit(i);
    if (uses(i) == 0) continue;
    ++use.chosen;
    matings += uses(i);
    squares += static_cast<double>(uses(i)) * uses(i);
  }
  use.mean_merit = merit / use.candidates;
  use.mean_matings = matings / use.chosen;
  if (use.chosen > 1)
    use.sd_matings =
        std::sqrt(std::max(squares - matings * use.mean_matings, 0.0) / (use.chosen - 1));
  return use;
}

std::vector<ReportedMating> reported_matings(const FinishedRun::Planned& planned, Mateset mateset,
                                             AnimalList& animals) {
  const Candidates& candidates = planned.selection.candidates;
  std::vector<ReportedMating> matings;
  for (std::int64_t j = 1; j <= mateset.nmatings(); ++j) {
    const std::int32_t sire = mateset.male(j), dam = mateset.female(j);
    const double own = relationship(planned, sire, sire) + relationship(planned, dam, dam);
    ReportedMating mating;
    mating.sire = animals.place(candidates.cands(sire));
    mating.dam = animals.place(candidates.cands(dam));
    mating.merit = (candidates.merit(sire) + candidates.merit(dam)) / 2.0;
    mating.f = 0.5 * relationship(planned, sire, dam);
    mating.vf = (2.0 - own / 2.0) / 2.0;
    matings.push_back(std::move(mating));
  }
  return matings;
}

ReportedPlan reported_plan(FinishedRun& finished, AnimalList& animals) {
  FinishedRun::Planned& planned = *finished.planned;
  const OCSParameters& p = finished.run.parameters.ocs;
  ReportedPlan plan;
  plan.criterion = option_text(p.optimise);
  plan.w_merit = p.w_merit;
  plan.w_relationship = p.w_relationship;
  if (criterion_of(p.optimise) == Criterion::kConstraint) plan.constraint = p.dfconstraint;
  plan.pairing = finished.log.pairing;
  plan.value = reported_value(planned.value);
  if (plan.value.rate > 0.0) plan.ne = 1.0 / (2.0 * plan.value.rate);
  plan.males = use_of(planned.selection.candidates, planned.mateset(), kMale);
  plan.females = use_of(planned.selection.candidates, planned.mateset(), kFemale);
  tell_ground(planned.selection, plan);
  PlanTeller teller(finished, animals);
  plan.unknown_genes = teller.unknown_genes();
  teller.tell_matings(plan);
  teller.tell_decided(plan);
  teller.tell_alternatives(plan);
  teller.tell_matrix(plan);
  return plan;
}

}  // namespace qob
