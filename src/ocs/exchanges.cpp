#include "ocs/exchanges.h"

#include <algorithm>
#include <cmath>
#include <initializer_list>
#include <vector>

#include "ocs/allowances.h"
#include "ocs/kernels/plan_in_making.h"
#include "ocs/rules/pairing.h"

namespace qob {
namespace {

constexpr std::size_t kPaired = 3000;   // single exchanges of which pairs are tried
constexpr double kLeastGain = 1.0e-12;  // beside the value: less may be rounding

// A unit of x that passes to y.
struct Exchange {
  std::int32_t x = 0, y = 0;
  Worth change;
  double gain = 0.0;   // by the weights
  double reach = 0.0;  // two gain together at most the product of theirs beyond what each gains
};

bool is_better(const Exchange& a, const Exchange& b) { return a.gain > b.gain; }

class Exchanges {
 public:
  Exchanges(const Problem& problem, const Weights& weights, RowCache& rows, const Uses& uses)
      : selection_(problem.selection),
        candidates_(problem.selection.candidates),
        objective_(problem.objective),
        weights_(weights),
        by_pedigree_(problem.relationship.pedsource),
        plan_(problem, rows) {
    for (std::int32_t i = 1; i <= candidates_.ncands; ++i) {
      if (uses(i) > 0) plan_.add(i, uses(i));
    }
    can_be_paired(selection_, uses, matings_);
    value_ = fitness(plan_.worth());
  }

  std::int64_t run() {
    do {
      while (exchange_singly()) continue;
    } while (exchange_a_pair());
    return count_;
  }
  const Uses& uses() const { return plan_.uses(); }

 private:
  double fitness(const Worth& worth) const {
    return fitness_of(objective_, worth.scaled_merit, worth.merit, worth.relationship);
  }
  double after(const Worth& change) const { return fitness(plan_.worth() + change); }
  double weighed(const Worth& worth) const {
    return weights_.scaled_merit * worth.scaled_merit + weights_.relationship * worth.relationship;
  }
  double least_better() const { return value_ + kLeastGain * std::max(1.0, std::abs(value_)); }

  // Whether rules permit a pairing once these have given a unit to those.
  bool can_be_paired_after(std::initializer_list<const Exchange*> exchanges) {
    if (!selection_.rules.pairs.any()) return true;
    Uses uses = plan_.uses();
    for (const Exchange* e : exchanges) {
      uses(e->x) -= plan_.unit(e->x);
      uses(e->y) += plan_.unit(e->y);
    }
    return can_be_paired(selection_, uses, matings_);
  }

  void carry_out(std::int32_t x, std::int32_t y) {
    plan_.add(x, -plan_.unit(x));
    plan_.add(y, plan_.unit(y));
    value_ = fitness(plan_.worth());
    ++count_;
  }

  template <class Action>
  void for_each_used(Action action) const {
    for (std::int32_t x = 1; x <= candidates_.ncands; ++x) {
      if (plan_.may_lose(x)) action(x);
    }
  }
  // Calls action(y, change) for all that may take a unit of x.
  template <class Action>
  void for_each_replacement(std::int32_t x, Action action) const {
    const double* row_x = nullptr;
    plan_.rows().read({&x, 1}, RowCache::Keep::kRows, &row_x);
    const int sex = candidates_.is_male(x) ? kMale : kFemale;
    for (std::int32_t y = candidates_.first(sex); y <= candidates_.last(sex); ++y) {
      if (y != x && plan_.has_room(y)) action(y, plan_.replacement(x, y, row_x));
    }
  }

  // Gives each used candidate's matings to others as long as that helps. Whether it ever did.
  bool exchange_singly() {
    const std::int64_t before = count_;
    for_each_used([&](std::int32_t x) {
      while (plan_.may_lose(x) && exchange_best(x)) continue;
    });
    return count_ > before;
  }

  bool exchange_best(std::int32_t x) {
    std::int32_t best = 0;
    double most = least_better();
    for_each_replacement(x, [&](std::int32_t y, const Worth& change) {
      const double value = after(change);
      if (!(value > most)) return;
      const Exchange exchange{x, y, change};
      if (!can_be_paired_after({&exchange})) return;
      best = y;
      most = value;
    });
    if (best != 0) carry_out(x, best);
    return best != 0;
  }

  // The best single exchanges, best first.
  std::vector<Exchange> best_exchanges() const {
    std::vector<Exchange> best;
    for_each_used([&](std::int32_t x) {
      for_each_replacement(x, [&](std::int32_t y, const Worth& change) {
        best.push_back({x, y, change, weighed(change), 0.0});
      });
      if (best.size() > 8 * kPaired) keep_best(best);
    });
    keep_best(best);
    std::stable_sort(best.begin(), best.end(), is_better);
    return best;
  }
  static void keep_best(std::vector<Exchange>& all) {
    if (all.size() <= kPaired) return;
    std::nth_element(all.begin(), all.begin() + kPaired, all.end(), is_better);
    all.resize(kPaired);
  }

