#include "ocs/allowances.h"

#include <algorithm>
#include <limits>

namespace qob {
namespace {

constexpr std::int64_t kStretch = 64;  // candidates

template <class Values>
std::int64_t sum_of_sex(const Candidates& candidates, const Values& values, int sex) {
  std::int64_t sum = 0;
  for (std::int32_t i = candidates.first(sex); i <= candidates.last(sex); ++i) sum += values(i);
  return sum;
}

}  // namespace

Allowances mating_limits(const Selection& selection) {
  const std::int32_t n = selection.candidates.ncands;
  Allowances matings(std::int64_t{n} + 1, 0);
  for (std::int32_t i = 1; i <= n; ++i) matings(i) = selection.most(i);
  return matings;
}

Allowances remaining_matings(const Selection& selection, Mateset mateset) {
  Allowances matings = mating_limits(selection);
  count_uses<std::int64_t>(mateset, matings, -1);
  return matings;
}

std::int64_t sum_over(const Candidates& candidates, const Allowances& matings, int sex) {
  return sum_of_sex(candidates, matings, sex);
}

std::int64_t mating_capacity(const Candidates& candidates, int sex) {
  return sum_of_sex(candidates, candidates.max_matings, sex);
}

Wheel::Wheel(const Candidates& candidates, Allowances& matings, int sex)
    : matings_(matings), first_(candidates.first(sex)), last_(candidates.last(sex)) {}

std::int32_t Wheel::first_of(std::int64_t stretch) const {
  return static_cast<std::int32_t>(first_ + stretch * kStretch);
}

std::int32_t Wheel::past_of(std::int64_t stretch) const {
  return static_cast<std::int32_t>(
      std::min(first_ + (stretch + 1) * kStretch, std::int64_t{last_} + 1));
}

void Wheel::measure(std::int64_t stretch) {
  Stretch measured{0, std::numeric_limits<std::int64_t>::min()};
  for (std::int32_t i = first_of(stretch); i < past_of(stretch); ++i) {
    measured.total += matings_(i);
    measured.most = std::max(measured.most, measured.total);
  }
  stretches_[static_cast<std::size_t>(stretch)] = measured;
}

std::int32_t Wheel::spin(std::int64_t r) {
  if (stretches_.empty()) {
    const std::int64_t n = std::int64_t{last_} - first_ + 1;
    stretches_.resize(static_cast<std::size_t>((n + kStretch - 1) / kStretch));
    for (std::int64_t s = 0; s < std::ssize(stretches_); ++s) measure(s);
  }
  std::int64_t total = 0, s = 0;
  for (; s < std::ssize(stretches_); ++s) {
    const Stretch& stretch = stretches_[static_cast<std::size_t>(s)];
    if (total + stretch.most >= r) break;
    total += stretch.total;
  }
  if (s == std::ssize(stretches_)) return 0;
  std::int32_t i = first_of(s);
  while ((total += matings_(i)) < r) ++i;
  return i;
}

void Wheel::add(std::int32_t i, std::int64_t matings) {
  matings_(i) += matings;
  if (!stretches_.empty() && i >= first_ && i <= last_) measure((i - first_) / kStretch);
}

void restore_slots(const Selection& selection, Mateset mateset) {
  for (std::int64_t j = 1; j <= selection.male_slots(); ++j)
    selection.fill_slot(mateset, j, mateset.male(j));
}

}  // namespace qob
