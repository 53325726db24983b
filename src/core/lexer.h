// Free-form input: values separated by blanks, tabs or one comma, as in the data
// file, and the same values inside the groups of the parameter file.
//
//   7 , 1.5D0 'a text' ,, 3*0 /       values, a null value (,,), a repeated value, the end (/)
//   &Group key = 7, other = T / ! ...  in groups also names and comments, over many lines
//
// The lexer knows the items, its users the order they may come in. Number parsing is here alone,
// but for the plain forms that `read_list` takes before it asks the lexer.
#pragma once

#include <concepts>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <utility>

#include "core/plain_values.h"
#include "core/text.h"
#include "system/input_file.h"

namespace qob {

// The whole of `text` as a number or logical. Each returns 0, or kMalformed and leaves `value`.
//
// 32 bits, with or without sign.
int to_integer(std::string_view text, std::int32_t& value);
// A finite real; the exponent's letter is E, D or Q, or left out before its sign (1.5+3). One too
// small for a double becomes zero.
int to_real(std::string_view text, double& value);
// T or F or any word that starts so, in either case, with or without a leading point.
int to_logical(std::string_view text, bool& value);

struct Token {
  enum class Kind {
    kValue,
    kNull,   // a place left empty: the variable keeps its value
    kName,   // `text` =, in groups only
    kSlash,  // the end of the group or of the values of a record
    kBad,    // anything that deviates
    kEnd     // the record or the file has ended, or a read failed: see `status`
  };
  Kind kind;
  bool quoted = false;
  std::int32_t repeat = 1;  // of a value or a null
  std::string_view text{};  // valid until the lexer's next call
  int status = 0;           // kEndOfFile or the system's error number
  std::int64_t line = 0;    // on which it begins, counted from 1 where reading began
};

inline int convert(const Token& token, std::int32_t& value) {
  return token.quoted ? kMalformed : to_integer(token.text, value);
}
inline int convert(const Token& token, double& value) {
  return token.quoted ? kMalformed : to_real(token.text, value);
}
inline int convert(const Token& token, bool& value) {
  return token.quoted ? kMalformed : to_logical(token.text, value);
}
template <std::size_t N>
int convert(const Token& token, Text<N>& value) {
  value = token.text;
  return 0;
}

class Lexer {
 public:
  // As InputFile::next_line; leaves its argument when it fails.
  using NextLine = std::function<int(std::string_view& line)>;

  // Items of one record. A quoted text that is not closed ends with the record.
  explicit Lexer(std::string_view record) : line_(record) {}
  // Items of groups.
  explicit Lexer(NextLine next_line) : next_line_(std::move(next_line)) {}
  Lexer(const Lexer&) = delete;
  Lexer& operator=(const Lexer&) = delete;

  Token next();
  // Goes to just behind "&" and `name` in any case, over text outside groups, comments and other
  // groups with their quoted texts. Returns 0, kEndOfFile or the system's error number.
  int find_group(std::string_view name);
  // Goes to behind the next "&" and sets `name` to what stands there up to a separator, which need
  // be no name. in_group: whether that is within a group; false where reading began.
  int next_group(std::string& name, bool& in_group);
  // The line that is being read, counted from 1 where reading began.
  std::int64_t line() const { return line_number_; }
  // Reading begins anew: forgets the rest of the current line.
  void restart() { line_ = {}, at_ = 0, line_number_ = 0; }

 private:
  bool in_groups() const { return next_line_ != nullptr; }
  bool at_item_end() const;
  bool read_line();
  bool skip_blanks();
  Token item();
  bool take_repeat(std::int32_t& repeat);
  std::string_view take_word();
  Token finish_word(Token token);
  Token finish_quoted(Token token);

  NextLine next_line_;
  std::string_view line_;
  std::size_t at_ = 0;
  std::int64_t line_number_ = 0;
  bool value_expected_ = true;  // a comma now stands behind an empty place
  int status_ = 0;              // of the last line that was asked for
  std::string text_;            // text of a token that cannot refer to the line
};

// Reads the values of a record into variables one by one.
class RecordReader {
 public:
  explicit RecordReader(std::string_view record) : lexer_(record) {}

  // False when reading is over; see `status`.
  template <class Variable>
  bool read(Variable& variable) {
    if (!advance(std::integral<Variable> ? 'I' : std::floating_point<Variable> ? 'R' : 'A')) {
      return false;
    }
    if (token_.kind == Token::Kind::kValue) status_ = convert(token_, variable);
    return status_ == 0;
  }
  int status() const { return status_; }

 private:
  bool advance(char type);

  Lexer lexer_;
  Token token_{Token::Kind::kEnd};
  std::int32_t left_ = 0;  // places that `token_` still stands for
  char type_ = ' ';        // of the first of them
  int status_ = 0;
};

// Reads `line` into integers, reals and texts, list-directed: a null value leaves its variable, a
// slash leaves it and all that follow, what stands behind the last value is not looked at. A text
// is a word or quoted. Returns 0, kEndOfFile (the line ended first) or kMalformed (a bad item, or
// a repeated value for variables of different types); variables before that have new values.
//
// rest: becomes what stands behind the last value of a line in plain form; of another, and of one
// that ends before, the whole line.
template <class... Variables>
int read_list_before(std::string_view& rest, std::string_view line, Variables&... variables) {
  rest = line;
  PlainValues plain(line);
  if ((plain.read(variables) && ...)) {
    rest = plain.rest();
    return 0;
  }
  if (plain.at_end()) return kEndOfFile;
  RecordReader reader(line);
  static_cast<void>((reader.read(variables) && ...));
  return reader.status();
}

template <class... Variables>
int read_list(std::string_view line, Variables&... variables) {
  std::string_view rest;
  return read_list_before(rest, line, variables...);
}

}  // namespace qob
