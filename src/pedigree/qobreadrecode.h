// Reads the data file, checks it and numbers its animals.
//
// Two passes over the file. The first numbers the animals as they appear, so that parents come
// before their offspring and all later work can go through the pedigree in one direction; it lists
// what does not fit that order. The second takes up the values, and lists offspring that are not
// younger than their parents. Between the passes only identifiers are held, in a digital search
// tree (idtree).
#pragma once

#include <cstdint>

#include "core/qobtypestools.h"
#include "pedigree/pedigree.h"

namespace qob {

// Reads the file named by `datafile`, one animal a line:
//
//   Animal_id Sire_is Dam_id sex birth_time max_matings ebv optional_text
//
// and returns its animals, all but their inbreeding. Animals are numbered 1..maxid in the order
// in which they first appear, within a record sire, dam, animal; the file lists parents before
// their offspring, so a parent's number is below its offspring's. Faults of the pedigree are
// listed, all of them, before they stop the run, and so are those of the values of a sound
// pedigree; a value that is not a number stops it at once.
Pedigree readrecode(Run& run);

// The file of old and new identifiers, one line an animal: "(2I10)".
void openfilerecodedids(Run& run, Unit& unit);
void printrecodedids(Unit& unit, std::int32_t old_id, std::int32_t new_id);
void closefilerecodedids(Run& run, Unit& unit);

}  // namespace qob
