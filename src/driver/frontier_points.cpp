#include "driver/frontier_points.h"

#include <algorithm>
#include <cmath>

#include "core/edit.h"

namespace qob {
namespace {

constexpr double kMostDegrees = 90.0;
constexpr double kShare = 1.0e-3;  // of the curve's range to which a point is found
constexpr int kDigits = 4;         // of a weight that comes from the curve

double rounded(double x) {
  if (x == 0.0) return 0.0;
  const int digits = kDigits - 1 - static_cast<int>(std::floor(std::log10(x)));
  const double unit = std::pow(10.0, std::abs(digits));
  return digits >= 0 ? std::round(x * unit) / unit : std::round(x / unit) * unit;
}

OCSParameters penalty(OCSParameters goal, double weight) {
  goal.optimise = "penalty";
  goal.w_merit = 1.0;
  goal.w_relationship = weight == 0.0 ? 0.0 : -weight;
  return goal;
}

OCSParameters constraint(OCSParameters goal, double rate) {
  goal.optimise = "constraint";
  goal.dfconstraint = rate;
  return goal;
}

double weight_at(double degrees, BestPossible& curve) {
  return rounded(-curve.weights_at_degrees(degrees, kShare).relationship);
}

}  // namespace

Point own_point(const OCSParameters& own) { return {"own", own, std::nullopt, true}; }

std::vector<Point> other_points(const FrontierArguments& arguments, const OCSParameters& own,
                                BestPossible* curve) {
  std::vector<Point> points;
  const auto add = [&](std::string name, const OCSParameters& goal, std::optional<Target> target) {
    const auto same = [&](const Point& point) { return point.name == name; };
    if (std::any_of(points.begin(), points.end(), same)) return;
    points.push_back({std::move(name), goal, target});
  };
  const auto add_weight = [&](double weight) {
    add("w" + shortest(weight), penalty(own, weight), std::nullopt);
  };
  if (arguments.target_rate) {
    const double rate = *arguments.target_rate;
    add("rate" + shortest(rate), constraint(own, rate), Target{"rate", rate});
  }
  if (arguments.target_ne) {
    const double size = *arguments.target_ne;
    add("ne" + shortest(size), constraint(own, 0.5 / size), Target{"ne", size});
  }
  if (arguments.target_degrees && curve != nullptr) {
    const double degrees = *arguments.target_degrees;
    add("degrees" + shortest(degrees), penalty(own, weight_at(degrees, *curve)),
        Target{"degrees", degrees});
  }
  for (const double weight : arguments.weights) add_weight(weight);
  for (int k = 0; curve != nullptr && k < arguments.points; ++k) {
    const double degrees =
        arguments.points == 1 ? kMostDegrees / 2.0 : kMostDegrees * k / (arguments.points - 1);
    add_weight(weight_at(degrees, *curve));
  }
  return points;
}

// A seed from the clock would not be repeated.
PointRun direct_run(const Point& point, const GivenParameters& given) {
  RunParameters run{point.goal, given.groups.algorithm, {true, true}};
  run.algorithm.generations = -1;
  run.algorithm.popsize = 1;
  if (run.algorithm.seed_rng == 0) run.algorithm.seed_rng = 1;
  return {point, point.name, 0, run};
}

PointRun searched_run(const Point& point, const GivenParameters& given, std::int32_t seed) {
  RunParameters run{point.goal, given.groups.algorithm, given.groups.improvement};
  run.algorithm.seed_rng = seed;
  return {point, point.name + "_s" + std::to_string(seed), seed, run};
}

}  // namespace qob
