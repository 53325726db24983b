// Records by format: the call quotes the layout, as in
//     write(file, "(2I12,I8,2F10.6,1X,A)", sire, dam, n, r, c, text);
// The layout and the types of the items are checked while compiling, and one engine carries it
// out at run time with the same reader.
#pragma once

#include <array>
#include <concepts>
#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <type_traits>

#include "core/edit.h"
#include "core/unit.h"

namespace qob {

template <class T>
concept IntegerItem = std::integral<T> && !std::same_as<T, bool> && !std::same_as<T, char>;
template <class T>
concept RealItem = std::same_as<T, float> || std::same_as<T, double>;
template <class T>
concept TextItem = std::convertible_to<const T&, std::string_view>;

enum class ItemKind : char { kNone, kInteger, kReal, kText };

// What an item of type T is to a format; kNone for a type that is no item (bool, char, ...).
template <class T>
inline constexpr ItemKind kItemKind = IntegerItem<T> ? ItemKind::kInteger
                                      : RealItem<T>  ? ItemKind::kReal
                                      : TextItem<T>  ? ItemKind::kText
                                                     : ItemKind::kNone;

// An item with its type erased. A text is only referred to.
class Item {
 public:
  template <IntegerItem T>
  Item(T value) : kind(ItemKind::kInteger), integer(static_cast<std::int64_t>(value)) {}
  template <RealItem T>
  Item(T value) : kind(ItemKind::kReal), real(value) {}
  template <TextItem T>
  Item(const T& value) : kind(ItemKind::kText), text(value) {}

  ItemKind kind;
  union {
    std::int64_t integer;
    double real;
    std::string_view text;
  };
};

// One step of a format, repeat counts resolved.
struct Descriptor {
  // I, F, E, G, A: a field for an item. X: skip (nX, TRn). T: move to a column. /: line break.
  // ": a text that stands in the format. ): end of the format. ?: the format is malformed.
  char code = '?';
  int width = 0;   // columns (0: an A at its own length); for T the column, counted from 1
  int digits = 0;  // behind the point of the descriptor
  std::string_view literal = {};

  constexpr bool takes_item() const {
    return code == 'I' || code == 'F' || code == 'E' || code == 'G' || code == 'A';
  }
  constexpr bool takes(ItemKind kind) const {
    if (code == 'G') return kind != ItemKind::kNone;
    if (code == 'I') return kind == ItemKind::kInteger;
    return kind == (code == 'A' ? ItemKind::kText : ItemKind::kReal);
  }
};

// Reads a format step by step. Blanks and case do not matter outside texts:
//   format = "(" list ")"
//   list   = step { "," step }    the comma beside a "/" may be left out
//   step   = [n] "(" list ")" | [n] field | [n] "X" | [n] "/" | "Tc" | "TRn" | text
//   field  = "Iw" | "Iw.m" | "Fw.d" | "Ew.d" | "Gw.d" | "A" | "Aw"
//   text   = characters within " or within ' (the quote itself cannot be among them)
class FormatReader {
 public:
  constexpr explicit FormatReader(std::string_view format) : format_(format) {
    valid_ = accept('(');
    revert_to_ = at_;
  }

  // The next step; at the end of the format ")", again and again.
  constexpr Descriptor next() {
    if (repeats_ > 0) {
      --repeats_;
      return step_;
    }
    while (valid_) {
      const char c = peek();
      if (c == ')' && before_ != Before::kNothing) {
        if (depth_ == 0) return {.code = at_ + 1 == format_.size() ? ')' : '?'};
        close_group();
      } else if (c == ',' && before_ != Before::kNothing) {
        ++at_;
        before_ = Before::kNothing;
      } else if (read_step()) {
        return step_;
      }
    }
    return {};
  }

  // Goes back for more items: to the last group of the outer level (with its repeat count), or to
  // the start of a format that has none.
  constexpr void revert() {
    at_ = revert_to_;
    before_ = Before::kNothing;
  }

 private:
  // What stands before the next step; kNothing after an opening parenthesis or a comma.
  enum class Before : char { kNothing, kSlash, kStep };
  struct Group {
    std::size_t start = 0;
    int left = 0;  // how many times it is still to be repeated
  };

  // The next character that is no blank, as a capital letter; 0 at the end.
  constexpr char peek() {
    while (at_ < format_.size() && format_[at_] == ' ') ++at_;
    if (at_ == format_.size()) return '\0';
    const char c = format_[at_];
    return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c;
  }
  constexpr bool at_digit() {
    const char c = peek();
    return c >= '0' && c <= '9';
  }
  constexpr bool accept(char wanted) {
    if (peek() != wanted) return false;
    ++at_;
    return true;
  }
  // The number that must stand here and be at least `least`; it has four digits at most.
  constexpr int number(int least) {
    int value = 0;
    int digits = 0;
    for (; at_digit() && digits < 4; ++digits, ++at_) value = value * 10 + (format_[at_] - '0');
    if (digits == 0 || at_digit() || value < least) valid_ = false;
    return value;
  }

