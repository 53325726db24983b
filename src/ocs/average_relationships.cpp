#include "ocs/average_relationships.h"

#include <algorithm>
#include <array>

#include "core/lanes.h"

namespace qob {
namespace {

constexpr std::size_t kWidth = 8;
using Doubles = Lanes<double, kWidth>;

// Adds to each lane of sum[v] the terms of candidate i with the candidates later[0..n), row[k] its
// relationship with candidate k; twice: 2 c(i), c: V vectors a candidate. A lane that does not use
// a candidate has c = 0 there and adds nothing, so the lane's own terms keep their order.
template <std::size_t V>
[[gnu::always_inline]] inline void add_products(const double* row, const std::int32_t* later,
                                                std::size_t n, const Doubles* twice,
                                                const Doubles* c, Doubles* sum) {
  Doubles t[V], s[V];
  for (std::size_t v = 0; v < V; ++v) t[v] = twice[v], s[v] = sum[v];
  for (std::size_t k = 0; k < n; ++k) {
    const double a = row[later[k]];
    for (std::size_t v = 0; v < V; ++v) s[v] += t[v] * c[V * k + v] * a;
  }
  for (std::size_t v = 0; v < V; ++v) sum[v] = s[v];
}

QOB_VECTOR_CLONES
void add_products_of_8(const double* row, const std::int32_t* later, std::size_t n,
                       const Doubles* twice, const Doubles* c, Doubles* sum) {
  add_products<1>(row, later, n, twice, c, sum);
}

QOB_VECTOR_CLONES
void add_products_of_16(const double* row, const std::int32_t* later, std::size_t n,
                        const Doubles* twice, const Doubles* c, Doubles* sum) {
  add_products<2>(row, later, n, twice, c, sum);
}

using Sets = std::span<const Contributions* const>;

// The candidates that any of the sets uses.
std::vector<std::int32_t> union_of(Sets sets, std::int32_t ncands) {
  std::vector<char> used(static_cast<std::size_t>(ncands) + 1, 0);
  for (const Contributions* set : sets) {
    for (const std::int32_t i : set->candidate) used[static_cast<std::size_t>(i)] = 1;
  }
  std::vector<std::int32_t> all(used.size());
  std::size_t count = 0;
  for (std::size_t i = 0; i < used.size(); ++i) {
    all[count] = static_cast<std::int32_t>(i);
    count += static_cast<std::size_t>(used[i]);
  }
  all.resize(count);
  return all;
}

class QuadraticForms {
 public:
  QuadraticForms(const Model& model, Sets sets, std::vector<std::int32_t> candidates)
      : model_(model),
        vectors_((sets.size() + kWidth - 1) / kWidth),
        candidates_(std::move(candidates)),
        c_(candidates_.size() * vectors_) {
    for (std::size_t l = 0; l < sets.size(); ++l) enter(*sets[l], l);
  }

  void compute(RelationshipRows& rows, RelationshipRows::Keep keep, std::size_t count,
               double* result) {
    constexpr std::size_t kBlock = RelationshipRows::kBlock;
    const Goal& goal = model_.goal;
    for (Doubles& sum : sum_) sum = Doubles{} + goal.vpapv;
    for (std::size_t at = 0; at < candidates_.size(); at += kBlock) {
      const std::size_t n = std::min(kBlock, candidates_.size() - at);
      std::array<const double*, kBlock> row;
      rows.read(model_.relationship, model_.candidates, {&candidates_[at], n}, keep, row.data());
      for (std::size_t b = 0; b < n; ++b) add_candidate(at + b, row[b]);
    }
    for (std::size_t l = 0; l < count; ++l) {
      result[l] = sum_[l / kWidth][l % kWidth] / (goal.last_genint * goal.last_genint);
    }
  }

 private:
  void enter(const Contributions& set, std::size_t lane) {
    std::size_t k = 0;
    for (std::size_t m = 0; m < set.candidate.size(); ++m) {
      while (candidates_[k] != set.candidate[m]) ++k;
      c_[k * vectors_ + lane / kWidth][lane % kWidth] = set.c[m];
    }
  }

  void add_candidate(std::size_t m, const double* row) {
    const std::int32_t i = candidates_[m];
    const double own = row[i];
    const double apv2 = model_.goal.apv2(i);
    std::array<Doubles, 2> twice;
    for (std::size_t v = 0; v < vectors_; ++v) {
      const Doubles c = c_[m * vectors_ + v];
      sum_[v] += own * (c * c) + apv2 * c;
      twice[v] = 2.0 * c;
    }
    const auto add = vectors_ == 1 ? add_products_of_8 : add_products_of_16;
    add(row, candidates_.data() + m + 1, candidates_.size() - m - 1, twice.data(),
        c_.data() + (m + 1) * vectors_, sum_.data());
  }

  const Model& model_;
  std::size_t vectors_;
  std::vector<std::int32_t> candidates_;
  std::vector<Doubles> c_;  // by candidate of the union: its vectors of lanes
  std::array<Doubles, kContributionSets / kWidth> sum_;
};

// The terms of sets that share few candidates are fewer when they are taken apart.
void divide(const Model& model, Sets sets, std::vector<std::int32_t> all, RelationshipRows& rows,
            RelationshipRows::Keep keep, double* result) {
  if (sets.size() > 1) {
    const std::size_t half = sets.size() / 2;
    auto first = union_of(sets.first(half), model.candidates.ncands);
    auto second = union_of(sets.subspan(half), model.candidates.ncands);
    if (first.size() * first.size() + second.size() * second.size() < all.size() * all.size()) {
      divide(model, sets.first(half), std::move(first), rows, keep, result);
      divide(model, sets.subspan(half), std::move(second), rows, keep, result + half);
      return;
    }
  }
  QuadraticForms(model, sets, std::move(all)).compute(rows, keep, sets.size(), result);
}

}  // namespace

void average_relationships(const Model& model, Sets sets, RelationshipRows& rows,
                           RelationshipRows::Keep keep, double* result) {
  divide(model, sets, union_of(sets, model.candidates.ncands), rows, keep, result);
}

}  // namespace qob
