#include "ocs/mutation.h"

#include "ocs/allowances.h"

namespace qob {

// The free matings are counted once, and draws go one beyond them: so because an entry gives back
// its own mating before another candidate is drawn, who takes one again, so that with slots of one
// row the total is that number at every draw. With longer slots more is given back than the draw
// covers, and the last candidates are drawn less often than their free matings would have it.
void mutate(const Selection& selection, double probability, Mateset mateset, Random& random,
            Watches& watches) {
  const Timed timed(watches, watches.mutate);
  const Candidates& candidates = selection.candidates;
  const std::int64_t slot_rows = selection.limitmalematings;
  const std::int64_t n = mateset.nmatings();
  Allowances matings = mating_limits(selection);
  const std::int64_t free_males = sum_over(candidates, matings, kMale) - n;
  const std::int64_t free_females = sum_over(candidates, matings, kFemale) - n;
  count_uses<std::int64_t>(mateset, matings, -1);
  Wheel males(candidates, matings, kMale);
  Wheel females(candidates, matings, kFemale);
  for (std::int64_t j = 1; j <= selection.free_slots(); ++j) {
    if (!(random.uni() < probability)) continue;
    const std::int64_t r = random.ceiling_of_draw(free_males + 1);
    males.add(mateset.male(j), slot_rows);
    const std::int32_t m = males.spin(r);
    if (m == 0) continue;
    males.add(m, -slot_rows);
    selection.fill_slot(mateset, j, m);
  }
  for (std::int64_t j = 1; j <= selection.free_rows(); ++j) {
    if (!(random.uni() < probability)) continue;
    const std::int64_t r = random.ceiling_of_draw(free_females + 1);
    females.add(mateset.female(j), 1);
    const std::int32_t f = females.spin(r);
    if (f == 0) continue;
    females.add(f, -1);
    mateset.female(j) = f;
  }
}

}  // namespace qob
