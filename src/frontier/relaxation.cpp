#include "frontier/relaxation.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "core/lanes.h"

namespace qob {
namespace {

constexpr double kInfinity = std::numeric_limits<double>::infinity();
// A bound costs as much as many steps: it is made after so many, then whenever they have grown by a
// quarter. Where many plans are nearly equal the last of the gap takes ever more steps; what is
// left after the most of them is in the bound.
constexpr std::int64_t kFirstBound = 50;
constexpr std::int64_t kGrowth = 4;
constexpr std::int64_t kMostSteps = 20000;
constexpr int kHalvings = 25;          // of the price of a mating
constexpr double kRounding = 1.0e-12;  // of sums, beside their terms
constexpr double kWhole = 1.0e-11;     // matings: closer to a whole number is whole

QOB_VECTOR_CLONES
void add_difference(double* __restrict sum, const double* __restrict plus,
                    const double* __restrict minus, double by, std::int32_t n) {
  for (std::int32_t k = 1; k <= n; ++k) sum[k] += by * (plus[k] - minus[k]);
}

std::size_t at(std::int32_t i) { return static_cast<std::size_t>(i); }

}  // namespace

Relaxation::Relaxation(const Selection& selection, RowCache& rows, WholeMatings whole, double shift)
    : selection_(selection),
      candidates_(selection.candidates),
      rows_(rows),
      whole_(std::move(whole)),
      shift_(shift),
      h_(1.0 / static_cast<double>(2 * std::int64_t{selection.nmatings})),
      offset_(0.5 * (selection.goal.mean_merit[0] / selection.goal.k_factor[0] +
                     selection.goal.mean_merit[1] / selection.goal.k_factor[1]) -
              selection.goal.expmerit) {
  for (auto* table : {&l_, &u_, &b_, &up_, &down_}) table->assign(at(candidates_.ncands) + 1, 0.0);
}

void Relaxation::start(const Uses& uses) {
  for (std::int32_t i = 1; i <= candidates_.ncands; ++i) u_[at(i)] = uses(i);
}

void Relaxation::start(const PartMatings& matings) { u_ = matings; }

bool Relaxation::is_whole(std::int32_t i) const {
  const double units = whole_.units(i, u_[at(i)]);
  return units == std::floor(units);
}

// The square of the matings, by its chord between whole units.
double Relaxation::chord(std::int32_t i) const {
  const double unit = whole_.unit(i), decided = whole_.decided(i);
  const double k = std::floor(whole_.units(i, u_[at(i)])), beyond = u_[at(i)] - decided;
  return k * k * unit * unit + (2.0 * k + 1.0) * unit * (beyond - k * unit) +
         decided * (decided + 2.0 * beyond);
}

void Relaxation::set_slopes(std::int32_t i) {
  const double unit = whole_.unit(i), u = u_[at(i)];
  const double k = std::floor(whole_.units(i, u));
  const double own = q_ * h_ * h_ * whole_.own(i) * unit;
  const double by_decided = 2.0 * q_ * h_ * h_ * whole_.own(i) * whole_.decided(i);
  up_[at(i)] = u >= whole_.largest(i) ? -kInfinity : -own * (2.0 * k + 1.0) - by_decided;
  down_[at(i)] = u <= whole_.fewest(i)
                     ? kInfinity
                     : -own * (is_whole(i) ? 2.0 * k - 1.0 : 2.0 * k + 1.0) - by_decided;
}

// Scaled, and less the mean of the sex, so that no digits are lost where merits are large beside
// their differences.
double Relaxation::centred_merit(std::int32_t i) const {
  const std::size_t sex = candidates_.is_male(i) ? 0 : 1;
  return (candidates_.merit(i) - selection_.goal.mean_merit[sex]) / selection_.goal.k_factor[sex];
}

void Relaxation::weigh(const Weights& weights) {
  const Goal& goal = selection_.goal;
  weights_ = weights;
  q_ = -weights.relationship / (goal.last_genint * goal.last_genint);
  for (std::int32_t i = 1; i <= candidates_.ncands; ++i) {
    const double limit = whole_.largest(i);
    l_[at(i)] =
        h_ * (weights.scaled_merit * centred_merit(i) - q_ * (goal.apv2(i) - h_ * shift_ * limit));
    set_slopes(i);
  }
}

void Relaxation::sum_relationships() {
  std::fill(b_.begin(), b_.end(), 0.0);
  const std::vector<double> none(b_.size(), 0.0);
  for (std::int32_t i = 1; i <= candidates_.ncands; ++i) {
    if (u_[at(i)] == 0.0) continue;
    const double* row = nullptr;
    rows_.read({&i, 1}, RowCache::Keep::kRows, &row);
    add_difference(b_.data(), row, none.data(), u_[at(i)], candidates_.ncands);
    b_[at(i)] += u_[at(i)] * (shift_ - whole_.own(i));
  }
}

Relaxation::Ends Relaxation::ends(int sex) const {
  Ends ends{0, 0, -kInfinity, kInfinity};
  const double twice = 2.0 * q_ * h_ * h_;
  for (std::int32_t i = candidates_.first(sex); i <= candidates_.last(sex); ++i) {
    const double value = l_[at(i)] - twice * b_[at(i)];
    if (value + up_[at(i)] > ends.gain) {
      ends.gainer = i;
      ends.gain = value + up_[at(i)];
    }
    if (value + down_[at(i)] < ends.loss) {
      ends.loser = i;
      ends.loss = value + down_[at(i)];
    }
  }
  return ends;
}

// Candidates with an own variance stop at whole units, where their slope changes.
void Relaxation::move(std::int32_t i, double matings) {
  const double unit = whole_.unit(i);
  u_[at(i)] += matings;
  const double nearest = whole_.decided(i) + std::round(whole_.units(i, u_[at(i)])) * unit;
  if (std::abs(u_[at(i)] - nearest) <= kWhole) u_[at(i)] = nearest;
  b_[at(i)] += matings * (shift_ - whole_.own(i));
  set_slopes(i);
}

bool Relaxation::step(const Ends& ends) {
  const std::int32_t i = ends.gainer, j = ends.loser;
  if (i == 0 || j == 0 || i == j || !(ends.advantage() > 0.0)) return false;
  const double unit = whole_.unit(i), u_i = u_[at(i)], u_j = u_[at(j)];
  const double next = (std::floor(whole_.units(i, u_i)) + 1.0) * unit + whole_.decided(i);
  const double before = (std::ceil(whole_.units(j, u_j)) - 1.0) * unit + whole_.decided(j);
  double most = std::min(whole_.largest(i) - u_i, u_j - whole_.fewest(j));
  if (whole_.own(i) > 0.0) most = std::min(most, next - u_i);
  if (whole_.own(j) > 0.0) most = std::min(most, u_j - before);
  const std::int32_t both[] = {i, j};
  const double* row[2];
  rows_.read(both, RowCache::Keep::kRows, row);
  const double squares = (rows_.own()[i] - whole_.own(i) + shift_) +
                         (rows_.own()[j] - whole_.own(j) + shift_) - 2.0 * row[0][j];
  const double bend = 2.0 * q_ * h_ * h_ * squares;
  const double matings = ends.advantage() < most * bend ? ends.advantage() / bend : most;
  if (!(matings > 0.0)) return false;
  add_difference(b_.data(), row[0], row[1], matings, candidates_.ncands);
  move(i, matings);
  move(j, -matings);
  return true;
}

// The most that the tangent's terms of a sex come to when a mating costs `price`, with what so many
// matings as there are cost.
double Relaxation::tangent_at_most(int sex, double price) const {
  const double quadratic = q_ * h_ * h_;
  double sum = price * selection_.nmatings;
  for (std::int32_t i = candidates_.first(sex); i <= candidates_.last(sex); ++i) {
    const double unit = whole_.unit(i), decided = whole_.decided(i) / unit;
    const double gain = (l_[at(i)] - 2.0 * quadratic * b_[at(i)] - price) * unit;
    if (!(gain > 0.0) && whole_.fewest(i) == 0.0) continue;
    const double own = quadratic * whole_.own(i) * unit * unit;
    double k = gain > 0.0 ? whole_.most(i) : whole_.least(i);
    if (own > 0.0) k = std::min(k, std::floor(0.5 * (gain / own + 1.0) - decided));
    k = std::max<double>(k, whole_.least(i));
    sum += k * gain - own * k * k + decided * (gain - own * (decided + 2.0 * k));
  }
  return sum;
}

// Any price bounds; the best lies between the ends' loss and gain.
void Relaxation::bound_by_tangent(RelaxedPlan& plan) const {
  const Goal& goal = selection_.goal;
  const double square = goal.last_genint * goal.last_genint;
  double at_plan = 0.0;
  for (std::size_t i = 1; i < u_.size(); ++i) at_plan += u_[i] * b_[i];
  at_plan *= q_ * h_ * h_;
  const double merit = weights_.scaled_merit * offset_;
  const double earlier = weights_.relationship * goal.vpapv / square;
  double sum = merit + earlier + at_plan;
  double terms = std::abs(merit) + std::abs(earlier) + std::abs(at_plan);
  for (const int sex : {kMale, kFemale}) {
    const Ends ends = this->ends(sex);
    double low = std::min(ends.loss, ends.gain), high = std::max(ends.loss, ends.gain);
    if (!std::isfinite(low)) low = high;
    if (!std::isfinite(high)) high = low;
    for (int k = 0; k < kHalvings; ++k) {
      const double third = (high - low) / 3.0;
      if (tangent_at_most(sex, low + third) <= tangent_at_most(sex, high - third))
        high -= third;
      else
        low += third;
    }
    const double most = tangent_at_most(sex, 0.5 * (low + high));
    sum += most;
    terms += std::abs(most);
  }
  // The evaluation's own rounding counts as well.
  plan.slack = kRounding * (terms + std::abs(weights_.scaled_merit * goal.expmerit));
  plan.bound = sum + plan.slack;
}

RelaxedPlan Relaxation::plan() const {
  const Goal& goal = selection_.goal;
  RelaxedPlan plan;
  double merit = 0.0, linear = 0.0, quadratic = 0.0;
  for (std::int32_t i = 1; i <= candidates_.ncands; ++i) {
    const double limit = whole_.largest(i);
    merit += u_[at(i)] * centred_merit(i);
    linear += u_[at(i)] * (goal.apv2(i) - h_ * shift_ * limit);
    quadratic += u_[at(i)] * b_[at(i)] + whole_.own(i) * chord(i);
  }
  plan.scaled_merit = h_ * merit + offset_;
  plan.relationship =
      (goal.vpapv + h_ * linear + h_ * h_ * quadratic) / (goal.last_genint * goal.last_genint);
  plan.value =
      weights_.scaled_merit * plan.scaled_merit + weights_.relationship * plan.relationship;
  bound_by_tangent(plan);
  return plan;
}

RelaxedPlan Relaxation::value(const Weights& weights) {
  weigh(weights);
  sum_relationships();
  return plan();
}

RelaxedPlan Relaxation::climb(const Weights& weights, double tolerance) {
  RelaxedPlan now = value(weights);
  std::int64_t next_bound = kFirstBound;
  for (std::int64_t steps = 1; steps <= kMostSteps; ++steps) {
    if (now.bound - now.slack - now.value <= tolerance) break;
    const Ends males = ends(kMale), females = ends(kFemale);
    if (!step(males.advantage() >= females.advantage() ? males : females)) break;
    if (steps < next_bound) continue;
    now = plan();
    next_bound += std::max(kFirstBound, steps / kGrowth);
  }
  return value(weights);  // sums that are carried on drift
}

}  // namespace qob
