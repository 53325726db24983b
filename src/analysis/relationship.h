// The relationship matrix of the selection candidates: packed storage and element access.
//
// Row m, column n (m >= n) lies at m*(m-1)/2 + n, counted from 1:
//
//        n=1 2 3
//   m=1    1
//     2    2 3
//     3    4 5 6
#pragma once

#include <algorithm>
#include <cstdint>

#include "core/tables.h"
#include "core/zeroed_memory.h"

namespace qob {

// The largest number of rows: so because m (m - 1) of the last one fits into 32 bits, though
// indices have 64 here, and what has always been refused needs no other bound.
inline constexpr std::int64_t kLargestMatrix = 46341;

// Made when the relationship matrix is set up, constant from then on.
struct Relationship {
  std::int32_t nnrm = 0;                       // rows, one for each candidate
  Table<std::int32_t> nrm_id;                  // per animal: its row, 0 = none
  Table<double, 1, ZeroedMemory<double>> nrm;  // the packed lower triangle; diagonal: 1 + F
  std::int64_t maxage = 0;                     // time steps that the selection looks back
  bool pedsource = true;                       // computed from the pedigree (else read from a file)
  double cohortrel = 0.0;  // mean relationship within the last group, when read from a file
};

// Writes "ERROR: NRM accessed with index 0" to standard output and stops with that text.
[[noreturn]] void stop_at_index_zero();

// The packed index of rows r and c, in either order. Row 0 stops the run.
inline std::int64_t ute(std::int64_t r, std::int64_t c) {
  if (r == 0 || c == 0) stop_at_index_zero();
  const std::int64_t m = std::max(r, c);
  return m * (m - 1) / 2 + std::min(r, c);
}

// The relationship of rows r and c. Row 0 stops the run.
inline double nrmelement(const Relationship& relationship, std::int64_t r, std::int64_t c) {
  return relationship.nrm(ute(r, c));
}

}  // namespace qob
