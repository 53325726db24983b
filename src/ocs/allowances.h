// How often candidates may still be used, which all operators of the search share: allowances, the
// wheel that draws by them, and the slots of males.
#pragma once

#include <cstdint>
#include <vector>

#include "core/random.h"
#include "core/tables.h"
#include "ocs/candidates.h"
#include "ocs/mateset.h"
#include "ocs/selection.h"

namespace qob {

// Matings left to each candidate; below 0 it is over-used. Element 0 takes what empty entries
// would take.
using Allowances = Table<std::int64_t, 0>;

// The most matings of each candidate.
Allowances mating_limits(const Selection& selection);
// The same less the rows in which each candidate stands.
Allowances remaining_matings(const Selection& selection, Mateset mateset);
// The sum over the candidates of a sex.
std::int64_t sum_over(const Candidates& candidates, const Allowances& matings, int sex);
// The sum of max_matings over the candidates of a sex.
std::int64_t mating_capacity(const Candidates& candidates, int sex);

// The roulette wheel of a sex. It knows what stretches of candidates have together, and goes
// through one of them candidate by candidate.
class Wheel {
 public:
  // What the sex has in `matings` changes by `add` alone once the wheel has spun.
  Wheel(const Candidates& candidates, Allowances& matings, int sex);

  // The first candidate of the sex at which the running total of allowances reaches r, 0 if none
  // does. With r drawn from 1..total each has the weight of its allowance.
  std::int32_t spin(std::int64_t r);
  // Adds to a candidate's allowance.
  void add(std::int32_t i, std::int64_t matings);

 private:
  struct Stretch {
    std::int64_t total = 0;
    std::int64_t most = 0;  // the greatest running total in it: some allowances are below 0
  };
  void measure(std::int64_t stretch);
  std::int32_t first_of(std::int64_t stretch) const;
  std::int32_t past_of(std::int64_t stretch) const;

  Allowances& matings_;
  std::int32_t first_, last_;
  std::vector<Stretch> stretches_;  // none before the first spin
};

// Gives every slot the male of its first row.
void restore_slots(const Selection& selection, Mateset mateset);

}  // namespace qob
