// The pedigree of the animals that are parents: ancestors are found there alone, close together.
#pragma once

#include <cstdint>

#include "core/tables.h"

namespace qob {

// Parents are numbered 1..count() in animal order; 0 stands for an unknown parent or an animal
// that is none.
struct ParentPedigree {
  Table2<std::int32_t> newped;    // 2 x count(): sire and dam, as parents
  Table<std::int32_t> animal;     // by parent: its animal number
  Table<std::int32_t, 0> number;  // by animal: its number as a parent

  std::int32_t count() const { return static_cast<std::int32_t>(animal.size()); }
};

// newped: 2 x maxid, parents by animal.
ParentPedigree pedigree_of_parents(const Table2<std::int32_t>& newped);

}  // namespace qob