  // Whether both may be carried out, neither undoing the other.
  bool go_together(const Exchange& a, const Exchange& b) const {
    if (a.y == b.x || b.y == a.x) return false;
    const std::int32_t unit = plan_.unit(a.x);
    if (a.x == b.x && plan_.uses()(a.x) - selection_.least(a.x) < 2 * unit) return false;
    return a.y != b.y || selection_.most(a.y) - plan_.uses()(a.y) >= 2 * unit;
  }

  // No plan is worth more by the objective than by the weights and this.
  double ceiling(double weighed) const {
    const bool constrains = objective_.criterion == Criterion::kConstraint;
    return weighed - (constrains ? weights_.relationship * objective_.constraint : 0.0);
  }

  // Sets the reaches, and returns the largest. By Cauchy-Schwarz; where relationships from a file
  // have negative eigenvalues two may gain more together, so of those all reach as far as the
  // farthest, and few pairs are missed.
  double set_reaches(std::vector<Exchange>& all) const {
    double largest = 0.0;
    for (auto& [x, y, change, gain, reach] : all) {
      reach = std::sqrt(std::max(0.0, -weights_.relationship * plan_.interaction(x, y)));
      largest = std::max(largest, reach);
    }
    if (!by_pedigree_)
      for (Exchange& exchange : all) exchange.reach = largest;
    return largest;
  }

  // Carries out the pair that helps most, if one does.
  bool exchange_a_pair() {
    if (objective_.criterion == Criterion::kMerit)
      return false;  // exchanges gain alone or not at all
    std::vector<Exchange> all = best_exchanges();
    const double largest_reach = set_reaches(all);
    const Exchange *first = nullptr, *second = nullptr;
    double most = least_better();
    for (std::size_t b = 1; b < all.size(); ++b) {
      const double now = weighed(plan_.worth()) + all[b].gain;
      const double most_together = largest_reach * all[b].reach;
      if (ceiling(now + all[0].gain + largest_reach * largest_reach) <= most) break;
      const std::int32_t both[] = {all[b].x, all[b].y};
      const double* row[2];
      plan_.rows().read(both, RowCache::Keep::kRows, row);
      for (std::size_t a = 0; a < b; ++a) {
        if (ceiling(now + all[a].gain + most_together) <= most) break;
        if (ceiling(now + all[a].gain + all[a].reach * all[b].reach) <= most) continue;
        if (!go_together(all[a], all[b])) continue;
        Worth change = all[a].change + all[b].change;
        change.relationship += plan_.interaction(all[a].x, all[a].y, all[b].x, row[0], row[1]);
        const double value = after(change);
        if (!(value > most) || !can_be_paired_after({&all[a], &all[b]})) continue;
        most = value;
        first = &all[a];
        second = &all[b];
      }
    }
    if (first == nullptr) return false;
    carry_out(first->x, first->y);
    carry_out(second->x, second->y);
    return true;
  }

  const Selection& selection_;
  const Candidates& candidates_;
  const Objective& objective_;
  Weights weights_;
  bool by_pedigree_;  // are candidates related
  PlanInMaking plan_;
  double value_;
  std::vector<Pair> matings_;  // that come close to what rules permit of the plan
  std::int64_t count_ = 0;
};

}  // namespace

std::int64_t exchange_until_best(const Problem& problem, const Weights& weights, RowCache& rows,
                                 Uses& uses) {
  Exchanges exchanges(problem, weights, rows, uses);
  const std::int64_t count = exchanges.run();
  uses = exchanges.uses();
  return count;
}

std::int64_t exchange_until_best(const Problem& problem, const Weights& weights, RowCache& rows,
                                 Mateset plan) {
  const Candidates& candidates = problem.selection.candidates;
  Uses wanted = uses_of(candidates, plan);
  const Uses before = wanted;
  const std::int64_t count = exchange_until_best(problem, weights, rows, wanted);
  for (const int sex : {kMale, kFemale}) {
    std::int32_t y = candidates.first(sex);
    Uses uses = before;
    for (std::int64_t j = 1; j <= plan.nmatings(); ++j) {
      const std::int32_t x = plan(j, sex);
      if (uses(x) <= wanted(x) || !problem.selection.is_free(j, sex)) continue;
      while (uses(y) >= wanted(y)) ++y;
      plan(j, sex) = y;
      --uses(x);
      ++uses(y);
    }
  }
  return count;
}

}  // namespace qob
