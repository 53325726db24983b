// How often candidates may still be used, which all operators of the search share: allowances, the
// wheel that draws by them, and the slots of males.
#pragma once

#include <cstdint>

#include "core/random.h"
#include "core/tables.h"
#include "ocs/candidates.h"
#include "ocs/mateset.h"

namespace qob {

// Matings left to each candidate; below 0 it is over-used. Element 0 takes what empty entries
// would take.
using Allowances = Table<std::int64_t, 0>;

// The mating limits, max_matings.
Allowances mating_limits(const Candidates& candidates);
// The same less the rows in which each candidate stands.
Allowances remaining_matings(const Candidates& candidates, Mateset mateset);
// The sum over the candidates of a sex.
std::int64_t sum_over(const Candidates& candidates, const Allowances& matings, int sex);
// The sum of max_matings over the candidates of a sex.
std::int64_t mating_capacity(const Candidates& candidates, int sex);

// The roulette wheel: the first candidate of the sex at which the running total of allowances
// reaches r, 0 if none does. With r drawn from 1..total each has the weight of its allowance.
std::int32_t spin_wheel(const Candidates& candidates, const Allowances& matings, int sex,
                        std::int64_t r);

// Writes `male` into the rows of slot j of so many slots.
void fill_slot(Mateset mateset, std::int64_t j, std::int64_t slots, std::int32_t male);
// Gives every slot the male of its first row.
void restore_slots(Mateset mateset, std::int64_t slots);

}  // namespace qob
