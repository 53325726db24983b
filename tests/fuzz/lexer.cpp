// Values of a record and items of groups from any bytes.
#include "core/lexer.h"

#include <cstring>

#include "fuzz/fuzz.h"

using namespace qob;

namespace {

// The quick reading of plain values and the lexer's must agree.
void read_record(std::string_view line) {
  std::int32_t i[2] = {}, j[2] = {};
  double x[2] = {};
  Text<4> text[2] = {".", "."};
  const int status = read_list(line, i[0], x[0], j[0], text[0]);
  RecordReader lexer(line);
  static_cast<void>(lexer.read(i[1]) && lexer.read(x[1]) && lexer.read(j[1]) &&
                    lexer.read(text[1]));
  fuzz::require(status == lexer.status() && i[0] == i[1] && j[0] == j[1] && text[0] == text[1] &&
                    std::memcmp(&x[0], &x[1], sizeof x[0]) == 0,
                "plain values are what the lexer reads");
}

}  // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  std::string_view left = fuzz::text_of(data, size);
  for (std::string_view lines = left; !lines.empty();) {
    const auto end = std::min(lines.find('\n'), lines.size() - 1);
    read_record(lines.substr(0, end));
    lines.remove_prefix(end + 1);
  }
  Lexer lexer([&](std::string_view& line) {
    if (left.empty()) return kEndOfFile;
    const auto end = std::min(left.find('\n'), left.size() - 1);
    line = left.substr(0, end);
    left.remove_prefix(end + 1);
    return 0;
  });
  std::size_t items = 0;
  if (size % 2 == 0) static_cast<void>(lexer.find_group("Contrib"));
  while (lexer.next().kind != Token::Kind::kEnd) {
    fuzz::require(++items <= size, "an item takes a character");
  }
  return 0;
}
