// From a herd book to what a run needs: its animals with numbers in which parents come first, time
// steps, who may be mated, and everything that is wrong with it.
//
// The steps stand in a file each and in this order: columns (which holds what), animals (who there
// is), dates (when they were born), parentage (who descends from whom, and can it be), time_steps
// (in which steps), numbers (what their breeding values are), candidacy (who may be mated),
// rules (what rules of matings say of whom), numbering. Each adds to one Book and goes on behind
// what is wrong, so that all faults are known at once. Nothing here reads or writes a file: cells
// come in a Sheet, and data_files makes the texts of the files.
#pragma once

#include <array>

#include "prepare/candidacy.h"
#include "prepare/herd.h"
#include "prepare/labels.h"
#include "prepare/rules.h"
#include "prepare/time_steps.h"

namespace qob {

struct Prepared {
  Book book;
  TimeSteps steps;
  std::array<Candidacy, 2> candidates;  // males, females
  std::int64_t matings;                 // to plan; -1: there are no candidates
  Labels labels;
  Table<double> completeness;  // by animal, over five generations
  Table<std::int32_t> animal;  // by number in the data file
  std::vector<HerdRule> rules;

  // Whether a data file can be written.
  bool is_sound() const { return !book.findings.hinder(); }
  bool has_candidates() const { return matings >= 0; }
};

// sheet and options must live as long as what is returned.
Prepared prepare(const Sheet& sheet, const PrepareOptions& options);

}  // namespace qob
