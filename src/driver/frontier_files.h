// What is told of a frontier: a table for programs and spreadsheets, JSON for the page, and a table
// for the screen.
#pragma once

#include <functional>
#include <string>

#include "analysis/last_birth_time.h"
#include "driver/frontier_plans.h"

namespace qob {

// One line a plan, in their order; numbers have the fewest digits that read back to the same, what
// is not known is empty.
std::string csv_of(const Frontier& frontier);

// How a frontier was made, and of whom.
struct FrontierMaking {
  std::string program, time, parameter_file, data_file, herd;
  // What the herd book calls the animal of that identifier; "" where there is none.
  std::function<std::string(std::int32_t)> name;
  LastBirthTime last;
};

// What is no number is null; bytes that are no UTF-8 become U+FFFD.
std::string json_of(const Frontier& frontier, const Selection& selection,
                    const FrontierMaking& making);

// Lines for a person: of each plan that no search made, or of all, by degrees.
std::string table_of(const Frontier& frontier);

}  // namespace qob
