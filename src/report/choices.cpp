#include "report/choices.h"

#include <algorithm>
#include <cmath>

#include "ocs/kernels/replacement_bounds.h"

namespace qob {
namespace {

constexpr double kEqual = 1.0e-12;  // a difference of values that is none

// The exchange of one candidate for one that was chosen.
struct Exchange {
  double value = -std::numeric_limits<double>::infinity();  // change of the plan's
  double merit = 0.0, relationship = 0.0;                   // changes, positive when they are more
};

class Exchanges {
 public:
  Exchanges(const Problem& problem, Mateset plan, const MatesetValue& value,
            const Table<double>& to_chosen)
      : problem_(problem),
        candidates_(problem.selection.candidates),
        value_(value),
        to_chosen_(to_chosen),
        uses_(uses_of(candidates_, plan)),
        row_(1.0 / static_cast<double>(2 * plan.nmatings())) {}

  Choice choice(std::int32_t i) const;
  bool is_chosen(std::int32_t i) const { return uses_(i) > 0; }
  // Whether rules let it give up a unit.
  bool may_lose(std::int32_t j, int sex) const {
    return is_chosen(j) && uses_(j) - unit(sex) >= problem_.selection.least(j);
  }

 private:
  std::int32_t unit(int sex) const {
    return sex == kMale ? problem_.selection.limitmalematings : 1;
  }
  Exchange exchange(std::int32_t i, std::int32_t chosen, int sex) const;
  double change_of_value(double scaled_merit, double merit, double relationship) const;

  const Problem& problem_;
  const Candidates& candidates_;
  const MatesetValue& value_;
  const Table<double>& to_chosen_;
  Uses uses_;
  double row_;  // the contribution of one row
};

double Exchanges::change_of_value(double scaled_merit, double merit, double relationship) const {
  const Objective& objective = problem_.objective;
  if (objective.criterion == Criterion::kMerit) return merit;
  if (objective.criterion == Criterion::kPenalty)
    return objective.w_merit * scaled_merit + objective.w_relationship * relationship;
  const auto breach = [&](double r) { return std::max(r - objective.constraint, 0.0) * 1000.0; };
  return scaled_merit - breach(value_.relationship + relationship) + breach(value_.relationship);
}

Exchange Exchanges::exchange(std::int32_t i, std::int32_t chosen, int sex) const {
  const Goal& goal = problem_.selection.goal;
  const auto relationship = [&](std::int32_t a, std::int32_t b) {
    return cnrm(problem_.relationship, candidates_, a, b);
  };
  const double d = row_ * unit(sex);
  const double squares =
      relationship(i, i) + relationship(chosen, chosen) - 2.0 * relationship(i, chosen);
  Exchange e;
  e.merit = candidates_.merit(i) - candidates_.merit(chosen);
  e.relationship =
      relationship_change(d, goal.apv2(i) - goal.apv2(chosen), to_chosen_(i) - to_chosen_(chosen),
                          squares, goal.last_genint);
  e.value =
      change_of_value(merit_gain(d, e.merit, goal.k_factor[sex - 1]), d * e.merit, e.relationship);
  return e;
}

Choice Exchanges::choice(std::int32_t i) const {
  if (is_chosen(i)) return {};
  const int sex = candidates_.is_male(i) ? kMale : kFemale;
  Exchange best;
  for (std::int32_t j = candidates_.first(sex); j <= candidates_.last(sex); ++j) {
    if (!may_lose(j, sex)) continue;
    const Exchange e = exchange(i, j, sex);
    if (e.value > best.value) best = e;
  }
  if (!std::isfinite(best.value) || problem_.selection.most(i) < unit(sex))
    return {.lack = Lack::kNotKnown};
  if (best.value >= -kEqual) return {.lack = Lack::kNothing, .value = 0.0, .merit = 0.0};
  const double d = row_ * unit(sex), k = problem_.selection.goal.k_factor[sex - 1];
  const double of_merit =  // what one unit more of its merit would add
      change_of_value(merit_gain(d, 1.0, k), d, 0.0);
  const bool less_merit =
      change_of_value(merit_gain(d, best.merit, k), d * best.merit, 0.0) < -kEqual;
  const bool related = change_of_value(0.0, 0.0, best.relationship) < -kEqual;
  return {.lack = less_merit && related ? Lack::kBoth
                  : less_merit          ? Lack::kMerit
                                        : Lack::kRelationship,
          .value = -best.value,
          .merit = of_merit > 0.0 ? -best.value / of_merit : kNaN};
}

}  // namespace

std::vector<Choice> choices(const Problem& problem, Mateset plan, const MatesetValue& value,
                            const Table<double>& to_chosen) {
  const Exchanges exchanges(problem, plan, value, to_chosen);
  std::vector<Choice> list;
  for (std::int32_t i = 1; i <= problem.selection.candidates.ncands; ++i)
    list.push_back(exchanges.choice(i));
  return list;
}

}  // namespace qob
