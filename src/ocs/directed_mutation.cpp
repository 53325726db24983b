// Directed mutation of a mateset: the best replacement of single parents. Reads the candidates,
// their relationships and the goal.
#include <algorithm>
#include <cmath>
#include <limits>
#include <optional>
#include <string>
#include <vector>

#include "ocs/qobocs.h"
#include "ocs/replacement_bounds.h"

namespace qob {
namespace {

enum class Criterion { kPenalty, kMerit, kConstraint };

Criterion criterion_of(Model& model) {
  const std::string optimise = option_text(model.parameters.ocs.optimise);
  if (optimise == "penalty") return Criterion::kPenalty;
  if (optimise == "merit") return Criterion::kMerit;
  if (optimise == "constraint") return Criterion::kConstraint;
  handle_error(model, format_list("ERROR in Subroutine Directed_Mutation"));
}

// A candidate in the place of another.
struct Choice {
  std::int32_t candidate = 0;  // 0: none
  double relationship = 0.0;   // change of the average relationship
  double score = 0.0;
};

// The average relationship of the next generation while replacements are made: bounds of it, and,
// where they leave a decision open, the value itself, from the mateset as it was at first and the
// changes since.
class PredictedRelationship {
 public:
  PredictedRelationship(Model& model, const std::vector<std::int32_t>& uses, double d)
      : model_(model) {
    for (std::size_t i = 1; i < uses.size(); ++i) {
      if (uses[i] == 0) continue;
      first_.candidate.push_back(static_cast<std::int32_t>(i));
      first_.c.push_back(static_cast<double>(uses[i]) * d);
    }
    set_bounds(d);
  }

  double low() const { return low_; }
  double high() const { return high_; }

  double value() {
    if (!known_) {
      const Contributions* const set = &first_;
      average_relationships(model_, {&set, 1}, model_.rows, RelationshipRows::Keep::kRows, &value_);
      for (const double change : changes_) value_ = change + value_;
      known_ = true;
      low_ = high_ = value_;
    }
    return value_;
  }

  bool exceeds(double limit) {
    if (low_ > limit) return true;
    if (high_ <= limit) return false;
    return value() > limit;
  }

  void add(double change) {
    changes_.push_back(change);
    value_ = change + value_;
    low_ = change + low_;
    high_ = change + high_;
  }

 private:
  // c'Ac from the sums of relationships. The proper sum rounds each of its terms, and none of its
  // partial sums is greater than `most`; epsilon is twice a rounding.
  void set_bounds(double d) {
    const Goal& goal = model_.goal;
    double sum = goal.vpapv, greatest_apv2 = 0.0;
    for (std::size_t k = 0; k < first_.candidate.size(); ++k) {
      const std::int32_t i = first_.candidate[k];
      const RelationshipSums& sums = model_.sums[model_.candidates.is_male(i) ? 0 : 1];
      sum += first_.c[k] * (sums.data()[i] * d + goal.apv2(i));
      greatest_apv2 = std::max(greatest_apv2, std::abs(goal.apv2(i)));
    }
    const auto n = static_cast<double>(first_.candidate.size());
    const double most = std::abs(goal.vpapv) + model_.rows.largest() + greatest_apv2;
    const double error = (n * n + 16.0 * n + 64.0) * std::numeric_limits<double>::epsilon() * most +
                         model_.sums[0].error() + model_.sums[1].error();
    const double square = goal.last_genint * goal.last_genint;
    low_ = (sum - error) / square;
    high_ = (sum + error) / square;
  }

  Model& model_;
  Contributions first_;
  std::vector<double> changes_;
  double low_ = 0.0, high_ = 0.0;
  double value_ = 0.0;
  bool known_ = false;
};

class DirectedMutation {
 public:
  DirectedMutation(Model& model, Mateset mateset, Criterion criterion)
      : model_(model),
        candidates_(model.candidates),
        goal_(model.goal),
        mateset_(mateset),
        criterion_(criterion),
        d_(1.0 / static_cast<double>(2 * mateset.nmatings())),
        matings_(remaining_matings(candidates_, mateset)),
        uses_(static_cast<std::size_t>(candidates_.ncands) + 1, 0) {
    for (std::int64_t p = 1; p <= 2 * mateset_.nmatings(); ++p) ++uses(mateset_.entry(p));
  }

  // Looks for a replacement of the male of slot j, or the female of row j.
  void replace(std::int64_t j, int sex) {
    const std::int32_t x = mateset_(j, sex);
    const std::int64_t needed = sex == kMale ? model_.parameters.ocs.limitmalematings : 1;
    const Choice best = choose(x, sex, needed);
    if (best.candidate == 0) return;
    enter(j, sex, best.candidate);
    matings_(x) += needed;
    matings_(best.candidate) -= needed;
    if (criterion_ == Criterion::kConstraint) predicted_->add(best.relationship);
  }

