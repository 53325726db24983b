// The plans of a frontier, taken up from the folders of its finished runs and valued with full
// digits, and the curve above them.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "driver/frontier_folders.h"
#include "driver/frontier_points.h"
#include "driver/shared_herd.h"
#include "frontier/possible.h"
#include "report/results.h"

namespace qob {

struct FrontierPlan {
  PointRun run;
  std::string how;  // "greedy", "exchanges" or "search"
  MatesetValue value;
  std::optional<double> constraint;  // largest average relationship, where that is the goal
  std::int64_t males = 0, females = 0;
  std::optional<Reach> reach;
  double degrees = 0.0;  // between most merit and least relationship; NaN where there is no curve
  double seconds = 0.0;  // that it took to be planned
  std::vector<ListedMating> matings;

  // How much of what any plan could reach it reaches, 0 to 1; NaN where that is not known.
  double share() const;
};

// A place on the border of what is possible.
struct CurvePoint {
  double weight, scaled_merit, relationship, rate, degrees;  // weight infinite at its end
};

struct Frontier {
  std::vector<CurvePoint> curve;  // from most merit to least relationship
  std::vector<FrontierPlan> plans;
  std::size_t marked = 0;  // the target's plan, or the herd's own
};

// possible: of the herd. Stops at a mating list that is not of this herd.
Frontier collect(const SharedHerd& herd, Possible& possible, const FrontierFolders& folders,
                 const std::vector<PointRun>& finished);

// 0.5 / rate; NaN where inbreeding does not rise.
double effective_size(double rate);

}  // namespace qob
