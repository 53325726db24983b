#include "driver/run.h"

#include <cerrno>
#include <cstring>
#include <string>
#include <string_view>
#include <utility>

#include "analysis/qobpophistory.h"
#include "analysis/qobrelshipmatrix.h"
#include "core/finding.h"
#include "core/stop.h"
#include "driver/first_look.h"
#include "driver/thread_count.h"
#include "mating/qobmate.h"
#include "ocs/qobocs.h"
#include "pedigree/qobreadrecode.h"
#include "system/paths.h"
#include "system/process.h"
#include "system/shell.h"

namespace qob {
namespace {

constexpr std::size_t kLongestFileName = 255;
bool is_quiet(std::string_view argument) { return argument == "--quiet"; }

constexpr std::string_view kLogRule = "---------------------------------------------------------";

void take_arguments(Run& run, Arguments arguments) {
  Units& units = run.journal.units;
  Unit& out = units.out;
  units.quiet = std::erase_if(arguments, is_quiet) > 0;
  run.parallel = Parallel(take_thread_count(arguments));
  if (arguments.empty()) {
    write_list(out, "Filename not specified in command line. Default QOB.PRM assumed");
    stop("ERROR  Parameter file not specified when calling QOB ");
  }
  if (arguments.size() > 1) {
    units.tell("qob: " + printable(arguments[1]) + " is not read : expected one parameter file" +
               and_more(std::ssize(arguments) - 1));
  }
  Text<255>& name = run.parameters.files.qobparmfile;
  name = arguments.front();
  if (std::strlen(arguments.front()) > kLongestFileName) {
    handle_error(units, ErrorValue{-1}, "ERROR: Invalid command argument (filename)");
  }
  write_list(out, "Command line argument read : ", printable(name));
}

void write_banner(Unit& unit, std::string_view version) {
  const std::string rule(71, '-');
  write_list(unit, rule);
  write_list(unit, Text<71>(version));
  write_list(unit, rule);
  write_list(unit, Text<71>(" "));
  write_list(unit, Text<71>("          Program to select mating set with optimal contributions"));
  write_list(unit, Text<71>("              to maximise function of merit and relationships"));
  write_list(unit,
             Text<71>(" Optionally minimises inbreeding conditional on genetic contributions"));
  write_list(unit, rule);
}

// What may be an input is not emptied.
void open_log(Run& run, bool inputs_are_known) {
  Units& units = run.journal.units;
  const std::string path = run.files.path(run.parameters.files.logfile);
  claim_output(run, path);
  if (!inputs_are_known && InputFile::exists(path) && !is_result(path)) {
    write_list(units.err, path, " : no run has written it, and it may be an input : ",
               printable(run.parameters.files.qobparmfile.trimmed()),
               ", which would tell, cannot be read");
    stop("ERROR in opening log file qob.log ");
  }
  const int status = units.log.open_write(path, OutputFile::Show::kEachLine);
  if (status != 0) {
    write_list(units.err, path, " : ",
               status == EWOULDBLOCK ? "another run in this folder uses it" : error_text(status));
    stop("ERROR in opening log file qob.log ");
  }
  write_banner(units.out, "                                 QOB v3.0          build 16.05.29");
  write_banner(units.log, "                             QOB v3.0              build 16.05.29");
  print_time(units, " QOB started");
}

void open_parameter_file(Run& run) {
  Units& units = run.journal.units;
  const Text<255>& name = run.parameters.files.qobparmfile;
  const std::string path = run.files.path(name);
  if (!InputFile::exists(path)) {
    handle_error(units, "ERROR Parameter file not found : ", printable(adjustl_trim(name)));
  }
  if (run.parameter_file.open(path) != 0)
    handle_error(units, "ERROR Could not open file ", printable(name));
}

// Takes up the copy of the log, which the run will write.
void take_up_copy(Run& run) {
  const Parameters& p = run.parameters;
  const std::string copy = copy_of_log(run, p.data.resultsdirectory);
  if (!are_one_file(copy, run.files.path(p.files.logfile))) claim_output(run, copy);
  // Before anything behind the prefix changes.
  refuse_locked(
      run, run.files.path(p.data.resultsdirectory) + std::string(p.files.fsummaryfile.trimmed()));
}

void read_data_parameters(Run& run) {
  Units& units = run.journal.units;
  const Group group = group_of(run.parameters.data);
  const int status = run.parameter_file.read(group);
  if (status != 0) {
    handle_error(units, ErrorValue{status},
                 "ERROR in reading QOB Parameter file, Namelist DataParameters !!!!!!!!");
  }
  write_list(units.log, kLogRule);
  write_list(units.log, "Parameters for reading data");
  echo(units.log, group);
  write_list(units.log, kLogRule);
  take_up_copy(run);
}

}  // namespace

void start(Run& run, const Arguments& arguments) {
  write_list(run.journal.units.out, "QOB initialising");
  take_arguments(run, arguments);
  start_watches(run.journal.watches);
  open_log(run, know_inputs(run));
  open_parameter_file(run);
  look_through_parameters(run);
  read_data_parameters(run);
}

bool matings_are_wanted(Run& run) {
  Parameters& p = run.parameters;
  read_group(run, group_of(p.ocs));
  if (p.ocs.nmatings < 0) return false;
  read_group(run, group_of(p.algorithm), true);
  read_group_if_given(run, group_of(p.improvement));
  read_group_if_given(run, group_of(p.rules));
  initialize_qob(run);  // how the search is to go
  return true;
}

void plan_matings(Run& run, const Selection& selection, const Relationship& relationship) {
  Plan plan = ocs(run, selection, relationship);  // the best set of matings
  read_group(run, group_of(run.parameters.mating));
  mating(run, selection, relationship, plan);  // who with whom
}

void finish(Run& run) {
  Units& units = run.journal.units;
  write_timing(run.journal);
  closeresultsfile(units, units.summary);
  copylogfile(run, run.parameters.data.resultsdirectory);  // complete and still locked
  closeresultsfile(units, units.log);
  stop("QOB ended successfully", kSuccess);
}

namespace {

// The road of one animal, from a line of the data file to a line of the mating list. It ends
// with the population's history, or with the relationships, where no more is wanted.
void carry_out(Run& run, const Arguments& arguments) {
  run.journal.units.out.open_standard_output();
  run.journal.units.err.open_standard_error();
  start(run, arguments);
  Pedigree pedigree = readrecode(run);  // who there is
  renameoldresultfiles(run, run.parameters.data.resultsdirectory);
  end_initialisation(run.journal);
  pophistory(run, pedigree);                           // what has happened to them
  const auto relationship = setup_nrm(run, pedigree);  // how the candidates are related
  if (relationship && matings_are_wanted(run)) {
    const Selection selection =
        set_up_selection(run, std::move(pedigree), *relationship);  // among whom, for what
    plan_matings(run, selection, *relationship);
  }
  finish(run);
}

}  // namespace

void run(Run& run, const Arguments& arguments) {
  if (!memory_suffices([&] { carry_out(run, arguments); })) {
    both_list(run.journal.units.log, run.journal.units.out, kOutOfMemory);
  }
  stop(kOutOfMemory);
}

}  // namespace qob
