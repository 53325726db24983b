// What a report tells of a run: the model that tables, JSON and page are made of.
//
// The numbers come from the core, computed anew over the pedigree of the run with full digits; the
// run's own files say what was run, how the search went and what was planned. Animals are told once
// (`animals`) and named everywhere else by their place there, from 0. Where a number is none (no
// pedigree behind it, 0/0), it is NaN and becomes null. Times are in the time steps of the data
// file.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace qob {

inline constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
inline constexpr std::int32_t kNobody = -1;    // an unknown parent
inline constexpr std::int32_t kNotShown = -2;  // a known parent that is not among the animals told

// An animal as its breeder knows it.
struct ReportedAnimal {
  std::int32_t number = 0;  // identifier in the data file
  std::string id;           // the herd book's identifier; the data file's without a names file
  std::string name;         // from the names file, or the text of the data file; may be ""
  std::string birth;        // as the herd book says, or the time step; "" if not known
  std::int32_t birth_time = 0;
  bool birth_is_known = false;
  std::int32_t sex = 0;  // 1 male, 2 female, 0 not known
  std::int32_t sire = kNobody, dam = kNobody;
  double f = 0.0, completeness = 0.0;
};

// A common ancestor of two parents and its share of the inbreeding of their offspring: the sum over
// all pairs of paths to it that meet in no other animal of (1/2)^(n1 + n2 + 1) (1 + F) (Wright
// 1922).
struct CommonAncestor {
  std::int32_t animal = 0;
  double f = 0.0;
};

struct ReportedMating {
  std::int32_t sire = 0, dam = 0;
  double merit = 0.0, f = 0.0, vf = 0.0;  // of the offspring, as in the mating list
  std::vector<CommonAncestor> common;     // the largest shares first
  std::int32_t other_common = 0;          // further common ancestors that count,
  double other_f = 0.0;                   // and their shares together
  bool decided = false;                   // by a rule, beforehand
};

struct Alternative {
  std::int32_t sire = 0;
  double f = 0.0;  // of the offspring
};

// For a chosen female the chosen males other than hers with which her offspring would be least
// inbred, but those that rules forbid her.
struct Alternatives {
  std::int32_t dam = 0;
  std::vector<Alternative> males;
};

// What a candidate that was not chosen lacks: how the plan's value would change if it took one
// mating of the chosen animal of its sex with which it changes best.
enum class Lack : std::uint8_t { kChosen, kMerit, kRelationship, kBoth, kNothing, kNotKnown };
inline constexpr std::array<std::string_view, 6> kLackWords = {"chosen", "merit",   "relationship",
                                                               "both",   "nothing", "not_known"};
constexpr std::string_view word_of(Lack lack) { return kLackWords[static_cast<std::size_t>(lack)]; }

struct ReportedCandidate {
  std::int32_t animal = 0;
  std::int32_t rank = 0;  // from 1: by matings, then by what is lacking, then by merit
  double merit = 0.0;
  std::int32_t max_matings = 0, matings = 0;
  std::int32_t offspring = 0;        // recorded in the pedigree
  double relationship = 0.0;         // mean, to all candidates, itself included
  double to_chosen = 0.0;            // mean, to the chosen ones, each weighted by its matings
  double to_others = 0.0;            // the same to the others chosen, itself left out
  double mean_kinship = 0.0;         // mean coancestry with the living, itself included if it lives
  double contribution_so_far = 0.0;  // share of the genes of the last time step that came from it
  double contribution_wanted = 0.0;  // share of the genes of the planned generation: matings / 2n
  bool unknown_parent = false;
  Lack lack = Lack::kChosen;
  double lacking_value = kNaN;  // by how much the plan's value would fall
  double lacking_merit = kNaN;  // the merit it lacks to be as good a choice
};

struct SexUse {
  std::int32_t candidates = 0, chosen = 0;
  double mean_matings = 0.0, sd_matings = 0.0;  // of the chosen
  double mean_merit = 0.0;                      // of all candidates of the sex
};

// What a plan is worth, as the search values it (ocs/mateset.h).
struct PlanValue {
  double inbreeding = kNaN, rate = kNaN, relationship = kNaN, merit = kNaN;
  double scaled_merit = kNaN, fitness = kNaN, age = kNaN;
  bool legal = false;
};

// What a plan comes to, its parents paired so that the mean inbreeding of offspring is the least.
struct PlanFigures {
  double value = kNaN, merit = kNaN, relationship = kNaN, rate = kNaN, inbreeding = kNaN;
};

// A rule of the breeder's, and what the plan could be without it.
struct ReportedRule {
  std::int64_t line = 0;    // of the file of rules,
  std::string text;         // as it stands there;
  std::string_view kind;    // its cells,
  std::string a, b;         // animals as the breeder calls them; "" for nothing,
  double limit = kNaN;      // matings or inbreeding
  std::int64_t broken = 0;  // matings of the plan too many or too few; 0: it is kept
  PlanFigures without;      // of the plan without it; NaN where that is not known
  PlanFigures gain;         // that less the plan with all rules: what the rule costs
};

struct ReportedRules {
  std::string file;                // "": there are none
  PlanFigures with_all;            // of the plan once exchanges have improved it within all rules
  std::int64_t left_out = 0;       // rules whose cost was not worked out, as there are many
  std::vector<ReportedRule> list;  // in the order of the file
};

