#include "mating/maximum_avoidance.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <unordered_map>
#include <utility>

namespace qob {
namespace {

constexpr int kStall = 20;  // passes without change that end the search
constexpr int kPassesPerMating = 100;
constexpr double kRepeatedPair = 2.0;

using Square = std::array<std::array<double, 4>, 4>;
using Assignment = std::array<std::size_t, 4>;  // the female of each male

double total(const Square& table, const Assignment& females) {
  double sum = 0.0;
  for (std::size_t i = 0; i < 4; ++i) sum += table[i][females[i]];
  return sum;
}

// How many rows hold each pair.
class PairCount {
 public:
  void add(std::int32_t male, std::int32_t female, int rows) { count_[key(male, female)] += rows; }
  int operator()(std::int32_t male, std::int32_t female) const {
    const auto found = count_.find(key(male, female));
    return found == count_.end() ? 0 : found->second;
  }

 private:
  static std::uint64_t key(std::int32_t male, std::int32_t female) {
    return static_cast<std::uint64_t>(male) << 32 | static_cast<std::uint32_t>(female);
  }
  std::unordered_map<std::uint64_t, int> count_;
};

class MaximumAvoidance {
 public:
  explicit MaximumAvoidance(Model& model)
      : model_(model), mateset_(model.search.best()), order_(mateset_.nmatings(), 0) {
    const std::int64_t n = mateset_.nmatings();
    fsum_ = static_cast<double>(n) * model.search.best_value.inbreeding;
    for (std::int64_t j = 1; j <= n; ++j) pairs_.add(mateset_.male(j), mateset_.female(j), 1);
  }

  void run() {
    const std::int64_t n = mateset_.nmatings();
    std::int64_t budget = kPassesPerMating * n;
    for (int stall = kStall; budget >= 1 && stall >= 1; --budget) {
      if (pass()) {
        stall = kStall;
      } else {
        --stall;
      }
    }
    model_.search.best_value.inbreeding = fsum_ / static_cast<double>(n);
    if (budget != 0) return;
    write_list(model_.units.log, "WARNING : Optimisation of matings stopped before convergence");
    write_list(model_.units.log,
               "          Matings not necessarily minimise inbreeding of offspring");
  }

 private:
  // Returns whether a pairing changed.
  bool pass() {
    bool changed = false;
    if (mateset_.nmatings() >= 4) shuffle_rows();
    for (std::int64_t b = 1; b <= mateset_.nmatings() / 4; ++b) {
      changed = improve_block(4 * b - 3) || changed;
    }
    return changed;
  }

  void shuffle_rows() {
    const std::int64_t n = mateset_.nmatings();
    for (std::int64_t r = 1; r <= n; ++r) order_(r) = r;
    for (std::int64_t j = n; j >= 2; --j) {
      const double product = model_.random.uni() * static_cast<double>(single(j));
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
    constexpr Assignment kIdentity = {0, 1, 2, 3};
    Assignment best = kIdentity;
    double least = total(cost, best);
    for (Assignment females = kIdentity; std::next_permutation(females.begin(), females.end());) {
      const double sum = total(cost, females);
      if (sum < least) {
        least = sum;
        best = females;
      }
    }
    if (best == kIdentity) return false;
    fsum_ += total(coancestry, best) - total(coancestry, kIdentity);
    reassign(row, best);
    return true;
  }

  void fill_tables(const std::array<std::int64_t, 4>& row, Square& coancestry, Square& cost) const {
    const bool avoid_repeats = !model_.parameters.mating.repeatedmatings;
    for (std::size_t i = 0; i < 4; ++i) {
      for (std::size_t k = 0; k < 4; ++k) {
        const std::int32_t male = mateset_.male(row[i]);
        const std::int32_t female = mateset_.female(row[k]);
        coancestry[i][k] = 0.5 * cnrm(model_.relationship, model_.candidates, male, female);
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
      pairs_.add(male, mateset_.female(row[i]), -1);
      pairs_.add(male, females[i], 1);
      mateset_.female(row[i]) = females[i];
    }
  }

  Model& model_;
  Mateset mateset_;
  Table<std::int64_t> order_;
  PairCount pairs_;
  double fsum_ = 0.0;
};

void check_ranges(Model& model) {
  const Candidates& candidates = model.candidates;
  const Mateset mateset = model.search.best();
  bool males = true;
  bool females = true;
  for (std::int64_t j = 1; j <= mateset.nmatings(); ++j) {
    males = males && candidates.is_male(mateset.male(j));
    females = females && candidates.is_female(mateset.female(j));
  }
  Units& units = model.units;
  if (!males) both_list(units.out, units.log, "ERROR in mateset : males out of range");
  if (!females) both_list(units.out, units.log, "ERROR in mateset : females out of range");
}

}  // namespace

void maximum_avoidance(Model& model) {
  check_ranges(model);
  MaximumAvoidance(model).run();
}

}  // namespace qob
