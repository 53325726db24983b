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

std::string unknown_key(const Group& group, std::string_view name) {
  std::string text = printable(name) + " : expected a key of " + std::string(group.name);
  for (const Key& key : group.keys) {
    text.append(&key == &group.keys.front() ? " : " : ", ").append(key.name);
  }
  return text;
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

int NamelistFile::malformed(const Token& token, std::string text) {
  fault_ = {token.line, std::move(text)};
  return kMalformed;
}

// Gives the value to the key that waits for it, if any does.
int NamelistFile::set(const Group& group, const Key* key, const Token& token) {
  if (key == nullptr) {
    return malformed(token, printable(token.text) + " : expected a key of " +
                                std::string(group.name) + " and \"=\", or \"/\" at its end");
  }
  if (key->set(token) != 0) {
    return malformed(token, std::string(key->name) + " = " + printable(token.text) +
                                " : expected " + std::string(key->expected));
  }
  const bool cut = key->width > 0 && trim(token.text).size() > key->width;
  given_.push_back({token.line, key->name, key->width, std::string(cut ? token.text : "")});
  return 0;
}

int NamelistFile::read_items(const Group& group) {
  fault_ = {};
  given_.clear();
  const Key* key = nullptr;  // waits for its value
  for (;;) {
    const Token token = lexer_.next();
    if (token.kind == Token::Kind::kEnd) return token.status;
    if (token.kind == Token::Kind::kSlash) return 0;
    if (token.kind == Token::Kind::kBad) return malformed(token, "what stands here is no value");
    if (token.repeat != 1) return malformed(token, "a repeated value : expected one");
    if (token.kind == Token::Kind::kName) {
      key = find_key(group, token.text);
      if (key == nullptr) return malformed(token, unknown_key(group, token.text));
      continue;
    }
    if (token.kind == Token::Kind::kValue && set(group, key, token) != 0) return kMalformed;
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
