// A run: its parameters, its files and where it tells what it does; and the tools that every phase
// uses for its files.
//
// What the phases find out is theirs and is handed on from one to the next (see driver/run.cpp);
// here is only what is so for any program that reads groups of parameters and writes reports: units
// and formats (units, format), free-form input (lexer, namelist), watches, random numbers, tables.
// What must hold: no file that is read, or that standard output goes to, is written over, and no
// result replaces another; every fault ends the run with one message, most often by handle_error.
#pragma once

#include <deque>
#include <string>
#include <string_view>
#include <vector>

#include "core/memory.h"
#include "core/namelist.h"
#include "core/parameters.h"
#include "core/units.h"
#include "core/watches.h"
#include "system/input_file.h"
#include "system/output_file.h"
#include "system/parallel.h"

namespace qob {

// A result in memory.
struct KeptResult {
  std::string name;
  std::string lines;
};

// Files by name, so that none is written over. Inputs are known before the first output is opened.
struct Files {
  std::string folder;  // where names begin: "" for the working folder, else with its "/"
  std::vector<std::string> inputs;
  std::vector<std::string> outputs;  // of this run so far
  InputFile relationships;           // open while the file may be read, so that no run writes it
  std::deque<KeptResult>* kept = nullptr;  // where results are written instead, if anywhere

  // The path of the file of that name, which may have blanks about it.
  std::string path(std::string_view name) const;
};

struct Run {
  Parameters parameters;
  NamelistFile parameter_file;
  Journal journal;
  Files files;
  Parallel parallel;
  // Bytes that rows of the relationship matrix may take beside it.
  std::size_t row_memory = std::size_t{1} << 30;
};

// Reads a group wherever it stands in the file. A fault stops the run with "ERROR in reading QOB
// Parameter file, Namelist NAME", after an echo of the group to standard output if that is wanted.
void read_group(Run& run, const Group& group, bool echo_when_faulty = false);
// The same for a group that a file may lack, which keeps its variables as they are.
void read_group_if_given(Run& run, const Group& group);

// Takes `path` up among the outputs. Stops the run if an input file, an earlier output or standard
// output has that name.
void claim_output(Run& run, const std::string& path);
// Stops the run if another one uses the file, or this one does under another name.
void refuse_locked(Run& run, const std::string& path);

// Opens the result file `name` behind the results prefix, from its start, or the memory where the
// run keeps it. A failure stops the run.
void openresultsfile(Run& run, std::string_view prefix, std::string_view name, Unit& unit,
                     OutputFile::Show show = OutputFile::Show::kWhenComplete);
// Closes it. A failure stops the run. Values of results that were not shown as they are are told.
void closeresultsfile(Units& units, Unit& unit);

// Whether a run has written the file, as its first lines tell.
bool is_result(const std::string& path);
// Moves the result files of an earlier run aside, through the shell, whose outcome is ignored
// (old_results). Nothing is moved or replaced that is in use, a folder or a link, and nothing
// replaced that no run has written.
void renameoldresultfiles(Run& run, std::string_view prefix);
// The name of the log's copy, as the shell reads it.
std::string copy_of_log(const Run& run, std::string_view prefix);
// Copies the log to it, through the shell of a run in the working folder; nothing when the prefix
// is blank. A failure is told.
void copylogfile(Run& run, std::string_view prefix);

// Writes `text` with the local date and time to standard output and the log.
void print_time(Units& units, std::string_view text);

}  // namespace qob
