// Recombination of two matesets. Reads the mating limits; draws from the random stream.
#include <array>
#include <utility>
#include <vector>

#include "ocs/qobocs.h"

namespace qob {
namespace {

class Recombination {
 public:
  Recombination(Model& model, Mateset parent1, Mateset parent2, Mateset offspring)
      : model_(model),
        original_{parent1, parent2},
        offspring_(offspring),
        allowance_(mating_limits(model.candidates)) {
    const std::int64_t n = offspring.nmatings();
    work_.assign(2, n);
    for (std::size_t c = 0; c < 2; ++c) parent(c).copy_from(original_[c]);
    offspring_.fill(0);
  }

  void run() {
    cross_over();
    fill_empty_entries();
    const std::int64_t slots = male_slots(model_);
    if (model_.parameters.ocs.limitmalematings > 1) {
      for (std::int64_t j = 1; j <= slots; ++j) {
        fill_slot(offspring_, j, slots, offspring_.male(j));
      }
    }
    if (has_empty_entry()) complete_from_parent();
  }

 private:
  // The work copy of a parent, 0 or 1, in which used entries become 0.
  Mateset parent(std::size_t c) { return work_(static_cast<std::int64_t>(c) + 1); }

  // Takes the candidate that parent c holds in row j, if it has a mating left.
  bool take(std::size_t c, std::int64_t from, std::int64_t to, int sex) {
    std::int32_t& candidate = parent(c)(from, sex);
    if (candidate == 0 || allowance_(candidate) < 1) return false;
    --allowance_(candidate);
    offspring_(to, sex) = std::exchange(candidate, 0);
    return true;
  }

  // Entry by entry from the current parent, which changes with crossover_probability and where the
  // other parent had to help out.
  void cross_over() {
    std::size_t current = 0;
    for (std::int64_t j = 1; j <= offspring_.nmatings(); ++j) {
      for (int sex = kMale; sex <= kFemale; ++sex) {
        if (model_.random.uni() < model_.parameters.algorithm.crossover_probability) {
          current = 1 - current;
        }
        if (take(current, j, j, sex)) continue;
        if (take(1 - current, j, j, sex)) current = 1 - current;
      }
    }
  }

  // What is still empty takes from the parents' unused entries, in a random order of rows.
  void fill_empty_entries() {
    const std::int64_t n = offspring_.nmatings();
    Table<std::int64_t> order(n, 0);
    for (std::int64_t r = 1; r <= n; ++r) order(r) = r;
    for (std::int64_t j = n; j >= 2; --j) {
      const double product = model_.random.uni() * static_cast<double>(j);
      const std::int64_t r = static_cast<std::int64_t>(product) + 1;
      if (r < j) std::swap(order(j), order(r));
    }
    for (std::int64_t i = 1; i <= n; ++i) {
      for (int sex = kMale; sex <= kFemale; ++sex) {
        for (std::int64_t j = 1; j <= n && offspring_(i, sex) == 0; ++j) {
          if (!take(0, order(j), i, sex)) take(1, order(j), i, sex);
        }
      }
    }
  }

  bool has_empty_entry() const {
    for (std::int64_t p = 1; p <= 2 * offspring_.nmatings(); ++p) {
      if (offspring_.entry(p) == 0) return true;
    }
    return false;
  }

  void complete_from_parent() {
    Unit& log = model_.units.log;
    const Mateset p1 = original_[0];
    const Mateset p2 = original_[1];
    write_list(log, "ERROR in subroutine Recombine");
    write_list(log, "Parent 1   ", "     Parent 2", "   Offspring");
    for (std::int64_t j = 1; j <= p1.nmatings(); ++j) {
      write_list(log, p1.male(j), p1.female(j), p2.male(j), p2.female(j), offspring_.male(j),
                 offspring_.female(j));
    }
    for (std::int64_t p = 1; p <= 2 * p1.nmatings(); ++p) {
      if (offspring_.entry(p) == 0) offspring_.entry(p) = p1.entry(p);
    }
    repair_mateset(model_, offspring_);
  }

  Model& model_;
  std::array<Mateset, 2> original_;
  Mateset offspring_;
  MatesetTable work_;
  Allowances allowance_;
};

}  // namespace

void recombine(Model& model, Mateset parent1, Mateset parent2, Mateset offspring) {
  const Timed timed(model.watches.stopwatch, model.watches.recomb);
  Recombination(model, parent1, parent2, offspring).run();
}

}  // namespace qob
