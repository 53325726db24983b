// Single precision where it is wanted, and what counts as zero.
#pragma once

namespace qob {

// Marks a step that is wanted in single precision.
template <class Number>
float single(Number x) {
  return static_cast<float>(x);
}

// Relationships, contributions and spreads below it count as zero.
inline constexpr double kTiny = static_cast<double>(1.0e-8F);

}  // namespace qob
