// Mating allowances and male slots, which all operators of the search share.
#include "ocs/qobocs.h"

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
  for (std::int64_t p = 1; p <= 2 * mateset.nmatings(); ++p) --matings(mateset.entry(p));
  return matings;
}

std::int64_t sum_over(const Candidates& candidates, const Allowances& matings, int sex) {
  return sum_of_sex(candidates, matings, sex);
}

std::int64_t mating_capacity(const Candidates& candidates, int sex) {
  return sum_of_sex(candidates, candidates.max_matings, sex);
}

std::int64_t male_slots(const Model& model) {
  return model.parameters.ocs.nmatings / model.parameters.ocs.limitmalematings;
}

void fill_slot(Mateset mateset, std::int64_t j, std::int64_t slots, std::int32_t male) {
  for (std::int64_t row = j; row <= mateset.nmatings(); row += slots) mateset.male(row) = male;
}

}  // namespace qob