 private:
  std::int32_t& uses(std::int32_t i) { return uses_[static_cast<std::size_t>(i)]; }

  void list_used() {
    used_.resize(uses_.size());
    std::size_t n = 0;
    for (std::size_t j = 1; j < uses_.size(); ++j) {
      used_[n] = static_cast<std::int32_t>(j);
      n += static_cast<double>(uses_[j]) * d_ >= kTiny;
    }
    used_.resize(n);
  }

  // The sum over all used candidates of their contribution times their relationship with y.
  double relationship_to_used(std::int32_t y) {
    double sum = 0.0;
    for (const std::int32_t j : used_) {
      const double contribution = static_cast<double>(uses(j)) * d_;
      sum += contribution * cnrm(model_.relationship, candidates_, y, j);
    }
    return sum;
  }

  // The best replacement of x; none when no candidate has the matings that are needed, or none
  // keeps the constraint. The lowest-numbered of equally good ones.
  Choice choose(std::int32_t x, int sex, std::int64_t needed) {
    x_ = x;
    sex_ = sex;
    needed_ = needed;
    list_used();
    a_x_ = relationship_to_used(x);
    if (criterion_ == Criterion::kMerit) return best_gain();
    follow(sex);
    if (criterion_ == Criterion::kConstraint && !predicted_) {
      follow(kMale + kFemale - sex);
      predicted_.emplace(model_, uses_, d_);
    }
    set_bounds();
    if (criterion_ == Criterion::kPenalty) return best_penalised();
    return predicted_->exceeds(goal_.constraint) ? least_related() : best_within_constraint();
  }

  void follow(int sex) {
    model_.sums[sex - 1].follow(model_.relationship, candidates_, model_.rows, sex, uses_);
  }

  void set_bounds() {
    const double* row_x;
    model_.rows.read(model_.relationship, candidates_, {&x_, 1}, RelationshipRows::Keep::kRows,
                     &row_x);
    bound_replacements(model_, sex_, d_, x_, a_x_, row_x, bounds_);
  }

  // The place of y in the bounds.
  std::size_t at(std::int32_t y) const {
    return static_cast<std::size_t>(y - candidates_.first(sex_));
  }

  template <class Action>
  void for_each_eligible(Action action) {
    for (std::int32_t y = candidates_.first(sex_); y <= candidates_.last(sex_); ++y) {
      if (matings_(y) >= needed_) action(y);
    }
  }

  double gain(std::int32_t y) const {
    const double merit = candidates_.merit(y) - candidates_.merit(x_);
    return merit_gain(d_, merit, goal_.k_factor[sex_ - 1]);
  }

  double exact_change(std::int32_t y) {
    const Relationship& relationship = model_.relationship;
    const double squares = cnrm(relationship, candidates_, y, y) +
                           cnrm(relationship, candidates_, x_, x_) -
                           2.0 * cnrm(relationship, candidates_, y, x_);
    return relationship_change(d_, goal_.apv2(y) - goal_.apv2(x_), relationship_to_used(y) - a_x_,
                               squares, goal_.last_genint);
  }

  static void take_better(Choice& best, const Choice& choice) {
    if (std::isnan(choice.score)) return;
    if (best.candidate == 0 || choice.score > best.score) best = choice;
  }

  // The highest of the scores that `score` gives for a gain and a change of relationship. Only
  // candidates whose bounds reach the greatest sure score are looked at closely.
  template <class Score>
  Choice highest(Score score) {
    double sure = -std::numeric_limits<double>::infinity();
    for_each_eligible([&](std::int32_t y) {
      const double a = score(bounds_.gain[at(y)], bounds_.low[at(y)]);
      const double b = score(bounds_.gain[at(y)], bounds_.high[at(y)]);
      if (a > sure && b > sure) sure = std::min(a, b);
    });
    Choice best;
    for_each_eligible([&](std::int32_t y) {
      const double g = bounds_.gain[at(y)];
      if (score(g, bounds_.low[at(y)]) < sure && score(g, bounds_.high[at(y)]) < sure) return;
      const double change = exact_change(y);
      take_better(best, {y, change, score(g, change)});
    });
    return best;
  }

  Choice best_penalised() {
    const OCSParameters& p = model_.parameters.ocs;
    return highest(
        [&](double gain, double change) { return p.w_merit * gain + p.w_relationship * change; });
  }

