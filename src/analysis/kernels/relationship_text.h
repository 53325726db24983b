// A relationship as the relationship file shows it: the format G12.6 without its blanks, for
// 1e-8 <= a < 10 by integers. Four times as fast as the general form and its trimming (g++ 12).
#pragma once

#include <cstddef>

namespace qob {

inline constexpr std::size_t kRelationshipWidth = 12;

// Writes `a` at `at`, where there is room for kRelationshipWidth characters. Returns its end.
char* put_relationship(char* at, double a);

}  // namespace qob
