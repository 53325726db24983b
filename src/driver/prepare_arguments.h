// The command line of qob-prepare.
#pragma once

#include <optional>
#include <string>

#include "prepare/options.h"

namespace qob {

struct PrepareArguments {
  std::string file;  // the herd book, or a data file to check
  bool check = false;
  std::string folder;  // "": the herd book's name
  bool force = false;
  std::optional<std::string> json;   // a file
  std::optional<std::string> rules;  // a file
  PrepareOptions options;
};

// None when there is nothing to do but to end with `status`: help and version were shown, or what
// is wrong with the arguments.
std::optional<PrepareArguments> prepare_arguments(int argc, char** argv, int& status);

}  // namespace qob
