// The program: one argument, the parameter file.
#include <exception>
#include <new>
#include <stdexcept>
#include <string>
#include <string_view>

#include "core/stop.h"
#include "driver/help.h"
#include "driver/run.h"
#include "system/process.h"

namespace {

// What nothing has caught: no memory left, even to report it where it arose, or a defect.
[[noreturn]] void tell_the_end() {
  try {
    if (const auto exception = std::current_exception()) std::rethrow_exception(exception);
  } catch (const std::bad_alloc&) {
  } catch (const std::length_error&) {
  } catch (const std::exception& defect) {
    qob::stop(std::string("ERROR: the program has a defect : ") + defect.what());
  }
  qob::stop(qob::kOutOfMemory);
}

}  // namespace

int main(int argc, char** argv) {
  qob::prepare_process();
  const std::string_view first = argc > 1 ? argv[1] : "";
  if (first == "--help") return qob::print_help();
  if (first == "--version") return qob::print_version();

  std::set_new_handler([] { qob::stop(qob::kOutOfMemory); });
  std::set_terminate(tell_the_end);
  qob::Run run;
  qob::run(run, argc > 1 ? argv[1] : nullptr);
}
