// Repair of a mateset. Reads the mating limits; draws from the random stream.
#include "ocs/qobocs.h"

namespace qob {
namespace {

class Repair {
 public:
  Repair(Model& model, Mateset mateset)
      : model_(model),
        candidates_(model.candidates),
        mateset_(mateset),
        unit_(model.parameters.ocs.limitmalematings),
        slots_(male_slots(model)),
        matings_(mating_limits(candidates_)) {}

  void run() {
    count_uses();
    if (!males_in_whole_units()) restore_slots();
    if (!any_female_over_used()) return;
    for (std::int32_t m = 1; m <= candidates_.nmcands; ++m) relieve_male(m);
    for (std::int32_t f = candidates_.nmcands + 1; f <= candidates_.ncands; ++f) relieve_female(f);
    refill_slots();
    refill_females();
  }

 private:
  // An entry that is no candidate of its sex is reported. One that is no candidate at all has no
  // allowance to lower.
  void count_uses() {
    for (std::int64_t j = 1; j <= mateset_.nmatings(); ++j) {
      const std::int32_t male = mateset_.male(j);
      const std::int32_t female = mateset_.female(j);
      Units& units = model_.units;
      if (!candidates_.is_male(male)) {
        both_list(units.out, units.log, "ERROR in mateset, male=", male);
      }
      lower(male);
      if (!candidates_.is_female(female)) {
        both_list(units.out, units.log, "ERROR in mateset, female=", female);
      }
      lower(female);
    }
  }

  void lower(std::int32_t i) {
    if (i >= 1 && i <= candidates_.ncands) --matings_(i);
  }

  bool males_in_whole_units() const {
    if (unit_ == 1) return true;
    for (std::int32_t m = 1; m <= candidates_.nmcands; ++m) {
      if (matings_(m) % unit_ != 0) return false;
    }
    return true;
  }

  // The counts stay those of the mateset as it came.
  void restore_slots() {
    for (std::int64_t j = 1; j <= slots_; ++j) fill_slot(mateset_, j, slots_, mateset_.male(j));
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
      for (std::int64_t j = 1; j <= slots_ && matings_(m) < 0; ++j) {
        if (mateset_.male(j) != m) continue;
        found = true;
        matings_(m) += unit_;
        empty_slot(j);
      }
    }
  }

  // Empties the entries j, j+S, ... up to the number of male candidates. Where there are more of
  // those than matings, the entries run on into the female column.
  void empty_slot(std::int64_t j) {
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
      std::int64_t r = model_.random.ceiling_of_draw(candidates_.max_matings(f) - matings_(f));
      for (std::int64_t j = 1; j <= mateset_.nmatings() && r > 0; ++j) {
        if (mateset_.female(j) != f) continue;
        found = true;
        if (--r > 0) continue;
        mateset_.female(j) = 0;
        ++matings_(f);
      }
    }
  }

  // A male is drawn with the weight of his remaining matings, even if less than a unit is left.
  void refill_slots() {
    std::int64_t free = sum_over(candidates_, matings_, kMale);
    for (std::int64_t j = 1; j <= slots_; ++j) {
      if (mateset_.male(j) != 0) continue;
      std::int64_t r = model_.random.ceiling_of_draw(free);
      for (std::int32_t m = 1; m <= candidates_.nmcands; ++m) {
        r -= matings_(m);
        if (r > 0) continue;
        matings_(m) -= unit_;
        fill_slot(mateset_, j, slots_, m);
        free -= unit_;
        break;
      }
    }
  }

  void refill_females() {
    std::int64_t free = sum_over(candidates_, matings_, kFemale);
    for (std::int64_t j = 1; j <= mateset_.nmatings(); ++j) {
      if (mateset_.female(j) != 0) continue;
      std::int64_t r = model_.random.ceiling_of_draw(free);
      for (std::int32_t f = candidates_.nmcands + 1; f <= candidates_.ncands; ++f) {
        r -= matings_(f);
        if (r >= 1) continue;
        --free;
        --matings_(f);
        mateset_.female(j) = f;
        break;
      }
    }
  }

  Model& model_;
  const Candidates& candidates_;
  Mateset mateset_;
  std::int64_t unit_;
  std::int64_t slots_;
  Allowances matings_;
};

}  // namespace

void repair_mateset(Model& model, Mateset mateset) {
  const Timed timed(model.watches.stopwatch, model.watches.repair);
  Repair(model, mateset).run();
}

}  // namespace qob
