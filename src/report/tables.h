// The tables of a report: matings, candidates, animals, trend, founders, rules if there are any.
// Each is made row by row while it is written, so that a million animals take no memory here.
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "analysis/animal_statistics.h"
#include "pedigree/pedigree.h"
#include "report/names.h"
#include "report/report.h"

namespace qob {

// Nothing is a cell that stays empty; so does a real that is no number.
using Cell = std::variant<std::monostate, std::string, std::int64_t, double>;

struct ReportTable {
  std::string_view name;  // of its file and sheet
  std::vector<std::string_view> headings;
  std::int64_t rows = 0;
  std::function<Cell(std::int64_t row, std::size_t column)> cell;  // both from 0
};

// What the tables tell of all animals, by number in the pedigree (from 1).
struct AnimalFigures {
  const Pedigree& pedigree;
  const Names& names;
  const AnimalStatistics& statistics;
  const Table<double>& mean_kinship;          // with the living
  const Table<double>& complete_generations;  // complete generations equivalent
  const Table<double>& contribution;          // share of the genes of the last birth time
  const std::vector<ReportedFounder>&
      founders;  // all, by rank; `animal` is a number of the pedigree
};

// Calls `use` for each table. Its cells may be asked for as long as `use` runs.
void for_each_table(const Report& report, const AnimalFigures& animals,
                    const std::function<void(const ReportTable&)>& use);

}  // namespace qob
