#include "ocs/directed_mutation.h"

#include <cmath>
#include <limits>
#include <optional>
#include <utility>
#include <vector>

#include "core/numbers.h"
#include "ocs/allowances.h"
#include "ocs/kernels/replacement_bounds.h"
#include "ocs/kernels/rounding.h"
#include "ocs/predicted_relationship.h"

namespace qob {
namespace {

// A candidate in the place of another.
struct Choice {
  std::int32_t candidate = 0;  // 0: none
  double relationship = 0.0;   // change of the average relationship
  double score = 0.0;
};

void take_better(Choice& best, const Choice& choice) {
  if (std::isnan(choice.score)) return;
  if (best.candidate == 0 || choice.score > best.score) best = choice;
}

class DirectedMutation {
 public:
  DirectedMutation(const Problem& problem, Mateset mateset, SearchCaches& caches)
      : selection_(problem.selection),
        candidates_(problem.selection.candidates),
        goal_(problem.selection.goal),
        relationship_(problem.relationship),
        objective_(problem.objective),
        caches_(caches),
        mateset_(mateset),
        d_(1.0 / static_cast<double>(2 * mateset.nmatings())),
        matings_(remaining_matings(selection_, mateset)),
        uses_(uses_of(candidates_, mateset)),
        settled_(candidates_.ncands, 0) {}

  // Looks for a replacement of the male of slot j, or the female of row j.
  void replace(std::int64_t j, int sex) {
    const std::int32_t x = mateset_(j, sex);
    const std::int64_t needed = sex == kMale ? selection_.limitmalematings : 1;
    const Choice best = choose(x, sex, needed);
    if (best.candidate == 0) return;
    enter(j, sex, best.candidate);
    matings_(x) += needed;
    matings_(best.candidate) -= needed;
    if (objective_.criterion == Criterion::kConstraint) predicted_->add(best.relationship);
  }

 private:
  // A replacement under way: who loses matings, and how many another must have left.
  struct Replacement {
    Loser loser;
    std::int64_t needed;
  };

  void list_used() {
    used_.resize(static_cast<std::size_t>(uses_.size()));
    std::size_t n = 0;
    for (std::int32_t j = 1; j <= uses_.last(); ++j) {
      used_[n] = j;
      n += static_cast<double>(uses_(j)) * d_ >= kTiny;
    }
    used_.resize(n);
  }

  // The sum over all used candidates of their contribution times their relationship with y.
  double relationship_to_used(std::int32_t y) const {
    double sum = 0.0;
    if (caches_.twins && caches_.twins->is_unrelated(y)) {  // all other products are 0
      const double contribution = static_cast<double>(uses_(y)) * d_;
      return contribution >= kTiny ? sum + contribution * cnrm(relationship_, candidates_, y, y)
                                   : sum;
    }
    for (const std::int32_t j : used_) {
      const double contribution = static_cast<double>(uses_(j)) * d_;
      sum += contribution * cnrm(relationship_, candidates_, y, j);
    }
    return sum;
  }

  // The best replacement of x; none when no candidate has the matings that are needed, or none
  // keeps the constraint. The lowest-numbered of equally good ones.
  Choice choose(std::int32_t x, int sex, std::int64_t needed) {
    Replacement r{{x, sex, 0.0, {}}, needed};
    if (objective_.criterion == Criterion::kMerit) return best_gain(r);
    ++choice_;
    looks_ = 0;
    list_used();
    r.loser.a_x = relationship_to_used(x);
    follow(sex);
    if (objective_.criterion == Criterion::kConstraint && !predicted_) {
      follow(kMale + kFemale - sex);
      predicted_.emplace(selection_, uses_, d_, caches_.sums, caches_.rows);
    }
    r.loser.row_x = caches_.rows.find_or_read(x);
    bound_replacements(selection_, r.loser, d_, caches_.sums[sex - 1], caches_.rows.own(), bounds_);
    if (objective_.criterion == Criterion::kPenalty) return best_penalised(r);
    return predicted_->exceeds(objective_.constraint) ? least_related(r)
                                                      : best_within_constraint(r);
  }

