// The program: its arguments, the parameter file first of all.
#include <algorithm>
#include <string_view>

#include "driver/help.h"
#include "driver/run.h"
#include "driver/uncaught.h"
#include "system/process.h"

int main(int argc, char** argv) {
  qob::prepare_process();
  const std::string_view first = argc > 1 ? argv[1] : "";
  if (first == "--help") return qob::print_help();
  if (first == "--version") return qob::print_version();

  qob::stop_at_what_nothing_catches();
  qob::Run run;
  qob::run(run, {argv + std::min(argc, 1), argv + argc});
}
