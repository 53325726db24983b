#include "core/units.h"

#include "core/stop.h"
#include "core/text.h"
#include "system/process.h"

namespace qob {
namespace {

constexpr std::size_t kLongestMessage = 255;

}  // namespace

void stop_with_message(Units& units, std::string_view message, std::optional<ErrorValue> value) {
  message = trim(message.substr(0, kLongestMessage));
  const std::string line = value ? formatted("(2A,I5)", message, " Value of error: ", value->value)
                                 : std::string(message);
  units.log.write_line(line);
  units.out.write_line(line);
  if (!streams_are_terminals()) units.err.write_line(line);
  stop(" Program terminated. Check file qob.log");
}

}  // namespace qob