  void follow(int sex) {
    caches_.sums[sex - 1].follow(uses_, caches_.rows, candidates_.first(sex),
                                 candidates_.last(sex));
  }

  // Calls action(y, place of y in the bounds) for those that have the matings that are needed.
  template <class Action>
  void for_each_eligible(const Replacement& r, Action action) const {
    const std::int32_t first = candidates_.first(r.loser.sex);
    for (std::int32_t y = first; y <= candidates_.last(r.loser.sex); ++y) {
      if (matings_(y) >= r.needed) action(y, static_cast<std::size_t>(y - first));
    }
  }

  // Whether y gives the change of one that has been looked at closely for the same replacement: a
  // twin, neither of them used.
  bool is_settled(std::int32_t y) {
    if (++looks_ > 1 && !caches_.twins) caches_.twins.emplace(selection_, caches_.rows);
    if (!caches_.twins || uses_(y) != 0) return false;
    return std::exchange(settled_(caches_.twins->first(y)), choice_) == choice_;
  }

  double exact_change(const Loser& loser, std::int32_t y) const {
    const std::int32_t x = loser.x;
    const double squares = cnrm(relationship_, candidates_, y, y) +
                           cnrm(relationship_, candidates_, x, x) -
                           2.0 * cnrm(relationship_, candidates_, y, x);
    return relationship_change(d_, goal_.apv2(y) - goal_.apv2(x),
                               relationship_to_used(y) - loser.a_x, squares, goal_.last_genint);
  }

  // The highest of the scores that `score` gives for a gain and a change of relationship. Only
  // candidates whose bounds reach the greatest sure score are looked at closely.
  template <class Score>
  Choice highest(const Replacement& r, Score score) {
    double sure = -std::numeric_limits<double>::infinity();
    for_each_eligible(r, [&](std::int32_t, std::size_t at) {
      const double a = score(bounds_.gain[at], bounds_.low[at]);
      const double b = score(bounds_.gain[at], bounds_.high[at]);
      if (a > sure && b > sure) sure = std::min(a, b);
    });
    Choice best;
    for_each_eligible(r, [&](std::int32_t y, std::size_t at) {
      const double gain = bounds_.gain[at];
      if (score(gain, bounds_.low[at]) < sure && score(gain, bounds_.high[at]) < sure) return;
      if (is_settled(y)) return;
      const double change = exact_change(r.loser, y);
      take_better(best, {y, change, score(gain, change)});
    });
    return best;
  }

  Choice best_penalised(const Replacement& r) {
    return highest(r, [&](double gain, double change) {
      return objective_.w_merit * gain + objective_.w_relationship * change;
    });
  }

  // The predicted relationship itself is only needed when the changes are too close to each other.
  Choice least_related(const Replacement& r) {
    const std::int32_t y = clearly_least_related(r);
    if (y != 0) return {y, exact_change(r.loser, y), 0.0};
    const double now = predicted_->value();
    return highest(r, [&](double, double change) { return -(change + now); });
  }

  // The candidate whose change is below all others' by more than sums with the predicted
  // relationship may be rounded; 0 if there is none.
  std::int32_t clearly_least_related(const Replacement& r) const {
    double sure = std::numeric_limits<double>::infinity();
    for_each_eligible(r, [&](std::int32_t, std::size_t at) {
      if (bounds_.low[at] <= bounds_.high[at]) sure = std::min(sure, bounds_.high[at]);
    });
    const double now = std::max(std::abs(predicted_->low()), std::abs(predicted_->high()));
    const double limit = sure + rounding_of_prediction(now, sure);
    std::int32_t least = 0;
    int close = 0;
    for_each_eligible(r, [&](std::int32_t y, std::size_t at) {
      if (bounds_.low[at] > limit) return;
      least = y;
      ++close;
    });
    return close == 1 && std::isfinite(limit) ? least : 0;
  }

