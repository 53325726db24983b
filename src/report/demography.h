// How old those are that live, and how large families are.
#pragma once

#include <vector>

#include "pedigree/pedigree.h"
#include "report/report.h"

namespace qob {

// By birth time, the youngest first, as far as anybody lives or is a candidate; those born at an
// unknown time come last. `birth` is the time step, "" if not known. living, chosen: by animal, 1 =
// is. Animals of unknown sex are not counted.
std::vector<AgeClass> age_classes(const Pedigree& pedigree, const Table<char>& living,
                                  const Table<char>& chosen);

// Parents by their number of recorded offspring, ascending.
std::vector<FamilySize> family_sizes(const Pedigree& pedigree);

}  // namespace qob
