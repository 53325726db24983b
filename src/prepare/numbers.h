// Columns of numbers, whose decimals stand behind a point or a comma.
#pragma once

#include "prepare/herd.h"

namespace qob {

// Fills ebv (not a number where there is none) and matings (0 where there are none) from their
// columns. What is no number is a fault; a column that has decimal points and commas is one of the
// table. Decimal commas are told.
void read_numbers(Book& book);

}  // namespace qob
