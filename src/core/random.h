// Every random number of a run: one 32-bit xorshift stream and uniform deviates on top of it
// (Marsaglia & Tsang 2000, J. Stat. Softw. 5(8); Marsaglia 2003, J. Stat. Softw. 8(14)). And the
// processor time.
#pragma once

#include <cstdint>

namespace qob {

class Random {
 public:
  // Starts the stream at `seed`; 0 takes the seed from the clock, so that such runs differ. Returns
  // the seed that was taken.
  std::int32_t zigset(std::int32_t seed);

  // The next integer of 32 bits.
  std::int32_t shr3() {
    const std::uint32_t jz = jsr_;
    jsr_ ^= jsr_ << 13;
    jsr_ ^= jsr_ >> 17;
    jsr_ ^= jsr_ << 5;
    return static_cast<std::int32_t>(jz + jsr_);
  }

  // The next real, uniform in the open interval (0, 1).
  double uni() { return 0.5 + shr3() * 2.328306e-10; }

  // An integer 1..n, each equally likely: the part of u*n before the point is cut off and 1 added
  // unless nothing was cut off. 0 or below when n is.
  std::int64_t ceiling_of_draw(std::int64_t n);

 private:
  std::uint32_t jsr_ = 123456789;
};

// Sets `cpu` to the process's CPU time in seconds, user and system together, and the other two
// to 0.
void cpu_second(float& cpu, float& user, float& sys);

}  // namespace qob
