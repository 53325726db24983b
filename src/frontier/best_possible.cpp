#include "frontier/best_possible.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <numbers>

namespace qob {
namespace {

constexpr double kGap = 1.0e-5;      // of a tangent, as a share of the curve's range
constexpr double kFineGap = 1.0e-8;  // of a single bound
constexpr double kLittle = 1.0e-4;   // weight that decides between plans that are equal otherwise
constexpr std::size_t kMostTangents = 200;

// 0 for most merit, infinity for least relationship.
double steepness(const Weights& weights) { return -weights.relationship / weights.scaled_merit; }

double value(const Weights& weights, double scaled_merit, double relationship) {
  return weights.scaled_merit * scaled_merit + weights.relationship * relationship;
}

}  // namespace

// Of plans of equal merit that of least relationship ends the curve, and the other way round.
BestPossible::BestPossible(Relaxation& relaxation, const Uses& start) : relaxation_(relaxation) {
  relaxation_.start(start);
  most_merit_ = climb({1.0, 0.0}, 0.0);
  const double relationship = most_merit_.plan.relationship;
  least_relationship_ = climb({0.0, -1.0}, kFineGap * std::abs(relationship));
  const RelaxedPlan &most = most_merit_.plan, &least = least_relationship_.plan;
  const double merit_range = most.scaled_merit - least.scaled_merit;
  const double relationship_range = most.relationship - least.relationship;
  is_point_ = !(merit_range > most.slack) || !(relationship_range > least.slack);
  if (is_point_) {
    tangents_ = {most_merit_, least_relationship_};
    return;
  }
  const double scale = merit_range / relationship_range, gap = kFineGap * merit_range;
  tangents_.push_back(climb({kLittle, -scale}, gap));
  relaxation_.start(most_merit_.matings);
  tangents_.insert(tangents_.begin(), climb({1.0, -kLittle * scale}, gap));
}

Tangent BestPossible::climb(const Weights& weights, double tolerance) {
  const RelaxedPlan plan = relaxation_.climb(weights, tolerance);
  return {weights, plan, relaxation_.matings()};
}

double BestPossible::merit_range() const {
  return tangents_.front().plan.scaled_merit - tangents_.back().plan.scaled_merit;
}
double BestPossible::relationship_range() const {
  return tangents_.front().plan.relationship - tangents_.back().plan.relationship;
}
double BestPossible::range(const Weights& weights) const {
  return value(weights, merit_range(), -relationship_range());
}

void BestPossible::add(const Weights& weights, std::size_t near) {
  relaxation_.start(tangents_[near].matings);
  const auto behind = std::upper_bound(
      tangents_.begin(), tangents_.end(), weights,
      [](const Weights& a, const Tangent& b) { return steepness(a) < steepness(b.weights); });
  tangents_.insert(behind, climb(weights, kGap * range(weights)));
}

Vertex BestPossible::vertex(const Tangent& a, const Tangent& b) const {
  const Weights &p = a.weights, &q = b.weights;
  const double determinant = p.scaled_merit * q.relationship - q.scaled_merit * p.relationship;
  if (determinant == 0.0) return {a.plan.scaled_merit, a.plan.relationship, q};
  return {(a.plan.bound * q.relationship - b.plan.bound * p.relationship) / determinant,
          (p.scaled_merit * b.plan.bound - q.scaled_merit * a.plan.bound) / determinant, q};
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

// A tangent is known to a gap, so that a neighbour of nearly its weights may lie below it
// everywhere: such a one touches nothing.
std::vector<Vertex> BestPossible::border() const {
  std::vector<const Tangent*> touching = {&most_merit_};
  std::vector<Vertex> border;
  const auto add = [&](const Tangent& tangent) {
    while (!border.empty() &&
           vertex(*touching.back(), tangent).relationship > border.back().relationship) {
      touching.pop_back();
      border.pop_back();
    }
    border.push_back(vertex(*touching.back(), tangent));
    touching.push_back(&tangent);
  };
  if (!is_point_) std::for_each(tangents_.begin(), tangents_.end(), add);
  add(least_relationship_);
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
  double least = std::min(most_merit_.plan.bound, bound({1.0, -breach}) + breach * relationship);
  interval(&BestPossible::place, -relationship, share);
  for (const Tangent& tangent : tangents_) {
    const Weights& w = tangent.weights;
    if (w.scaled_merit <= 0.0 || steepness(w) > breach) continue;
    least = std::min(least, (tangent.plan.bound - w.relationship * relationship) / w.scaled_merit);
  }
  return least;
}

// The weights that lead between tangent `after` and the next one.
Weights BestPossible::weights_between(std::size_t after) const {
  const Tangent &a = tangents_[after], &b = tangents_[after + 1];
  const bool is_chord =
      a.plan.relationship > b.plan.relationship && a.plan.scaled_merit > b.plan.scaled_merit;
  return is_chord ? chord(after) : Weights{1.0, -steepness(b.weights)};
}

Weights BestPossible::weights_at_relationship(double relationship, double share) {
  if (is_point_) return {1.0, -1.0};
  return weights_between(interval(&BestPossible::place, -relationship, share));
}

Weights BestPossible::weights_at_degrees(double degrees, double share) {
  if (is_point_) return {1.0, -1.0};
  return weights_between(interval(&BestPossible::degrees, degrees, share));
}

}  // namespace qob
