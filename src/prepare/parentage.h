// Whether what a herd book says of parents can be true.
#pragma once

#include "prepare/herd.h"

namespace qob {

// Finds animals that are their own parent, or have one animal as sire and dam, and loops of
// descent; every such link is a fault and is cut, so that the pedigree has an order. Reads births,
// which tell which link of a loop is the wrong one. Fills sex and
// castrated: what a row says, and where it says nothing what its use as a parent says. Sexes that
// cannot be read or do not fit their use are faults.
void check_parents(Book& book);

// The animals so that parents come before their offspring; among those that could be next, in the
// order of the herd. Of a pedigree without loops.
Table<std::int32_t> parents_first(const Herd& herd);

}  // namespace qob
