#include "driver/frontier_folders.h"

#include <algorithm>
#include <mutex>

#include "core/progress.h"
#include "driver/end_of.h"
#include "driver/report_inputs.h"
#include "driver/sheet_file.h"
#include "system/byte_files.h"
#include "system/paths.h"
#include "system/process.h"

namespace qob {
namespace {

constexpr std::size_t kRowMemory = std::size_t{1} << 30;     // of all runs together
constexpr std::int64_t kLong = std::int64_t{1'000'000'000};  // nanoseconds that a run may well take
constexpr std::string_view kTiming = "Timing of QOB program";
constexpr std::string_view kLastLine = "---------------------------------------------------------";

std::vector<MadeFile> inputs_of(const Parameters& p) {
  std::vector<MadeFile> files = {{"datafile", std::string(adjustl_trim(p.data.datafile)), "", 0}};
  if (option_text(p.relationship.source) != "pedigree")
    files.push_back({"gfile", std::string(adjustl_trim(p.relationship.gfile)), "", 0});
  if (p.rules.has_file())
    files.push_back({"rulesfile", std::string(adjustl_trim(p.rules.rulesfile)), "", 0});
  add_checksums(files);
  return files;
}

// A remark.
std::string line_of(const std::vector<MadeFile>& files) {
  std::string line = "!";
  for (const MadeFile& file : files)
    line += " " + file.role + ": " + std::to_string(file.bytes) + " bytes, sha256 " + file.sha256;
  return line + "\n";
}

// Whether the log is that of a run that came to its end.
bool is_complete(const std::string& log) {
  InputFile file;
  std::string_view line;
  if (file.open(log) != 0) return false;
  bool is_timed = false, is_last = false;
  while (file.next_line(line) == 0) {
    is_timed = is_timed || line.find(kTiming) != std::string_view::npos;
    is_last = is_timed && adjustl_trim(line) == kLastLine;
  }
  return is_last;
}

// Carries one out. Returns what went wrong, or "".
std::string run_one(const std::string& folder, const SharedHerd& herd, std::size_t row_memory) {
  ToldRun told;
  told.run.files.folder = folder;
  told.run.row_memory = row_memory;
  const End end = end_of([&] { run_with(herd, told.run, kRunParameters); });
  if (end.status == kSuccess) return "";
  const std::string words = told.last_words();
  return folder + "qob.log: " + (words.empty() ? end.text : words);
}

}  // namespace

FrontierFolders::FrontierFolders(std::string folder, const GivenParameters& given)
    : folder_(std::move(folder)), prefix_(results_prefix(given)), given_(given) {
  if (path_exists(folder_) && !is_folder(folder_))
    refuse(folder_, "it is a file : expected a folder");
  if (!entries_of(folder_, "").empty() && !is_folder(path("own"))) {
    refuse(
        folder_,
        "other things are in it : expected a new folder, or one of qob-frontier, which has a folder own");
  }
  make_or_refuse(folder_);
  inputs_ = inputs_of(given.groups);
}

std::string FrontierFolders::log(const PointRun& run) const {
  return path(run) + prefix_.substr(2) + std::string(FileNames().logfile.trimmed());
}

std::string FrontierFolders::mating_list(const PointRun& run) const {
  return path(run) + prefix_.substr(2) + std::string(FileNames().lst_file.trimmed());
}

std::string FrontierFolders::text_of(const PointRun& run) const {
  return line_of(inputs_) + parameter_file(given_, run.parameters, path(run));
}

bool FrontierFolders::is_finished(const PointRun& run) const {
  const std::string file = path(run) + kRunParameters;
  return path_exists(file) && bytes_of(file) == text_of(run) && is_complete(log(run));
}

void FrontierFolders::prepare(const PointRun& run) const {
  const std::string folder = path(run), file = folder + kRunParameters;
  if (!entries_of(folder, "").empty() && !path_exists(file))
    refuse(folder, "other things are in it : expected --output with another folder");
  make_or_refuse(folder);
  if (is_in_use(folder + "qob.log")) refuse(folder, "another run in this folder uses it");
  const int status = remove_file(log(run));
  if (status != 0) refuse(log(run), error_text(status));
  write_lines(file, [&](const Lines& lines) { lines(text_of(run)); });
}

std::vector<std::string> run_all(const FrontierFolders& folders, const SharedHerd& herd,
                                 const std::vector<PointRun>& runs, int jobs, Unit& out) {
  std::vector<std::string> faults;
  std::mutex one_at_a_time;
  Progress progress("Plans");
  std::size_t done = 0;
  const std::size_t row_memory = kRowMemory / static_cast<std::size_t>(jobs);
  Parallel(jobs).for_each(std::ssize(runs), kLong, [&](std::int64_t k, int) {
    const PointRun& run = runs[static_cast<std::size_t>(k)];
    const std::string fault = run_one(folders.path(run), herd, row_memory);
    const std::lock_guard lock(one_at_a_time);
    if (!fault.empty()) faults.push_back(fault);
    progress.show(static_cast<double>(++done) / static_cast<double>(runs.size()));
    if (streams_are_terminals() && run.is_search())
      out.write_line(std::to_string(done) + " of " + std::to_string(runs.size()) +
                     " plans: " + run.folder);
  });
  return faults;
}

}  // namespace qob
