#include "core/units.h"

#include "core/stop.h"
#include "core/text.h"
#include "system/process.h"

namespace qob {
namespace {

constexpr std::size_t kLongestMessage = 255;

}  // namespace

void Units::tell_unshown(const Unit& unit) {
  const auto tell_lines = [&](const Unshown& lines, const std::string& text) {
    if (lines.count == 0) return;
    tell(printable(unit.path()) + ":" + std::to_string(lines.line) + ": " + text +
         and_more(lines.count));
  };
  tell_lines(unit.unshown(Shown::kTooWide), "a number fills its column : expected fewer digits");
  tell_lines(unit.unshown(Shown::kNoNumber),
             "a value that is no number : 0/0, as alpha of a group that is fully inbred, or sums "
             "beyond 1.8E308, of relationships or breeding values");
}

void stop_with_message(Units& units, std::string_view message, std::optional<ErrorValue> value) {
  message = trim(message.substr(0, kLongestMessage));
  const std::string line = value ? formatted("(2A,I5)", message, " Value of error: ", value->value)
                                 : std::string(message);
  if (!units.log.is_open() && !units.out.is_open()) stop(line);  // a program without a log
  units.log.write_line(line);
  units.out.write_line(line);
  if (!streams_are_terminals()) units.err.write_line(line);
  stop(" Program terminated. Check file qob.log");
}

}  // namespace qob
