// From dates of birth to whole time steps in which parents come before their offspring.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "prepare/herd.h"

namespace qob {

struct TimeSteps {
  Step step = Step::kYear;
  std::int32_t days = 0;  // of Step::kDays
  std::string why;
  std::int32_t first = 0, last = 0;
  std::int32_t last_year = 0;  // of a birth; 0: no date is known

  // Whole years from the end of `from`, a step, to the step `to`; steps where these are no parts of
  // years.
  std::int32_t age(std::int32_t from, std::int64_t to) const;
  // That of an animal when the offspring are born; none where others have a date of birth and it
  // has none.
  std::optional<std::int32_t> age_of(const Herd& herd, std::int32_t animal) const;
  // That of a parent when the offspring was born; both have a date of birth.
  std::int32_t age_at(const Herd& herd, std::int32_t parent, std::int32_t offspring) const;
  // What a step's number is, as "12 x year + month - 1"; "" for a year.
  std::string formula() const;
  std::string_view unit() const;
};

// Fills the steps of the herd. A parent that is not born before its offspring is a fault, and so is
// one that is born in the same step when the options name the step. Animals without a date take
// the step before their first offspring, else the one after their parents, else the first.
TimeSteps set_time_steps(Book& book);

}  // namespace qob
