// Random pedigrees: shallow and deep, inbred, with selfing and unknown parents.
#pragma once

#include <algorithm>
#include <random>

#include "core/tables.h"

namespace qob::test {

inline int draw(std::mt19937& rng, int n) {
  return static_cast<int>(rng() % static_cast<unsigned>(n));
}

// Generations of `size` animals and a last one of `last`; parents come from the `back` animals
// before the generation, sires from the first `sires` of them. The others are chances in per cent.
inline constexpr struct {
  int generations, size, last, back, sires, unknown, selfed;
} kShapes[] = {{6, 30, 200, 60, 60, 15, 5},  // overlapping generations, unknown parents
               {24, 5, 40, 5, 5, 0, 0},      // up to level 26, where nothing is rounded
               {29, 12, 500, 12, 12, 2, 5},  // just beyond it: sums rounded in another order differ
               {220, 4, 60, 4, 2, 1, 10},    // very deep
               {70, 1, 40, 1, 1, 0, 100},    // a line of selfing
               {3, 200, 400, 200, 1, 0, 0}};  // one sire a generation

// The k-th shape, from 0, and over again. 2 x animals, parents by animal.
inline Table2<std::int32_t> random_pedigree(int k, std::mt19937& rng) {
  const auto& s = kShapes[static_cast<std::size_t>(k) % std::size(kShapes)];
  Table2<std::int32_t> newped(2, s.generations * s.size + s.last, 0);
  for (int i = s.size + 1; i <= newped.columns(); ++i) {
    const int start = std::min((i - 1) / s.size, s.generations) * s.size;
    const int back = std::min(s.back, start);
    newped(1, i) = start - back + 1 + draw(rng, std::min(s.sires, back));
    newped(2, i) = draw(rng, 100) < s.selfed ? newped(1, i) : start - draw(rng, back);
    if (draw(rng, 100) < s.unknown) newped(1 + draw(rng, 2), i) = 0;
  }
  return newped;
}

}  // namespace qob::test
