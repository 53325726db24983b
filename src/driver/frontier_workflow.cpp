#include "driver/frontier_workflow.h"

#include <algorithm>
#include <nlohmann/json.hpp>

#include "driver/report_inputs.h"
#include "driver/sheet_file.h"
#include "system/paths.h"
#include "system/process.h"

// By the assembler, which takes any file as it is.
#define QOB_EMBED(name, file)                                                              \
  extern "C" const char name[], name##_end[];                                              \
  __asm__(".pushsection .rodata\n" #name ": .incbin \"" QOB_WORKFLOW "/" file "\"\n" #name \
          "_end:\n"                                                                        \
          ".popsection\n")
QOB_EMBED(qob_snakefile, "Snakefile");
QOB_EMBED(qob_readme, "README");
QOB_EMBED(qob_profile, "config.yaml");
QOB_EMBED(qob_status, "status.sh");

namespace qob {
namespace {

constexpr double kMegabyte = 1.0e6;

void write_if_missing(const std::string& path, const char* begin, const char* end) {
  if (path_exists(path)) return;
  write_lines(path, [&](const Lines& lines) { lines(std::string(begin, end)); });
}

std::string json_file(const std::string& folder, const std::string& parameter_file) {
  return folder + "/" + herd_name(parameter_file) + ".json";
}

}  // namespace

// The terms: the program itself and reading; relationships and exchanges; an evaluation, which
// takes the parents by pairs and the candidates one by one. The nanoseconds are those of an
// ordinary machine, doubled.
Effort effort_of(const Selection& selection, const AlgorithmParameters& search,
                 std::int64_t animals) {
  constexpr double kMostRows = 1.0e9;  // bytes, of the relationship matrix in candidate order
  const auto n = static_cast<double>(selection.candidates.ncands);
  const double a = static_cast<double>(animals);
  const double parents = std::min(n, 2.0 * selection.nmatings);
  const double evaluations =
      search.popsize + static_cast<double>(std::max(search.generations, 0)) * search.n_offspring;
  const double seconds =
      1.0 + 5.0e-6 * a + 1.0e-7 * n * n + evaluations * (1.0e-9 * parents * parents + 2.0e-8 * n);
  const double bytes = 3.0e8 + 400.0 * a + 4.0 * n * (n + 1.0) + std::min(8.0 * n * n, kMostRows);
  return {seconds, static_cast<std::int64_t>(bytes / kMegabyte)};
}

std::string herd_name(std::string_view parameter_file) {
  parameter_file.remove_prefix(parameter_file.find_last_of('/') + 1);  // npos + 1 is 0
  if (parameter_file.ends_with(".prm")) parameter_file.remove_suffix(4);
  return std::string(parameter_file);
}

void make_workflow(const std::string& folder) {
  const std::string snakefile = folder + "/Snakefile";
  const std::string_view own(qob_snakefile, qob_snakefile_end);
  const std::string_view head = own.substr(0, own.find('\n'));
  const bool is_own = path_exists(snakefile) && bytes_of(snakefile).starts_with(head);
  if (!is_own && !entries_of(folder, "").empty())
    refuse(folder, "other things are in it : expected a new folder, or that of a workflow");
  make_or_refuse(folder);
  make_or_refuse(folder + "/slurm");
  write_if_missing(folder + "/slurm/config.yaml", qob_profile, qob_profile_end);
  write_if_missing(folder + "/slurm/status.sh", qob_status, qob_status_end);
  write_if_missing(folder + "/README", qob_readme, qob_readme_end);
  write_if_missing(snakefile, qob_snakefile, qob_snakefile_end);
}

void expect_place(const std::string& folder, const std::string& parameter_file) {
  const std::string path = json_file(folder, parameter_file);
  if (!path_exists(path)) return;
  const auto json = nlohmann::json::parse(bytes_of(path), nullptr, false);
  const bool is_same = json.is_object() && json.contains("inputs") &&
                       json["inputs"].contains(path_from(folder, parameter_file));
  if (!is_same)
    refuse(path, "it is there for another herd : expected a parameter file of another name");
}

void add_to_workflow(const std::string& folder, const WorkflowHerd& herd) {
  const std::string name = herd_name(herd.parameter_file);
  std::vector<MadeFile> files = {{"", herd.parameter_file, "", 0}};
  add_checksums(files);
  files.insert(files.end(), herd.inputs.begin(), herd.inputs.end());
  nlohmann::ordered_json inputs;
  for (const MadeFile& file : files) inputs[path_from(folder, file.name)] = file.sha256;
  std::vector<std::string> collect = {"--collect",
                                      "--output=" + path_from(".", folder) + "/" + name};
  collect.insert(collect.end(), herd.options.begin(), herd.options.end());
  collect.push_back(herd.parameter_file);
  const nlohmann::ordered_json json = {{"start", path_from(folder, ".")},
                                       {"collect", collect},
                                       {"inputs", inputs},
                                       {"seconds", herd.effort.seconds},
                                       {"megabytes", herd.effort.megabytes},
                                       {"prefix", herd.prefix},
                                       {"runs", herd.runs}};
  write_lines(json_file(folder, herd.parameter_file), [&](const Lines& lines) {
    lines(json.dump(1, ' ', false, nlohmann::json::error_handler_t::replace) + "\n");
  });
}

}  // namespace qob
