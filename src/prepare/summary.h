// What a breeder reads of a prepared herd book on the screen.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "prepare/prepare.h"

namespace qob {

// Animals, time steps, candidates and what was found, by kind, in lines with their ends. file: the
// herd book; faults_file: where all that was found is, "" for nowhere.
std::string summary_of(const Prepared& prepared, const std::string& file,
                       const std::string& faults_file);

// What the summary consists of, for those who show it in another form.

struct HerdFigures {
  std::int64_t founders = 0, males = 0, females = 0, sexless = 0;
  double completeness = 0.0;  // mean of all animals
};
HerdFigures figures_of(const Prepared& prepared);

// "years 1990 to 2020: they part every parent from its offspring"
std::string text_of(const TimeSteps& steps);

// What parts decimals in the column of a field: "decimal points", "decimal commas", "" for nothing.
std::string_view decimals_of(const Book& book, Field field);

// How many findings of a kind the summary shows in full at most: the first ones.
std::int64_t most_shown(Kind kind);

}  // namespace qob
