#include "core/random.h"

#include "system/clock.h"

namespace qob {

std::int32_t Random::zigset(std::int32_t seed) {
  jsr_ = static_cast<std::uint32_t>(seed);
  if (seed == 0) {
    jsr_ = static_cast<std::uint32_t>(clock_count());
    if (jsr_ == 0) jsr_ = 1;  // the stream would never leave 0
  }
  return static_cast<std::int32_t>(jsr_);
}

std::int64_t Random::ceiling_of_draw(std::int64_t n) {
  const double product = uni() * static_cast<double>(n);
  const auto truncated = static_cast<std::int64_t>(product);
  return static_cast<double>(truncated) < product ? truncated + 1 : truncated;
}

void cpu_second(float& cpu, float& user, float& sys) {
  cpu = processor_seconds();
  user = 0.0F;
  sys = 0.0F;
}

}  // namespace qob
