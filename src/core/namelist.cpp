#include "core/namelist.h"

#include <algorithm>

#include "core/edit.h"
#include "core/text.h"

namespace qob {
namespace {

std::string uppercase(std::string_view text) {
  std::string out(text);
  for (char& c : out) {
    if (c >= 'a' && c <= 'z') c = static_cast<char>(c - 'a' + 'A');
  }
  return out;
}

const Key* find_key(const Group& group, std::string_view name) {
  const auto same = [wanted = lowercase(name)](const Key& key) {
    return lowercase(key.name) == wanted;
  };
  const auto found = std::find_if(group.keys.begin(), group.keys.end(), same);
  return found == group.keys.end() ? nullptr : &*found;
}

}  // namespace

std::string literal(std::int32_t value) { return std::to_string(value); }
std::string literal(double value) { return shortest(value); }

std::string literal(std::string_view value) {
  std::string out = "\"";
  for (const char c : trim(value)) out.append(c == '"' ? 2 : 1, c);
  return out + '"';
}

int NamelistFile::next_line(std::string_view& line) {
  const int status = file_.next_line(line);
  return status == 0 && line.size() == kLongestLine ? kMalformed : status;
}

int NamelistFile::open(const std::string& path) {
  lexer_.restart();
  return file_.open(path);
}

int NamelistFile::rewind() {
  lexer_.restart();
  return file_.rewind();
}

int NamelistFile::read(const Group& group) {
  const int status = find(group);
  return status == 0 ? read_items(group) : status;
}

int NamelistFile::read_items(const Group& group) {
  const Key* key = nullptr;  // waits for its value
  for (;;) {
    const Token token = lexer_.next();
    if (token.kind == Token::Kind::kEnd) return token.status;
    if (token.kind == Token::Kind::kSlash) return 0;
    if (token.kind == Token::Kind::kBad || token.repeat != 1) return kMalformed;
    if (token.kind == Token::Kind::kName) {
      key = find_key(group, token.text);
      if (key == nullptr) return kMalformed;
      continue;
    }
    if (token.kind == Token::Kind::kValue) {
      if (key == nullptr || key->set(token) != 0) return kMalformed;
    }
    key = nullptr;
  }
}

void echo(Unit& unit, const Group& group) {
  unit.write_line("&" + uppercase(group.name));
  for (const Key& key : group.keys) {
    unit.write_line(uppercase(key.name) + " = " + key.show() + ",");
  }
  unit.write_line("/");
}

}  // namespace qob
