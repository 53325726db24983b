#include "ocs/selection.h"

#include <algorithm>

namespace qob {

std::int64_t Selection::last_free_row() const {
  const std::int64_t of_males = free_slots() > 0 ? rows() - std::ssize(rules.locked_males) : 0;
  return std::max(of_males, free_rows());
}

void Selection::fill_slot(Mateset mateset, std::int64_t j, std::int32_t male) const {
  for (std::int64_t row = j; row <= rows(); row += male_slots()) mateset.male(row) = male;
}

bool Selection::enter(const Uses& uses, Mateset mateset) const {
  std::int64_t slot = 0, row = 0;
  lock(mateset);
  for (std::int32_t i = 1; i <= candidates.nmcands; ++i) {
    for (std::int32_t k = least(i); k < uses(i); k += limitmalematings)
      fill_slot(mateset, ++slot, i);
  }
  for (std::int32_t i = candidates.nmcands + 1; i <= candidates.ncands; ++i) {
    for (std::int32_t k = least(i); k < uses(i); ++k) mateset.female(++row) = i;
  }
  return slot == free_slots() && row == free_rows() && !mateset.has_empty_entry();
}

void Selection::lock(Mateset mateset) const {
  std::int64_t slot = free_slots(), female_row = free_rows(), row = rows();
  for (const std::int32_t male : rules.locked_males) fill_slot(mateset, ++slot, male);
  for (const std::int32_t female : rules.locked_females) mateset.female(++female_row) = female;
  for (const auto& [male, female] : rules.decided) {
    mateset.male(++row) = male;
    mateset.female(row) = female;
  }
}

}  // namespace qob
