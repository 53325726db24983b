#include "core/qobtypestools.h"

#include <cstdlib>
#include <ctime>
#include <filesystem>
#include <system_error>

namespace qob {
namespace {

void run_in_shell(std::string_view command) {
  // Nothing depends on the outcome: the files moved or copied need not exist.
  if (std::system(std::string(command).c_str()) != 0) return;
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

void refuse_input_file(Model& model, const std::string& path) {
  const Parameters& p = model.parameters;
  for (const std::string_view input :
       {adjustl_trim(p.data.datafile), p.files.qobparmfile.trimmed()}) {
    std::error_code missing;
    if (std::filesystem::equivalent(path, input, missing)) {
      handle_error(model, format_list("ERROR in opening file ", path, " : it is an input file"));
    }
  }
}

void openresultsfile(Model& model, std::string_view prefix, std::string_view name, Unit& unit) {
  const std::string path = std::string(adjustl_trim(prefix)) + std::string(adjustl_trim(name));
  refuse_input_file(model, path);
  const int status = unit.open_write(path);
  if (status != 0) handle_error(model, format_list("ERROR in opening file ", path), status);
}

void closeresultsfile(Model& model, Unit& unit) {
  const int status = unit.close();
  if (status != 0) {
    handle_error(model, format_list("ERROR in closing unit ", unit.number()), status);
  }
}

void renameoldresultfiles(Model& model, std::string_view prefix) {
  const std::string p(adjustl_trim(prefix));
  write_list(model.units.out);
  run_in_shell(Text<160>("rm " + p + "\\*.txt.prev ").view());
  run_in_shell(Text<160>("mv " + p + "/*.txt " + p + "/*.prev").view());
  run_in_shell(Text<160>("mv " + p + "/*.log " + p + "/*.prev").view());
  write_list(model.units.out);
}

void copylogfile(Model& model, std::string_view prefix) {
  const std::string_view logfile = model.parameters.files.logfile.trimmed();
  const std::string p(adjustl_trim(prefix));
  if (p.empty()) return;
  const Text<160> target(format_list(p + std::string(logfile)));
  run_in_shell(Text<200>(format_list("cp -f ", logfile, " ", target)).view());
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
