#include "ocs/allowances.h"

namespace qob {
namespace {

template <class Values>
std::int64_t sum_of_sex(const Candidates& candidates, const Values& values, int sex) {
  std::int64_t sum = 0;
  for (std::int32_t i = candidates.first(sex); i <= candidates.last(sex); ++i) sum += values(i);
  return sum;
}

}  // namespace

Allowances mating_limits(const Candidates& candidates) {
  Allowances matings(std::int64_t{candidates.ncands} + 1, 0);
  for (std::int32_t i = 1; i <= candidates.ncands; ++i) matings(i) = candidates.max_matings(i);
  return matings;
}

Allowances remaining_matings(const Candidates& candidates, Mateset mateset) {
  Allowances matings = mating_limits(candidates);
  count_uses<std::int64_t>(mateset, matings, -1);
  return matings;
}

std::int64_t sum_over(const Candidates& candidates, const Allowances& matings, int sex) {
  return sum_of_sex(candidates, matings, sex);
}

std::int64_t mating_capacity(const Candidates& candidates, int sex) {
  return sum_of_sex(candidates, candidates.max_matings, sex);
}

std::int32_t spin_wheel(const Candidates& candidates, const Allowances& matings, int sex,
                        std::int64_t r) {
  std::int64_t total = 0;
  for (std::int32_t i = candidates.first(sex); i <= candidates.last(sex); ++i) {
    total += matings(i);
    if (total >= r) return i;
  }
  return 0;
}

void fill_slot(Mateset mateset, std::int64_t j, std::int64_t slots, std::int32_t male) {
  for (std::int64_t row = j; row <= mateset.nmatings(); row += slots) mateset.male(row) = male;
}

void restore_slots(Mateset mateset, std::int64_t slots) {
  for (std::int64_t j = 1; j <= slots; ++j) fill_slot(mateset, j, slots, mateset.male(j));
}

}  // namespace qob
