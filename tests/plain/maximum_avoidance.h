// The pairing of least inbreeding in its plainest form: all 24 pairings of a block in order, pairs
// looked for row by row.
#pragma once

#include <algorithm>
#include <array>

#include "core/numbers.h"
#include "ocs/search.h"

namespace qob::plain {

class MaximumAvoidance {
 public:
  MaximumAvoidance(const Candidates& candidates, const Relationship& relationship,
                   bool repeatedmatings, Plan& plan)
      : candidates_(candidates),
        relationship_(relationship),
        repeatedmatings_(repeatedmatings),
        plan_(plan),
        m_(plan.best()) {}

  void run() {
    const std::int64_t n = m_.nmatings();
    double fsum = static_cast<double>(n) * plan_.best_value.inbreeding;
    for (std::int64_t budget = 100 * n, stall = 20; budget >= 1 && stall >= 1; --budget) {
      stall = pass(fsum) ? 20 : stall - 1;
    }
    plan_.best_value.inbreeding = fsum / static_cast<double>(n);
  }

 private:
  using Square = std::array<std::array<double, 4>, 4>;
  static double total(const Square& table, const std::array<std::size_t, 4>& p) {
    return table[0][p[0]] + table[1][p[1]] + table[2][p[2]] + table[3][p[3]];
  }

  bool pass(double& fsum) {
    const std::int64_t n = m_.nmatings();
    std::vector<std::int64_t> order(static_cast<std::size_t>(n));
    for (std::int64_t r = 1; r <= n; ++r) order[static_cast<std::size_t>(r - 1)] = r;
    for (std::int64_t j = n; n >= 4 && j >= 2; --j) {
      const double u = plan_.random.uni() * static_cast<double>(single(j));
      const auto r = static_cast<std::size_t>(u);
      if (static_cast<std::int64_t>(r) + 1 < j)
        std::swap(order[static_cast<std::size_t>(j - 1)], order[r]);
    }
    bool changed = false;
    for (std::int64_t b = 0; b < n / 4; ++b)
      changed |= improve(&order[static_cast<std::size_t>(4 * b)], fsum);
    return changed;
  }

  bool improve(const std::int64_t* row, double& fsum) {
    Square coancestry, cost;
    for (std::size_t i = 0; i < 4; ++i) {
      for (std::size_t k = 0; k < 4; ++k) {
        const int male = m_.male(row[i]), female = m_.female(row[k]);
        coancestry[i][k] = 0.5 * cnrm(relationship_, candidates_, male, female);
        int elsewhere = i == k ? -1 : 0;
        for (std::int64_t j = 1; j <= m_.nmatings(); ++j)
          elsewhere += m_.male(j) == male && m_.female(j) == female;
        const bool avoid = !repeatedmatings_ && elsewhere > 0;
        cost[i][k] = avoid ? 2.0 : coancestry[i][k];
      }
    }
    const std::array<std::size_t, 4> own = {0, 1, 2, 3};
    std::array<std::size_t, 4> best = own, p = own;
    while (std::next_permutation(p.begin(), p.end())) {
      if (total(cost, p) < total(cost, best)) best = p;
    }
    if (best == own) return false;
    fsum += total(coancestry, best) - total(coancestry, own);
    std::array<std::int32_t, 4> female;
    for (std::size_t i = 0; i < 4; ++i) female[i] = m_.female(row[best[i]]);
    for (std::size_t i = 0; i < 4; ++i) m_.female(row[i]) = female[i];
    return true;
  }

  const Candidates& candidates_;
  const Relationship& relationship_;
  bool repeatedmatings_;
  Plan& plan_;
  Mateset m_;
};

inline void maximum_avoidance(const Candidates& candidates, const Relationship& relationship,
                              bool repeatedmatings, Plan& plan) {
  MaximumAvoidance(candidates, relationship, repeatedmatings, plan).run();
}

}  // namespace qob::plain
