#include "analysis/rate_of_rise.h"

#include <algorithm>
#include <cmath>

#include "core/numbers.h"

namespace qob {
namespace {

struct Slope {
  double b = 0.0, se = 0.0;
};

// Least squares of ln(1 - value) on birth time; three or more birth times.
Slope regression(const std::vector<Observation>& observations) {
  const auto n = static_cast<double>(observations.size());
  double mean_x = 0.0, mean_y = 0.0;
  for (const Observation& o : observations) {
    mean_x += o.birth_time;
    mean_y += std::log1p(-o.value);
  }
  mean_x /= n;
  mean_y /= n;
  double xx = 0.0, xy = 0.0, residual = 0.0;
  for (const Observation& o : observations) {
    const double x = o.birth_time - mean_x;
    xx += x * x;
    xy += x * (std::log1p(-o.value) - mean_y);
  }
  const double b = xy / xx;
  for (const Observation& o : observations) {
    const double e = std::log1p(-o.value) - mean_y - b * (o.birth_time - mean_x);
    residual += e * e;
  }
  return {b, std::sqrt(residual / (n - 2.0) / xx)};
}

std::vector<std::int32_t> birth_times(const std::vector<Observation>& observations) {
  std::vector<std::int32_t> times;
  for (const Observation& o : observations) times.push_back(o.birth_time);
  std::sort(times.begin(), times.end());
  times.erase(std::unique(times.begin(), times.end()), times.end());
  return times;
}

}  // namespace

std::int32_t recent_since(const std::vector<std::int32_t>& times, double interval) {
  const auto third_last = times.size() < 3 ? times.begin() : times.end() - 3;
  if (!(interval > 0.0)) return times.front();
  const double start = times.back() - 3.0 * interval;
  return *std::find_if(times.begin(), third_last, [&](std::int32_t t) { return t >= start; });
}

RateOfRise rate_of_rise(std::vector<Observation> observations, double interval) {
  RateOfRise rise;
  std::erase_if(observations, [](const Observation& o) { return !(o.value < 1.0); });
  const std::vector<std::int32_t> times = birth_times(observations);
  if (times.size() < 3) {
    rise.why_not = "fewer than three birth times to go by";
    return rise;
  }
  rise.first = recent_since(times, interval);
  rise.last = times.back();
  std::erase_if(observations, [&](const Observation& o) { return o.birth_time < rise.first; });
  rise.n = std::ssize(observations);
  if (!(interval > 0.0)) {
    rise.why_not = "the generation interval is not known";
    return rise;
  }
  const Slope slope = regression(observations);
  rise.rate = -std::expm1(slope.b * interval);
  rise.se = interval * std::exp(slope.b * interval) * slope.se;
  if (rise.rate < kTiny) rise.why_not = "no rise over these birth times";
  return rise;
}

}  // namespace qob
