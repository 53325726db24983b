#include "ocs/repair.h"

#include "ocs/allowances.h"

namespace qob {
namespace {

// Tells entries that are no candidates of their sex. One that is a candidate of the other sex still
// counts as a use of it.
void report_strangers(const Candidates& candidates, Mateset mateset, Units& units) {
  for (std::int64_t j = 1; j <= mateset.nmatings(); ++j) {
    const std::int32_t male = mateset.male(j);
    const std::int32_t female = mateset.female(j);
    if (!candidates.is_male(male)) {
      both_list(units.out, units.log, "ERROR in mateset, male=", male);
    }
    if (!candidates.is_female(female)) {
      both_list(units.out, units.log, "ERROR in mateset, female=", female);
    }
  }
}

class Repair {
 public:
  Repair(const Selection& selection, Mateset mateset, Random& random)
      : selection_(selection),
        candidates_(selection.candidates),
        mateset_(mateset),
        random_(random),
        slot_rows_(selection.limitmalematings),
        slots_(selection.male_slots()),
        matings_(remaining_matings(selection, mateset)) {}

  void run() {
    if (!males_in_whole_slots())
      restore_slots(selection_, mateset_);  // the counts stay as they came
    if (!any_female_over_used()) return;
    for (std::int32_t m = 1; m <= candidates_.nmcands; ++m) relieve_male(m);
    for (std::int32_t f = candidates_.nmcands + 1; f <= candidates_.ncands; ++f) relieve_female(f);
    refill_slots();
    refill_females();
  }

 private:
  bool males_in_whole_slots() const {
    if (slot_rows_ == 1) return true;
    for (std::int32_t m = 1; m <= candidates_.nmcands; ++m) {
      if (matings_(m) % slot_rows_ != 0) return false;
    }
    return true;
  }

  bool any_female_over_used() const {
    for (std::int32_t f = candidates_.nmcands + 1; f <= candidates_.ncands; ++f) {
      if (matings_(f) < 0) return true;
    }
    return false;
  }

  // Empties slots of an over-used male, first slots first, until he is not over-used or stands in
  // no slot's first row.
  void relieve_male(std::int32_t m) {
    bool found = true;
    while (matings_(m) < 0 && found) {
      found = false;
      for (std::int64_t j = 1; j <= selection_.free_slots() && matings_(m) < 0; ++j) {
        if (mateset_.male(j) != m) continue;
        found = true;
        matings_(m) += slot_rows_;
        empty_slot(j);
      }
    }
  }

  // Empties the entries j, j+S, ... up to the number of male candidates. Where there are more of
  // those than matings, the entries run on into the female column: not so with rules, by which some
  // of them may be locked.
  void empty_slot(std::int64_t j) {
    if (!selection_.rules.empty()) return selection_.fill_slot(mateset_, j, 0);
    for (std::int64_t p = j; p <= candidates_.nmcands && p <= 2 * mateset_.nmatings();
         p += slots_) {
      mateset_.entry(p) = 0;
    }
  }

  // Empties rows of an over-used female, drawn at random, until she is not over-used or a draw
  // finds no row that holds her.
  void relieve_female(std::int32_t f) {
    bool found = true;
    while (matings_(f) < 0 && found) {
      found = false;
      const std::int64_t uses = selection_.most(f) - matings_(f);
      std::int64_t r = random_.ceiling_of_draw(uses - selection_.least(f));
      for (std::int64_t j = 1; j <= selection_.free_rows() && r > 0; ++j) {
        if (mateset_.female(j) != f) continue;
        found = true;
        if (--r > 0) continue;
        mateset_.female(j) = 0;
        ++matings_(f);
      }
    }
  }

  // A male is drawn with the weight of his remaining matings, even if less than a slot is left.
  void refill_slots() {
    std::int64_t free = sum_over(candidates_, matings_, kMale);
    Wheel males(candidates_, matings_, kMale);
    for (std::int64_t j = 1; j <= selection_.free_slots(); ++j) {
      if (mateset_.male(j) != 0) continue;
      const std::int32_t m = males.spin(random_.ceiling_of_draw(free));
      if (m == 0) continue;
      males.add(m, -slot_rows_);
      free -= slot_rows_;
      selection_.fill_slot(mateset_, j, m);
    }
  }

  void refill_females() {
    std::int64_t free = sum_over(candidates_, matings_, kFemale);
    Wheel females(candidates_, matings_, kFemale);
    for (std::int64_t j = 1; j <= selection_.free_rows(); ++j) {
      if (mateset_.female(j) != 0) continue;
      const std::int32_t f = females.spin(random_.ceiling_of_draw(free));
      if (f == 0) continue;
      females.add(f, -1);
      --free;
      mateset_.female(j) = f;
    }
  }

  const Selection& selection_;
  const Candidates& candidates_;
  Mateset mateset_;
  Random& random_;
  std::int64_t slot_rows_;  // rows of a slot
  std::int64_t slots_;
  Allowances matings_;
};

}  // namespace

void repair_mateset(const Selection& selection, Mateset mateset, Random& random, Journal& journal) {
  const Timed timed(journal.watches, journal.watches.repair);
  report_strangers(selection.candidates, mateset, journal.units);
  Repair(selection, mateset, random).run();
}

}  // namespace qob
