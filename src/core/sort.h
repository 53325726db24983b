// Ascending sort of real keys that carries integer indices along.
#pragma once

#include <cstdint>
#include <utility>

#include "core/tables.h"

namespace qob {

// Sorts key(left..right) ascending in place and moves index(left..right) with it. The order among
// equal keys is fixed by the method (quicksort around the middle key, exchange sort for up to six)
// and is not the order before. A key that is not a number ends up anywhere; nothing else suffers.
//
// Every order of keys is sorted in a depth of calls below log2 of their number.
inline void quick_sort(Table<double>& key, Table<std::int32_t>& index, std::int64_t left,
                       std::int64_t right) {
  const auto exchange = [&](std::int64_t a, std::int64_t b) {
    std::swap(key(a), key(b));
    std::swap(index(a), index(b));
  };
  while (right - left > 5) {
    const double pivot = key((left + right) / 2);
    std::int64_t i = left - 1;
    std::int64_t j = right + 1;
    for (;;) {
      do {
        ++i;
      } while (i < right && !(key(i) >= pivot));
      do {
        --j;
      } while (j > left && !(key(j) <= pivot));
      if (j <= i) break;
      exchange(i, j);
    }
    if (i == j) ++i;
    const bool left_is_smaller = j - left < right - i;
    if (left_is_smaller) {
      quick_sort(key, index, left, j);
      left = i;
    } else {
      quick_sort(key, index, i, right);
      right = j;
    }
  }
  for (std::int64_t p = left; p < right; ++p) {
    for (std::int64_t q = p + 1; q <= right; ++q) {
      if (key(q) < key(p)) exchange(p, q);
    }
  }
}

}  // namespace qob
