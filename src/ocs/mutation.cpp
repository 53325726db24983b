// Random mutation of a mateset. Reads the mating limits; draws from the random stream.
#include "ocs/qobocs.h"

namespace qob {
namespace {

// The first candidate of the sex at which the running total of allowances reaches r, 0 if none.
std::int32_t find_candidate(const Candidates& candidates, const Allowances& matings, int sex,
                            std::int64_t r) {
  std::int64_t total = 0;
  for (std::int32_t i = candidates.first(sex); i <= candidates.last(sex); ++i) {
    total += matings(i);
    if (total >= r) return i;
  }
  return 0;
}

}  // namespace

void mutate(Model& model, Mateset mateset) {
  const Timed timed(model.watches.stopwatch, model.watches.mutate);
  const Candidates& candidates = model.candidates;
  const double probability = model.parameters.algorithm.mutate_probability;
  const std::int64_t unit = model.parameters.ocs.limitmalematings;
  const std::int64_t slots = male_slots(model);
  const std::int64_t n = mateset.nmatings();
  const std::int64_t free_males = mating_capacity(candidates, kMale) - n;
  const std::int64_t free_females = mating_capacity(candidates, kFemale) - n;
  Allowances matings = remaining_matings(candidates, mateset);
  for (std::int64_t j = 1; j <= slots; ++j) {
    if (!(model.random.uni() < probability)) continue;
    const std::int64_t r = model.random.ceiling_of_draw(free_males + 1);
    matings(mateset.male(j)) += unit;
    const std::int32_t m = find_candidate(candidates, matings, kMale, r);
    if (m == 0) continue;
    matings(m) -= unit;
    fill_slot(mateset, j, slots, m);
  }
  for (std::int64_t j = 1; j <= n; ++j) {
    if (!(model.random.uni() < probability)) continue;
    const std::int64_t r = model.random.ceiling_of_draw(free_females + 1);
    ++matings(mateset.female(j));
    const std::int32_t f = find_candidate(candidates, matings, kFemale, r);
    if (f == 0) continue;
    --matings(f);
    mateset.female(j) = f;
  }
}

}  // namespace qob
