#include "core/qobtypestools.h"

#include <algorithm>
#include <cerrno>

#include "system/clock.h"
#include "system/paths.h"
#include "system/process.h"
#include "system/shell.h"

namespace qob {
namespace {

bool is_one_of(const std::string& path, const std::vector<std::string>& files) {
  return std::any_of(files.begin(), files.end(),
                     [&](const std::string& file) { return are_same_path(path, file); });
}

}  // namespace

std::string Files::path(std::string_view name) const {
  const std::string_view bare = adjustl_trim(name);
  return bare.starts_with('/') ? std::string(bare) : folder + std::string(bare);
}

void read_group_if_given(Run& run, const Group& group) {
  if (run.parameter_file.rewind() == 0 && run.parameter_file.find(group) == kEndOfFile) return;
  read_group(run, group);
}

void read_group(Run& run, const Group& group, bool echo_when_faulty) {
  int status = run.parameter_file.rewind();
  if (status == 0) status = run.parameter_file.read(group);
  if (status == 0) return;
  Units& units = run.journal.units;
  if (echo_when_faulty) echo(units.out, group);
  handle_error(units, ErrorValue{status}, "ERROR in reading QOB Parameter file, ", "Namelist ",
               group.name);
}

void claim_output(Run& run, const std::string& path) {
  const char* fault = nullptr;
  if (is_one_of(path, run.files.inputs)) {
    fault = " : it is an input file";
  } else if (is_one_of(path, run.files.outputs)) {
    fault = " : this run writes another file of that name";
  } else if (is_standard_stream(path)) {
    fault = " : standard output goes there";
  }
  if (fault != nullptr) handle_error(run.journal.units, "ERROR in opening file ", path, fault);
  run.files.outputs.push_back(path);
}

void refuse_locked(Run& run, const std::string& path) {
  if (!is_in_use(path)) return;
  const auto is_among = [&](const std::vector<std::string>& files) {
    return std::any_of(files.begin(), files.end(),
                       [&](const std::string& file) { return are_one_file(file, path); });
  };
  handle_error(run.journal.units, "ERROR in opening file ", path,
               is_among(run.files.inputs)    ? " : it is an input file"
               : is_among(run.files.outputs) ? " : this run writes another file of that name"
                                             : " : another run uses it");
}

void openresultsfile(Run& run, std::string_view prefix, std::string_view name, Unit& unit,
                     OutputFile::Show show) {
  if (run.files.kept != nullptr) {
    run.files.kept->push_back({std::string(adjustl_trim(name)), ""});
    return unit.open_memory(&run.files.kept->back().lines);
  }
  Units& units = run.journal.units;
  const std::string path =
      run.files.path(std::string(adjustl_trim(prefix)).append(adjustl_trim(name)));
  refuse_locked(run, path);
  claim_output(run, path);
  units.take_up(unit);
  const int status = unit.open_write(path, show);
  if (status != 0) handle_error(units, ErrorValue{status}, "ERROR in opening file ", path);
}

void closeresultsfile(Units& units, Unit& unit) {
  const int status = unit.close();
  if (&unit != &units.log) units.tell_unshown(unit);
  if (status == 0) return;
  write_list(units.err, unit.path(), " : ", error_text(status));
  handle_error(units, ErrorValue{status}, "ERROR in closing unit ", unit.number());
}

std::string copy_of_log(const Run& run, std::string_view prefix) {
  return as_shell_reads(run.files.path(prefix)) +
         std::string(run.parameters.files.logfile.trimmed());
}

namespace {

// A run in a folder of its own may be one of several of this process: a command that it starts
// would for a moment keep the files locked that the others have just open.
bool copy_log(const Run& run, const std::string& prefix, const std::string& copy) {
  const std::string from = run.journal.units.log.readable_name();
  return run.files.folder.empty()
             ? copy_in_shell(from, prefix, std::string(run.parameters.files.logfile.trimmed()))
             : copy_file(from, copy) == 0;
}

}  // namespace

void copylogfile(Run& run, std::string_view prefix) {
  if (adjustl_trim(prefix).empty()) return;
  const std::string copy = copy_of_log(run, prefix);
  if (are_same_path(copy, run.files.path(run.parameters.files.logfile))) return;
  // Another run's log is not written over; `cp` would wait for a pipe's reader, or go into a
  // folder.
  const int status = OutputFile::probe(copy);
  const bool refused = status == EWOULDBLOCK || status == ENXIO || status == EISDIR;
  if (!refused && copy_log(run, run.files.path(prefix), copy)) return;
  write_list(run.journal.units.err, "WARNING: The log could not be copied to ", copy);
}

void print_time(Units& units, std::string_view text) {
  const LocalTime now = local_time();
  both(units.out, units.log, "(A,T61,2(I2.2,A1),I4,1X,2(I2.2,A1),I2.2)", text, now.day, "-",
       now.month, "-", now.year, now.hour, ":", now.minute, ":", now.second);
}

}  // namespace qob
