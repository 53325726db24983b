// A herd that was read once, and the plans that are made for it, one after the other or all at
// once.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "driver/frontier_arguments.h"
#include "driver/frontier_folders.h"
#include "driver/frontier_plans.h"
#include "driver/frontier_points.h"

namespace qob {

class FrontierSession {
 public:
  // Reads the herd, and tells on standard error what is odd in it. Stops if no plan is possible.
  explicit FrontierSession(const FrontierArguments& arguments);

  // The herd's own goal, and the points that the arguments name, with their runs. Those that there
  // are already stay.
  void add(const FrontierArguments& arguments);
  void add(const PointRun& run);
  const std::vector<PointRun>& runs() const { return runs_; }
  const FrontierFolders& folders() const { return folders_; }
  const GivenParameters& given() const { return given_; }
  const SharedHerd& herd() const { return herd_; }
  bool is_finished(const PointRun& run) const { return folders_.is_finished(run); }

  // Makes the plans of these runs, and tells on standard error what went wrong.
  void make(const std::vector<PointRun>& runs);
  // What is possible, and the plans of the runs that are finished.
  Frontier collected();
  // The same for the page.
  std::string json_of_frontier(const Frontier& frontier) const;

  void tell(const std::string& line) { err_.write_line(line); }
  Unit& out() { return out_; }

 private:
  void read_herd_once(bool quiet);

  std::string parameter_file_;
  int jobs_;
  GivenParameters given_;
  FrontierFolders folders_;
  Unit out_{6}, err_{0};
  SharedHerd herd_;
  std::unique_ptr<Possible> possible_;
  std::vector<PointRun> runs_;
};

}  // namespace qob
