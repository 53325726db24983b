// The runs of a frontier as a workflow: Snakemake carries it out on one machine or has a cluster do
// it. The folder of a workflow holds what is the same for all, and for each herd
//
//   HERD.json  what there is to do, which the Snakefile reads
//   HERD/      the folder of results, with the parameter files of the runs
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "core/parameters.h"
#include "ocs/selection.h"
#include "report/report.h"

namespace qob {

// What a run takes, on the large side.
struct Effort {
  double seconds;
  std::int64_t megabytes;
};

// Of a search with these parameters in a pedigree of so many animals.
Effort effort_of(const Selection& selection, const AlgorithmParameters& search,
                 std::int64_t animals);

// Names of files as they are where the program was started.
struct WorkflowHerd {
  std::string parameter_file;
  std::vector<MadeFile> inputs;      // the others, with checksums
  std::vector<std::string> options;  // of qob-frontier, which say what plans there are
  std::vector<std::string> runs;     // their folders in HERD/
  std::string prefix;                // of their results
  Effort effort;
};

// HERD of a parameter file: its name without folder and ".prm".
std::string herd_name(std::string_view parameter_file);

// Makes the folder of a workflow, or what is missing in it: what its user has changed stays. Stops
// if it cannot, or if other things are there.
void make_workflow(const std::string& folder);

// Stops if another parameter file of that name is in the workflow.
void expect_place(const std::string& folder, const std::string& parameter_file);

// Writes HERD.json.
void add_to_workflow(const std::string& folder, const WorkflowHerd& herd);

}  // namespace qob
