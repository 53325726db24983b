#include "ocs/base_population.h"

#include <string>

#include "core/lexer.h"
#include "core/sort.h"
#include "ocs/allowances.h"
#include "ocs/repair.h"
#include "system/input_file.h"

namespace qob {
namespace {

constexpr int kRepairs = 1000;  // attempts to make the first random solution legal

// Reads a mateset from a file: a header line, then a line a mating with its male and its female
// candidate number. A candidate number outside its sex's range stops the run.
void read_old_solution(const Candidates& candidates, std::string_view name, Mateset solution,
                       Units& units) {
  InputFile file;
  int status = file.open(std::string(adjustl_trim(name)));
  if (status != 0) {
    handle_error(units, ErrorValue{status}, "ERROR opening file with old solution ", name);
  }
  std::string_view line;
  status = file.next_line(line);
  for (std::int64_t j = 1; j <= solution.nmatings() && status == 0; ++j) {
    status = file.next_line(line);
    if (status == 0) status = read_list(line, solution.male(j), solution.female(j));
    if (status != 0) break;
    if (!candidates.is_male(solution.male(j)) || !candidates.is_female(solution.female(j))) {
      handle_error(units, "ERROR Candidate number out of range in file with old solution ",
                   trim(name), " , row ", j);
    }
  }
  if (status != 0) {
    handle_error(units, ErrorValue{status}, "ERROR when reading file with old solution ", name);
  }
}

// Takes males slot by slot and females row by row, each with the weight of its allowance. Where a
// draw finds nobody the entry stays as it was.
void draw_solution(const Selection& selection, Mateset solution, Random& random) {
  const Candidates& candidates = selection.candidates;
  const std::int64_t slots = selection.male_slots();
  selection.lock(solution);
  Allowances matings = remaining_matings(selection, solution);
  std::int64_t free[2] = {sum_over(candidates, matings, kMale),
                          sum_over(candidates, matings, kFemale)};
  Wheel wheels[2] = {{candidates, matings, kMale}, {candidates, matings, kFemale}};
  const auto draw = [&](std::int32_t& entry, int sex, std::int64_t rows) {
    const std::int64_t r = random.ceiling_of_draw(free[sex - 1]);
    const std::int32_t i = wheels[sex - 1].spin(r);
    if (i == 0) return;
    entry = i;
    wheels[sex - 1].add(i, -rows);
    free[sex - 1] -= rows;
  };
  for (std::int64_t j = 1; j <= selection.rows(); ++j) {
    if (j > slots) {
      solution.male(j) = solution.male(j - slots);
    } else if (selection.is_free(j, kMale)) {
      draw(solution.male(j), kMale, selection.limitmalematings);
    }
    if (selection.is_free(j, kFemale)) draw(solution.female(j), kFemale, 1);
  }
}

void report_legality(const Population& population, std::int32_t k, Unit& log) {
  if (!population.pop_value(k).legal) write_list(log, "Base pop solution not legal :", k);
}

// Only the first random solution may be repaired, and it is always solution 1 that is: so because
// the two are one unless an old solution was read; then the old one is repaired, whose values
// nobody has looked at, as long as the random one is illegal.
void add_first_random_solution(const Selection& selection, std::int32_t k, Population& population,
                               Random& random, Evaluator& evaluator, Journal& journal) {
  const Mateset solution = population.pop(k);
  MatesetValue& value = population.pop_value(k);
  draw_solution(selection, solution, random);
  evaluator.evaluation(solution, value);
  for (int attempt = 0; attempt < kRepairs && !value.legal; ++attempt) {
    repair_mateset(selection, population.pop(1), random, journal);
    evaluator.evaluation(solution, value);
  }
  report_legality(population, k, journal.units.log);
}

// Fills the sex's free entries from the first row on with the candidates of highest merit, each in
// as many rows running as it may have matings.
void fill_by_merit(const Selection& selection, Mateset solution, int sex) {
  const Candidates& candidates = selection.candidates;
  Table<double> key = candidates.merit;
  Table<std::int32_t> index(candidates.ncands, 0);
  const std::int32_t first = candidates.first(sex);
  const std::int32_t last = candidates.last(sex);
  for (std::int32_t i = first; i <= last; ++i) index(i) = i;
  quick_sort(key, index, first, last);
  const std::int64_t rows = selection.rows();
  std::int64_t row = 1;
  for (std::int32_t rank = last; rank >= first; --rank) {
    const std::int32_t i = index(rank);
    for (std::int64_t k = selection.least(i); k < selection.most(i); ++k) {
      while (row <= rows && !selection.is_free(row, sex)) ++row;
      if (row > rows) return;
      solution(row++, sex) = i;
    }
  }
}

}  // namespace

void base_population(const Selection& selection, std::string_view oldsol_file,
                     Population& population, Random& random, Evaluator& evaluator,
                     Journal& journal) {
  const Timed timed(journal.watches, journal.watches.basepop);
  Unit& log = journal.units.log;
  std::int32_t first = 1;
  if (InputFile::exists(std::string(adjustl_trim(oldsol_file)))) {
    read_old_solution(selection.candidates, oldsol_file, population.pop(1), journal.units);
    selection.lock(population.pop(1));
    first = 2;
  } else {
    write_list(log, "!!!! No file with previous solution was found !!!!!!");
  }
  const std::int32_t popsize = population.popsize();
  if (first < popsize) {
    add_first_random_solution(selection, first, population, random, evaluator, journal);
  }
  for (std::int32_t k = first + 1; k < popsize; ++k) {
    draw_solution(selection, population.pop(k), random);
    evaluator.add(population.pop(k), population.pop_value(k));
    report_legality(population, k, log);
  }
  evaluator.finish();
  const Mateset ranked = population.pop(popsize);
  selection.lock(ranked);
  fill_by_merit(selection, ranked, kMale);
  fill_by_merit(selection, ranked, kFemale);
  evaluator.evaluation(ranked, population.pop_value(popsize));
  report_legality(population, popsize, log);
}

}  // namespace qob