  // The predicted relationship itself is only needed when the changes are too close to each other.
  Choice least_related() {
    if (const std::int32_t y = clearly_least_related(); y != 0) return {y, exact_change(y), 0.0};
    const double now = predicted_->value();
    return highest([&](double, double change) { return -(change + now); });
  }

  // The candidate whose change is below all others' by more than sums with the predicted
  // relationship may be rounded; 0 if there is none.
  std::int32_t clearly_least_related() {
    double sure = std::numeric_limits<double>::infinity();
    for_each_eligible([&](std::int32_t y) {
      if (bounds_.low[at(y)] <= bounds_.high[at(y)]) sure = std::min(sure, bounds_.high[at(y)]);
    });
    const double now = std::max(std::abs(predicted_->low()), std::abs(predicted_->high()));
    const double rounding = 4.0 * std::numeric_limits<double>::epsilon() * (now + std::abs(sure));
    std::int32_t least = 0;
    int close = 0;
    for_each_eligible([&](std::int32_t y) {
      if (bounds_.low[at(y)] > sure + rounding) return;
      least = y;
      ++close;
    });
    return close == 1 && std::isfinite(sure + rounding) ? least : 0;
  }

  Choice best_gain() {
    Choice best;
    for_each_eligible([&](std::int32_t y) { take_better(best, {y, 0.0, gain(y)}); });
    return best;
  }

  Choice best_within_constraint() {
    Choice best;
    for_each_eligible([&](std::int32_t y) {
      const Choice choice = {y, 0.0, bounds_.gain[at(y)]};
      const bool better = best.candidate == 0 || choice.score > best.score;
      if (better && !exceeds_constraint(y)) take_better(best, choice);
    });
    if (best.candidate != 0) best.relationship = exact_change(best.candidate);
    return best;
  }

  bool exceeds_constraint(std::int32_t y) {
    if (bounds_.low[at(y)] + predicted_->low() > goal_.constraint) return true;
    if (bounds_.high[at(y)] + predicted_->high() <= goal_.constraint) return false;
    return exact_change(y) + predicted_->value() > goal_.constraint;
  }

  // Writes y into the slot or row.
  void enter(std::int64_t j, int sex, std::int32_t y) {
    const std::int64_t step = sex == kMale ? male_slots(model_) : mateset_.nmatings();
    for (std::int64_t row = j; row <= mateset_.nmatings(); row += step) {
      --uses(mateset_(row, sex));
      ++uses(y);
      mateset_(row, sex) = y;
    }
  }

  Model& model_;
  const Candidates& candidates_;
  const Goal& goal_;
  Mateset mateset_;
  Criterion criterion_;
  double d_;  // the contribution of one mating
  Allowances matings_;
  std::vector<std::int32_t> uses_;                  // rows in which each candidate stands
  std::vector<std::int32_t> used_;                  // the candidates with uses, ascending
  std::optional<PredictedRelationship> predicted_;  // under the constraint
  // The replacement under way.
  std::int32_t x_ = 0;
  int sex_ = kMale;
  std::int64_t needed_ = 0;
  double a_x_ = 0.0;  // the sum of x
  ReplacementBounds bounds_;
};

// The value of the mateset is needed by nobody. But an empty entry stops the run, and an illegal
// mateset may be reported.
bool evaluation_may_be_seen(const Model& model, Mateset mateset, Criterion criterion) {
  for (std::int64_t p = 1; p <= 2 * mateset.nmatings(); ++p) {
    if (mateset.entry(p) == 0) return true;
  }
  return criterion == Criterion::kPenalty && !is_legal(model, mateset);
}

}  // namespace

void directed_mutation(Model& model, Mateset mateset) {
  const double probability = model.parameters.algorithm.directed_mutation_probability;
  if (probability < kTiny) return;
  const Timed timed(model.watches.stopwatch, model.watches.dirmut);
  const Criterion criterion = criterion_of(model);
  std::optional<DirectedMutation> mutation;
  const auto replace_at = [&](std::int64_t j, int sex) {
    if (!(probability > model.random.uni())) return;
    if (!mutation) mutation.emplace(model, mateset, criterion);
    mutation->replace(j, sex);
  };
  const std::int64_t slots = male_slots(model);
  for (std::int64_t j = 1; j <= slots; ++j) replace_at(j, kMale);
  for (std::int64_t j = 1; j <= mateset.nmatings(); ++j) replace_at(j, kFemale);
  if (!evaluation_may_be_seen(model, mateset, criterion)) return;
  ValueRecord value;
  evaluation(model, mateset, value);
}

}  // namespace qob
