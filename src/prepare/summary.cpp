#include "prepare/summary.h"

#include <algorithm>
#include <limits>
#include <string_view>
#include <vector>

#include "core/format.h"
#include "core/letters.h"
#include "core/text.h"

namespace qob {
namespace {

constexpr std::int64_t kShownFaults = 5, kShownRemarks = 1;  // of a kind
constexpr std::int64_t kAll = std::numeric_limits<std::int64_t>::max();

std::string counted(std::int64_t count, const std::string& one, const std::string& many) {
  return std::to_string(count) + " " + (count == 1 ? one : many);
}

std::string share(double value) { return std::string(adjustl_trim(formatted("(F6.3)", value))); }

std::string animals_of(const Prepared& prepared, const std::string& file) {
  const HerdFigures figures = figures_of(prepared);
  return file + ": " + counted(prepared.book.herd.count(), "animal", "animals") + ", " +
         std::to_string(figures.founders) + " of them founders, mean completeness over " +
         std::to_string(kCompletenessGenerations) + " generations " + share(figures.completeness) +
         "\n";
}

std::string columns_of(const Prepared& prepared) {
  const Book& book = prepared.book;
  std::string text = "Columns:";
  std::vector<char> used(static_cast<std::size_t>(book.columns.count) + 1, 0);
  for (std::size_t f = 0; f < kFields; ++f) {
    const std::int32_t at = book.columns.at[f];
    if (at == 0) continue;
    used[static_cast<std::size_t>(at)] = 1;
    text.append(" ").append(name_of(static_cast<Field>(f)));
    const std::string decimals(decimals_of(book, static_cast<Field>(f)));
    text.append("=" + heading(book.sheet, book.columns, at))
        .append(decimals.empty() ? "," : " (" + decimals + "),");
  }
  text.pop_back();
  used[static_cast<std::size_t>(book.columns.alive)] = 1;
  std::vector<std::int32_t> left;
  for (std::int32_t at = 1; at <= book.columns.count; ++at) {
    if (used[static_cast<std::size_t>(at)] == 0) left.push_back(at);
  }
  if (!left.empty()) text += "; not read: " + headings(book.sheet, book.columns, left);
  return text + "\n";
}

std::string candidates_of(const Candidacy& sex, std::string_view title) {
  std::string text = std::string(title) + ": " + counted(sex.count, "candidate", "candidates");
  if (sex.count > 0) {
    text += ", " + std::to_string(sex.both_parents_known) + " with both parents known, " +
            counted(sex.matings, "mating", "matings") + " at most, mean completeness " +
            share(sex.completeness);
  }
  std::string left;
  for (std::size_t k = 0; k < kLeftOutCount; ++k) {
    if (sex.left_out[k] == 0) continue;
    left += (left.empty() ? "" : ", ") + std::to_string(sex.left_out[k]) + " ";
    left += text_of(static_cast<LeftOut>(k)).text;
  }
  return text + (left.empty() ? "" : " (left out: " + left + ")") + "\n";
}

// Those whose sex nothing tells.
std::string sexless_of(const Prepared& prepared) {
  const std::int64_t count = figures_of(prepared).sexless;
  return count == 0
             ? ""
             : "Of unknown sex: " + counted(count, "animal", "animals") + ", no candidates\n";
}

std::string line_of(const Prepared& prepared, const Found& remark) {
  const Book& book = prepared.book;
  std::string where;
  const auto add = [&](const std::string& part) { where += (where.empty() ? "" : ", ") + part; };
  if (remark.row > 0) add("row " + std::to_string(remark.row));
  if (remark.column > 0) add(heading(book.sheet, book.columns, remark.column));
  const std::string_view value = book.value_of(remark);
  if (!value.empty()) add("\"" + excerpt(value) + "\"");
  return "    " + where + (where.empty() ? "" : ": ") + printable(remark.words) +
         (remark.done.empty() ? "" : " : " + std::string(remark.done)) + "\n";
}

// Of each kind its number and the first of them.
std::string findings_of(const Prepared& prepared, bool faults) {
  const Findings& findings = prepared.book.findings;
  std::string text;
  for (std::size_t k = 0; k < kKindCount; ++k) {
    const Kind kind = static_cast<Kind>(k);
    const KindText& words = text_of(kind);
    if (words.is_fault != faults || findings.count(kind) == 0) continue;
    text += "  " + std::string(words.title) + ": " + std::to_string(findings.count(kind)) + " [" +
            std::string(words.name) + (findings.is_accepted(kind) ? ", accepted" : "") + "]\n";
    std::int64_t left = most_shown(kind);
    for (const Found& remark : findings.all()) {
      if (remark.kind == kind && left-- > 0) text += line_of(prepared, remark);
      if (left == 0) break;
    }
  }
  return text.empty() ? "" : (faults ? "Faults:\n" : "Told:\n") + text;
}

std::string ways_on(const Findings& findings) {
  std::string text;
  bool is_in_book = false;
  for (std::size_t k = 0; k < kKindCount; ++k) {
    const Kind kind = static_cast<Kind>(k);
    if (findings.count(kind) == 0 || findings.is_accepted(kind) || !text_of(kind).is_fault)
      continue;
    is_in_book = is_in_book || kind != Kind::kRule;
    if (!text_of(kind).is_acceptable()) continue;
    text.append("  --accept ").append(text_of(kind).name);
    text.append(": ").append(text_of(kind).remedy).append("\n");
  }
  const bool is_in_rules = findings.count(Kind::kRule) > 0;
  return std::string("No data file is written. Mend ") + (is_in_book ? "the herd book" : "") +
         (is_in_book && is_in_rules ? " and " : "") + (is_in_rules ? "the rules" : "") +
         ", and run this again with --force" + (text.empty() ? ".\n" : ", or accept:\n" + text);
}

}  // namespace

std::string summary_of(const Prepared& prepared, const std::string& file,
                       const std::string& faults_file) {
  const Findings& findings = prepared.book.findings;
  std::string text;
  if (prepared.book.herd.count() > 0) {
    text = animals_of(prepared, file) + columns_of(prepared) +
           "Time steps: " + text_of(prepared.steps) + "\n" +
           candidates_of(prepared.candidates[0], "Males") +
           candidates_of(prepared.candidates[1], "Females") + sexless_of(prepared);
  }
  text += findings_of(prepared, false) + findings_of(prepared, true);
  if (!findings.all().empty() && !faults_file.empty())
    text += "All of it, by row: " + faults_file + "\n";
  if (!findings.hinder() && !prepared.has_candidates())
    text += "Nobody to mate, so that a run will plan none: see --males and --females\n";
  return text + (findings.hinder() ? ways_on(findings) : "");
}

HerdFigures figures_of(const Prepared& prepared) {
  const Herd& herd = prepared.book.herd;
  HerdFigures figures;
  for (std::int32_t i = 1; i <= herd.count(); ++i) {
    figures.founders += herd.parents(1, i) == 0 && herd.parents(2, i) == 0;
    ++(herd.sex(i) == 1 ? figures.males : herd.sex(i) == 2 ? figures.females : figures.sexless);
    figures.completeness += prepared.completeness(i);
  }
  figures.completeness /= std::max(herd.count(), 1);
  return figures;
}

std::string text_of(const TimeSteps& steps) {
  const std::string formula = steps.formula();
  return std::string(steps.unit()) + " " + std::to_string(steps.first) + " to " +
         std::to_string(steps.last) + (formula.empty() ? "" : " (" + formula + ")") + ": " +
         steps.why;
}

std::string_view decimals_of(const Book& book, Field field) {
  const char decimal = book.decimal[static_cast<std::size_t>(field)];
  return decimal == '.' ? "decimal points" : decimal == ',' ? "decimal commas" : "";
}

// Rules are written by hand: all that is wrong with them is mended at once.
std::int64_t most_shown(Kind kind) {
  if (kind == Kind::kRule) return kAll;
  return text_of(kind).is_fault || kind == Kind::kRead ? kShownFaults : kShownRemarks;
}

}  // namespace qob
