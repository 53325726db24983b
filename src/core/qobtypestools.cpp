#include "core/qobtypestools.h"

#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <ctime>
#include <filesystem>
#include <system_error>

#include "core/shell.h"

namespace qob {
namespace {

namespace fs = std::filesystem;

// Whether two names are, or would be, those of one file.
bool same_file(const std::string& a, const std::string& b) {
  std::error_code fault;
  if (a == b || fs::equivalent(a, b, fault)) return true;
  const fs::path first = fs::weakly_canonical(fs::absolute(a, fault), fault);
  return !fault && first == fs::weakly_canonical(fs::absolute(b, fault), fault) && !fault;
}

bool is_one_of(const std::string& path, const std::vector<std::string>& files) {
  return std::any_of(files.begin(), files.end(),
                     [&](const std::string& file) { return same_file(path, file); });
}

// Whether the file stands in the folder and has this ending, under its own name or that of the file
// that it is a link to.
bool stands_in(const std::string& folder, const std::string& ending, const fs::path& file) {
  std::error_code missing;
  for (const fs::path& path : {file, fs::weakly_canonical(fs::absolute(file, missing), missing)}) {
    const fs::path inside = path.has_parent_path() ? path.parent_path() : ".";
    if (path.extension() == ending && fs::equivalent(inside, folder, missing)) return true;
  }
  return false;
}

// Moves the files of a folder with this ending aside, unless one of them is in use: an input file,
// the log, the recoded identifiers. A command that its buffer would cut would name another file.
void move_aside(const Run& run, const std::string& folder, const std::string& ending) {
  constexpr std::size_t kBufferWidth = 160;
  const std::string command = "mv " + folder + "/*" + ending + " " + folder + "/*.prev";
  if (command.size() > kBufferWidth) return;
  std::vector<std::string> used = run.files.inputs;
  used.emplace_back(run.parameters.files.logfile.trimmed());
  used.emplace_back(adjustl_trim(run.parameters.data.recodefile));
  for (const std::string& file : used) {
    if (stands_in(as_shell_reads(folder + "/"), ending, file)) return;
  }
  const std::string word = shell_word(folder);
  run_in_shell("mv " + word + "/*" + ending + " " + word + "/*.prev");
}

}  // namespace

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
  std::error_code missing;
  if (is_one_of(path, run.files.inputs)) {
    fault = " : it is an input file";
  } else if (is_one_of(path, run.files.outputs)) {
    fault = " : this run writes another file of that name";
  } else if (fs::is_regular_file(path, missing) &&
             is_one_of(path, {"/proc/self/fd/1", "/proc/self/fd/2"})) {
    fault = " : standard output goes there";
  }
  if (fault != nullptr) handle_error(run.journal.units, "ERROR in opening file ", path, fault);
  run.files.outputs.push_back(path);
}

void refuse_locked(Run& run, const std::string& path) {
  if (OutputFile::probe(path) == EWOULDBLOCK) {
    handle_error(run.journal.units, "ERROR in opening file ", path, " : another run uses it");
  }
}

void openresultsfile(Run& run, std::string_view prefix, std::string_view name, Unit& unit,
                     OutputFile::Show show) {
  Units& units = run.journal.units;
  const std::string path = std::string(adjustl_trim(prefix)) + std::string(adjustl_trim(name));
  claim_output(run, path);
  refuse_locked(run, path);
  units.take_up(unit);
  const int status = unit.open_write(path, show);
  if (status != 0) handle_error(units, ErrorValue{status}, "ERROR in opening file ", path);
}

void closeresultsfile(Units& units, Unit& unit) {
  const int status = unit.close();
  if (status == 0) return;
  write_list(units.err, unit.path(), " : ", std::strerror(status));
  handle_error(units, ErrorValue{status}, "ERROR in closing unit ", unit.number());
}

void renameoldresultfiles(Run& run, std::string_view prefix) {
  const std::string p(adjustl_trim(prefix));
  write_list(run.journal.units.out);
  run_in_shell("rm " + shell_word(p) + "\\*.txt.prev ");
  move_aside(run, p, ".txt");
  move_aside(run, p, ".log");
  write_list(run.journal.units.out);
}

std::string copy_of_log(const FileNames& names, std::string_view prefix) {
  return std::string(adjustl_trim(prefix)) + std::string(names.logfile.trimmed());
}

void copylogfile(Run& run, std::string_view prefix) {
  if (adjustl_trim(prefix).empty()) return;
  const std::string log(run.parameters.files.logfile.trimmed());
  const std::string copy = copy_of_log(run.parameters.files, prefix);
  const std::string file = as_shell_reads(copy);
  if (same_file(file, log)) return;
  // Another run's log is not written over; `cp` would wait for a pipe's reader, or go into a
  // folder.
  const int status = OutputFile::probe(file);
  const bool refused = status == EWOULDBLOCK || status == ENXIO || status == EISDIR;
  if (!refused && run_in_shell(" cp -f " + log + "  " + shell_word(copy))) return;
  std::error_code missing;
  if (!refused) fs::remove(file, missing);  // better none than half of it
  write_list(run.journal.units.err, "WARNING: The log could not be copied to ", file);
}

void print_time(Units& units, std::string_view text) {
  const std::time_t now = std::time(nullptr);
  std::tm local{};
  localtime_r(&now, &local);
  both(units.out, units.log, "(A,T61,2(I2.2,A1),I4,1X,2(I2.2,A1),I2.2)", text, local.tm_mday, "-",
       local.tm_mon + 1, "-", local.tm_year + 1900, local.tm_hour, ":", local.tm_min, ":",
       local.tm_sec);
}

}  // namespace qob
