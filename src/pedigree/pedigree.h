// The animals, and the numbers by which they are known.
//
// Animals are numbered 1..maxid so that parents come before offspring; 0 is an unknown parent. The
// data file gives them (qobreadrecode), the population's history adds their inbreeding; from then
// on the tables are only read, but for what a relationship file says of its animals.
#pragma once

#include <cstdint>

#include "core/tables.h"
#include "core/text.h"
#include "pedigree/idtree.h"

namespace qob {

// The birth time of an inserted parent, whose own is not known. Whoever is born then or before
// counts as born at an unknown time.
inline constexpr std::int32_t kNoBirthTime = -9999;

inline bool birth_time_is_known(std::int32_t btime) { return btime > kNoBirthTime; }

struct Pedigree {
  std::int32_t nobs = 0;        // records read
  std::int32_t maxid = 0;       // animals: records and inserted parents
  IdTree ids;                   // leads from identifiers of the data file to numbers
  Table2<std::int32_t> oldped;  // maxid x 3: identifiers of animal, sire, dam in the data file
  Table2<std::int32_t> newped;  // 2 x maxid: numbers of sire and dam
  Table<std::int32_t> sex;      // 1 male, 2 female, 0 inserted parent
  Table<std::int32_t> btime;    // birth time step
  Table<std::int32_t> matings;  // most matings; above 0: a selection candidate
  Table<double> ebv;            // estimated breeding value
  Table<Text<15>> txt;          // text of the data file
  Table<double, 0> f;           // inbreeding coefficient; f(0) = -1 for the unknown parent

  std::int32_t sire(std::int64_t i) const { return newped(1, i); }
  std::int32_t dam(std::int64_t i) const { return newped(2, i); }
};

}  // namespace qob
