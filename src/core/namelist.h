// The parameter file: groups of "key = value" items whose keys are bound to variables. A group is
// read and echoed by the same table of keys.
//
//   &Group first = 7, second = 'text' ! a comment
//     third = T /
//
// Items stand in any order, separated by blanks, commas and line ends; a key left out, or without
// value, keeps its variable; the last of repeated keys wins; text outside groups is skipped.
#pragma once

#include <concepts>
#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "core/lexer.h"
#include "core/unit.h"

namespace qob {

// A value as the echo shows it: numbers in the shortest form that reads back to the same number,
// logicals T or F, texts trimmed and in double quotes.
std::string literal(std::int32_t value);
std::string literal(double value);
std::string literal(std::string_view value);
std::string literal(std::same_as<bool> auto value) { return value ? "T" : "F"; }

// What a value has to be, in words.
constexpr std::string_view expected_of(const std::int32_t*) { return "a whole number of 32 bits"; }
constexpr std::string_view expected_of(const double*) { return "a finite number"; }
constexpr std::string_view expected_of(const bool*) { return ".true. or .false."; }
template <std::size_t N>
constexpr std::string_view expected_of(const Text<N>*) {
  return "a text in quotes";
}

// The characters that a text has; 0 for what is none.
constexpr std::size_t width_of(const void*) { return 0; }
template <std::size_t N>
constexpr std::size_t width_of(const Text<N>*) {
  return N;
}

// A key bound to a variable: std::int32_t, double, bool or Text<N>. Texts must be quoted.
struct Key {
  template <class Variable>
  Key(std::string_view key, Variable* variable)
      : name(key),
        expected(expected_of(variable)),
        width(width_of(variable)),
        set([variable](const Token& token) {
          constexpr bool is_text = std::convertible_to<Variable, std::string_view>;
          return is_text == token.quoted ? convert(token, *variable) : kMalformed;
        }),
        show([variable] { return literal(*variable); }) {}

  std::string_view name;
  std::string_view expected;
  std::size_t width;
  std::function<int(const Token&)> set;
  std::function<std::string()> show;
};

// Names of groups and keys match in any case.
struct Group {
  std::string_view name;
  std::vector<Key> keys;
};

class NamelistFile {
 public:
  // What stands on a line of the file.
  struct Remark {
    std::int64_t line = 0;  // 0: nothing to remark
    std::string text;
  };
  // A value that a key was given.
  struct Given {
    std::int64_t line;
    std::string_view key;
    std::size_t width;  // of its variable
    std::string whole;  // of a text that is longer than its variable
    bool is_cut() const { return !whole.empty(); }
  };

  NamelistFile() : lexer_([this](std::string_view& line) { return next_line(line); }) {}

  // Returns 0 or the system's error number, as does `rewind`.
  int open(const std::string& path);
  int rewind();
  // Goes to just behind the next "&" and name of the group. Returns 0, kEndOfFile (no such group)
  // or the system's error number.
  int find(const Group& group) { return lexer_.find_group(group.name); }
  // Reads the items of the group just found into its variables, up to and with its "/". Returns 0,
  // kEndOfFile (the group is not closed), kMalformed (any deviation, after which the items before
  // it have been read) or the system's error number.
  int read_items(const Group& group);
  // Both, one after the other.
  int read(const Group& group);
  // See Lexer::next_group.
  int next_group(std::string& name, bool& in_group) { return lexer_.next_group(name, in_group); }

  // The line on which the group stands that was found last.
  std::int64_t group_line() const { return lexer_.line(); }
  // Of the last group that was read: its deviation, and its values.
  const Remark& fault() const { return fault_; }
  const std::vector<Given>& given() const { return given_; }

 private:
  // A line that is longer is malformed.
  static constexpr std::size_t kLongestLine = 1U << 20U;

  int next_line(std::string_view& line);
  int set(const Group& group, const Key* key, const Token& token);
  int malformed(const Token& token, std::string text);

  InputFile file_{kLongestLine};
  Lexer lexer_;
  Remark fault_;
  std::vector<Given> given_;
};

// Writes the group's name, its keys with their present values, one a line, and "/".
void echo(Unit& unit, const Group& group);

}  // namespace qob
