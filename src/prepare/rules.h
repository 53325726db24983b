// The breeder's rules of matings: whom of the herd they name.
#pragma once

#include <cstdint>
#include <vector>

#include "prepare/herd.h"

namespace qob {

// A rule and the animals that it names; 0: it names none there.
struct HerdRule {
  Rule rule;
  std::int32_t a, b;
};

// The rules of the options without faults, in the order of their file; adds a finding for each
// fault of that file, in the order of lines: those of its reader, animals that are not in the herd,
// are of another sex than the rule says, or cannot have the matings that it asks for. Of a herd
// whose sexes and matings are known, or that is empty: then nothing is said of animals.
std::vector<HerdRule> find_rules(Book& book);

}  // namespace qob
