#include "frontier/best_possible.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <numbers>

namespace qob {
namespace {

constexpr double kGap = 1.0e-5;      // of a tangent, as a share of the curve's range
constexpr double kFineGap = 1.0e-6;  // of a single bound
constexpr double kLittle = 1.0e-6;   // weight that decides between plans that are equal otherwise
constexpr std::size_t kMostTangents = 500;

// 0 for most merit, infinity for least relationship.
double steepness(const Weights& weights) { return -weights.relationship / weights.scaled_merit; }

double value(const Weights& weights, double scaled_merit, double relationship) {
  return weights.scaled_merit * scaled_merit + weights.relationship * relationship;
}

}  // namespace

BestPossible::BestPossible(Relaxation& relaxation, const Uses& start) : relaxation_(relaxation) {
  relaxation_.start(start);
  const auto climb = [&](const Weights& weights, double tolerance) {
    const RelaxedPlan plan = relaxation_.climb(weights, tolerance);
    return Tangent{weights, plan, relaxation_.matings()};
  };
  tangents_.push_back(climb({1.0, 0.0}, 0.0));
  const Tangent steepest = climb({0.0, -1.0}, kLittle * std::abs(tangents_[0].plan.relationship));
  tangents_.push_back(steepest);
  if (is_point()) return;
  const double scale = merit_range() / relationship_range();
  add({1.0, -kLittle * scale}, 0);
  add({kLittle, -scale}, 1);
}

double BestPossible::merit_range() const {
  return tangents_.front().plan.scaled_merit - tangents_.back().plan.scaled_merit;
}
double BestPossible::relationship_range() const {
  return tangents_.front().plan.relationship - tangents_.back().plan.relationship;
}
bool BestPossible::is_point() const {
  return !(merit_range() > 0.0) || !(relationship_range() > 0.0);
}
double BestPossible::range(const Weights& weights) const {
  return value(weights, merit_range(), -relationship_range());
}

void BestPossible::add(const Weights& weights, std::size_t near) {
  relaxation_.start(tangents_[near].matings);
  const RelaxedPlan plan = relaxation_.climb(weights, kGap * range(weights));
  const auto behind = std::upper_bound(
      tangents_.begin(), tangents_.end(), weights,
      [](const Weights& a, const Tangent& b) { return steepness(a) < steepness(b.weights); });
  tangents_.insert(behind, {weights, plan, relaxation_.matings()});
}

Vertex BestPossible::vertex(const Tangent& a, const Tangent& b) const {
  const Weights &p = a.weights, &q = b.weights;
  const double determinant = p.scaled_merit * q.relationship - q.scaled_merit * p.relationship;
  if (determinant == 0.0) return {a.plan.scaled_merit, a.plan.relationship};
  return {(a.plan.bound * q.relationship - b.plan.bound * p.relationship) / determinant,
          (p.scaled_merit * b.plan.bound - q.scaled_merit * a.plan.bound) / determinant};
}

// The weights by which the plans of tangent `after` and the next one are equally good.
Weights BestPossible::chord(std::size_t after) const {
  const RelaxedPlan &a = tangents_[after].plan, &b = tangents_[after + 1].plan;
  return {1.0, -(a.scaled_merit - b.scaled_merit) / (a.relationship - b.relationship)};
}

// How far the border stands out there, as a share of the range; 0 where nothing lies between.
double BestPossible::distance(std::size_t after) const {
  const Tangent &a = tangents_[after], &b = tangents_[after + 1];
  const Weights weights = chord(after);
  if (!(a.plan.relationship > b.plan.relationship) || !(a.plan.scaled_merit > b.plan.scaled_merit))
    return 0.0;
  if (!(steepness(weights) > steepness(a.weights) && steepness(weights) < steepness(b.weights)))
    return 0.0;
  const Vertex out = vertex(a, b);
  return (value(weights, out.scaled_merit, out.relationship) -
          value(weights, a.plan.scaled_merit, a.plan.relationship)) /
         range(weights);
}

void BestPossible::trace(double share) {
  while (tangents_.size() < kMostTangents) {
    std::size_t farthest = 0;
    double most = 0.0;
    for (std::size_t i = 0; i + 1 < tangents_.size(); ++i) {
      const double d = distance(i);
      if (d <= most) continue;
      most = d;
      farthest = i;
    }
    if (most <= share) return;
    add(chord(farthest), farthest);
  }
}

std::vector<Vertex> BestPossible::border() const {
  const RelaxedPlan &first = tangents_.front().plan, &last = tangents_.back().plan;
  std::vector<Vertex> border = {{first.bound, first.relationship}};
  for (std::size_t i = 0; i + 1 < tangents_.size(); ++i)
    border.push_back(vertex(tangents_[i], tangents_[i + 1]));
  border.push_back({last.scaled_merit, -last.bound});
  return border;
}

double BestPossible::bound(const Weights& weights) {
  std::size_t near = 0;
  while (near + 1 < tangents_.size() && steepness(tangents_[near + 1].weights) < steepness(weights))
    ++near;
  relaxation_.start(tangents_[near].matings);
  return relaxation_.climb(weights, kFineGap * std::abs(range(weights))).bound;
}

double BestPossible::degrees(const RelaxedPlan& plan) const {
  const RelaxedPlan &first = tangents_.front().plan, &last = tangents_.back().plan;
  return std::atan2((first.relationship - plan.relationship) / relationship_range(),
                    (plan.scaled_merit - last.scaled_merit) / merit_range()) *
         180.0 / std::numbers::pi;
}

// The tangent behind which the wanted position lies. Tangents are added there until the border
// stands out by no more than `share`.
std::size_t BestPossible::interval(Position position, double wanted, double share) {
  std::size_t i = 0;
  do {
    i = 0;
    while (i + 2 < tangents_.size() && (this->*position)(tangents_[i + 1].plan) < wanted) ++i;
    if (distance(i) <= share) break;
    add(chord(i), i);
  } while (tangents_.size() < kMostTangents);
  return i;
}

double BestPossible::bound_under(double relationship, double breach, double share) {
  double least = bound({1.0, -breach}) + breach * relationship;
  interval(&BestPossible::place, -relationship, share);
  for (const Tangent& tangent : tangents_) {
    const Weights& w = tangent.weights;
    if (w.scaled_merit <= 0.0 || steepness(w) > breach) continue;
    least = std::min(least, (tangent.plan.bound - w.relationship * relationship) / w.scaled_merit);
  }
  return least;
}

Weights BestPossible::weights_at_relationship(double relationship, double share) {
  return is_point() ? Weights{1.0, -1.0}
                    : chord(interval(&BestPossible::place, -relationship, share));
}

Weights BestPossible::weights_at_degrees(double degrees, double share) {
  return is_point() ? Weights{1.0, -1.0} : chord(interval(&BestPossible::degrees, degrees, share));
}

}  // namespace qob
