// From the rows of a herd book to its animals and their parents' numbers.
#pragma once

#include "prepare/herd.h"

namespace qob {

// Fills row, identifier and parents of the book's herd. An identifier that is none, rows with too
// many cells and rows of one identifier that differ are faults; the same row twice is one; a parent
// without a row becomes an animal without parents. Identifiers are compared as they are.
void enter_animals(Book& book);

}  // namespace qob
