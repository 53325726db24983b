// Optimal contribution selection: the search for the set of matings with the best balance of merit
// and relationship. All routines of the module, and what each needs and leaves.
#pragma once

#include <array>
#include <cstdint>
#include <vector>

#include "core/qobtypestools.h"
#include "ocs/average_relationships.h"

namespace qob {

// The whole optimisation: checks the search parameters, sets the selection up, searches, reports.
// Leaves the best mateset in model.search for the mating.
void ocs(Model& model);

// --- set-up -------------------------------------------------------------------------------------

// Seeds the random numbers, completes the search parameters, echoes them to the log and to
// standard output and checks them. A fault stops the run.
void initialize_qob(Model& model);
// Stops the run unless 1 <= limitmalematings <= nmatings.
void check_male_limit(Model& model);

// Fills model.candidates and model.goal (but for expmerit and constraint). Writes the age tables.
// Lowers `nmatings`, with a warning, to what the candidates' mating limits allow.
void set_up_selection(Model& model);

// The age classes of candidates and parents.
struct AgeStructure {
  std::int64_t nage = 0;  // age classes 1..nage
  Table<double> weight;   // weight of each class's parents in earlier contributions
};
// Needs the candidates; fills goal.last_genint and writes the age tables to the log and the
// summary.
AgeStructure age_structure(Model& model, std::int64_t nage);
// The number of age classes: the oldest candidate's or the oldest parent's of the last time step.
std::int64_t count_age_classes(const Model& model);

// Fills last_rel, vpapv and apv2 of the goal from the contributions that parents have already made
// to each age class.
void realised_contributions(Model& model, const AgeStructure& ages);

// Reads the relationship file once more and stops the run if it lacks a candidate. Appends a
// summary by birth-time group to the summary file.
void check_required_relationships(Model& model);

// --- value of a mateset -------------------------------------------------------------------------

// Fills all fields of `value`.
void evaluation(Model& model, Mateset mateset, ValueRecord& value);

// Whether no candidate is used beyond its mating limit and every male in whole mating units. The
// mateset has no empty entry.
bool is_legal(const Model& model, Mateset mateset);

// Evaluates matesets one after another as `evaluation` does, but sums up the relationships of
// several at once: a value may lack its rate, relationship and fitness until `finish`. Only an
// evaluation that may write to the log is finished before `add` returns.
class Evaluations {
 public:
  explicit Evaluations(Model& model);

  // `value` must last until `finish`.
  void add(Mateset mateset, ValueRecord& value);
  void finish();

 private:
  struct Pending {
    Contributions contributions;
    ValueRecord* value = nullptr;
  };
  void finish_pending();

  Model& model_;
  std::vector<std::int32_t> uses_;  // by candidate; all 0 between calls
  std::array<Pending, kContributionSets> pending_;
  std::size_t count_ = 0;
};

// Sets the fitness from the other fields, by the criterion `optimise`. An illegal mateset that
// would overtake the best one under "penalty" gets 0.9 of the best fitness.
void compute_fitness(Model& model, ValueRecord& value);

// The average relationship of the next generation when candidate i contributes c(i): the quadratic
// form over the candidates with c of at least `threshold`, earlier contributions included.
double average_relationship(const Model& model, const Table<double>& c, double threshold);

// --- search -------------------------------------------------------------------------------------

// The male slots of a mateset: slot j is the rows j, j+S, j+2S, ..., which hold one male.
std::int64_t male_slots(const Model& model);
// Writes `male` into the rows of slot j.
void fill_slot(Mateset mateset, std::int64_t j, std::int64_t slots, std::int32_t male);

// Matings left to each candidate; below 0 it is over-used. Element 0 takes what empty entries
// would take.
using Allowances = Table<std::int64_t, 0>;
// The mating limits, max_matings.
Allowances mating_limits(const Candidates& candidates);
// The same less the rows in which each candidate stands.
Allowances remaining_matings(const Candidates& candidates, Mateset mateset);
// The sum over the candidates of a sex.
std::int64_t sum_over(const Candidates& candidates, const Allowances& matings, int sex);
// The sum of max_matings over the candidates of a sex.
std::int64_t mating_capacity(const Candidates& candidates, int sex);

// Makes the mateset legal as far as the draws allow: no female above max_matings, males in slots.
void repair_mateset(Model& model, Mateset mateset);

// Creates the population: an old solution if its file exists, random solutions, and one that uses
// the candidates of highest merit.
void base_population(Model& model);

// One generation: offspring replace the solutions of lowest fitness; the best legal solution is
// kept; convergence is reported; restart and exchange keep the population diverse.
void mate_and_select(Model& model);
// Sorts the population by fitness and takes up a better best solution. Returns whether there was
// one, and leaves the order in `key` and `index`.
bool update_best(Model& model, Table<double>& key, Table<std::int32_t>& index);

// Makes `offspring` from two parents by gene-wise crossover within the mating limits.
void recombine(Model& model, Mateset parent1, Mateset parent2, Mateset offspring);

// Replaces males of slots and females of rows, each with mutate_probability, by candidates drawn
// in proportion to their free matings.
void mutate(Model& model, Mateset mateset);

// Replaces, each with directed_mutation_probability, the male of a slot or the female of a row by
// the candidate of its sex that improves the criterion most.
void directed_mutation(Model& model, Mateset mateset);

// --- reports ------------------------------------------------------------------------------------

void report_parameters(Model& model);
void report_selection_data(Model& model);
// Stops the run when no legal solution was found.
void report_best_mateset(Model& model);

}  // namespace qob
