#include "core/lexer.h"

#include <fast_float/fast_float.h>

#include <algorithm>
#include <charconv>
#include <cmath>
#include <system_error>

namespace qob {
namespace {

constexpr std::string_view kDigits = "0123456789";
constexpr std::string_view kNameCharacters =
    "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789_";

bool is_one_of(char c, std::string_view set) { return set.find(c) != std::string_view::npos; }
bool has_control(std::string_view text) {
  return std::any_of(text.begin(), text.end(), is_control);
}
bool is_separator(char c) { return is_blank(c) || c == ',' || c == '/'; }

// Takes the sign that from_chars does not know. False: another sign follows.
bool drop_plus(std::string_view& text) {
  if (!text.starts_with('+')) return true;
  text.remove_prefix(1);
  return !text.starts_with('-');
}

}  // namespace

int to_integer(std::string_view text, std::int32_t& value) {
  if (!drop_plus(text)) return kMalformed;
  const char* end = text.data() + text.size();
  std::int32_t number;
  const auto result = std::from_chars(text.data(), end, number);
  if (result.ec != std::errc() || result.ptr != end) return kMalformed;
  value = number;
  return 0;
}

int to_real(std::string_view text, double& value) {
  if (!drop_plus(text)) return kMalformed;
  std::string with_e;
  const bool negative = text.starts_with('-');
  const auto mark = text.find_first_not_of("0123456789.", negative ? 1 : 0);
  if (mark != std::string_view::npos && !is_one_of(text[mark], "eE")) {
    if (!is_one_of(text[mark], "dDqQ+-")) return kMalformed;
    const bool has_letter = !is_one_of(text[mark], "+-");
    with_e.append(text.substr(0, mark)).append("e").append(text.substr(mark + has_letter));
    text = with_e;
  }
  const char* end = text.data() + text.size();
  double number;  // infinite if too large, zero if too small
  const auto result = fast_float::from_chars(text.data(), end, number);
  if (result.ec == std::errc::invalid_argument || result.ptr != end || !std::isfinite(number)) {
    return kMalformed;
  }
  value = number;
  return 0;
}

int to_logical(std::string_view text, bool& value) {
  if (text.starts_with('.')) text.remove_prefix(1);
  if (text.empty() || !is_one_of(text.front(), "TtFf")) return kMalformed;
  value = is_one_of(text.front(), "Tt");
  return 0;
}

bool Lexer::at_item_end() const {
  return at_ == line_.size() || is_separator(line_[at_]) || (in_groups() && line_[at_] == '!');
}

bool Lexer::read_line() {
  line_ = {}, at_ = 0;
  ++line_number_;
  status_ = in_groups() ? next_line_(line_) : kEndOfFile;
  return status_ == 0;
}

// Goes to the next character that is not blank, over comments and line ends. False: there is none.
bool Lexer::skip_blanks() {
  do {
    while (at_ < line_.size() && is_blank(line_[at_])) ++at_;
    if (at_ < line_.size() && !(in_groups() && line_[at_] == '!')) return true;
  } while (read_line());
  return false;
}

Token Lexer::next() {
  while (skip_blanks()) {
    const char c = line_[at_];
    const std::int64_t line = line_number_;
    if (!is_separator(c)) {
      Token token = item();
      token.line = line;
      return token;
    }
    ++at_;
    if (c == '/') return {.kind = Token::Kind::kSlash, .line = line};
    if (value_expected_) return {.kind = Token::Kind::kNull, .line = line};
    value_expected_ = true;
  }
  return {.kind = Token::Kind::kEnd, .status = status_, .line = line_number_};
}

// A value, a name, or the null value r*.
Token Lexer::item() {
  value_expected_ = false;
  Token token{Token::Kind::kValue};
  if (!take_repeat(token.repeat)) return {Token::Kind::kBad};
  if (at_item_end()) {
    token.kind = Token::Kind::kNull;
    return token;
  }
  return is_one_of(line_[at_], "'\"") ? finish_quoted(token) : finish_word(token);
}

// Takes digits and an asterisk, if they stand here. False: they are no repeat count.
bool Lexer::take_repeat(std::int32_t& repeat) {
  const auto end = line_.find_first_not_of(kDigits, at_);
  if (end == at_ || end == std::string_view::npos || line_[end] != '*') return true;
  const auto digits = line_.substr(at_, end - at_);
  at_ = end + 1;
  return to_integer(digits, repeat) == 0 && repeat > 0;
}

std::string_view Lexer::take_word() {
  const auto begin = at_;
  while (!at_item_end() && !(in_groups() && line_[at_] == '=')) ++at_;
  return line_.substr(begin, at_ - begin);
}

// A word is a name when "=" follows, if need be on a later line.
Token Lexer::finish_word(Token token) {
  token.text = take_word();
  if (has_control(token.text)) token.kind = Token::Kind::kBad;
  if (!in_groups() || token.kind == Token::Kind::kBad) return token;
  text_ = token.text;
  token.text = text_;
  if (skip_blanks() && line_[at_] == '=') {
    ++at_;
    token.kind = Token::Kind::kName;
    value_expected_ = true;
  }
  return token;
}

Token Lexer::finish_quoted(Token token) {
  const char quote = line_[at_];
  bool closed = false;
  text_.clear();
  while (!closed && ++at_ < line_.size()) {
    const auto end = std::min(line_.find(quote, at_), line_.size());
    text_.append(line_, at_, end - at_);
    at_ = end;
    if (at_ == line_.size()) break;
    closed = ++at_ == line_.size() || line_[at_] != quote;
    if (!closed) text_.push_back(quote);
  }
  at_ = std::min(at_, line_.size());
  token.quoted = true;
  token.text = text_;
  if (!at_item_end() || (in_groups() && !closed) || has_control(text_)) {
    token.kind = Token::Kind::kBad;
  }
  return token;
}

int Lexer::find_group(std::string_view name) {
  const std::string wanted = lowercase(name);
  std::string found;
  bool in_group = false;
  int status;
  do {
    status = next_group(found, in_group);
  } while (status == 0 && lowercase(found) != wanted);
  return status;
}

// What is no name begins no group.
int Lexer::next_group(std::string& name, bool& in_group) {
  while (skip_blanks()) {
    const char c = line_[at_++];
    if (c == '/') {
      in_group = false;
    } else if (in_group && is_one_of(c, "'\"")) {
      at_ = std::min(line_.find(c, at_), line_.size() - 1) + 1;
    } else if (c == '&') {
      const auto begin = at_;
      at_ = std::min(line_.find_first_not_of(kNameCharacters, at_), line_.size());
      const auto end = at_;
      const bool is_name = end != begin && at_item_end();
      in_group = in_group || is_name;
      while (!at_item_end()) ++at_;
      name = line_.substr(begin, at_ - begin);
      at_ = end;
      return 0;
    }
  }
  return status_;
}

bool RecordReader::advance(char type) {
  if (left_ == 0) {
    token_ = lexer_.next();
    left_ = token_.repeat;
    type_ = type;
  }
  --left_;
  if (token_.kind == Token::Kind::kNull) return true;
  if (token_.kind == Token::Kind::kEnd) status_ = token_.status;
  if (token_.kind == Token::Kind::kBad || type != type_) status_ = kMalformed;
  return token_.kind == Token::Kind::kValue && status_ == 0;
}

}  // namespace qob
