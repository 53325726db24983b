#include "ocs/kernels/replacement_bounds.h"

#include "core/lanes.h"

namespace qob {
namespace {

// What is the same for all y; the tables begin at the first candidate of the sex.
struct Terms {
  const double *merit, *apv2, *sum, *own;
  double merit_x, apv2_x, own_x, a_x, error, d, k, genint;
};

// with_x: relationships in this unit.
template <class Element>
QOB_VECTOR_CLONES void bound(const Terms& terms, const Element* with_x, double unit, std::size_t n,
                             double* __restrict gain, double* __restrict low,
                             double* __restrict high) {
  const Terms t = terms;
  for (std::size_t y = 0; y < n; ++y) {
    const double apv2 = t.apv2[y] - t.apv2_x;
    const double squares = t.own[y] + t.own_x - 2.0 * (unit * with_x[y]);
    const double a_y = t.sum[y] * t.d;
    gain[y] = merit_gain(t.d, t.merit[y] - t.merit_x, t.k);
    low[y] = relationship_change(t.d, apv2, a_y - t.error - t.a_x, squares, t.genint);
    high[y] = relationship_change(t.d, apv2, a_y + t.error - t.a_x, squares, t.genint);
  }
}

}  // namespace

void bound_replacements(const Selection& selection, const Loser& loser, double d,
                        const ParentSums& sums, const double* own, ReplacementBounds& bounds) {
  const Candidates& candidates = selection.candidates;
  const Goal& goal = selection.goal;
  const std::int32_t first = candidates.first(loser.sex);
  const auto n = static_cast<std::size_t>(std::int64_t{candidates.last(loser.sex)} - first + 1);
  for (auto* table : {&bounds.gain, &bounds.low, &bounds.high}) table->resize(n);
  const Terms terms = {.merit = &candidates.merit(first),
                       .apv2 = &goal.apv2(first),
                       .sum = sums.data() + first,
                       .own = own + first,
                       .merit_x = candidates.merit(loser.x),
                       .apv2_x = goal.apv2(loser.x),
                       .own_x = own[loser.x],
                       .a_x = loser.a_x,
                       .error = sums.error(),
                       .d = d,
                       .k = goal.k_factor[loser.sex - 1],
                       .genint = goal.last_genint};
  const auto bound_by = [&](const auto* row, double unit) {
    bound(terms, row + first, unit, n, bounds.gain.data(), bounds.low.data(), bounds.high.data());
  };
  if (loser.row_x.real != nullptr) return bound_by(loser.row_x.real, 1.0);
  bound_by(loser.row_x.fixed, KeptRow::kUnit);
}

}  // namespace qob