struct ReportedPlan {
  std::string criterion;  // "penalty", "constraint", "merit"
  double w_merit = 0.0, w_relationship = 0.0, constraint = kNaN;
  std::string pairing;  // "mai", "least" or "random"
  PlanValue value;
  double bound = kNaN;  // no plan has a larger fitness
  double share = kNaN;  // how much of what any plan could reach it reaches (frontier/possible.h)
  double ne = kNaN;     // 1 / (2 rate)
  double gain = kNaN;   // merit less the mean of the last time step
  SexUse males, females;
  double unknown_genes =
      0.0;  // share of the genes of the offspring from chosen parents' unknown parents
  // The last time step, the ground of the rate.
  std::int32_t last_birth_time = 0, last_animals = 0;
  double last_f = kNaN, last_merit = kNaN, last_relationship = kNaN, generation_interval = kNaN;
  std::vector<ReportedMating> matings;     // sire by sire, as in the mating list
  std::vector<Alternatives> alternatives;  // by female
  std::vector<std::int32_t> sires, dams;   // chosen, in the order of the list
  std::vector<std::int32_t> matrix;        // F of sire by dam in hundred-thousandths, row by row
  ReportedRules rules;
};

// A plan that somebody has made, valued as the best one is (`--evaluate`).
struct GivenPlan {
  std::string file;
  std::vector<ReportedMating> matings;
  PlanValue value;
  double share = kNaN;  // as of the best plan, if it makes as many matings within the limits
  SexUse males, females;
  std::vector<std::string> faults;  // limits that it does not keep
};

// One birth time.
struct TrendRow {
  std::int32_t birth_time = 0;
  std::string birth;  // as the herd book counts, or the time step
  std::int64_t animals = 0, males = 0, females = 0;
  std::int64_t sires = 0, dams = 0;  // different parents of those born
  std::int64_t inbred = 0;
  double mean_f = kNaN, max_f = kNaN;
  double coancestry = kNaN;  // mean of different animals born then
  double completeness = kNaN;
  double generations = kNaN;  // complete generations equivalent
  double interval = kNaN;     // mean age of the known parents
};

// A regression on birth time that gives a rate and an effective size.
struct EffectiveSize {
  double rate = kNaN, rate_se = kNaN;  // per generation
  double ne = kNaN, ne_low = kNaN,
         ne_high = kNaN;             // at the rate, and one standard error about it
  std::int64_t n = 0;                // animals or birth times
  std::int32_t first = 0, last = 0;  // birth times of the span
  std::string why_not;               // "" or why there is none
};

struct PathInterval {
  std::string path;  // "sire-son", "sire-daughter", "dam-son", "dam-daughter", "all"
  std::int64_t n = 0;
  double mean = kNaN, se = kNaN;
};

struct ReportedFounder {
  std::int32_t animal = 0;
  double contribution = 0.0;  // share of the genes of the living
};

struct FamilySize {
  std::int32_t offspring = 0;
  std::int64_t sires = 0, dams = 0;  // parents with so many
};

struct AgeClass {
  std::int32_t birth_time = 0;
  std::string birth;
  std::int64_t males = 0, females = 0;  // living
  std::int64_t candidate_males = 0, candidate_females = 0, chosen_males = 0, chosen_females = 0;
};

struct ReportedPopulation {
  std::int64_t animals = 0, founders = 0, living = 0;
  std::string living_by;  // "column" (the herd book says who lives) or "birth time"
  std::int32_t living_since = 0;
  double mean_f = kNaN, max_f = kNaN;
  std::vector<TrendRow> trend;  // by birth time, ascending
  EffectiveSize by_inbreeding, by_coancestry;
  double interval = kNaN;  // of all four paths
  std::vector<PathInterval> intervals, recent_intervals;
  std::int32_t recent_since = 0;
  // Of the genes of the living.
  double founder_equivalents = kNaN, founder_genomes = kNaN;
  double effective_ancestors = kNaN;       // lower bound where the ancestors were not all taken
  double effective_ancestors_high = kNaN;  // upper bound
  double mean_kinship = kNaN, gene_diversity = kNaN;
  double unknown_genes = kNaN;  // share that comes from unknown parents of animals of known ones
  std::vector<ReportedFounder> founders_ranked;  // largest contributions first
  std::vector<double> founders_cumulative;       // share of the first 1, 2, ... founders
  std::vector<FamilySize> families;
  std::vector<AgeClass> ages;  // the youngest first
};

struct SearchRow {
  std::int32_t generation = 0;
  double best = 0.0, median = 0.0, worst = 0.0, mean = 0.0, sd = kNaN;
  double merit = kNaN, relationship = kNaN, rate = kNaN;
};

struct ReportedSearch {
  std::vector<SearchRow> rows;
  std::int32_t found = 0;  // generation of the best plan
  std::int32_t ended = 0;  // the last generation that the files tell
  std::vector<std::int32_t> restarts;
};

// Something to beware of. The viewer has the words for each kind; `text` is what a program said.
struct Warning {
  std::string kind;
  bool serious = false;
  std::string text;
  std::vector<std::pair<std::string, double>> values;
  std::vector<std::int32_t> animals;
};

struct MadeFile {
  std::string role;  // "parameters", "data", "rules", "names", "faults", "relationships", "result"
  std::string name, sha256;
  std::int64_t bytes = 0;
};

struct MadeParameter {
  std::string group, key, value;
};

struct Making {
  std::string program, time;             // the report's
  std::string run_program, run_started;  // the run's
  std::string prefix;
  std::int32_t seed = 0;
  std::vector<MadeParameter> parameters;
  std::vector<MadeFile> files;
};

struct Report {
  std::string title;  // the herd's name
  bool has_names = false;
  std::int32_t planned_birth_time = 0;
  std::vector<ReportedAnimal> animals;  // those that anything below names
  bool has_plan = false;
  ReportedPlan plan;
  std::vector<ReportedCandidate> candidates;  // by rank
  ReportedPopulation population;
  ReportedSearch search;
  std::vector<Warning> warnings;
  Making making;
  std::vector<GivenPlan> given;  // none or one
};

}  // namespace qob
