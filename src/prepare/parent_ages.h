// At what ages the animals of a herd book became parents.
#pragma once

#include <cstdint>
#include <optional>

#include "prepare/herd.h"
#include "prepare/time_steps.h"

namespace qob {

struct AgeRange {
  std::int32_t youngest = 0, oldest = 0;  // whole years when the offspring were born
};

// Between which ages nine of ten parentages of the sires (parent 1) or dams (2) lie, one in twenty
// on each side of them. None where fewer than 20 have the births of both animals.
std::optional<AgeRange> usual_ages(const Herd& herd, const TimeSteps& steps, int parent);

}  // namespace qob
