#include "analysis/effective_ancestors.h"

#include <algorithm>
#include <vector>

#include "analysis/kernels/ancestry.h"

namespace qob {
namespace {

// A marginal contribution that is so little smaller than another one is equal to it, and so small a
// part of all genes is not worth further ancestors.
constexpr double kNegligible = 1e-9;

// Members of the reference, each with all that flows from it, and their ancestors.
class GenePool {
 public:
  GenePool(const Table2<std::int32_t>& newped, const Table<char>& reference) : ancestry_(newped) {
    for (std::int32_t i = 1; i <= newped.columns(); ++i) {
      if (reference(i) == 0) continue;
      for (int k = 1; k <= 2; ++k) ancestry_.add(newped(k, i));
    }
    ancestry_.close();
    n_ = ancestry_.size();
    flow_.assign(std::int64_t{n_} + 1, 0.0);
    lost_ = explained_ = flow_;
    taken_.assign(std::int64_t{n_} + 1, 0);
    for (std::int32_t i = 1; i <= newped.columns(); ++i) {
      if (reference(i) == 1) add_member(newped, i);
    }
    for (std::int32_t k = n_; k >= 1; --k) pass_to_parents(flow_, k);
  }

  // Takes the ancestor with the largest marginal contribution. Returns that.
  double take() {
    double largest = 0.0;
    for (std::int32_t k = 1; k <= n_; ++k) largest = std::max(largest, marginal(k));
    steps_ += n_;
    if (largest * (1.0 - kNegligible) <= 1.0) {
      for (const Parents& youngest : youngest_) largest = std::max(largest, marginal(youngest));
      steps_ += std::ssize(youngest_);
    }
    const double least = largest * (1.0 - kNegligible);
    for (std::int32_t k = 1; k <= n_; ++k) {
      if (marginal(k) >= least) return take(k);
    }
    const auto equals = [&](const Parents& youngest) { return marginal(youngest) >= least; };
    return take(std::find_if(youngest_.begin(), youngest_.end(), equals));
  }

  std::int64_t steps() const { return steps_; }

 private:
  using Parents = Ancestry::Parents;

  void add_member(const Table2<std::int32_t>& newped, std::int32_t i) {
    if (ancestry_.number(i) > 0) {
      flow_(ancestry_.number(i)) += 1.0;
      return;
    }
    const Parents parents{ancestry_.number(newped(1, i)), ancestry_.number(newped(2, i))};
    youngest_.push_back(parents);
    flow_(parents.sire) += 0.5;
    flow_(parents.dam) += 0.5;
  }

  double explained(const Parents& by) const {
    return 0.5 * (explained_(by.sire) + explained_(by.dam));
  }
  double marginal(std::int32_t k) const { return flow_(k) * (1.0 - explained_(k)); }
  double marginal(const Parents& youngest) const { return 1.0 - explained(youngest); }

  double take(std::int32_t k) {
    const double contribution = marginal(k);
    lost_(k) = flow_(k);
    pass_to_parents(lost_, k);
    lost_(k) = 0.0;
    divert_flow(k - 1);
    taken_(k) = 1;
    explained_(k) = 1.0;
    for (std::int32_t j = k + 1; j <= n_; ++j) {
      if (taken_(j) == 0) explained_(j) = explained(ancestry_.parents()(j));
    }
    return contribution;
  }

  double take(std::vector<Parents>::iterator youngest) {
    const double contribution = marginal(*youngest);
    lost_(youngest->sire) += 0.5;
    lost_(youngest->dam) += 0.5;
    divert_flow(std::max(youngest->sire, youngest->dam));
    youngest_.erase(youngest);
    return contribution;
  }

  void pass_to_parents(Table<double, 0>& x, std::int32_t k) {
    const auto [sire, dam] = ancestry_.parents()(k);
    x(sire) += 0.5 * x(k);
    x(dam) += 0.5 * x(k);
  }

  // What flowed through ancestors 1..last to the one that is taken is its own from now on.
  void divert_flow(std::int32_t last) {
    for (std::int32_t j = last; j >= 1; --j) {
      if (lost_(j) == 0.0) continue;
      flow_(j) -= lost_(j);
      if (taken_(j) == 0) pass_to_parents(lost_, j);
      lost_(j) = 0.0;
    }
  }

  Ancestry ancestry_;              // of members; they themselves if they have members for offspring
  std::int32_t n_ = 0;             // ancestors
  std::vector<Parents> youngest_;  // members that are nobody's ancestors, and not taken
  // By ancestor. Index 0 takes what flows from unknown parents.
  Table<double, 0> flow_;
  Table<double, 0> lost_;  // 0 between calls
  Table<double, 0> explained_;
  Table<char, 0> taken_;
  std::int64_t steps_ = 0;
};

}  // namespace

EffectiveAncestors effective_ancestors(const Table2<std::int32_t>& newped,
                                       const Table<char>& reference, std::int64_t founders,
                                       std::int64_t most_steps) {
  const auto n = static_cast<double>(std::count(reference.begin(), reference.end(), 1));
  EffectiveAncestors result;
  if (n == 0.0) return result;
  GenePool pool(newped, reference);
  double sum = 0.0, rest = 1.0, p = 0.0;
  while (rest > kNegligible && (result.taken == 0 || pool.steps() < most_steps)) {
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
