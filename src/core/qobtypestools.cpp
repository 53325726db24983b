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
void move_aside(const Model& model, const std::string& folder, const std::string& ending) {
  constexpr std::size_t kBufferWidth = 160;
  const std::string command = "mv " + folder + "/*" + ending + " " + folder + "/*.prev";
  if (command.size() > kBufferWidth) return;
  std::vector<std::string> used = model.files.inputs;
  used.emplace_back(model.parameters.files.logfile.trimmed());
  used.emplace_back(adjustl_trim(model.parameters.data.recodefile));
  for (const std::string& file : used) {
    if (stands_in(as_shell_reads(folder + "/"), ending, file)) return;
  }
  const std::string word = shell_word(folder);
  run_in_shell("mv " + word + "/*" + ending + " " + word + "/*.prev");
}

}  // namespace

void handle_error(Model& model, std::string_view message, std::optional<int> value) {
  const std::string line =
      value ? format_record("(2A,I5)", trim(message), " Value of error: ", *value)
            : std::string(trim(message));
  model.units.log.write_line(line);
  model.units.out.write_line(line);
  if (::isatty(STDOUT_FILENO) == 0) model.units.err.write_line(line);
  stop(" Program terminated. Check file qob.log");
}

void claim_output(Model& model, const std::string& path) {
  const char* fault = nullptr;
  std::error_code missing;
  if (is_one_of(path, model.files.inputs)) {
    fault = " : it is an input file";
  } else if (is_one_of(path, model.files.outputs)) {
    fault = " : this run writes another file of that name";
  } else if (fs::is_regular_file(path, missing) &&
             is_one_of(path, {"/proc/self/fd/1", "/proc/self/fd/2"})) {
    fault = " : standard output goes there";
  }
  if (fault != nullptr) handle_error(model, format_list("ERROR in opening file ", path, fault));
  model.files.outputs.push_back(path);
}

void refuse_locked(Model& model, const std::string& path) {
  if (OutputFile::probe(path) == EWOULDBLOCK) {
    handle_error(model, format_list("ERROR in opening file ", path, " : another run uses it"));
  }
}

void openresultsfile(Model& model, std::string_view prefix, std::string_view name, Unit& unit,
                     OutputFile::Show show) {
  const std::string path = std::string(adjustl_trim(prefix)) + std::string(adjustl_trim(name));
  claim_output(model, path);
  refuse_locked(model, path);
  const int status = unit.open_write(path, show);
  if (status != 0) handle_error(model, format_list("ERROR in opening file ", path), status);
}

void closeresultsfile(Model& model, Unit& unit) {
  const int status = unit.close();
  if (status == 0) return;
  write_list(model.units.err, unit.path(), " : ", std::strerror(status));
  handle_error(model, format_list("ERROR in closing unit ", unit.number()), status);
}

void renameoldresultfiles(Model& model, std::string_view prefix) {
  const std::string p(adjustl_trim(prefix));
  write_list(model.units.out);
  run_in_shell("rm " + shell_word(p) + "\\*.txt.prev ");
  move_aside(model, p, ".txt");
  move_aside(model, p, ".log");
  write_list(model.units.out);
}

std::string copy_of_log(const Model& model, std::string_view prefix) {
  return std::string(adjustl_trim(prefix)) + std::string(model.parameters.files.logfile.trimmed());
}

void copylogfile(Model& model, std::string_view prefix) {
  if (adjustl_trim(prefix).empty()) return;
  const std::string log(model.parameters.files.logfile.trimmed());
  const std::string copy = copy_of_log(model, prefix);
  const std::string file = as_shell_reads(copy);
  if (same_file(file, log)) return;
  // Another run's log is not written over; `cp` would wait for a pipe's reader, or go into a
  // folder.
  const int status = OutputFile::probe(file);
  const bool refused = status == EWOULDBLOCK || status == ENXIO || status == EISDIR;
  if (!refused && run_in_shell(" cp -f " + log + "  " + shell_word(copy))) return;
  std::error_code missing;
  if (!refused) fs::remove(file, missing);  // better none than half of it
  write_list(model.units.err, "WARNING: The log could not be copied to ", file);
}

void print_time(Model& model, std::string_view text) {
  const std::time_t now = std::time(nullptr);
  std::tm local{};
  localtime_r(&now, &local);
  both(model.units.out, model.units.log, "(A,T61,2(I2.2,A1),I4,1X,2(I2.2,A1),I2.2)", text,
       local.tm_mday, "-", local.tm_mon + 1, "-", local.tm_year + 1900, local.tm_hour, ":",
       local.tm_min, ":", local.tm_sec);
}

}  // namespace qob
