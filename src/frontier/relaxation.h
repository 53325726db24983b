// The best plan when matings may be given in parts, and with it a bound of all plans in whole ones.
//
// With u(i) matings of candidate i, h = 1 / 2n of n matings in all, and weights of merit and
// relationship as in a search, the value of a plan
//
//   w_merit (h sum u(i) merit(i) / k - expmerit)
//       + w_relationship (vpapv + h sum u(i) apv2(i) + h^2 u'Au) / L^2
//
// is concave in u, so that steps uphill end at its best. A step gives matings of one candidate to
// another of the same sex: from the one that loses least by it to the one that gains most, as many
// as make the value largest (pairwise Frank-Wolfe steps: Lacoste-Julien & Jaggi 2015, Adv. Neural
// Inf. Process. Syst. 28:496; two at a time: Platt 1999, in Advances in Kernel Methods, 185). Where
// the steps have come to, the tangent bounds the value of every plan: its best plan takes matings
// in the order of their gains, sex by sex. The difference of the two, the duality gap, says how
// close the steps have come (Jaggi 2013, Proc. 30th Int. Conf. Machine Learning, 427).
//
// Own variances are valued by their chords (see whole_matings.h). Where relationships from a file
// have negative eigenvalues the value is not concave; `shift` is then added to the diagonal, and
// what it adds for a plan taken off again at its most, which also gives a bound.
#pragma once

#include <vector>

#include "frontier/whole_matings.h"
#include "ocs/greedy_plan.h"
#include "ocs/kernels/row_cache.h"
#include "ocs/mateset.h"

namespace qob {

// Matings by candidate, in parts.
using PartMatings = std::vector<double>;

// Where the steps have come to.
struct RelaxedPlan {
  double scaled_merit = 0.0, relationship = 0.0;
  double value = 0.0;  // by the weights
  double bound = 0.0;  // no plan in whole matings has a larger one
  double slack = 0.0;  // of the bound: what rounding may have hidden
};

class Relaxation {
 public:
  // Selection, relationships and rows must outlive it. shift: at least 0 and at least as much as
  // the least eigenvalue is below 0.
  Relaxation(const Selection& selection, RowCache& rows, WholeMatings whole, double shift);

  // Sets the plan to start from: a legal one, or one that was found here.
  void start(const Uses& uses);
  void start(const PartMatings& matings);

  // Values the plan as it stands.
  RelaxedPlan value(const Weights& weights);
  // Steps uphill until the bound, but for its slack, is at most `tolerance` above the value, or no
  // step helps.
  RelaxedPlan climb(const Weights& weights, double tolerance);

  const PartMatings& matings() const { return u_; }
  const WholeMatings& whole() const { return whole_; }

 private:
  // The candidates that gain most and lose least by a mating more and less, and by how much. Equal
  // ones: the lowest-numbered.
  struct Ends {
    std::int32_t gainer = 0, loser = 0;
    double gain = 0.0, loss = 0.0;
    double advantage() const { return gain - loss; }
  };

  void weigh(const Weights& weights);
  void set_slopes(std::int32_t i);
  void sum_relationships();
  Ends ends(int sex) const;
  bool step(const Ends& ends);
  void move(std::int32_t i, double matings);
  double chord(std::int32_t i) const;
  double tangent_at_most(int sex, double price) const;
  double centred_merit(std::int32_t i) const;
  void bound_by_tangent(RelaxedPlan& plan) const;
  RelaxedPlan plan() const;
  bool is_whole(std::int32_t i) const;

  const Selection& selection_;
  const Candidates& candidates_;
  RowCache& rows_;
  WholeMatings whole_;
  double shift_;
  double h_;

  Weights weights_;
  double offset_;             // scaled merit of parents of mean merit
  double q_ = 0.0;            // the weight of h^2 u'Au, at least 0
  std::vector<double> l_;     // linear terms of the value
  std::vector<double> u_;     // matings
  std::vector<double> b_;     // relationships to u, less own variances, with the shift
  std::vector<double> up_;    // what the chord to the right adds to a gain, -infinity at the limit
  std::vector<double> down_;  // what that to the left adds to a loss, infinity at 0
};

}  // namespace qob
