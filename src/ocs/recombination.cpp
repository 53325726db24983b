#include "ocs/recombination.h"

#include <utility>

#include "ocs/allowances.h"
#include "ocs/repair.h"

namespace qob {
namespace {

class Recombination {
 public:
  Recombination(const Selection& selection, Mateset parent1, Mateset parent2, Mateset offspring,
                Random& random)
      : selection_(selection), offspring_(offspring), random_(random) {
    work_.assign(2, offspring.nmatings());
    parent(0).copy_from(parent1);
    parent(1).copy_from(parent2);
    offspring_.fill(0);
    selection.lock(offspring_);
    allowance_ = remaining_matings(selection, offspring_);
    for (const std::size_t c : {0U, 1U}) give_no_locked(parent(c));
  }

  void run(double crossover_probability) {
    cross_over(crossover_probability);
    fill_empty_entries();
    if (selection_.limitmalematings > 1) restore_slots(selection_, offspring_);
  }

 private:
  // The work copy of a parent, 0 or 1, in which used entries become 0.
  Mateset parent(std::size_t c) { return work_(static_cast<std::int64_t>(c) + 1); }

  void give_no_locked(Mateset parent) const {
    if (selection_.rules.empty()) return;
    for (std::int64_t p = 1; p <= 2 * parent.nmatings(); ++p)
      if (offspring_.entry(p) != 0) parent.entry(p) = 0;
  }

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
  void cross_over(double crossover_probability) {
    std::size_t current = 0;
    for (std::int64_t j = 1; j <= offspring_.nmatings(); ++j) {
      for (int sex = kMale; sex <= kFemale; ++sex) {
        if (!selection_.is_free(j, sex)) continue;
        if (random_.uni() < crossover_probability) current = 1 - current;
        if (take(current, j, j, sex)) continue;
        if (take(1 - current, j, j, sex)) current = 1 - current;
      }
    }
  }

  // What is still empty takes from the parents' unused entries, in a random order of rows.
  void fill_empty_entries() {
    const std::int64_t n = selection_.last_free_row();
    Table<std::int64_t> order(n, 0);
    for (std::int64_t r = 1; r <= n; ++r) order(r) = r;
    for (std::int64_t j = n; j >= 2; --j) {
      const double product = random_.uni() * static_cast<double>(j);
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

  const Selection& selection_;
  Mateset offspring_;
  Random& random_;
  MatesetTable work_;
  Allowances allowance_;
};

// What nobody can fill is reported and taken from parent 1.
void complete(Mateset parent1, Mateset parent2, Mateset offspring, Unit& log) {
  write_list(log, "ERROR in subroutine Recombine");
  write_list(log, "Parent 1   ", "     Parent 2", "   Offspring");
  for (std::int64_t j = 1; j <= offspring.nmatings(); ++j) {
    write_list(log, parent1.male(j), parent1.female(j), parent2.male(j), parent2.female(j),
               offspring.male(j), offspring.female(j));
  }
  for (std::int64_t p = 1; p <= 2 * offspring.nmatings(); ++p) {
    if (offspring.entry(p) == 0) offspring.entry(p) = parent1.entry(p);
  }
}

}  // namespace

void recombine(const Selection& selection, double crossover_probability, Mateset parent1,
               Mateset parent2, Mateset offspring, Random& random, Journal& journal) {
  const Timed timed(journal.watches, journal.watches.recomb);
  Recombination(selection, parent1, parent2, offspring, random).run(crossover_probability);
  if (!offspring.has_empty_entry()) return;
  complete(parent1, parent2, offspring, journal.units.log);
  repair_mateset(selection, offspring, random, journal);
}

}  // namespace qob
