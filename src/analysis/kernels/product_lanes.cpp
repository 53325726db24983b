#include "analysis/kernels/product_lanes.h"

#include "analysis/pedigree_products.h"
#include "core/numbers.h"

namespace qob {
namespace {

using Parents = Ancestry::Parents;
using Row = ProductLanes::Row;
using Part = Lanes<double, ProductLanes::kPart>;
using Bits = Lanes<std::int64_t, ProductLanes::kPart>;
constexpr int kParts = ProductLanes::kLanes / ProductLanes::kPart;

constexpr std::int64_t kSignless = 0x7fffffffffffffff;

// Youngest first: half of each value to both parents, and what stays times the Mendelian sampling
// variance. A row that is not yet in the set holds old values, which count as 0.
QOB_VECTOR_CLONES void pass_to_parents(const Parents* parents, const double* variance,
                                       DescendingSet& set, std::int32_t last, Row* row) {
  set.descend(last, [&](std::int32_t j) {
    const auto [sire, dam] = parents[j];
    const auto keep_sire = -static_cast<std::int64_t>(set.insert(sire));
    const auto keep_dam = -static_cast<std::int64_t>(set.insert(dam));
    for (int g = 0; g < kParts; ++g) {
      const Part x = row[j].part[g];
      const Bits passes = (Part)((Bits)x & kSignless) >= kTiny;
      const Part half = passes ? 0.5 * x : Part{};
      row[sire].part[g] = (Part)((Bits)row[sire].part[g] & keep_sire) + half;
      row[dam].part[g] = (Part)((Bits)row[dam].part[g] & keep_dam) + half;
      row[j].part[g] = passes ? x * variance[j] : x;
    }
  });
}

// Oldest first: to each value half of each parent's.
QOB_VECTOR_CLONES void pass_to_offspring(const Parents* parents, const DescendingSet& set,
                                         std::int32_t last, double above, Row* row) {
  for (std::int32_t j = 1; j <= last; ++j) {
    const auto [sire, dam] = parents[j];
    const auto keep = -static_cast<std::int64_t>(set.contains(j));
    for (int g = 0; g < kParts; ++g) {
      const Part from_sire = row[sire].part[g];
      const Part from_dam = row[dam].part[g];
      Part x = (Part)((Bits)row[j].part[g] & keep);
      Part sum = x + 0.5 * from_sire;
      x = (Part)((Bits)from_sire & kSignless) > above ? sum : x;
      sum = x + 0.5 * from_dam;
      row[j].part[g] = (Part)((Bits)from_dam & kSignless) > above ? sum : x;
    }
  }
}

}  // namespace

void ProductLanes::start(const Ancestry& ancestry, const Table2<std::int32_t>& newped,
                         const Table<double, 0>& f) {
  ancestry_ = &ancestry;
  const std::int32_t n = ancestry.size();
  if (variance_.last() < n) {
    variance_.assign(std::int64_t{n} + 1, 0.0);
    row_.assign(std::int64_t{n} + 1, Row{});
    set_ = DescendingSet(n);
  }
  for (std::int32_t k = 1; k <= n; ++k) {
    variance_(k) = mendelian_factor(newped, f, ancestry.animal(k));
  }
}

void ProductLanes::multiply(std::int32_t last) {
  const Parents* parents = ancestry_->parents().data();
  pass_to_parents(parents, variance_.data(), set_, last, row_.data());
  row_(0) = Row{};
  pass_to_offspring(parents, set_, last, passed_on_above_, row_.data());
  set_.clear(last);
}

}  // namespace qob
