// The first population of the search. Reads the candidates and the parameters; creates and fills
// model.search.
#include <cerrno>
#include <string>

#include "core/lexer.h"
#include "core/sort.h"
#include "ocs/qobocs.h"

namespace qob {
namespace {

constexpr int kRepairs = 1000;  // attempts to make the first random solution legal

void allocate_population(Model& model) {
  Search& search = model.search;
  const std::int64_t popsize = model.parameters.algorithm.popsize;
  const std::int64_t nmatings = model.parameters.ocs.nmatings;
  search.allocated = memory_suffices([&] {
    search.pop.assign(popsize, nmatings);
    search.pop_value.assign(popsize, ValueRecord{});
    search.best_mating.assign(1, nmatings);
  });
  if (search.allocated) return;
  Units& units = model.units;
  write_list(units.log, "ERROR in allocating memory. Error code: ", ENOMEM);
  write_list(units.log, "Size of integer   arrays to be allocated :", (popsize + 1) * nmatings * 2);
  write_list(units.log, "Size of real      arrays to be allocated :", popsize);
  write_list(units.out, "ERROR in allocating memory. Error code: ", ENOMEM);
  stop("Allocation POP failed");
}

// Reads a mateset from a file: a header line, then a line a mating with its male and its female
// candidate number. A candidate number outside its sex's range stops the run.
void read_old_solution(Model& model, const std::string& path, Mateset solution) {
  const Candidates& candidates = model.candidates;
  const Text<80>& name = model.parameters.files.oldsol_file;
  InputFile file;
  int status = file.open(path);
  if (status != 0) {
    handle_error(model, format_list("ERROR opening file with old solution ", name), status);
  }
  std::string_view line;
  status = file.next_line(line);
  for (std::int64_t j = 1; j <= solution.nmatings() && status == 0; ++j) {
    status = file.next_line(line);
    if (status == 0) status = read_list(line, solution.male(j), solution.female(j));
    if (status != 0) break;
    if (!candidates.is_male(solution.male(j)) || !candidates.is_female(solution.female(j))) {
      handle_error(model,
                   format_list("ERROR Candidate number out of range in file with old solution ",
                               name.trimmed(), " , row ", j));
    }
  }
  if (status != 0) {
    handle_error(model, format_list("ERROR when reading file with old solution ", name), status);
  }
}

// Draws a candidate of the sex with the weight of its allowance; 0 if the draw finds none.
std::int32_t draw_candidate(Model& model, const Allowances& matings, int sex, std::int64_t free) {
  const Candidates& candidates = model.candidates;
  std::int64_t r = model.random.ceiling_of_draw(free);
  for (std::int32_t i = candidates.first(sex); i <= candidates.last(sex); ++i) {
    r -= matings(i);
    if (r < 1) return i;
  }
  return 0;
}

void draw_solution(Model& model, Mateset solution) {
  const Candidates& candidates = model.candidates;
  const std::int64_t unit = model.parameters.ocs.limitmalematings;
  const std::int64_t slots = male_slots(model);
  Allowances matings = mating_limits(candidates);
  std::int64_t free_males = sum_over(candidates, matings, kMale);
  std::int64_t free_females = sum_over(candidates, matings, kFemale);
  for (std::int64_t j = 1; j <= solution.nmatings(); ++j) {
    if (j > slots) {
      solution.male(j) = solution.male(j - slots);
    } else if (const std::int32_t m = draw_candidate(model, matings, kMale, free_males); m > 0) {
      solution.male(j) = m;
      matings(m) -= unit;
      free_males -= unit;
    }
    if (const std::int32_t f = draw_candidate(model, matings, kFemale, free_females); f > 0) {
      solution.female(j) = f;
      --matings(f);
      --free_females;
    }
  }
}

void report_legality(Model& model, std::int32_t k) {
  if (!model.search.pop_value(k).legal) {
    write_list(model.units.log, "Base pop solution not legal :", k);
  }
}

// Only the first random solution may be repaired, and it is always solution 1 that is.
void add_first_random_solution(Model& model, std::int32_t k) {
  Search& search = model.search;
  draw_solution(model, search.pop(k));
  evaluation(model, search.pop(k), search.pop_value(k));
  for (int attempt = 0; attempt < kRepairs && !search.pop_value(k).legal; ++attempt) {
    repair_mateset(model, search.pop(1));
    evaluation(model, search.pop(k), search.pop_value(k));
  }
  report_legality(model, k);
}

void add_random_solutions(Model& model, std::int32_t first, std::int32_t last) {
  Search& search = model.search;
  if (first <= last) add_first_random_solution(model, first);
  Evaluations evaluations(model);
  for (std::int32_t k = first + 1; k <= last; ++k) {
    draw_solution(model, search.pop(k));
    evaluations.add(search.pop(k), search.pop_value(k));
    report_legality(model, k);
  }
  evaluations.finish();
}

// Fills the sex's column from its first row with the candidates of highest merit, each in as many
// rows running as it may have matings.
void fill_by_merit(const Candidates& candidates, Mateset solution, int sex) {
  Table<double> key = candidates.merit;
  Table<std::int32_t> index(candidates.ncands, 0);
  const std::int32_t first = candidates.first(sex);
  const std::int32_t last = candidates.last(sex);
  for (std::int32_t i = first; i <= last; ++i) index(i) = i;
  quick_sort(key, index, first, last);
  std::int64_t row = 1;
  for (std::int32_t rank = last; rank >= first; --rank) {
    const std::int32_t i = index(rank);
    for (std::int64_t k = 1; k <= candidates.max_matings(i); ++k) {
      if (row > solution.nmatings()) return;
      solution(row++, sex) = i;
    }
  }
}

}  // namespace

void base_population(Model& model) {
  const Timed timed(model.watches.stopwatch, model.watches.basepop);
  Search& search = model.search;
  allocate_population(model);
  std::int32_t first = 1;
  const std::string path(adjustl_trim(model.parameters.files.oldsol_file));
  if (InputFile::exists(path)) {
    read_old_solution(model, path, search.pop(1));
    first = 2;
  } else {
    write_list(model.units.log, "!!!! No file with previous solution was found !!!!!!");
  }
  const std::int32_t popsize = model.parameters.algorithm.popsize;
  add_random_solutions(model, first, popsize - 1);
  const Mateset ranked = search.pop(popsize);
  fill_by_merit(model.candidates, ranked, kMale);
  fill_by_merit(model.candidates, ranked, kFemale);
  evaluation(model, ranked, search.pop_value(popsize));
  report_legality(model, popsize);
}

}  // namespace qob
