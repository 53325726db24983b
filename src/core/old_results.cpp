// Old results are moved aside by commands of the shell, which take their files by their names
// alone. So a command is left out where those are not the results of an earlier run: what it would
// do is found out beforehand, by what the shell would make of its words.
#include <algorithm>
#include <array>

#include "core/qobtypestools.h"
#include "system/paths.h"
#include "system/shell.h"

namespace qob {
namespace {

constexpr std::size_t kLongestCommand = 160;

// How the files begin that a run writes, but for relationships, which begin with nothing of theirs.
constexpr std::array<std::string_view, 11> kHeads = {
    " -----------------------------------------------------------------------\n"
    "                              QOB v",
    " # F    : Inbreeding coefficient\n",
    " # avg.F   : Average inbreeding coefficient\n",
    " # Add.rel  : Additive genetic relationship \n",
    " # Largest genetic contributions\n",
    "        Sire        Dam N.mating      Nm    Nf.m",
    "Prev.offspr     : Number of offspring born in previous timesteps\n",
    "N.matings       : Number of matings in optimal mateset\n",
    "Generation    Evaluation         Merit",
    "Generation       Best        Median",
    " -Old Id-  -New ID- \n",
};

}  // namespace

bool is_result(const std::string& path) {
  constexpr std::size_t kWidth = 120;
  InputFile file(kWidth);
  std::string head;
  std::string_view line;
  if (file.open(path) != 0) return false;
  for (int k = 0; k < 2 && file.next_line(line) == 0; ++k) head.append(line).append("\n");
  return std::any_of(kHeads.begin(), kHeads.end(),
                     [&](std::string_view start) { return head.starts_with(start); });
}

namespace {

// Whether nobody misses the file under its name.
bool may_go(const Run& run, const std::string& path) {
  if (is_link(path) || is_folder(path) || is_standard_stream(path) || is_in_use(path)) return false;
  std::vector<std::string> used = run.files.inputs;
  used.push_back(run.files.path(run.parameters.data.recodefile));
  return std::none_of(used.begin(), used.end(),
                      [&](const std::string& file) { return are_one_file(file, path); });
}

bool may_be_replaced(const Run& run, const std::string& path) {
  return (!path_exists(path) && !is_link(path)) || (may_go(run, path) && is_result(path));
}

// Whether `mv SOURCES TARGETS`, with the last of all words as the target, moves and replaces only
// what may be. Which of several targets is the last is the shell's matter.
bool may_move(const Run& run, const std::vector<std::string>& sources,
              std::vector<std::string> targets) {
  const auto folders = std::count_if(targets.begin(), targets.end(), is_folder);
  if (targets.size() > 1 && folders > 0) return false;
  if (targets.size() > 1 || (sources.size() > 1 && folders == 0)) return true;  // it is no folder
  return std::all_of(sources.begin(), sources.end(), [&](const std::string& source) {
    const std::string to =
        folders == 0 ? targets.front() : targets.front() + source.substr(source.rfind('/'));
    return may_go(run, source) && may_be_replaced(run, to);
  });
}

// Commands of more than 160 characters are not run: so because they were once cut there, and what
// is left of a cut command names other files.
void move_aside(const Run& run, const std::string& prefix, const std::string& ending) {
  const std::string command = "mv " + prefix + "/*" + ending + " " + prefix + "/*.prev";
  if (command.size() > kLongestCommand) return;
  const std::string folder = as_shell_reads(prefix);
  const std::vector<std::string> sources = entries_of(folder, ending);
  std::vector<std::string> targets = entries_of(folder, ".prev");
  const bool is_new = targets.empty();
  if (is_new) targets.push_back(folder + "/*.prev");
  if (!may_move(run, sources, targets)) return;
  const std::string word = shell_word(prefix);
  run_in_shell(
      "mv " + word + "/*" + ending + " " + word + "/*.prev",
      sources.empty() || (is_new && sources.size() > 1) ? Complaints::kHidden : Complaints::kShown);
}

}  // namespace

void renameoldresultfiles(Run& run, std::string_view prefix) {
  const std::string p = run.files.path(prefix);
  const std::string file = as_shell_reads(p) + "*.txt.prev";
  write_list(run.journal.units.out);
  const FolderLock no_new_results(as_shell_reads(p) + "/");  // between a look and its command
  refuse_locked(run, p + std::string(run.parameters.files.fcoefffile.trimmed()));
  if (may_be_replaced(run, file)) {
    run_in_shell("rm " + shell_word(p) + "\\*.txt.prev ",
                 path_exists(file) ? Complaints::kShown : Complaints::kHidden);
  }
  move_aside(run, p, ".txt");
  move_aside(run, p, ".log");
  write_list(run.journal.units.out);
}

}  // namespace qob
