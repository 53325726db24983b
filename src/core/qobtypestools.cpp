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
  if (!output_is_terminal()) model.units.err.write_line(line);
  stop(" Program terminated. Check file qob.log");
}

void claim_output(Model& model, const std::string& path) {
  const char* fault = nullptr;
  if (is_one_of(path, model.files.inputs)) {
    fault = " : it is an input file";
  } else if (is_one_of(path, model.files.outputs)) {
    fault = " : this run writes another file of that name";
  } else if (is_standard_stream(path)) {
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
  write_list(model.units.err, unit.path(), " : ", error_text(status));
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
  if (are_same_path(file, log)) return;
  // Another run's log is not written over; `cp` would wait for a pipe's reader, or go into a
  // folder.
  const int status = OutputFile::probe(file);
  const bool refused = status == EWOULDBLOCK || status == ENXIO || status == EISDIR;
  if (!refused && copy_in_shell(log, copy)) return;
  write_list(model.units.err, "WARNING: The log could not be copied to ", file);
}

void print_time(Model& model, std::string_view text) {
  const LocalTime now = local_time();
  both(model.units.out, model.units.log, "(A,T61,2(I2.2,A1),I4,1X,2(I2.2,A1),I2.2)", text, now.day,
       "-", now.month, "-", now.year, now.hour, ":", now.minute, ":", now.second);
}

}  // namespace qob
