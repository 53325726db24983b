#include "ocs/rules/rules_file.h"

#include <algorithm>
#include <cmath>

#include "core/lexer.h"
#include "core/text_encoding.h"

namespace qob {
namespace {

constexpr std::size_t kCells = 4;

// The cells of a line. False: quotes that are not as CSV has them.
bool split(std::string_view line, char separator, std::vector<std::string>& cells) {
  cells.assign(1, "");
  bool quoted = false, closed = false;
  for (std::size_t k = 0; k < line.size(); ++k) {
    const char c = line[k];
    if (quoted && c == '"' && k + 1 < line.size() && line[k + 1] == '"') {
      cells.back() += line[++k];
    } else if (quoted && c == '"') {
      quoted = false;
      closed = true;
    } else if (quoted) {
      cells.back() += c;
    } else if (c == separator) {
      cells.emplace_back();
      closed = false;
    } else if (c == '"' && !closed && adjustl_trim(cells.back()).empty()) {
      quoted = true;
    } else if (c == '"' || (closed && c != ' ')) {
      return false;
    } else {
      cells.back() += c;
    }
  }
  for (std::string& cell : cells) cell = adjustl_trim(cell);
  return !quoted;
}

class Reader {
 public:
  RulesFile read(std::string_view text);

 private:
  void take_header(std::string_view line);
  void take(std::string_view line);
  const RuleForm* form(std::string_view name) const;
  void check_name(RuleCell cell, char column, std::string_view name);
  void take_value(const RuleForm& form, std::string value, Rule& rule);
  void fault(std::string text) { file_.faults.push_back({line_, std::move(text)}); }

  RulesFile file_;
  std::int64_t line_ = 0;
  char separator_ = 0;
  std::vector<std::string> cells_;
};

void Reader::take_header(std::string_view line) {
  const std::size_t end = line.find_first_of(",;\t");
  separator_ = end == std::string_view::npos ? ',' : line[end];
  std::string header;
  if (split(line, separator_, cells_))
    for (const std::string& cell : cells_) header += "," + lowercase(cell);
  header.resize(header.find_last_not_of(',') + 1);  // npos + 1 is 0
  if (header != "," + std::string(kRulesHeader))
    fault("expected the header " + std::string(kRulesHeader));
}

const RuleForm* Reader::form(std::string_view name) const {
  for (const RuleForm& one : rule_forms())
    if (one.name == name) return &one;
  return nullptr;
}

std::string_view expected_name(RuleCell cell) {
  switch (cell) {
    case RuleCell::kSire:
    case RuleCell::kSireOrAll:
      return "a sire";
    case RuleCell::kDam:
      return "a dam";
    case RuleCell::kAnimal:
      return "an animal";
    case RuleCell::kGroup:
    case RuleCell::kGroupOrAll:
      return "the name of a group";
    default:
      return "nothing";
  }
}

void Reader::check_name(RuleCell cell, char column, std::string_view name) {
  const bool may_lack =
      cell == RuleCell::kNothing || cell == RuleCell::kSireOrAll || cell == RuleCell::kGroupOrAll;
  const bool may_have = cell != RuleCell::kNothing;
  if (name.empty() ? may_lack : may_have) return;
  fault(std::string(1, column) + " is \"" + printable(name) + "\" : expected " +
        std::string(expected_name(cell)));
}

void Reader::take_value(const RuleForm& form, std::string value, Rule& rule) {
  if (separator_ == ';') std::replace(value.begin(), value.end(), ',', '.');
  bool fits = false;
  std::string_view expected = "nothing";
  if (form.value == RuleCell::kNothing) {
    fits = value.empty();
  } else if (form.value == RuleCell::kInbreeding) {
    expected = "an inbreeding coefficient, 0 to 1, with a decimal point";
    fits = to_real(value, rule.f) == 0 && rule.f >= 0.0 && rule.f <= 1.0;
  } else {
    const bool from_one = form.value == RuleCell::kNumber;
    expected = from_one ? "a number of matings, 1 or more" : "a number of matings, 0 or more";
    fits = to_integer(value, rule.n) == 0 && rule.n >= (from_one ? 1 : 0);
  }
  if (!fits) fault("value is \"" + printable(value) + "\" : expected " + std::string(expected));
}

void Reader::take(std::string_view line) {
  if (!split(line, separator_, cells_)) {
    fault("quotation marks within a cell, or not closed on its line");
    return;
  }
  if (std::all_of(cells_.begin(), cells_.end(), [](const auto& cell) { return cell.empty(); }))
    return;
  const bool is_longer =
      std::any_of(cells_.begin() + static_cast<std::ptrdiff_t>(std::min(cells_.size(), kCells)),
                  cells_.end(), [](const auto& cell) { return !cell.empty(); });
  cells_.resize(kCells);
  const std::size_t faults = file_.faults.size();
  const RuleForm* found = form(lowercase(cells_[0]));
  if (is_longer) fault("more than four cells : expected " + std::string(kRulesHeader));
  if (found == nullptr) {
    std::string kinds;
    for (const RuleForm& one : rule_forms())
      kinds.append(kinds.empty() ? "" : ", ").append(one.name);
    fault("kind is \"" + printable(cells_[0]) + "\" : expected one of " + kinds);
    return;
  }
  Rule rule{found->kind, cells_[1], cells_[2], 0, 0.0, line_};
  check_name(found->a, 'a', rule.a);
  check_name(found->b, 'b', rule.b);
  take_value(*found, cells_[3], rule);
  if (file_.faults.size() == faults) file_.rules.push_back(std::move(rule));
}

RulesFile Reader::read(std::string_view text) {
  while (!text.empty()) {
    const std::size_t end = std::min(text.find('\n'), text.size());
    const std::string_view line = text.substr(0, end);
    text.remove_prefix(std::min(end + 1, text.size()));
    ++line_;
    if (separator_ != 0) {
      take(line);
    } else if (!adjustl_trim(line).empty()) {
      take_header(adjustl_trim(line));
    }
  }
  line_ = std::max<std::int64_t>(line_, 1);
  if (separator_ == 0)
    fault("the file is empty : expected the header " + std::string(kRulesHeader));
  return std::move(file_);
}

}  // namespace

RulesFile rules_of(std::string bytes) {
  if (decode_text(bytes) == Encoding::kBinary) return {{}, {{1, "no text : expected CSV"}}};
  return Reader().read(bytes);
}

int read_rules(const std::string& path, RulesFile& file) {
  InputFile input;
  std::string bytes;
  std::string_view line;
  int status = input.open(path);
  while (status == 0 && (status = input.next_line(line)) == 0) bytes.append(line) += '\n';
  if (status != kEndOfFile) return status;
  file = rules_of(std::move(bytes));
  return 0;
}

}  // namespace qob
