#include "ocs/kernels/plan_in_making.h"

#include "core/lanes.h"
#include "ocs/kernels/replacement_bounds.h"

namespace qob {
namespace {

QOB_VECTOR_CLONES
void add_row(double* __restrict sum, const double* __restrict row, double by, std::int32_t n) {
  for (std::int32_t k = 1; k <= n; ++k) sum[k] += by * row[k];
}

}  // namespace

PlanInMaking::PlanInMaking(const Problem& problem, RowCache& rows)
    : problem_(problem),
      candidates_(problem.selection.candidates),
      goal_(problem.selection.goal),
      rows_(rows),
      d_(1.0 / static_cast<double>(2 * std::int64_t{problem.selection.nmatings})),
      uses_(std::int64_t{candidates_.ncands} + 1, 0),
      sum_(static_cast<std::size_t>(candidates_.ncands) + 1, 0.0) {
  worth_.merit = 0.5 * (goal_.mean_merit[0] + goal_.mean_merit[1]);
  worth_.scaled_merit =
      0.5 * (goal_.mean_merit[0] / goal_.k_factor[0] + goal_.mean_merit[1] / goal_.k_factor[1]) -
      goal_.expmerit;
  worth_.relationship = goal_.vpapv / (goal_.last_genint * goal_.last_genint);
}

double PlanInMaking::mean_merit(std::int32_t i) const {
  return goal_.mean_merit[candidates_.is_male(i) ? 0 : 1];
}

Worth PlanInMaking::merit_change(std::int32_t i, double merit, double d) const {
  const double k = goal_.k_factor[candidates_.is_male(i) ? 0 : 1];
  return {merit * d, merit_gain(d, merit, k), 0.0};
}

void PlanInMaking::add(std::int32_t i, std::int32_t count) {
  const double d = d_ * static_cast<double>(count);
  const auto at = static_cast<std::size_t>(i);
  Worth change = merit_change(i, candidates_.merit(i) - mean_merit(i), d);
  change.relationship =
      relationship_change(d, goal_.apv2(i), sum_[at], rows_.own()[i], goal_.last_genint);
  worth_ = worth_ + change;
  uses_(i) += count;
  const double* row = nullptr;
  rows_.read({&i, 1}, RowCache::Keep::kRows, &row);
  add_row(sum_.data(), row, d, candidates_.ncands);
}

Worth PlanInMaking::addition(std::int32_t i) const {
  const double d = contribution(i);
  Worth change = merit_change(i, candidates_.merit(i) - mean_merit(i), d);
  change.relationship = relationship_change(d, goal_.apv2(i), sum_[static_cast<std::size_t>(i)],
                                            rows_.own()[i], goal_.last_genint);
  return change;
}

Worth PlanInMaking::replacement(std::int32_t x, std::int32_t y, const double* row_x) const {
  const double d = contribution(x);
  Worth change = merit_change(x, candidates_.merit(y) - candidates_.merit(x), d);
  const double squares = rows_.own()[y] + rows_.own()[x] - 2.0 * row_x[y];
  change.relationship =
      relationship_change(d, goal_.apv2(y) - goal_.apv2(x),
                          sum_[static_cast<std::size_t>(y)] - sum_[static_cast<std::size_t>(x)],
                          squares, goal_.last_genint);
  return change;
}

double PlanInMaking::interaction(std::int32_t x1, std::int32_t x2, double between) const {
  return 2.0 * contribution(x1) * contribution(x2) * between /
         (goal_.last_genint * goal_.last_genint);
}

double PlanInMaking::interaction(std::int32_t x, std::int32_t y) const {
  return interaction(x, x, rows_.own()[y] + rows_.own()[x] - 2.0 * rows_.element(x, y));
}

double PlanInMaking::interaction(std::int32_t x1, std::int32_t y1, std::int32_t x2,
                                 const double* row_x2, const double* row_y2) const {
  return interaction(x1, x2, (row_y2[y1] - row_x2[y1]) - (row_y2[x1] - row_x2[x1]));
}

}  // namespace qob
