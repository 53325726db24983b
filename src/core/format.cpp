#include "core/format.h"

#include <algorithm>
#include <cmath>

#include "core/edit.h"

namespace qob {
namespace {

constexpr int kListColumns = 12;

void edit(std::string& out, const Descriptor& step, const Item& item) {
  switch (item.kind) {
    case ItemKind::kInteger:
      return edit_integer(out, item.integer, step.width, step.code == 'I' ? step.digits : 1);
    case ItemKind::kReal:
      if (step.code == 'F') return edit_fixed(out, item.real, step.width, step.digits);
      if (step.code == 'E') return edit_exponent(out, item.real, step.width, step.digits);
      return edit_general(out, item.real, step.width, step.digits);
    default:
      if (step.width == 0) {
        out.append(item.text);
      } else {
        edit_text(out, item.text, step.width);
      }
  }
}

// How the item is shown whose field begins at `field`.
Shown shown(const std::string& out, std::size_t field, const Item& item) {
  if (item.kind == ItemKind::kText) return Shown::kAsItIs;
  if (item.kind == ItemKind::kReal && !std::isfinite(item.real)) return Shown::kNoNumber;
  const auto is_of_number = [&](std::size_t at) {
    return (out[at] >= '0' && out[at] <= '9') || out[at] == '-';
  };
  const bool runs_in = item.kind == ItemKind::kInteger && field > 0 && is_of_number(field) &&
                       is_of_number(field - 1);
  return out.back() == '*' || runs_in ? Shown::kTooWide : Shown::kAsItIs;
}

// The record in the making and the place in its last line where the next field begins, which
// moves ahead of the characters (skipped columns) or back among them.
class Record {
 public:
  explicit Record(std::string& text) : text_(text), line_(text.size()), place_(line_) {}

  void move_to(std::size_t column) { place_ = line_ + column; }
  void skip(std::size_t columns) { place_ += columns; }
  void end_line() {
    text_.push_back('\n');
    line_ = place_ = text_.size();
  }
  // Lets `append` add a field at the place; the field covers what stood there.
  template <class Append>
  void put(Append append) {
    if (place_ < text_.size()) return cover(append);
    text_.resize(place_, ' ');
    append(text_);
    place_ = text_.size();
  }

 private:
  template <class Append>
  void cover(Append append) {
    const std::string covered = text_.substr(place_);
    text_.resize(place_);
    append(text_);
    const std::size_t size = text_.size() - place_;
    if (covered.size() > size) text_.append(covered, size);
    place_ += size;
  }

  std::string& text_;
  std::size_t line_;  // start of the last line
  std::size_t place_;
};

}  // namespace

Shown append_items(std::string& out, std::string_view format, std::span<const Item> items) {
  Record record(out);
  FormatReader reader(format);
  auto item = items.begin();
  Shown worst = Shown::kAsItIs;
  for (;;) {
    const Descriptor step = reader.next();
    const auto width = static_cast<std::size_t>(step.width);
    if (step.takes_item()) {
      if (item == items.end()) return worst;
      record.put([&](std::string& text) {
        const std::size_t field = text.size();
        edit(text, step, *item);
        worst = std::max(worst, shown(text, field, *item));
      });
      ++item;
    } else if (step.code == 'X') {
      record.skip(width);
    } else if (step.code == 'T') {
      record.move_to(width - 1);
    } else if (step.code == '"') {
      record.put([&](std::string& text) { text.append(step.literal); });
    } else {
      if (step.code != '/' && item == items.end()) return worst;
      if (step.code == ')') reader.revert();
      record.end_line();
    }
  }
}

std::string format_list_items(std::span<const Item> items) {
  std::string line = " ";
  for (const Item& item : items) {
    if (item.kind == ItemKind::kText) {
      line.append(item.text);
    } else if (item.kind == ItemKind::kReal) {
      line.append(" ").append(shortest(item.real));
    } else {
      const std::string digits = std::to_string(item.integer);
      edit_text(line, digits, std::max(kListColumns, static_cast<int>(digits.size())));
    }
  }
  return line;
}

}  // namespace qob
