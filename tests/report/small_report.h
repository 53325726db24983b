// A report of three animals, two of them mated, with names that no format may stumble over.
//
//   "=cmd()" (7, male)   "<img onerror=...>" (5, female)
//              \         /
//              Ø, 12" (9, female)
#pragma once

#include <limits>
#include <string>

#include "core/sheet.h"
#include "report/tables.h"

namespace qob::test {

inline Report small_report() {
  Report report;
  report.title = "A \"herd\"\nof two lines </script>";
  report.animals = {{7, "=cmd()", "+1", "2001-04-03", 1, true, 1, kNobody, kNobody, 0.0, 0.0},
                    {5, "<img src=x onerror=alert(1)>", "bad \xFF\xC3 bytes", "", 0, false, 2,
                     kNobody, kNobody, 0.1, 0.25},
                    {9, "\xC3\x98, 12\"", "@line\nfeed", "3", 3, true, 2, 0, 1, 1.0 / 3.0, 1.0}};
  report.has_plan = true;
  ReportedPlan& plan = report.plan;
  plan.criterion = "penalty";
  plan.value.rate = -std::numeric_limits<double>::infinity();
  plan.matings = {{0, 2, 1.5, 0.25, 0.4, {{0, 0.125}, {1, 0.0625}}, 3, 0.01, true}};
  plan.alternatives = {{2, {{0, 1e-300}}}};
  plan.sires = {0};
  plan.dams = {2, 1};
  plan.matrix = {25000, 0};
  ReportedRule rule{2, "max,7,,1", "max", "=cmd()", "", 1.0, 3, {}, {}};
  rule.gain.value = 0.5;
  plan.rules = {"rules.csv", {}, 1, {rule}};
  report.candidates = {
      {0, 1, 2.0, 4, 1, 1, 0.5, 0.5, 0.0, 0.25, 0.5, 0.5, true, Lack::kChosen, kNaN, kNaN},
      {1, 2, -1e22, 4, 0, 1, 0.5, 0.5, 0.5, 0.25, 0.5, 0.0, true, Lack::kNotKnown, 0.1, 7.0}};
  report.population.trend = {{1, "2001", 2, 1, 1, 0, 0, 0, 0.0, 0.0, kNaN, 0.5, 0.0, kNaN}};
  report.population.by_coancestry.why_not = "one birth time";
  report.population.intervals = report.population.recent_intervals = {{"sire-son", 1, 2.0, kNaN}};
  report.population.founders_ranked = {{0, 0.5}, {1, 0.5}};
  report.population.founders_cumulative = {0.5, 1.0};
  report.population.families = {{1, 1, 1}};
  report.population.ages = {{3, "3", 0, 1, 0, 1, 0, 1}};
  report.search.rows = {{0, 1.0, 0.5, -1.0, 0.1, kNaN, 2.0, 0.2, 0.01}};
  report.search.restarts = {20};
  report.warnings = {{"ne", true, "", {{"ne", 12.5}, {"limit", 50.0}}, {0}}};
  report.making.parameters = {{"OCS", "seed", "1"}};
  report.making.files = {{"data", "herd.dat", "00ff", 5'000'000'000}};
  report.given = {{"mine.csv", plan.matings, {}, kNaN, {}, {}, {"too many"}}};
  return report;
}

inline Sheet sheet_of_rows(const std::vector<std::vector<std::string>>& rows) {
  Sheet sheet;
  for (const auto& row : rows) {
    for (const std::string& cell : row) sheet.add_cell(cell);
    sheet.end_row();
  }
  return sheet;
}

// All animals of the small report, without a names file.
struct SmallHerd {
  SmallHerd() {
    pedigree.maxid = 3;
    pedigree.oldped.assign(3, 3, 0);
    pedigree.newped.assign(2, 3, 0);
    pedigree.newped(1, 3) = 1;
    pedigree.newped(2, 3) = 2;
    std::int32_t counter = 0;
    for (const std::int32_t number : {7, 5, 9}) {
      pedigree.ids.build_tree(number, counter);
      pedigree.oldped(counter, 1) = number;
    }
    pedigree.sex = of<Table<std::int32_t>>({1, 2, 0});
    pedigree.btime = of<Table<std::int32_t>>({1, kNoBirthTime, 3});
    pedigree.txt.assign(3, Text<15>(",a"));
    pedigree.f = of<Table<double, 0>>({-1, 0, 0.1, 1.0 / 3.0});
    statistics.gen = of<Table<double, 0>>({0, 1, 1, 2});
    statistics.pcin = kinship = generations = contribution = of<Table<double>>({0, 0.25, kNaN});
  }
  AnimalFigures figures() const {
    return {pedigree, names, statistics, kinship, generations, contribution, founders};
  }

  Pedigree pedigree;
  Names names;
  AnimalStatistics statistics;
  Table<double> kinship, generations, contribution;
  std::vector<ReportedFounder> founders = {{2, 0.5}, {1, 0.25}};

 private:
  template <class T>
  static T of(std::initializer_list<double> values) {
    T table(std::ssize(values));
    auto at = table.begin();
    for (const double value : values)
      *at++ = static_cast<std::remove_reference_t<decltype(*at)>>(value);
    return table;
  }
};

}  // namespace qob::test
