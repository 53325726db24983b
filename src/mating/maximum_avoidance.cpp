#include "mating/maximum_avoidance.h"

#include <array>
#include <cstdint>
#include <utility>

#include "core/numbers.h"
#include "core/progress.h"
#include "mating/pair_count.h"

namespace qob {
namespace {

constexpr int kStall = 20;  // passes without change that end the search
constexpr int kPassesPerMating = 100;
constexpr double kRepeatedPair = 2.0;
// A block's relationships are asked for this many blocks before it is improved: they lie all over
// the matrix. Makes the search 2 to 3 times as fast for 10,000 candidates.
constexpr std::int64_t kAhead = 8;

using Square = std::array<std::array<double, 4>, 4>;
using Assignment = std::array<std::size_t, 4>;  // the female of each male
constexpr Assignment kIdentity = {0, 1, 2, 3};

double total(const Square& table, const Assignment& females) {
  double sum = 0.0;
  for (std::size_t i = 0; i < 4; ++i) sum += table[i][females[i]];
  return sum;
}

// The assignment of least cost; of equal ones the identity, else the first in lexicographic order.
Assignment cheapest(const Square& cost) {
  Assignment best = kIdentity;
  double least = total(cost, best);
  const auto consider = [&](double first_two, const Assignment& females) {
    const double sum = first_two + cost[2][females[2]] + cost[3][females[3]];
    if (sum < least) {
      least = sum;
      best = females;
    }
  };
  for (std::size_t a = 0; a < 4; ++a) {
    for (std::size_t b = 0; b < 4; ++b) {
      if (a == b) continue;
      const std::size_t c = a != 0 && b != 0 ? 0 : (a != 1 && b != 1 ? 1 : 2);
      const std::size_t d = 6 - a - b - c;
      const double first_two = cost[0][a] + cost[1][b];
      consider(first_two, {a, b, c, d});
      consider(first_two, {a, b, d, c});
    }
  }
  return best;
}

class MaximumAvoidance {
 public:
  MaximumAvoidance(const Candidates& candidates, const Relationship& relationship,
                   bool repeatedmatings, Plan& plan)
      : candidates_(candidates),
        relationship_(relationship),
        repeatedmatings_(repeatedmatings),
        plan_(plan),
        mateset_(plan.best()),
        order_(mateset_.nmatings(), 0),
        male_row_(mateset_.nmatings(), 0),
        female_row_(mateset_.nmatings(), 0),
        pairs_(mateset_.nmatings()) {
    const std::int64_t n = mateset_.nmatings();
    fsum_ = static_cast<double>(n) * plan.best_value.inbreeding;
    for (std::int64_t j = 1; j <= n; ++j) {
      pairs_.add(mateset_.male(j), mateset_.female(j));
      male_row_(j) = matrix_row(mateset_.male(j));
      female_row_(j) = matrix_row(mateset_.female(j));
    }
  }

  // Returns whether the passes came to an end before their budget did.
  bool run() {
    const std::int64_t n = mateset_.nmatings();
    std::int64_t budget = kPassesPerMating * n;
    Progress progress("Pairing");
    for (int stall = kStall; budget >= 1 && stall >= 1; --budget) {
      progress.show(1.0 - static_cast<double>(budget) / static_cast<double>(kPassesPerMating * n));
      if (pass()) {
        stall = kStall;
      } else {
        --stall;
      }
    }
    plan_.best_value.inbreeding = fsum_ / static_cast<double>(n);
    return budget != 0;
  }

 private:
  std::int32_t matrix_row(std::int32_t candidate) const {
    return relationship_.nrm_id(candidates_.cands(candidate));
  }

  // Returns whether a pairing changed.
  bool pass() {
    bool changed = false;
    if (mateset_.nmatings() >= 4) shuffle_rows();
    const std::int64_t blocks = mateset_.nmatings() / 4;
    for (std::int64_t b = 1; b <= blocks; ++b) {
      if (b + kAhead <= blocks) prefetch(4 * (b + kAhead) - 3);
      changed = improve_block(4 * b - 3) || changed;
    }
    return changed;
  }

