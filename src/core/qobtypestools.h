// The state of a run, and the tools that every phase uses for its output.
//
// There is one Model. Each phase fills some parts of it, later phases read them.
#pragma once

#include <exception>
#include <new>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "core/idtree.h"
#include "core/parameters.h"
#include "core/record.h"
#include "core/relationship.h"
#include "core/relationship_rows.h"
#include "core/relationship_sums.h"
#include "core/selection.h"
#include "core/stop.h"
#include "core/stopwatch.h"
#include "core/tables.h"
#include "core/text.h"
#include "core/unit.h"
#include "core/ziggurat.h"

namespace qob {

// The birth time of an inserted parent, whose own is not known.
inline constexpr std::int32_t kNoBirthTime = -9999;

// The animals, numbered 1..maxid so that parents come before offspring; 0 is an unknown parent.
// Written when the data file is read (f: by the population history).
struct Pedigree {
  std::int32_t nobs = 0;        // records read
  std::int32_t maxid = 0;       // animals: records and inserted parents
  Table2<std::int32_t> oldped;  // maxid x 3: identifiers of animal, sire, dam in the data file
  Table2<std::int32_t> newped;  // 2 x maxid: numbers of sire and dam
  Table<std::int32_t> sex;      // 1 male, 2 female, 0 inserted parent
  Table<std::int32_t> btime;    // birth time step
  Table<std::int32_t> matings;  // most matings; above 0: a selection candidate
  Table<double> ebv;            // estimated breeding value
  Table<Text<15>> txt;          // text of the data file
  Table<double, 0> f;           // inbreeding coefficient; f(0) = -1 for the unknown parent

  std::int32_t sire(std::int64_t i) const { return newped(1, i); }
  std::int32_t dam(std::int64_t i) const { return newped(2, i); }
};

struct Units {
  Unit out{6};       // standard output
  Unit err{0};       // standard error: what ends the run, and what the log has no place for
  Unit log{11};      // the log
  Unit summary{12};  // the population-history summary, open from the history to the end
  Unit cnv1{13};     // the best solution by generation, open from generation 0 to the end
  Unit cnv2{14};     // the convergence of the population, likewise
};

// Files by name, so that none is written over. Inputs are known before the first output is opened.
struct Files {
  std::vector<std::string> inputs;
  std::vector<std::string> outputs;  // of this run so far
  InputFile relationships;           // open while the file may be read, so that no run writes it
};

struct Watches {
  Stopwatch stopwatch;
  Watch total, init, history, pedigree, ocs, mating;
  Watch basepop, eval, repair, mutate, dirmut, recomb, matesel, nrm;
};

struct Model {
  Parameters parameters;
  NamelistFile parameter_file;
  Pedigree pedigree;
  IdTree ids;
  Relationship relationship;
  Candidates candidates;
  Goal goal;
  RelationshipRows rows;     // of the candidates, while the search runs
  RelationshipSums sums[2];  // of relationships to a mateset, by sex, likewise
  Search search;
  Random random;
  Watches watches;
  Units units;
  Files files;
  int progstatus = 1;  // 0: the remaining optional phases are skipped
};

// Writes the message, and the value that a failed operation gave, to the log and to standard
// output (to standard error, too, unless a person sees both), and stops the run with status 1.
[[noreturn]] void handle_error(Model& model, std::string_view message,
                               std::optional<int> value = std::nullopt);

// Takes `path` up among the outputs. Stops the run if an input file, an earlier output or standard
// output has that name.
void claim_output(Model& model, const std::string& path);
// Stops the run if another one uses the file.
void refuse_locked(Model& model, const std::string& path);

// Opens the result file `name` behind the results prefix, from its start. A failure stops the run.
void openresultsfile(Model& model, std::string_view prefix, std::string_view name, Unit& unit,
                     OutputFile::Show show = OutputFile::Show::kWhenComplete);
// Closes it. A failure stops the run.
void closeresultsfile(Model& model, Unit& unit);

// Moves the result files of an earlier run aside, through the shell, whose outcome is ignored.
// Files in use stay where they are.
void renameoldresultfiles(Model& model, std::string_view prefix);
// The name of the log's copy.
std::string copy_of_log(const Model& model, std::string_view prefix);
// Copies the log to it, through the shell; nothing when the prefix is blank. A failure is told.
void copylogfile(Model& model, std::string_view prefix);

// Writes `text` with the local date and time to standard output and the log.
void print_time(Model& model, std::string_view text);

// Carries out `work`, which asks for memory. False: there was not enough to finish it.
template <class Work>
bool memory_suffices(Work work) {
  const std::new_handler before = std::set_new_handler(nullptr);
  bool enough = true;
  try {
    work();
  } catch (const std::exception&) {  // bad_alloc, or length_error for absurd sizes
    enough = false;
  }
  std::set_new_handler(before);
  return enough;
}

// Carries out `work` and stops the run with `message` when there is not enough memory.
template <class Work>
void allocate(Model& model, std::string_view message, Work work) {
  if (!memory_suffices(work)) handle_error(model, format_list(message));
}

}  // namespace qob
