// The numbers by which animals are known in a data file.
#pragma once

#include "prepare/herd.h"

namespace qob {

// The animals in the order of their numbers 1..n: by time step, then date, sire, dam and sex. Those
// still alike are told apart by their relatives' values, not by their rows, so that neither the
// order of the rows nor the identifiers decide a plan. Full sibs of one day are next to each other.
Table<std::int32_t> number_animals(const Herd& herd);

}  // namespace qob
