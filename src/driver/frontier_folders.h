// The folder of a frontier's results, with a folder for each of its runs. A run is finished when
// the copy of its log is there, complete, which it writes last, and its parameter file is the one
// that would be written now; that tells the sizes and checksums of the inputs, too.
#pragma once

#include <string>
#include <vector>

#include "driver/frontier_points.h"
#include "driver/shared_herd.h"
#include "report/report.h"

namespace qob {

class FrontierFolders {
 public:
  // Makes `folder` if it is not there. Stops if other things are in it.
  FrontierFolders(std::string folder, const GivenParameters& given);

  // The data file, and the file of relationships if there is one.
  const std::vector<MadeFile>& inputs() const { return inputs_; }
  // With its "/".
  std::string path(const PointRun& run) const { return folder_ + "/" + run.folder + "/"; }
  std::string path(const char* file) const { return folder_ + "/" + file; }
  // The copy of its log, and its mating list.
  std::string log(const PointRun& run) const;
  std::string mating_list(const PointRun& run) const;

  bool is_finished(const PointRun& run) const;
  // Writes the run's parameter file. It is not finished thereafter.
  void prepare(const PointRun& run) const;

 private:
  std::string text_of(const PointRun& run) const;

  std::string folder_, prefix_;
  GivenParameters given_;
  std::vector<MadeFile> inputs_;
};

inline constexpr const char* kRunParameters = "qob.prm";  // in each folder

// Runs those that are prepared, so many at a time. Who sees `out` is told of each that has ended.
// Returns what went wrong, a line each.
std::vector<std::string> run_all(const FrontierFolders& folders, const SharedHerd& herd,
                                 const std::vector<PointRun>& runs, int jobs, Unit& out);

}  // namespace qob