  Choice best_gain(const Replacement& r) const {
    Choice best;
    const double k_factor = goal_.k_factor[r.loser.sex - 1];
    for_each_eligible(r, [&](std::int32_t y, std::size_t) {
      const double merit = candidates_.merit(y) - candidates_.merit(r.loser.x);
      take_better(best, {y, 0.0, merit_gain(d_, merit, k_factor)});
    });
    return best;
  }

  Choice best_within_constraint(const Replacement& r) {
    Choice best;
    for_each_eligible(r, [&](std::int32_t y, std::size_t at) {
      const Choice choice = {y, 0.0, bounds_.gain[at]};
      const bool better = best.candidate == 0 || choice.score > best.score;
      if (better && !exceeds_constraint(r.loser, y, at)) take_better(best, choice);
    });
    if (best.candidate != 0) best.relationship = exact_change(r.loser, best.candidate);
    return best;
  }

  bool exceeds_constraint(const Loser& loser, std::int32_t y, std::size_t at) {
    if (bounds_.low[at] + predicted_->low() > objective_.constraint) return true;
    if (bounds_.high[at] + predicted_->high() <= objective_.constraint) return false;
    if (is_settled(y)) return true;  // its twin would be taken if it kept the constraint
    return exact_change(loser, y) + predicted_->value() > objective_.constraint;
  }

  // Writes y into the slot or row.
  void enter(std::int64_t j, int sex, std::int32_t y) {
    const std::int64_t step = sex == kMale ? selection_.male_slots() : mateset_.nmatings();
    for (std::int64_t row = j; row <= selection_.rows(); row += step) {
      --uses_(mateset_(row, sex));
      ++uses_(y);
      mateset_(row, sex) = y;
    }
  }

  const Selection& selection_;
  const Candidates& candidates_;
  const Goal& goal_;
  const Relationship& relationship_;
  const Objective& objective_;
  SearchCaches& caches_;
  Mateset mateset_;
  double d_;  // the contribution of one row
  Allowances matings_;
  Uses uses_;
  std::vector<std::int32_t> used_;                  // the candidates with uses, ascending
  std::optional<PredictedRelationship> predicted_;  // under the constraint
  ReplacementBounds bounds_;                        // of the replacement under way
  std::int64_t choice_ = 0;                         // its number
  int looks_ = 0;                                   // at candidates whose bounds leave it open
  Table<std::int64_t> settled_;                     // by candidate: the last choice in which it,
                                                    // as the first of its twins, was looked at
};

// The value of the mateset is needed by nobody. But an empty entry stops the run, and without rules
// an illegal mateset may be reported.
bool evaluation_may_be_seen(const Problem& problem, Mateset mateset) {
  return mateset.has_empty_entry() ||
         (problem.objective.criterion == Criterion::kPenalty && problem.selection.rules.empty() &&
          !is_legal(problem.selection, mateset));
}

}  // namespace

void directed_mutation(const Problem& problem, double probability, Mateset mateset, Random& random,
                       SearchCaches& caches, Evaluator& evaluator, Journal& journal) {
  if (probability < kTiny) return;
  const Timed timed(journal.watches, journal.watches.dirmut);
  if (problem.objective.criterion == Criterion::kUnknown) {
    handle_error(journal.units, "ERROR in Subroutine Directed_Mutation");
  }
  std::optional<DirectedMutation> mutation;
  const auto replace_at = [&](std::int64_t j, int sex) {
    if (!(probability > random.uni())) return;
    if (!mutation) mutation.emplace(problem, mateset, caches);
    mutation->replace(j, sex);
  };
  const Selection& selection = problem.selection;
  for (std::int64_t j = 1; j <= selection.free_slots(); ++j) replace_at(j, kMale);
  for (std::int64_t j = 1; j <= selection.free_rows(); ++j) replace_at(j, kFemale);
  if (!evaluation_may_be_seen(problem, mateset)) return;
  MatesetValue value;
  evaluator.evaluation(mateset, value);
}

}  // namespace qob
