#include "ocs/replacement_bounds.h"

#include "core/lanes.h"

namespace qob {
namespace {

// What is the same for all y; the tables begin at the first candidate of the sex.
struct Terms {
  const double *apv2, *sum, *own, *with_x;
  double apv2_x, a_x, own_x, error, d, genint;
};

QOB_VECTOR_CLONES
void bound(const Terms& t, std::size_t n, Bounds* __restrict bounds) {
  for (std::size_t k = 0; k < n; ++k) {
    const double apv2 = t.apv2[k] - t.apv2_x;
    const double squares = t.own[k] + t.own_x - 2.0 * t.with_x[k];
    const double a_y = t.sum[k] * t.d;
    bounds[k].low = relationship_change(t.d, apv2, a_y - t.error - t.a_x, squares, t.genint);
    bounds[k].high = relationship_change(t.d, apv2, a_y + t.error - t.a_x, squares, t.genint);
  }
}

}  // namespace

void bound_relationship_changes(const Model& model, int sex, double d, std::int32_t x, double a_x,
                                const double* row_x, std::vector<Bounds>& bounds) {
  const Candidates& candidates = model.candidates;
  const RelationshipSums& sums = model.sums[sex - 1];
  const std::int32_t first = candidates.first(sex);
  const auto n = static_cast<std::size_t>(candidates.last(sex) - first + 1);
  bounds.resize(n);
  const double* own = model.rows.own();
  const Terms terms = {&model.goal.apv2(first),
                       sums.data() + first,
                       own + first,
                       row_x + first,
                       model.goal.apv2(x),
                       a_x,
                       own[x],
                       sums.error(),
                       d,
                       model.goal.last_genint};
  bound(terms, n, bounds.data());
}

}  // namespace qob
