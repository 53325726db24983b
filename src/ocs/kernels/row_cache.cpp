#include "ocs/kernels/row_cache.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstring>

#include "system/free_memory.h"

namespace qob {
namespace {

// A row that was not wanted in so many calls may give its place to another.
constexpr std::int64_t kOld = 20000;

// A row costs as much as looking for this share of its elements in the triangle.
constexpr std::size_t kWorthAShare = 8;

// Rows that are made together, by one thread: those of candidates that follow one another lie close
// in the lines of the triangle, most of which would be fetched once for each otherwise.
constexpr std::size_t kTogether = 32;
constexpr std::int64_t kNanosecondsAnElement = 2;

constexpr std::size_t kLine = 64;  // bytes that the cache fetches together
constexpr std::size_t kAhead = 8;  // rows of the triangle that are fetched before they are read

// Bytes that a new row leaves to the rest of the program, which cannot do without.
constexpr std::size_t kReserve = std::size_t{1} << 24;

// Fetches the columns first..last of a row of the triangle, if they lie close together.
void fetch(const double* row, std::int64_t first, std::int64_t last) {
  constexpr std::int64_t kInLine = kLine / sizeof(double);
  if (last - first > 16 * kInLine) return;
  for (std::int64_t n = first; n < last; n += kInLine) __builtin_prefetch(row + n);
  __builtin_prefetch(row + last);
}

bool same_bits(double a, double b) { return std::memcmp(&a, &b, sizeof a) == 0; }

// Writes a relationship into a row. Returns whether it is still the same, to the last bit.
bool put(double a, double& element) {
  element = a;
  return true;
}
bool put(double a, std::int32_t& element) {
  constexpr double kMost = 4.0;
  element = std::abs(a) < kMost ? static_cast<std::int32_t>(a / KeptRow::kUnit) : 0;
  return same_bits(KeptRow::kUnit * element, a);
}

}  // namespace

RowCache::RowCache(const Relationship& relationship, const Candidates& candidates,
                   std::size_t most_bytes, Parallel* parallel)
    : relationship_(&relationship), parallel_(parallel), most_bytes_(most_bytes) {
  const auto n = static_cast<std::size_t>(candidates.ncands);
  id_.assign(n + 1, 0);
  own_.assign(n + 1, 0.0);
  std::int32_t element;
  for (std::int32_t k = 1; k <= candidates.ncands; ++k) {
    const std::int32_t row = relationship.nrm_id(candidates.cands(k));
    id_[static_cast<std::size_t>(k)] = row;
    own_[static_cast<std::size_t>(k)] = nrmelement(relationship, row, row);
    is_fixed_ = is_fixed_ && put(own_[static_cast<std::size_t>(k)], element);
  }
  place_of_.assign(n + 1, -1);
  looked_at_.assign(n + 1, 0);
  most_places_ = most_bytes_ / (element_size() * id_.size());
}

RowCache::Place* RowCache::place(std::int32_t candidate) {
  if (candidate == 0) stop_at_index_zero();
  const std::int32_t at = place_of_[static_cast<std::size_t>(candidate)];
  return at < 0 ? nullptr : &places_[static_cast<std::size_t>(at)];
}

KeptRow RowCache::find(std::int32_t candidate) const {
  const std::int32_t at = place_of_[static_cast<std::size_t>(candidate)];
  if (at < 0) return {};
  const void* row = places_[static_cast<std::size_t>(at)].row.get();
  if (is_fixed_) return {nullptr, static_cast<const std::int32_t*>(row)};
  return {static_cast<const double*>(row), nullptr};
}

KeptRow RowCache::find_or_read(std::int32_t candidate) {
  const KeptRow kept = find(candidate);
  if (kept.is_kept()) return kept;
  const double* row;
  read({&candidate, 1}, Keep::kNothing, &row);
  return {row, nullptr};
}

// Gives the candidate a place for its row. Returns whether there is one within the bound.
bool RowCache::take_place(std::int32_t candidate) {
  std::size_t at = places_.size();
  if (at < most_places_) {
    const std::size_t bytes = (id_.size() * element_size() + kLine - 1) / kLine * kLine;
    void* const row = has_free_memory(kReserve) ? std::aligned_alloc(kLine, bytes) : nullptr;
    if (row == nullptr) {
      most_places_ = at;
    } else {
      places_.emplace_back().row.reset(row);
    }
  }
  if (at >= most_places_) {
    if (places_.empty()) return false;
    at = hand_ = (hand_ + 1) % places_.size();
    if (calls_ - places_[at].last_used < kOld) return false;
    place_of_[static_cast<std::size_t>(places_[at].candidate)] = -1;
  }
  places_[at].candidate = candidate;
  places_[at].last_used = calls_;
  place_of_[static_cast<std::size_t>(candidate)] = static_cast<std::int32_t>(at);
  return true;
}

// Returns whether the rows hold what the triangle does.
template <class Element>
bool RowCache::fill(std::span<const std::int32_t> candidates, Element* const* rows,
                    double& largest) const {
  if (candidates.empty()) return true;
  const double* nrm = relationship_->nrm.data();
  // Where row m begins, so that its column n is there + n.
  const auto start_of = [](std::int64_t m) { return m * (m - 1) / 2 - 1; };
  const auto row_of = [&](std::int32_t i) { return id_[static_cast<std::size_t>(i)]; };
  const std::int64_t first = row_of(candidates.front()), last = row_of(candidates.back());
  bool same = true;
  for (std::size_t k = 1; k < id_.size(); ++k) {
    const std::int64_t m = id_[k];
    const std::int64_t start = start_of(m);
    if (k + kAhead < id_.size()) fetch(nrm + start_of(id_[k + kAhead]), first, last);
    for (std::size_t b = 0; b < candidates.size(); ++b) {
      const std::int64_t n = row_of(candidates[b]);
      const double a = nrm[n <= m ? start + n : start_of(n) + m];
      same = put(a, rows[b][k]) && same;
      largest = std::max(largest, std::abs(a));
    }
  }
  return same;
}

// Fills the rows of candidates that have their places, kTogether of them at most.
template <class Element>
bool RowCache::fill_places(std::span<const std::int32_t> candidates, double& largest) {
  std::array<Element*, kTogether> rows;
  for (std::size_t b = 0; b < candidates.size(); ++b) {
    rows[b] = static_cast<Element*>(place(candidates[b])->row.get());
  }
  return fill(candidates, rows.data(), largest);
}

// Makes the rows, which have their places. Returns whether they hold what the triangle does.
bool RowCache::make(std::span<const std::int32_t> candidates) {
  struct Made {
    bool same = true;
    double largest = 0.0;
  };
  std::vector<Made> made(static_cast<std::size_t>(parallel().threads()));  // by worker
  const auto fill_some = [&](std::span<const std::int32_t> some, int worker) {
    auto& [same, largest] = made[static_cast<std::size_t>(worker)];
    const bool is_same =
        is_fixed_ ? fill_places<std::int32_t>(some, largest) : fill_places<double>(some, largest);
    same = same && is_same;
  };
  const auto elements = static_cast<std::int64_t>(candidates.size() * id_.size());
  parallel().for_each_block(candidates, kTogether, elements * kNanosecondsAnElement, fill_some);
  bool same = true;
  for (const Made& m : made) {
    same = same && m.same;
    largest_ = std::max(largest_, m.largest);
  }
  return same;
}

void RowCache::keep_doubles() {
  places_.clear();
  std::fill(place_of_.begin(), place_of_.end(), -1);
  is_fixed_ = false;
  most_places_ = most_bytes_ / (element_size() * id_.size());
}

// Makes rows for these, which have none, as far as there is room.
void RowCache::keep(std::span<const std::int32_t> candidates) {
  std::vector<std::int32_t> placed;
  for (const std::int32_t i : candidates) {
    if (take_place(i)) placed.push_back(i);
  }
  if (make(placed)) return;
  keep_doubles();
  keep(candidates);
}

void RowCache::prepare(std::span<const Want> wanted) {
  ++calls_;
  std::vector<std::int32_t> missing;
  for (const auto& [candidate, elements] : wanted) {
    if (Place* const kept = place(candidate)) {
      kept->last_used = calls_;
      continue;
    }
    std::size_t& looked_at = looked_at_[static_cast<std::size_t>(candidate)];
    looked_at += elements;
    if (looked_at >= id_.size() / kWorthAShare) missing.push_back(candidate);
  }
  keep(missing);
}

const double* RowCache::as_doubles(const KeptRow& row, double* scratch) const {
  if (row.real != nullptr) return row.real;
  for (std::size_t k = 1; k < id_.size(); ++k) scratch[k] = KeptRow::kUnit * row.fixed[k];
  return scratch;
}

void RowCache::read(std::span<const std::int32_t> wanted, Keep keep_new, const double** row) {
  ++calls_;
  std::array<std::int32_t, kBlock> missing;
  std::size_t count = 0;
  for (const std::int32_t i : wanted) {
    Place* const kept = place(i);
    if (kept != nullptr) kept->last_used = calls_;
    if (kept == nullptr) missing[count++] = i;
  }
  if (keep_new == Keep::kRows) keep({missing.data(), count});
  if (scratch_.empty()) scratch_.resize(kBlock * id_.size());
  std::array<double*, kBlock> unkept;
  count = 0;
  for (std::size_t b = 0; b < wanted.size(); ++b) {
    double* const scratch = scratch_.data() + b * id_.size();
    const KeptRow kept = find(wanted[b]);
    row[b] = kept.is_kept() ? as_doubles(kept, scratch) : scratch;
    if (kept.is_kept()) continue;
    missing[count] = wanted[b];
    unkept[count++] = scratch;
  }
  fill<double>({missing.data(), count}, unkept.data(), largest_);
}

}  // namespace qob
