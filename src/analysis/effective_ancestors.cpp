#include "analysis/effective_ancestors.h"

#include <algorithm>
#include <limits>

#include "analysis/kernels/ancestry.h"

namespace qob {
namespace {

// A marginal contribution that is so little smaller than another one is equal to it, and so small a
// part of all genes is not worth further ancestors.
constexpr double kNegligible = 1e-9;

// The reference and its ancestors. Flow counts animals of the reference.
class GenePool {
 public:
  GenePool(const Ancestry& ancestry, const Table<char>& reference)
      : parents_(ancestry.parents()),
        n_(ancestry.size()),
        flow_(std::int64_t{n_} + 1, 0.0),
        lost_(std::int64_t{n_} + 1, 0.0),
        explained_(std::int64_t{n_} + 1, 0.0),
        taken_(std::int64_t{n_} + 1, 0) {
    for (std::int32_t k = 1; k <= n_; ++k) flow_(k) = reference(ancestry.animal(k));
    for (std::int32_t k = n_; k >= 1; --k) pass_to_parents(flow_, k);
  }

  // Takes the ancestor with the largest marginal contribution. Returns that.
  double take() {
    const std::int32_t k = best();
    const double contribution = marginal(k);
    explain_offspring(k);
    divert_flow(k);
    return contribution;
  }

 private:
  double marginal(std::int32_t k) const { return flow_(k) * (1.0 - explained_(k)); }

  std::int32_t best() const {
    double largest = 0.0;
    for (std::int32_t k = 1; k <= n_; ++k) largest = std::max(largest, marginal(k));
    largest *= 1.0 - kNegligible;
    std::int32_t k = 1;
    while (marginal(k) < largest) ++k;
    return k;
  }

  void pass_to_parents(Table<double, 0>& x, std::int32_t k) {
    const auto [sire, dam] = parents_(k);
    x(sire) += 0.5 * x(k);
    x(dam) += 0.5 * x(k);
  }

  void explain_offspring(std::int32_t k) {
    taken_(k) = 1;
    explained_(k) = 1.0;
    for (std::int32_t j = k + 1; j <= n_; ++j) {
      const auto [sire, dam] = parents_(j);
      if (taken_(j) == 0) explained_(j) = 0.5 * (explained_(sire) + explained_(dam));
    }
  }

  // What flowed to k from its ancestors is k's own from now on.
  void divert_flow(std::int32_t k) {
    lost_(k) = flow_(k);
    pass_to_parents(lost_, k);
    lost_(k) = 0.0;
    for (std::int32_t j = k - 1; j >= 1; --j) {
      if (lost_(j) == 0.0) continue;
      flow_(j) -= lost_(j);
      if (taken_(j) == 0) pass_to_parents(lost_, j);
      lost_(j) = 0.0;
    }
  }

  const Table<Ancestry::Parents, 0>& parents_;
  std::int32_t n_;
  Table<double, 0> flow_;  // index 0 takes what flows from unknown parents
  Table<double, 0> lost_;  // all 0 between calls, but for index 0
  Table<double, 0> explained_;
  Table<char, 0> taken_;
};

}  // namespace

EffectiveAncestors effective_ancestors(const Table2<std::int32_t>& newped,
                                       const Table<char>& reference, std::int64_t founders,
                                       std::int64_t most_steps) {
  Ancestry ancestry(newped);
  for (std::int32_t i = 1; i <= newped.columns(); ++i) {
    if (reference(i) == 1) ancestry.add(i);
  }
  ancestry.close();
  const std::int64_t size = ancestry.size();
  if (size == 0)
    return {std::numeric_limits<double>::quiet_NaN(), std::numeric_limits<double>::quiet_NaN(), 0};
  GenePool pool(ancestry, reference);
  const auto n = static_cast<double>(std::count(reference.begin(), reference.end(), 1));
  EffectiveAncestors result;
  double sum = 0.0, rest = 1.0, p = 0.0;
  while (rest > kNegligible && (result.taken == 0 || (result.taken + 1) * size <= most_steps)) {
    p = pool.take() / n;
    sum += p * p;
    rest -= p;
    ++result.taken;
  }
  if (rest <= kNegligible) rest = 0.0;
  const auto others = static_cast<double>(founders - result.taken);
  result.low = 1.0 / (sum + rest * p);
  result.high = 1.0 / (sum + (others > 0.0 ? rest * rest / others : 0.0));
  return result;
}

}  // namespace qob
