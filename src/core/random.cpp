#include "core/random.h"

#include <chrono>
#include <ctime>

namespace qob {

void Random::zigset(std::int32_t seed) {
  jsr_ = static_cast<std::uint32_t>(seed);
  if (seed == 0) {
    const auto count = std::chrono::system_clock::now().time_since_epoch().count();
    jsr_ = static_cast<std::uint32_t>(count);
    if (jsr_ == 0) jsr_ = 1;  // the stream would never leave 0
  }
}

std::int64_t Random::ceiling_of_draw(std::int64_t n) {
  const double product = uni() * static_cast<double>(n);
  const auto truncated = static_cast<std::int64_t>(product);
  return static_cast<double>(truncated) < product ? truncated + 1 : truncated;
}

void cpu_second(float& cpu, float& user, float& sys) {
  cpu = static_cast<float>(std::clock()) / static_cast<float>(CLOCKS_PER_SEC);
  user = 0.0F;
  sys = 0.0F;
}

}  // namespace qob