  // Reads a step into `step_`. Returns false when it is a group, which is only opened, and when it
  // is malformed.
  constexpr bool read_step() {
    const std::size_t start = at_;
    const bool counted = at_digit();
    const int count = counted ? number(1) : 1;
    const char code = peek();
    if (before_ == Before::kStep && code != '/') valid_ = false;
    if (code != '\0') ++at_;
    if (code == '(') {
      open_group(start, count);
      return false;
    }
    before_ = code == '/' ? Before::kSlash : Before::kStep;
    step_ = {.code = code};
    if (step_.takes_item() || code == '/') {
      repeats_ = count - 1;
      if (code != '/') read_field();
    } else if (code == 'X') {
      step_.width = count;
    } else {
      if (counted) valid_ = false;
      read_control();
    }
    return valid_;
  }
  constexpr void read_field() {
    if (step_.code != 'A' || at_digit()) step_.width = number(1);
    if (step_.code == 'A') return;
    const bool integer = step_.code == 'I';
    const bool point = accept('.');
    step_.digits = point ? number(integer || step_.code == 'F' ? 0 : 1) : 1;
    if ((!integer && !point) || step_.digits > kLargestPrecision) valid_ = false;
  }
  // Reads a step that has no repeat count.
  constexpr void read_control() {
    if (step_.code == 'T') {
      if (accept('R')) step_.code = 'X';
      step_.width = number(1);
      return;
    }
    const bool quote = step_.code == '"' || step_.code == '\'';
    const std::size_t end = quote ? format_.find(step_.code, at_) : std::string_view::npos;
    valid_ = valid_ && end != std::string_view::npos;
    if (!valid_) return;
    step_ = {.code = '"', .literal = format_.substr(at_, end - at_)};
    at_ = end + 1;
  }
  constexpr void open_group(std::size_t start, int count) {
    if (depth_ == 0) revert_to_ = start;
    before_ = Before::kNothing;
    valid_ = valid_ && depth_ < groups_.size();
    if (valid_) groups_[depth_++] = {at_, count - 1};
  }
  constexpr void close_group() {
    Group& group = groups_[depth_ - 1];
    const bool again = group.left-- > 0;
    at_ = again ? group.start : at_ + 1;
    before_ = again ? Before::kNothing : Before::kStep;
    if (!again) --depth_;
  }

  std::string_view format_;
  std::size_t at_ = 0;
  std::size_t revert_to_ = 0;
  bool valid_ = true;
  Before before_ = Before::kNothing;
  Descriptor step_;
  int repeats_ = 0;  // how many times `step_` is still to come
  std::array<Group, 8> groups_{};
  std::size_t depth_ = 0;
};

enum class FormatFault : char { kNone, kWrongFormat, kTakesNoItems, kWrongItemType };

// Whether items of these kinds can be written by `format`, however often it is used again.
constexpr FormatFault check_format(std::string_view format, std::span<const ItemKind> items) {
  FormatReader whole(format);
  for (Descriptor step = whole.next(); step.code != ')'; step = whole.next()) {
    if (step.code == '?') return FormatFault::kWrongFormat;
  }
  FormatReader reader(format);
  for (const ItemKind kind : items) {
    bool reverted = false;
    Descriptor step = reader.next();
    for (; !step.takes_item(); step = reader.next()) {
      if (step.code != ')') continue;
      if (reverted) return FormatFault::kTakesNoItems;
      reader.revert();
      reverted = true;
    }
    if (!step.takes(kind)) return FormatFault::kWrongItemType;
  }
  return FormatFault::kNone;
}

// Nowhere defined and not constexpr: a format that is at fault does not compile, and the
// compiler's message names one of these.
void the_format_is_malformed();
void the_format_takes_no_items();
void an_item_has_the_wrong_type_for_its_descriptor();

// A layout that suits items of these types; made from a text constant.
template <class... Items>
class FormatFor {
 public:
  consteval FormatFor(const char* text) : text_(text) {
    constexpr std::array<ItemKind, sizeof...(Items)> kKinds{kItemKind<Items>...};
    const FormatFault fault = check_format(text_, kKinds);
    if (fault == FormatFault::kWrongFormat) the_format_is_malformed();
    if (fault == FormatFault::kTakesNoItems) the_format_takes_no_items();
    if (fault == FormatFault::kWrongItemType) an_item_has_the_wrong_type_for_its_descriptor();
  }
  std::string_view text() const { return text_; }

 private:
  std::string_view text_;
};

template <class... Items>
using Format = FormatFor<std::type_identity_t<Items>...>;

// Carries out `format`, which `check_format` has found good for these items, and appends the
// record to `out`. Lines are joined by line feeds; columns that are only skipped are blank, and not
// written at the end of a line. Returns how the value was shown that fits worst.
Shown append_items(std::string& out, std::string_view format, std::span<const Item> items);
// A line without a format: a blank, then texts as they are, integers right-aligned in 12 columns
// (more if they need them), reals as a blank and their shortest form.
std::string format_list_items(std::span<const Item> items);

// A record, which may hold several lines, without the last line end.
template <class... Items>
std::string formatted(Format<Items...> format, const Items&... items) {
  std::string record;
  append_items(record, format.text(), std::array<Item, sizeof...(Items)>{Item(items)...});
  return record;
}

// The same without a format.
template <class... Items>
std::string format_list(const Items&... items) {
  return format_list_items(std::array<Item, sizeof...(Items)>{Item(items)...});
}

// Writes a record to `unit`.
template <class... Items>
void write(Unit& unit, Format<Items...> format, const Items&... items) {
  const std::array<Item, sizeof...(Items)> list{Item(items)...};
  unit.end_line(append_items(unit.new_line(), format.text(), list));
}

// Writes a record to `first` and then to `second`.
template <class... Items>
void both(Unit& first, Unit& second, Format<Items...> format, const Items&... items) {
  std::string record;
  const std::array<Item, sizeof...(Items)> list{Item(items)...};
  const Shown shown = append_items(record, format.text(), list);
  first.write_line(record, shown);
  second.write_line(record, shown);
}

// Writes a line without a format to `unit`.
template <class... Items>
void write_list(Unit& unit, const Items&... items) {
  unit.write_line(format_list(items...));
}

// Writes a line without a format to `first` and then to `second`.
template <class... Items>
void both_list(Unit& first, Unit& second, const Items&... items) {
  const std::string line = format_list(items...);
  first.write_line(line);
  second.write_line(line);
}

}  // namespace qob
