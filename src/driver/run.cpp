#include "driver/run.h"

#include <cerrno>
#include <cstring>
#include <string>
#include <string_view>

#include "analysis/qobpophistory.h"
#include "analysis/qobrelshipmatrix.h"
#include "mating/qobmate.h"
#include "ocs/qobocs.h"
#include "pedigree/qobreadrecode.h"
#include "system/paths.h"
#include "system/process.h"
#include "system/shell.h"

namespace qob {
namespace {

constexpr std::size_t kLongestFileName = 255;
constexpr std::string_view kLogRule = "---------------------------------------------------------";

void take_argument(Model& model, const char* argument) {
  Unit& out = model.units.out;
  if (argument == nullptr) {
    write_list(out, "Filename not specified in command line. Default QOB.PRM assumed");
    stop("ERROR  Parameter file not specified when calling QOB ");
  }
  Text<255>& name = model.parameters.files.qobparmfile;
  name = argument;
  if (std::strlen(argument) > kLongestFileName) {
    handle_error(model, format_list("ERROR: Invalid command argument (filename)"), -1);
  }
  write_list(out, "Command line argument read : ", printable(name));
  model.files.inputs.emplace_back(name.trimmed());
}

void create_watches(Watches& w) {
  w.stopwatch.option_stopwatch({.default_clocks = Names{"cpu", "wall"}, .form = "hh:mm:ss"});
  w.stopwatch.create_watch({&w.total, &w.init, &w.history, &w.pedigree, &w.ocs, &w.mating},
                           {"QOB Total time", "Initialisation", "Analyse pedigree", "Relationship",
                            "Optimal contribution selection", "Mating"});
  w.stopwatch.create_watch(w.pedigree, {"Pedigree"});  // the name that the reports show
  w.stopwatch.create_watch(
      {&w.basepop, &w.eval, &w.repair, &w.mutate, &w.dirmut, &w.recomb, &w.matesel, &w.nrm},
      {"OCS Base population", "OCS Evaluation", "OCS Repair mateset", "OCS Mutation",
       "OCS Directed mutation", "OCS Recombination", "OCS Mating and selection", "OCS NRM"});
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

void open_log(Model& model) {
  Units& units = model.units;
  const std::string path(model.parameters.files.logfile.trimmed());
  claim_output(model, path);
  const int status = units.log.open_write(path, OutputFile::Show::kEachLine);
  if (status != 0) {
    write_list(units.err, path, " : ",
               status == EWOULDBLOCK ? "another run in this folder uses it" : error_text(status));
    stop("ERROR in opening log file qob.log ");
  }
  write_banner(units.out, std::string(33, ' ') + "QOB v3.0          build 16.05.29");
  write_banner(units.log, std::string(29, ' ') + "QOB v3.0              build 16.05.29");
  print_time(model, " QOB started");
}

void open_parameter_file(Model& model) {
  const Text<255>& name = model.parameters.files.qobparmfile;
  const std::string path(name.trimmed());
  if (!InputFile::exists(path)) {
    handle_error(model,
                 Text<255>(format_list("ERROR Parameter file not found : ", adjustl_trim(name))));
  }
  if (model.parameter_file.open(path) != 0) {
    handle_error(model, Text<255>(format_list("ERROR Could not open file ", name)));
  }
}

// Takes up the files that the run is going to read, and the copy of the log that it will write.
void take_up_files(Model& model) {
  const Parameters& p = model.parameters;
  model.files.inputs.emplace_back(adjustl_trim(p.data.datafile));
  RelationshipMatrix relationship;  // faults are told when its turn comes
  NamelistFile file;
  const bool read = file.open(std::string(p.files.qobparmfile.trimmed())) == 0 &&
                    file.read(group_of(relationship)) == 0;
  if (!read || option_text(relationship.source) != "pedigree") {
    model.files.inputs.emplace_back(adjustl_trim(relationship.gfile));
  }
  const std::string prefix(adjustl_trim(p.data.resultsdirectory));
  const std::string copy = as_shell_reads(copy_of_log(model, prefix));
  if (!are_one_file(copy, std::string(p.files.logfile.trimmed()))) claim_output(model, copy);
  // Before anything behind the prefix changes.
  refuse_locked(model, prefix + std::string(p.files.fsummaryfile.trimmed()));
}

void read_data_parameters(Model& model) {
  const Group group = group_of(model.parameters.data);
  const int status = model.parameter_file.read(group);
  if (status != 0) {
    handle_error(
        model, format_list("ERROR in reading QOB Parameter file, Namelist DataParameters !!!!!!!!"),
        status);
  }
  Unit& log = model.units.log;
  write_list(log, kLogRule);
  write_list(log, "Parameters for reading data");
  echo(log, group);
  write_list(log, kLogRule);
  take_up_files(model);
}

// Reads a group wherever it stands in the file.
void read_group(Model& model, const Group& group, bool echo_when_faulty = false) {
  int status = model.parameter_file.rewind();
  if (status == 0) status = model.parameter_file.read(group);
  if (status == 0) return;
  if (echo_when_faulty) echo(model.units.out, group);
  const std::string name = "Namelist " + std::string(group.name);
  handle_error(model, format_list("ERROR in reading QOB Parameter file, ", name), status);
}

void timed_phase(Model& model, Watch& watch, void (*phase)(Model&)) {
  Stopwatch& stopwatch = model.watches.stopwatch;
  stopwatch.start_watch(watch);
  phase(model);
  stopwatch.stop_watch(watch);
  stopwatch.print_watch(watch);
  write_list(model.units.log);
}

// Matings are sought when OCSParameters asks for them.
void select_and_mate(Model& model) {
  Parameters& p = model.parameters;
  Watches& w = model.watches;
  read_group(model, group_of(p.ocs));
  if (p.ocs.nmatings < 0) {
    model.progstatus = 0;
    return;
  }
  read_group(model, group_of(p.algorithm), true);
  timed_phase(model, w.ocs, ocs);
  if (model.progstatus == 0) return;
  read_group(model, group_of(p.mating));
  timed_phase(model, w.mating, mating);
}

void write_timing(Model& model) {
  Unit& log = model.units.log;
  Watches& w = model.watches;
  w.stopwatch.stop_watch(w.total);
  write_list(log);
  write_list(log, "----------------Timing of QOB program -------------------");
  const std::initializer_list<Watch*> watches = {
      &w.total, &w.init,   &w.history, &w.pedigree, &w.ocs,    &w.nrm,     &w.basepop,
      &w.eval,  &w.repair, &w.mutate,  &w.dirmut,   &w.recomb, &w.matesel, &w.mating};
  w.stopwatch.print_watch(watches);
  w.stopwatch.destroy_watch(watches);
  write_list(log, kLogRule);
}

void close_files(Model& model) {
  Units& units = model.units;
  for (Unit* unit : {&units.summary, &units.cnv1, &units.cnv2}) closeresultsfile(model, *unit);
}

Model* running = nullptr;

// Everything up to the end of a successful run.
void carry_out(Model& model, const char* argument) {
  Watches& w = model.watches;
  const Text<80>& prefix = model.parameters.data.resultsdirectory;
  model.units.out.open_standard_output();
  model.units.err.open_standard_error();
  write_list(model.units.out, "QOB initialising");
  take_argument(model, argument);
  create_watches(w);
  w.stopwatch.start_watch(w.total);
  w.stopwatch.start_watch(w.init);
  open_log(model);
  open_parameter_file(model);
  read_data_parameters(model);
  readrecode(model);
  renameoldresultfiles(model, prefix);

  Unit& log = model.units.log;
  w.stopwatch.option_stopwatch({.print_unit = &log, .error_unit = &log});
  w.stopwatch.stop_watch(w.init);
  w.stopwatch.print_watch(w.init);
  write_list(log);

  timed_phase(model, w.history, pophistory);
  timed_phase(model, w.pedigree, setup_nrm);
  if (model.progstatus != 0) select_and_mate(model);

  write_timing(model);
  close_files(model);
  copylogfile(model, prefix);  // complete and still locked
  closeresultsfile(model, log);
  stop("QOB ended successfully", kSuccess);
}

}  // namespace

void run(Model& model, const char* argument) {
  running = &model;
  set_write_fault_reporter([](std::string_view message) {
    both(running->units.log, running->units.out, "(A)", message);
  });
  if (!memory_suffices([&] { carry_out(model, argument); })) {
    both_list(model.units.log, model.units.out, kOutOfMemory);
  }
  stop(kOutOfMemory);
}

}  // namespace qob
