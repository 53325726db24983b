// The rate per generation at which inbreeding or coancestry rises, from its regression on birth
// time.
//
// In a population of constant effective size 1 - F falls by the same factor each generation
// (Falconer & Mackay 1996, ch. 3 and 4), so ln(1 - F) falls along a straight line of slope b per
// time step, and
//
//   rate = 1 - exp(b L),  L: generation interval;  effective size = 1 / (2 rate)
//
// (Perez-Enciso 1995, J. Anim. Breed. Genet. 112:327; Cervantes et al. 2011, J. Anim.
// Breed. Genet. 128:56, of coancestry). The standard error is that of the regression, L exp(b L)
// se(b) by the delta method.
#pragma once

#include <cstdint>
#include <limits>
#include <string>
#include <vector>

namespace qob {

struct Observation {
  std::int32_t birth_time = 0;
  double value = 0.0;  // F of an animal, or the coancestry of those born then
};

struct RateOfRise {
  double rate = std::numeric_limits<double>::quiet_NaN();  // per generation; negative: a fall
  double se = std::numeric_limits<double>::quiet_NaN();
  std::int64_t n = 0;                // observations of the span
  std::int32_t first = 0, last = 0;  // its birth times
  std::string why_not;  // in plain words, why no effective size follows; "" if one does
};

// The first birth time of what counts as recent: the last three generation intervals, for a
// population is not managed in one way for longer and a slope over less is mostly chance; and at
// least three birth times, for two always lie on a line. times: different ones, ascending, one or
// more. All of them where the interval is none.
std::int32_t recent_since(const std::vector<std::int32_t>& times, double interval);

// Over the recent ones of the observations' birth times. A value of 1 has no logarithm and is left
// out.
RateOfRise rate_of_rise(std::vector<Observation> observations, double interval);

}  // namespace qob
