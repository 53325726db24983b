// The points of a frontier: goals between most merit and least relationship, and the runs that are
// made for each.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "core/parameters.h"
#include "driver/frontier_arguments.h"
#include "driver/frontier_parameters.h"
#include "frontier/best_possible.h"

namespace qob {

// What somebody wants to reach: a rate of inbreeding, an effective size ("ne") or degrees.
struct Target {
  std::string_view kind;
  double value;
};

struct Point {
  std::string name;  // w20, rate0.01, ne50, degrees45, own
  OCSParameters goal;
  std::optional<Target> target;
  bool is_own = false;  // the herd's own goal
};

// A run of a point, in the folder of that name.
struct PointRun {
  Point point;
  std::string folder;  // w20, or w20_s1 of a search with seed 1
  std::int32_t seed = 0;
  RunParameters parameters;

  bool is_search() const { return seed > 0; }
};

Point own_point(const OCSParameters& own);
// The others: targets, weights, and points spread over the curve, which may be null where there is
// none. None twice.
std::vector<Point> other_points(const FrontierArguments& arguments, const OCSParameters& own,
                                BestPossible* curve);

// The run that makes a plan by itself: greedily, and by exchanges.
PointRun direct_run(const Point& point, const GivenParameters& given);
// The run that searches as the herd's own parameters say, with that seed.
PointRun searched_run(const Point& point, const GivenParameters& given, std::int32_t seed);

}  // namespace qob
