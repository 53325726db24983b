// What the two ways of computing inbreeding coefficients share.
#pragma once

#include <cstdint>

#include "analysis/kernels/parent_pedigree.h"
#include "core/tables.h"

namespace qob {

struct InbreedingWork {
  const Table2<std::int32_t>& newped;  // 2 x maxid, parents by animal
  Table<double, 0>& f;                 // by animal
  ParentPedigree parents;
  Table<std::int32_t, 0> level;  // by animal: its longest line of ancestors, 0 for a founder
  Table<double, 0> parent_f;     // f by parent, -1 at index 0

  bool both_parents_known(std::int64_t i) const { return newped(1, i) > 0 && newped(2, i) > 0; }
  // Sire or dam (which = 1 or 2) of animal i, as a parent.
  std::int32_t parent(int which, std::int64_t i) const { return parents.number(newped(which, i)); }
  void set(std::int64_t i, double value) {
    f(i) = value;
    if (parents.number(i) != 0) parent_f(parents.number(i)) = value;
  }
};

}  // namespace qob
