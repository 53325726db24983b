// The program: its arguments, the parameter file first of all.
#include <algorithm>
#include <exception>
#include <new>
#include <string_view>

#include "core/stop.h"
#include "driver/help.h"
#include "driver/run.h"
#include "driver/uncaught.h"
#include "system/process.h"

int main(int argc, char** argv) {
  qob::prepare_process();
  const std::string_view first = argc > 1 ? argv[1] : "";
  if (first == "--help") return qob::print_help();
  if (first == "--version") return qob::print_version();

  std::set_new_handler([] { qob::stop(qob::kOutOfMemory); });
  std::set_terminate([] { qob::stop(qob::what_nothing_caught()); });
  qob::Run run;
  qob::run(run, {argv + std::min(argc, 1), argv + argc});
}
