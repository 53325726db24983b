#include "ocs/kernels/triangle_walk.h"

#include <algorithm>
#include <cstring>

namespace qob {
namespace {

// How many rows further down are asked for early, each being on another page: with 10,000 rows the
// walk takes 2 times as long as one serial sum over the triangle, without it more than 4 times.
constexpr std::int64_t kAhead = 48;

// Row r of the packed triangle: its element c is [c].
const double* row_of(const double* nrm, std::int64_t r) { return nrm + r * (r - 1) / 2 - 1; }

QOB_VECTOR_CLONES void add_all(const TriangleWalk::Column* column, std::int64_t n,
                               TriangleWalk::Column& sum) {
  TriangleWalk::Column total = sum;
  for (std::int64_t j = 0; j < n; ++j) total += column[j];
  sum = total;
}

QOB_VECTOR_CLONES void add_some(const TriangleWalk::Column* column, const std::int32_t* number,
                                std::int64_t n, TriangleWalk::Column& sum) {
  TriangleWalk::Column total = sum;
  for (std::int64_t k = 0; k < n; ++k) total += column[number[k] - 1];
  sum = total;
}

}  // namespace

TriangleWalk::TriangleWalk(const Relationship& relationship, const Candidates& candidates)
    : nrm_(relationship.nrm.data()), places_(candidates.ncands) {
  for (std::int32_t i = 1; i <= candidates.ncands; ++i) {
    places_(i) = {relationship.nrm_id(candidates.cands(i)), i};
  }
  std::sort(places_.begin(), places_.end(),
            [](const Place& a, const Place& b) { return a.row < b.row; });
  columns_ = std::make_unique<Column[]>(static_cast<std::size_t>(candidates.ncands));
}

bool TriangleWalk::next() {
  const std::int64_t before = done_;
  done_ = std::min(places_.size(), before + static_cast<std::int64_t>(kLanes));
  size_ = static_cast<std::size_t>(done_ - before);
  if (size_ == 0) return false;
  std::array<std::int32_t, kLanes> row;
  for (std::size_t l = 0; l < kLanes; ++l) {
    const Place& place = places_(std::min(done_, before + 1 + static_cast<std::int64_t>(l)));
    row[l] = place.row;
    number_[l] = place.candidate;
  }
  fill_columns(row, before);
  return true;
}

// The lanes hold the places before + 1 .. done_, with these rows.
void TriangleWalk::fill_columns(const std::array<std::int32_t, kLanes>& row, std::int64_t before) {
  std::array<const double*, kLanes> from;
  for (std::size_t l = 0; l < kLanes; ++l) from[l] = row_of(nrm_, row[l]);
  for (std::int64_t k = 1; k <= before; ++k) {
    const std::int64_t c = places_(k).row;
    double* to = lanes(places_(k).candidate);
    for (std::size_t l = 0; l < kLanes; ++l) to[l] = from[l][c];
  }
  for (std::int64_t k = before + 1; k <= done_; ++k) {
    double* to = lanes(places_(k).candidate);
    for (std::size_t l = 0; l < kLanes; ++l) to[l] = nrm_[ute(row[l], places_(k).row) - 1];
  }
  for (std::int64_t k = done_ + 1; k <= places_.size(); ++k) {
    const double* ahead = row_of(nrm_, places_(std::min(k + kAhead, places_.size())).row);
    // Three cache lines at most.
    for (const std::size_t l : {0U, 8U, 15U}) __builtin_prefetch(ahead + row[l]);
    const double* below = row_of(nrm_, places_(k).row);
    double* to = lanes(places_(k).candidate);
    if (row[kLanes - 1] - row[0] == kLanes - 1) {
      std::memcpy(to, below + row[0], sizeof(Column));
    } else {  // rows without a candidate lie between
      for (std::size_t l = 0; l < kLanes; ++l) to[l] = below[row[l]];
    }
  }
}

void TriangleWalk::add_columns(std::int64_t first, std::int64_t last, Column& sum) const {
  if (first <= last) add_all(&column(first), last - first + 1, sum);
}

void TriangleWalk::add_columns(const std::int32_t* number, std::int64_t n, Column& sum) const {
  add_some(columns_.get(), number, n, sum);
}

}  // namespace qob
