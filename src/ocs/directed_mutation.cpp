// Directed mutation of a mateset: the best replacement of single parents. Reads the candidates,
// their relationships and the goal.
#include <cmath>
#include <string>
#include <vector>

#include "ocs/qobocs.h"

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

class DirectedMutation {
 public:
  DirectedMutation(Model& model, Mateset mateset)
      : model_(model),
        candidates_(model.candidates),
        goal_(model.goal),
        mateset_(mateset),
        criterion_(criterion_of(model)),
        d_(1.0 / static_cast<double>(2 * mateset.nmatings())),
        matings_(remaining_matings(candidates_, mateset)),
        rows_(std::int64_t{candidates_.ncands} + 1, 0) {
    for (std::int64_t p = 1; p <= 2 * mateset_.nmatings(); ++p) ++rows_(mateset_.entry(p));
    list_used();
  }

  // Looks for a replacement of the male of slot j, or the female of row j.
  void replace(std::int64_t j, int sex) {
    const std::int32_t x = mateset_(j, sex);
    const std::int64_t needed = sex == kMale ? model_.parameters.ocs.limitmalematings : 1;
    if (criterion_ == Criterion::kConstraint && !evaluated_) {
      evaluation(model_, mateset_, value_);
      evaluated_ = true;
    }
    const Choice best = choose(x, sex, needed);
    if (best.candidate == 0) return;
    enter(j, sex, best.candidate);
    matings_(x) += needed;
    matings_(best.candidate) -= needed;
    if (criterion_ == Criterion::kConstraint) update_value(best);
  }

 private:
  struct Choice {
    std::int32_t candidate = 0;
    double gain = 0.0;          // G: of scaled merit
    double relationship = 0.0;  // R: change of the average relationship
    double score = 0.0;
  };

  // A candidate and its contribution, in ascending order of candidates.
  struct Used {
    std::int32_t candidate;
    double contribution;
  };

  void list_used() {
    used_.clear();
    for (std::int32_t j = 1; j <= candidates_.ncands; ++j) {
      const double c = static_cast<double>(rows_(j)) * d_;
      if (c >= kTiny) used_.push_back({j, c});
    }
  }

  // The sum over all used candidates of their contribution times their relationship with y.
  double relationship_to_used(std::int32_t y) const {
    double sum = 0.0;
    for (const Used& used : used_) {
      sum += used.contribution * cnrm(model_.relationship, candidates_, y, used.candidate);
    }
    return sum;
  }

  // The change of the average relationship when y takes one mating of x.
  double relationship_change(std::int32_t x, std::int32_t y, double a_x) const {
    const Relationship& relationship = model_.relationship;
    const double a_y = relationship_to_used(y);
    const double squares = cnrm(relationship, candidates_, y, y) +
                           cnrm(relationship, candidates_, x, x) -
                           2.0 * cnrm(relationship, candidates_, y, x);
    return (d_ * (goal_.apv2(y) - goal_.apv2(x)) + 2.0 * d_ * (a_y - a_x) + d_ * d_ * squares) /
           (goal_.last_genint * goal_.last_genint);
  }

  // The best replacement of x; none when no candidate has the matings that are needed, or none
  // keeps the constraint. The lowest-numbered of equally good ones.
  Choice choose(std::int32_t x, int sex, std::int64_t needed) const {
    const double a_x = relationship_to_used(x);
    const bool too_related =
        criterion_ == Criterion::kConstraint && value_.relationship > goal_.constraint;
    Choice best;
    for (std::int32_t y = candidates_.first(sex); y <= candidates_.last(sex); ++y) {
      if (matings_(y) < needed) continue;
      Choice choice;
      choice.candidate = y;
      choice.gain = (candidates_.merit(y) - candidates_.merit(x)) * d_ / goal_.k_factor[sex - 1];
      choice.relationship = relationship_change(x, y, a_x);
      choice.score = score(choice, too_related);
      const bool over = criterion_ == Criterion::kConstraint && !too_related &&
                        choice.relationship + value_.relationship > goal_.constraint;
      if (over || std::isnan(choice.score)) continue;
      if (best.candidate == 0 || choice.score > best.score) best = choice;
    }
    return best;
  }

  double score(const Choice& choice, bool too_related) const {
    const OCSParameters& p = model_.parameters.ocs;
    if (criterion_ == Criterion::kPenalty) {
      return p.w_merit * choice.gain + p.w_relationship * choice.relationship;
    }
    return too_related ? -(choice.relationship + value_.relationship) : choice.gain;
  }

  // Writes y into the slot or row and counts the rows of the sex anew.
  void enter(std::int64_t j, int sex, std::int32_t y) {
    if (sex == kMale) {
      fill_slot(mateset_, j, male_slots(model_), y);
    } else {
      mateset_.female(j) = y;
    }
    for (std::int32_t i = candidates_.first(sex); i <= candidates_.last(sex); ++i) rows_(i) = 0;
    for (std::int64_t row = 1; row <= mateset_.nmatings(); ++row) ++rows_(mateset_(row, sex));
    list_used();
  }

  void update_value(const Choice& best) {
    const double predicted = best.relationship + value_.relationship;
    value_.scaled_merit += best.gain;
    value_.relationship = predicted;
    value_.rate = (predicted - goal_.last_rel) * goal_.last_genint / (2.0 - goal_.last_rel);
  }

  Model& model_;
  const Candidates& candidates_;
  const Goal& goal_;
  Mateset mateset_;
  Criterion criterion_;
  double d_;  // the contribution of one mating
  Allowances matings_;
  Table<std::int64_t, 0> rows_;  // rows in which each candidate stands
  std::vector<Used> used_;
  ValueRecord value_;  // kept up to date under the constraint
  bool evaluated_ = false;
};

}  // namespace

void directed_mutation(Model& model, Mateset mateset) {
  const double probability = model.parameters.algorithm.directed_mutation_probability;
  if (probability < kTiny) return;
  const Timed timed(model.watches.stopwatch, model.watches.dirmut);
  DirectedMutation mutation(model, mateset);
  const std::int64_t slots = male_slots(model);
  for (std::int64_t j = 1; j <= slots; ++j) {
    if (probability > model.random.uni()) mutation.replace(j, kMale);
  }
  for (std::int64_t j = 1; j <= mateset.nmatings(); ++j) {
    if (probability > model.random.uni()) mutation.replace(j, kFemale);
  }
  ValueRecord value;
  evaluation(model, mateset, value);
}

}  // namespace qob
