// qob: its arguments, the parameter file first of all.
#include <algorithm>
#include <string_view>

#include "driver/commands.h"
#include "driver/help.h"
#include "driver/run.h"

namespace qob {

int run_command(int argc, char** argv) {
  const std::string_view first = argc > 1 ? argv[1] : "";
  if (first == "--help") return print_help();
  if (first == "--version") return print_version();
  Run run;
  qob::run(run, {argv + std::min(argc, 1), argv + argc});
}

}  // namespace qob
