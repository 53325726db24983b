#include "core/qobtypestools.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <ctime>
#include <filesystem>
#include <system_error>

#include "core/shell.h"

namespace qob {
namespace {

// Whether `path` is one of these files, under whatever name.
bool is_one_of(const std::string& path, const std::vector<std::string>& files) {
  return std::any_of(files.begin(), files.end(), [&](const std::string& file) {
    std::error_code missing;
    return path == file || std::filesystem::equivalent(path, file, missing);
  });
}

// Moves the files of a folder with this ending aside, but for a folder that holds an input file of
// that ending. A command that its buffer would cut would name another file.
void move_aside(const Model& model, const std::string& folder, const std::string& ending) {
  constexpr std::size_t kBufferWidth = 160;
  const std::string command = "mv " + folder + "/*" + ending + " " + folder + "/*.prev";
  if (command.size() > kBufferWidth) return;
  for (const std::string& input : model.files.inputs) {
    const std::filesystem::path path(input);
    const auto inside = path.has_parent_path() ? path.parent_path() : std::filesystem::path(".");
    if (path.extension() == ending && is_one_of(inside, {folder + "/"})) return;
  }
  const std::string word = shell_word(folder);
  run_in_shell("mv " + word + "/*" + ending + " " + word + "/*.prev");
}

}  // namespace

void handle_error(Model& model, std::string_view message, std::optional<int> value) {
  Unit& log = model.units.log;
  Unit& out = model.units.out;
  if (value) {
    both(log, out, "(2A,I5)", trim(message), " Value of error: ", *value);
  } else {
    both(log, out, "(A)", trim(message));
  }
  stop(" Program terminated. Check file qob.log");
}

void claim_output(Model& model, const std::string& path) {
  const bool input = is_one_of(path, model.files.inputs);
  if (input || is_one_of(path, model.files.outputs)) {
    handle_error(model, format_list("ERROR in opening file ", path,
                                    input ? " : it is an input file"
                                          : " : this run writes another file of that name"));
  }
  model.files.outputs.push_back(path);
}

void openresultsfile(Model& model, std::string_view prefix, std::string_view name, Unit& unit,
                     OutputFile::Show show) {
  const std::string path = std::string(adjustl_trim(prefix)) + std::string(adjustl_trim(name));
  claim_output(model, path);
  const int status = unit.open_write(path, show);
  if (status == EWOULDBLOCK) {
    handle_error(model, format_list("ERROR in opening file ", path, " : another run writes it"));
  }
  if (status != 0) handle_error(model, format_list("ERROR in opening file ", path), status);
}

void closeresultsfile(Model& model, Unit& unit) {
  const int status = unit.close();
  if (status == 0) return;
  both_list(model.units.out, model.units.log, unit.path(), " : ", std::strerror(status));
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

void copylogfile(Model& model, std::string_view prefix) {
  const std::string logfile(model.parameters.files.logfile.trimmed());
  const std::string p(adjustl_trim(prefix));
  if (!p.empty()) run_in_shell(" cp -f " + logfile + "  " + shell_word(p + logfile));
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
