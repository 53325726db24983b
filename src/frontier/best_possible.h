// The curve of the best possible: the most merit that any plan in whole matings can have at an
// average relationship, from most merit to least relationship.
//
// Each pair of weights gives a tangent: no plan lies beyond it. What lies beneath all tangents is
// convex, and its border comes down to the best plans as tangents are added, each where the border
// stands out farthest from the plans that touch it (the sandwich method: Rote 1992, Computing
// 48:337):
//
//   merit |        _.--x--x      x  vertices of the border, where two tangents meet
//         |     x-'  o           o  plans in parts of matings, which touch it
//         |   o
//         |  x
//         +------------------
//              relationship
#pragma once

#include <vector>

#include "frontier/relaxation.h"

namespace qob {

// A tangent, with the plan in parts of matings that came closest to it.
struct Tangent {
  Weights weights;
  RelaxedPlan plan;
  PartMatings matings;
};

// A place on the border, in scaled merit and average relationship of the next generation.
struct Vertex {
  double scaled_merit = 0.0, relationship = 0.0;
  Weights steeper;  // of the tangent that goes on from there to less relationship
};

class BestPossible {
 public:
  // start: a legal plan. The relaxation must outlive it.
  BestPossible(Relaxation& relaxation, const Uses& start);

  // Adds tangents until the border stands out by no more than `share` of the curve's range.
  void trace(double share);

  // Whether the plan of most merit is that of least relationship. Any weights of both lead to it
  // then.
  bool is_point() const { return is_point_; }
  // The tangent of merit alone. Its plan has whole matings.
  const Tangent& most_merit() const { return most_merit_; }
  // From most merit to least relationship.
  const std::vector<Tangent>& tangents() const { return tangents_; }
  std::vector<Vertex> border() const;

  // The value that no plan exceeds by these weights, from a tangent of their own.
  double bound(const Weights& weights);
  // What no plan exceeds when `breach` is taken off its scaled merit for each unit of average
  // relationship beyond `relationship`: that is at least as much as any smaller weight of what lies
  // beyond takes off, so that each tangent less steep than the breach bounds it. Tangents are added
  // until the least of the bounds is known to `share` of the range.
  double bound_under(double relationship, double breach, double share);
  // The weights at which the border has that average relationship, or the nearest it has.
  Weights weights_at_relationship(double relationship, double share);
  // The same at an angle, in degrees, between most merit (0) and least relationship (90): with
  // merit and relationship as shares of the curve's range, that of the line from the corner of
  // least merit and most relationship.
  Weights weights_at_degrees(double degrees, double share);

 private:
  using Position = double (BestPossible::*)(const RelaxedPlan&) const;

  double merit_range() const;
  double relationship_range() const;
  double range(const Weights& weights) const;
  Vertex vertex(const Tangent& a, const Tangent& b) const;
  Weights chord(std::size_t after) const;
  double distance(std::size_t after) const;
  Weights weights_between(std::size_t after) const;
  Tangent climb(const Weights& weights, double tolerance);
  void add(const Weights& weights, std::size_t near);
  double place(const RelaxedPlan& plan) const { return -plan.relationship; }
  double degrees(const RelaxedPlan& plan) const;
  std::size_t interval(Position position, double wanted, double share);

  Relaxation& relaxation_;
  Tangent most_merit_, least_relationship_;
  bool is_point_ = false;
  std::vector<Tangent> tangents_;  // between those two
};

}  // namespace qob
