// The command line of qob-frontier.
#pragma once

#include <optional>
#include <string>
#include <vector>

namespace qob {

struct FrontierArguments {
  std::string parameter_file;
  std::vector<std::string> more;  // parameter files of other herds, for a workflow
  std::string output;             // folder of the results, without a "/" behind it
  int points = 0;                 // spread evenly over the curve
  std::vector<double> weights;    // of relationship, at least 0
  std::optional<double> target_rate, target_ne, target_degrees;
  bool search = false;
  int seeds = 3;
  int jobs = 0;  // 0: as many as there are processors
  bool resume = false;
  bool collect = false;
  bool quiet = false;
  std::string workflow;               // folder of a workflow; "": the plans are made here
  std::vector<std::string> of_plans;  // the options that say which plans, as they were given
};

// None when there is nothing to do but to end with `status`: help and version were shown, or what
// is wrong with the arguments (status 2).
std::optional<FrontierArguments> frontier_arguments(int argc, char** argv, int& status);

}  // namespace qob
