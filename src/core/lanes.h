// Vector lanes: several sums side by side, each lane in its own order of operations, so that every
// lane gives the bits that it would give alone.
#pragma once

#include <cstddef>

namespace qob {

// N values of type T, as one operand of the usual arithmetic; N * sizeof(T) is a power of two.
// Pass it by reference or keep it local: how it is passed by value depends on the processor. In a
// table wrap it in a struct with `alignas`: template arguments lose the alignment.
template <class T, std::size_t N>
struct LanesOf {
  typedef T type __attribute__((vector_size(N * sizeof(T))));
};
template <class T, std::size_t N>
using Lanes = typename LanesOf<T, N>::type;

}  // namespace qob

// Marks a function that is compiled for wide vectors too; the processor decides which form runs.
// What it calls must be inlined to take part. The sanitizers do not go with it, nor does clang 14.
#if defined(__x86_64__) && defined(__GNUC__) && !defined(__clang__) && \
    !defined(__SANITIZE_ADDRESS__) && !defined(__SANITIZE_THREAD__) && defined(__OPTIMIZE__)
#define QOB_VECTOR_CLONES __attribute__((target_clones("avx512f", "avx2", "default")))
#else
#define QOB_VECTOR_CLONES
#endif
