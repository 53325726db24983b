// The program: one argument, the parameter file.
#include <exception>
#include <new>
#include <string_view>

#include "driver/help.h"
#include "driver/run.h"
#include "system/process.h"

int main(int argc, char** argv) {
  qob::prepare_process();
  const std::string_view first = argc > 1 ? argv[1] : "";
  if (first == "--help") return qob::print_help();
  if (first == "--version") return qob::print_version();

  // Also when there is not even memory to report a shortage where it arose.
  std::set_new_handler([] { qob::stop(qob::kOutOfMemory); });
  std::set_terminate([] { qob::stop(qob::kOutOfMemory); });
  qob::Model model;
  qob::run(model, argc > 1 ? argv[1] : nullptr);
}
