// qob-prepare: reads a herd book, has it prepared, shows what was found and writes the files.
#include <algorithm>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "core/stop.h"
#include "core/text.h"
#include "core/unit.h"
#include "driver/commands.h"
#include "driver/prepare_arguments.h"
#include "driver/sheet_file.h"
#include "prepare/data_check.h"
#include "prepare/data_files.h"
#include "prepare/json.h"
#include "prepare/prepare.h"
#include "prepare/summary.h"
#include "system/paths.h"
#include "system/process.h"

namespace qob {
namespace {

constexpr std::size_t kLongestFile = 80;  // as a run reads their names
constexpr const char* kRules = ".rules.csv";
constexpr const char* kProgram = "qob-prepare " QOB_VERSION;

// The files of one herd book: where they go and how they are called.
class Files {
 public:
  explicit Files(const PrepareArguments& arguments) : arguments_(arguments) {
    const std::string& file = arguments.file;
    const std::size_t begin = file.find_last_of('/') + 1;  // npos + 1 is 0
    const std::size_t dot = file.find_last_of('.');
    name_ = file.substr(begin,
                        dot == std::string::npos || dot <= begin ? std::string::npos : dot - begin);
    folder_ = arguments.folder.empty() ? name_ : arguments.folder;
    const std::size_t longest =
        kLongestFile - std::string_view(arguments.rules ? kRules : ".dat").size();
    if (name_.empty() || name_.size() > longest)
      refuse(file, "a name of more than " + std::to_string(longest) +
                       " bytes, or none : expected a shorter one");
    if (std::any_of(name_.begin(), name_.end(), is_control))
      refuse(file, "a line end or control character in its name : expected another name");
  }

  const std::string& name() const { return name_; }
  const std::string& folder() const { return folder_; }
  std::string path(std::string_view ending) const {
    return folder_ + "/" + name_ + std::string(ending);
  }

  void refuse_to_replace() const {
    std::vector<const char*> endings = {".dat", ".names.csv", ".prm", ".faults.csv"};
    if (arguments_.rules) endings.push_back(kRules);
    for (const char* ending : endings) {
      const std::string file = path(ending);
      refuse_to_replace(file, "another folder (-o)");
      if (arguments_.json && are_same_path(file, *arguments_.json))
        refuse(file, "it is written as well : expected another name (--json)");
    }
    if (arguments_.json) refuse_to_replace(*arguments_.json, "another name (--json)");
  }

  void make_folder() const {
    const int status = qob::make_folder(folder_);
    if (status != 0)
      refuse(folder_, std::string(error_text(status)) + " : expected a folder or a new name (-o)");
  }

  void write(std::string_view ending, const std::function<void(const Lines&)>& lines) const {
    write_lines(path(ending), lines);
  }

 private:
  // instead: what else the file might be.
  void refuse_to_replace(const std::string& file, const std::string& instead) const {
    if (are_same_path(file, arguments_.file))
      refuse(file, "it is the herd book : expected " + instead);
    if (arguments_.rules && are_same_path(file, *arguments_.rules))
      refuse(file, "it is the file of rules : expected " + instead);
    if (!arguments_.force && path_exists(file))
      refuse(file, "it is there already : expected --force to write over it, or " + instead);
  }

  const PrepareArguments& arguments_;
  std::string name_, folder_;
};

void write_files(const Files& files, const Prepared& prepared) {
  files.write(".faults.csv", [&](const Lines& lines) { write_faults(prepared, lines); });
  if (!prepared.is_sound()) return;
  files.write(".names.csv", [&](const Lines& lines) { write_names(prepared, lines); });
  if (prepared.book.options.mating_rules)
    files.write(kRules, [&](const Lines& lines) { write_rules(prepared, lines); });
  files.write(".prm", [&](const Lines& lines) { lines(parameter_file(prepared, files.name())); });
  files.write(".dat", [&](const Lines& lines) { write_data(prepared, lines); });
}

std::string in_shell_quotes(const std::string& text) {
  if (text.find_first_not_of(
          "abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789_./-") ==
      std::string::npos)
    return text;
  std::string quoted = "'";
  for (const char c : text) quoted += c == '\'' ? "'\\''" : std::string(1, c);
  return quoted + "'";
}

PrepareOptions options_of(const PrepareArguments& arguments) {
  PrepareOptions options = arguments.options;
  if (arguments.rules)
    options.mating_rules = {*arguments.rules, rules_of(bytes_of(*arguments.rules))};
  return options;
}

int prepare_herd_book(const PrepareArguments& arguments, Unit& out) {
  const Sheet sheet = sheet_of(arguments.file);
  const Files files(arguments);
  files.refuse_to_replace();
  const PrepareOptions options = options_of(arguments);
  const Prepared prepared = prepare(sheet, options);
  std::string text = summary_of(prepared, arguments.file, files.path(".faults.csv"));
  files.make_folder();
  if (arguments.json) {
    write_lines(*arguments.json, [&](const Lines& lines) {
      write_json(prepared, {kProgram, arguments.file, text}, lines);
    });
  }
  write_files(files, prepared);
  text.resize(text.empty() ? 0 : text.size() - 1);  // the line's own end
  out.write_line(text);
  if (!prepared.is_sound()) {
    if (path_exists(files.path(".dat")))
      out.write_line(files.path(".dat") + ": still that of an earlier herd book");
    return kFailure;
  }
  out.write_line("Written: " + files.path(".dat") + ", .prm, .names.csv" +
                 (arguments.rules ? std::string(", ") + kRules : ""));
  out.write_line("Next: cd " + in_shell_quotes(files.folder()) + " && qob " +
                 in_shell_quotes(files.name() + ".prm"));
  return kSuccess;
}

// What a run tells on standard error is here what was asked for.
int check(const std::string& file) {
  Units units;
  units.err.open_standard_output();
  return check_data_file(file, units) ? kSuccess : kFailure;
}

}  // namespace

int prepare_command(int argc, char** argv) {
  int status = kSuccess;
  const auto arguments = prepare_arguments(argc, argv, status);
  if (!arguments) return status;
  if (arguments->check) return check(arguments->file);
  Unit out(6);
  out.open_standard_output();
  return prepare_herd_book(*arguments, out);
}

}  // namespace qob