  void prefetch(std::int64_t first) const {
    for (std::int64_t i = first; i < first + 4; ++i) {
      for (std::int64_t k = first; k < first + 4; ++k) {
        const std::int64_t place = ute(male_row_(order_(i)), female_row_(order_(k)));
        __builtin_prefetch(relationship_.nrm.data() + place - 1);
      }
    }
  }

  void shuffle_rows() {
    const std::int64_t n = mateset_.nmatings();
    for (std::int64_t r = 1; r <= n; ++r) order_(r) = r;
    for (std::int64_t j = n; j >= 2; --j) {
      const double product = plan_.random.uni() * static_cast<double>(single(j));
      const std::int64_t r = static_cast<std::int64_t>(product) + 1;
      if (r < j) std::swap(order_(j), order_(r));
    }
  }

  // The block of rows order(first) .. order(first + 3).
  bool improve_block(std::int64_t first) {
    std::array<std::int64_t, 4> row;
    for (std::size_t i = 0; i < 4; ++i) row[i] = order_(first + static_cast<std::int64_t>(i));
    Square coancestry;
    Square cost;
    fill_tables(row, coancestry, cost);
    const Assignment best = cheapest(cost);
    if (best == kIdentity) return false;
    fsum_ += total(coancestry, best) - total(coancestry, kIdentity);
    reassign(row, best);
    return true;
  }

  void fill_tables(const std::array<std::int64_t, 4>& row, Square& coancestry, Square& cost) const {
    const bool avoid_repeats = !repeatedmatings_;
    for (std::size_t i = 0; i < 4; ++i) {
      for (std::size_t k = 0; k < 4; ++k) {
        const std::int32_t male = mateset_.male(row[i]);
        const std::int32_t female = mateset_.female(row[k]);
        coancestry[i][k] = 0.5 * nrmelement(relationship_, male_row_(row[i]), female_row_(row[k]));
        const int own_row = i == k ? 1 : 0;
        const bool repeated = avoid_repeats && pairs_(male, female) > own_row;
        cost[i][k] = repeated ? kRepeatedPair : coancestry[i][k];
      }
    }
  }

  void reassign(const std::array<std::int64_t, 4>& row, const Assignment& best) {
    std::array<std::int32_t, 4> females;
    for (std::size_t i = 0; i < 4; ++i) females[i] = mateset_.female(row[best[i]]);
    for (std::size_t i = 0; i < 4; ++i) {
      const std::int32_t male = mateset_.male(row[i]);
      pairs_.remove(male, mateset_.female(row[i]));
      pairs_.add(male, females[i]);
      mateset_.female(row[i]) = females[i];
      female_row_(row[i]) = matrix_row(females[i]);
    }
  }

  const Candidates& candidates_;
  const Relationship& relationship_;
  bool repeatedmatings_;
  Plan& plan_;
  Mateset mateset_;
  Table<std::int64_t> order_;
  Table<std::int32_t> male_row_;    // by mating: the male's row in the relationship matrix
  Table<std::int32_t> female_row_;  // and the female's
  PairCount pairs_;
  double fsum_ = 0.0;
};

void check_ranges(const Candidates& candidates, Mateset mateset, Units& units) {
  bool males = true;
  bool females = true;
  for (std::int64_t j = 1; j <= mateset.nmatings(); ++j) {
    males = males && candidates.is_male(mateset.male(j));
    females = females && candidates.is_female(mateset.female(j));
  }
  if (!males) both_list(units.out, units.log, "ERROR in mateset : males out of range");
  if (!females) both_list(units.out, units.log, "ERROR in mateset : females out of range");
}

}  // namespace

void maximum_avoidance(const Candidates& candidates, const Relationship& relationship,
                       bool repeatedmatings, Plan& plan, Units& units) {
  check_ranges(candidates, plan.best(), units);
  if (MaximumAvoidance(candidates, relationship, repeatedmatings, plan).run()) return;
  units.tell(
      "Optimisation of matings stopped before convergence : matings not necessarily minimise "
      "inbreeding of offspring");
  write_list(units.log, "WARNING : Optimisation of matings stopped before convergence");
  write_list(units.log, "          Matings not necessarily minimise inbreeding of offspring");
}

}  // namespace qob
