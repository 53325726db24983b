#include "driver/usage.h"

#include <CLI/CLI.hpp>
#include <sstream>
#include <string>

#include "core/unit.h"

namespace qob {
namespace {

constexpr int kUsage = 2;

void tell(Unit& unit, std::string text) {
  if (text.empty()) return;
  if (text.ends_with('\n')) text.pop_back();  // the line's own
  unit.write_line(text);
}

}  // namespace

int tell_usage(const CLI::App& app, const CLI::ParseError& end) {
  std::ostringstream told, wrong;
  const int status = app.exit(end, told, wrong);
  Unit out(6), err(0);
  out.open_standard_output();
  err.open_standard_error();
  tell(out, told.str());
  tell(err, wrong.str());
  return status == 0 ? 0 : kUsage;
}

}  // namespace qob
