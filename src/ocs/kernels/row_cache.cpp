#include "ocs/kernels/row_cache.h"

#include <algorithm>
#include <array>
#include <cmath>

#include "system/free_memory.h"

namespace qob {
namespace {

// A row that was not wanted in so many readings may give its place to another.
constexpr std::int64_t kOld = 20000;

// A row costs as much as the elements that so many evaluations want of it.
constexpr std::uint8_t kOftenWanted = 6;

constexpr std::size_t kLine = 64;  // bytes that the cache fetches together

// Bytes that a new row leaves to the rest of the program, which cannot do without.
constexpr std::size_t kReserve = std::size_t{1} << 24;

}  // namespace

RowCache::RowCache(const Relationship& relationship, const Candidates& candidates,
                   std::size_t most_bytes)
    : relationship_(&relationship) {
  const auto n = static_cast<std::size_t>(candidates.ncands);
  id_.assign(n + 1, 0);
  own_.assign(n + 1, 0.0);
  for (std::int32_t k = 1; k <= candidates.ncands; ++k) {
    const std::int32_t row = relationship.nrm_id(candidates.cands(k));
    id_[static_cast<std::size_t>(k)] = row;
    own_[static_cast<std::size_t>(k)] = nrmelement(relationship, row, row);
  }
  place_of_.assign(n + 1, -1);
  times_wanted_.assign(n + 1, 0);
  most_places_ = most_bytes / (sizeof(double) * (n + 1));
}

bool RowCache::is_worth_making(std::int32_t candidate, Keep keep) {
  if (keep != Keep::kOften) return true;
  std::uint8_t& times = times_wanted_[static_cast<std::size_t>(candidate)];
  if (times < kOftenWanted) ++times;
  return times == kOftenWanted;
}

// Memory for the row of `candidate`, nullptr when there is none left within the bound.
double* RowCache::new_row(std::int32_t candidate) {
  std::size_t at = places_.size();
  if (at < most_places_) {
    const std::size_t bytes = (id_.size() * sizeof(double) + kLine - 1) / kLine * kLine;
    Row row(has_free_memory(kReserve) ? static_cast<double*>(std::aligned_alloc(kLine, bytes))
                                      : nullptr);
    if (row == nullptr) {
      most_places_ = at;
    } else {
      places_.push_back({std::move(row), 0, 0});
    }
  }
  if (at >= most_places_) {
    if (places_.empty()) return nullptr;
    at = hand_ = (hand_ + 1) % places_.size();
    if (calls_ - places_[at].last_used < kOld) return nullptr;
    place_of_[static_cast<std::size_t>(places_[at].candidate)] = -1;
  }
  places_[at].candidate = candidate;
  places_[at].last_used = calls_;
  place_of_[static_cast<std::size_t>(candidate)] = static_cast<std::int32_t>(at);
  return places_[at].row.get();
}

void RowCache::fill(std::span<const std::int32_t> wanted, std::span<double* const> rows) {
  const double* nrm = relationship_->nrm.data();
  for (std::size_t k = 1; k < id_.size(); ++k) {
    const std::int64_t m = id_[k];
    const std::int64_t start = m * (m - 1) / 2 - 1;  // of row m, so that its column n is start + n
    for (std::size_t b = 0; b < wanted.size(); ++b) {
      const std::int64_t n = id_[static_cast<std::size_t>(wanted[b])];
      const double a = nrm[n <= m ? start + n : n * (n - 1) / 2 - 1 + m];
      rows[b][k] = a;
      largest_ = std::max(largest_, std::abs(a));
    }
  }
}

void RowCache::read(std::span<const std::int32_t> wanted, Keep keep, const double** row) {
  ++calls_;
  std::array<std::int32_t, kBlock> missing;
  std::array<double*, kBlock> rows;
  std::size_t count = 0;
  for (std::size_t b = 0; b < wanted.size(); ++b) {
    if (wanted[b] == 0) stop_at_index_zero();
    const std::int32_t at = place_of_[static_cast<std::size_t>(wanted[b])];
    if (at < 0) continue;
    places_[static_cast<std::size_t>(at)].last_used = calls_;
    row[b] = places_[static_cast<std::size_t>(at)].row.get();
  }
  for (std::size_t b = 0; b < wanted.size(); ++b) {
    if (place_of_[static_cast<std::size_t>(wanted[b])] >= 0) continue;
    row[b] = nullptr;
    if (!is_worth_making(wanted[b], keep)) continue;
    double* memory = keep != Keep::kNothing ? new_row(wanted[b]) : nullptr;
    if (memory == nullptr && keep == Keep::kOften) continue;
    if (memory == nullptr) {
      if (scratch_.empty()) scratch_.resize(kBlock * id_.size());
      memory = scratch_.data() + b * id_.size();
    }
    row[b] = memory;
    missing[count] = wanted[b];
    rows[count++] = memory;
  }
  fill({missing.data(), count}, {rows.data(), count});
}

}  // namespace qob
