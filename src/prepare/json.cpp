#include "prepare/json.h"

#include <algorithm>
#include <array>
#include <nlohmann/json.hpp>
#include <set>
#include <string_view>
#include <vector>

#include "prepare/dates.h"
#include "prepare/parent_ages.h"
#include "prepare/summary.h"

namespace qob {
namespace {

using Json = nlohmann::ordered_json;

constexpr std::size_t kPreviewed = 30;           // rows
constexpr std::size_t kMostValues = 30;          // of a column
constexpr std::int64_t kMostFindings = 100'000;  // as many as a page can show

// The array of what `make` makes of each.
template <class Records, class Make>
Json list_of(const Records& records, Make make) {
  Json::array_t list;
  list.reserve(static_cast<std::size_t>(records.size()));
  for (const auto& record : records) list.emplace_back(make(record));
  return Json(std::move(list));
}

// Why no row is that of an animal; "" if one is.
std::string_view refusal(const Prepared& prepared) {
  const auto& all = prepared.book.findings.all();
  const auto fault =
      std::find_if(all.begin(), all.end(), [](const Found& f) { return f.kind == Kind::kTable; });
  return prepared.book.herd.count() > 0 || fault == all.end() ? "" : fault->words;
}

std::string_view how(const Book& book, Field field) {
  if (field != Field::kBirth) return decimals_of(book, field);
  return book.day_order == DayOrder::kDayFirst     ? "days before months"
         : book.day_order == DayOrder::kMonthFirst ? "months before days"
                                                   : "";
}

// What the cells of a column say; of one that says much, only whether a cell is empty.
Json values(const Book& book, std::int32_t at, const std::vector<std::int64_t>& rows) {
  std::set<std::string_view> values;
  bool any_empty = false;
  for (const std::int64_t row : rows) {
    const std::string_view value = book.sheet.cell(row, at);
    any_empty = any_empty || value.empty();
    if (!value.empty() && values.size() <= kMostValues) values.insert(value);
  }
  if (values.size() > kMostValues) values.clear();
  if (any_empty) values.insert("");
  return list_of(values, [](std::string_view value) { return value; });
}

Json column(const Book& book, std::int32_t at, const std::vector<std::int64_t>& rows) {
  const Columns& columns = book.columns;
  Json column = {{"heading", columns.head > 0 ? book.sheet.cell(columns.head, at) : ""},
                 {"field", columns.alive == at ? Json(name_of(Field::kAlive)) : Json()},
                 {"how", ""},
                 {"values", values(book, at, rows)}};
  for (std::size_t f = 0; f < kFields; ++f) {
    const Field field = static_cast<Field>(f);
    if (columns.of(field) == at)
      column.update({{"field", name_of(field)}, {"how", how(book, field)}});
  }
  return column;
}

Json columns(const Book& book, const std::vector<std::int64_t>& rows) {
  Json list = Json::array();
  for (std::int32_t at = 1; at <= book.columns.count; ++at) list.push_back(column(book, at, rows));
  return list;
}

// Those behind the headings that hold anything.
std::vector<std::int64_t> rows_of(const Book& book) {
  std::vector<std::int64_t> rows;
  for (std::int64_t row = book.columns.head + 1; row <= book.sheet.rows(); ++row) {
    if (!book.sheet.is_empty(row)) rows.push_back(row);
  }
  return rows;
}

Json cells(const Sheet& sheet, std::int64_t row) {
  Json list = Json::array();
  for (std::int64_t at = 1; at <= sheet.cells(row); ++at) list.push_back(sheet.cell(row, at));
  return list;
}

Json preview(const Sheet& sheet, std::vector<std::int64_t> rows) {
  rows.resize(std::min(rows.size(), kPreviewed));
  return {{"rows", rows},
          {"cells", list_of(rows, [&](std::int64_t row) { return cells(sheet, row); })}};
}

// Of a herd book without animals there are none.
Json step(const Prepared& prepared) {
  const TimeSteps& steps = prepared.steps;
  const bool any = prepared.book.herd.count() > 0;
  return {{"name", any ? kStepNames[static_cast<std::size_t>(steps.step)] : ""},
          {"text", any ? text_of(steps) : ""}};
}

Json counts(const Prepared& prepared) {
  const HerdFigures figures = figures_of(prepared);
  return {{"animals", prepared.book.herd.count()},
          {"founders", figures.founders},
          {"completeness", figures.completeness},
          {"males", figures.males},
          {"females", figures.females},
          {"unknown_sex", figures.sexless}};
}

Json parent_ages(const Prepared& prepared, int parent) {
  const auto usual = usual_ages(prepared.book.herd, prepared.steps, parent);
  return usual ? Json{usual->youngest, usual->oldest} : Json();
}

// which: 1 for males, 2 for females.
Json sex(const Prepared& prepared, int which, std::string_view name) {
  const Candidacy& candidacy = prepared.candidates[static_cast<std::size_t>(which - 1)];
  Json left_out = Json::array();
  for (std::size_t k = 0; k < kLeftOutCount; ++k) {
    const LeftOutText& rule = text_of(static_cast<LeftOut>(k));
    if (candidacy.left_out[k] == 0) continue;
    left_out.push_back(
        {{"reason", rule.name}, {"count", candidacy.left_out[k]}, {"text", rule.text}});
  }
  return {{"sex", name},
          {"candidates", candidacy.count},
          {"parents_known", candidacy.both_parents_known},
          {"matings", candidacy.matings},
          {"completeness", candidacy.completeness},
          {"parent_ages", parent_ages(prepared, which)},
          {"left_out", left_out}};
}

// In the order of the summary.
Json kinds(const Findings& findings) {
  Json list = Json::array();
  for (const bool faults : {false, true}) {
    for (std::size_t k = 0; k < kKindCount; ++k) {
      const Kind kind = static_cast<Kind>(k);
      const KindText& text = text_of(kind);
      if (text.is_fault != faults || findings.count(kind) == 0) continue;
      list.push_back({{"kind", text.name},
                      {"title", text.title},
                      {"remedy", text.remedy},
                      {"acceptable", text.is_acceptable()},
                      {"accepted", findings.is_accepted(kind)},
                      {"severity", text.severity()},
                      {"count", findings.count(kind)}});
    }
  }
  return list;
}

// The first of all, with room for those of each kind that the summary shows.
std::vector<Found> first_of(const Findings& findings) {
  std::array<std::int64_t, kKindCount> due{};
  std::int64_t room = kMostFindings;
  for (std::size_t k = 0; k < kKindCount; ++k) {
    const Kind kind = static_cast<Kind>(k);
    due[k] = std::min(findings.count(kind), most_shown(kind));
    room -= due[k];
  }
  std::vector<Found> first;
  for (const Found& found : findings.all()) {
    if (due[static_cast<std::size_t>(found.kind)]-- > 0 || room-- > 0) first.push_back(found);
  }
  return first;
}

Json findings(const Book& book) {
  const std::vector<Found> all = first_of(book.findings);
  const auto column_of = [&](const Found& f) {
    return heading(book.sheet, book.columns, f.column);
  };
  return {{"row", list_of(all, [](const Found& f) { return f.row; })},
          {"column", list_of(all, column_of)},
          {"value", list_of(all, [&](const Found& f) { return book.value_of(f); })},
          {"severity", list_of(all, [](const Found& f) { return text_of(f.kind).severity(); })},
          {"kind", list_of(all, [](const Found& f) { return text_of(f.kind).name; })},
          {"text", list_of(all, [](const Found& f) { return f.words; })},
          {"done", list_of(all, [](const Found& f) { return f.done; })}};
}

// By number in the data file.
Json animals(const Prepared& prepared) {
  const Book& book = prepared.book;
  const Herd& herd = book.herd;
  const auto each = [&](auto make) { return list_of(prepared.animal, make); };
  return {{"identifier", each([&](std::int32_t i) { return herd.identifier(i); })},
          {"name", each([&](std::int32_t i) { return book.cell(i, Field::kName); })},
          {"sex", each([&](std::int32_t i) { return herd.sex(i); })},
          {"birth", each([&](std::int32_t i) { return iso_date(herd.birth(i)); })},
          {"age", each([&](std::int32_t i) {
             const auto age = prepared.steps.age_of(herd, i);
             return age ? Json(*age) : Json();
           })},
          {"completeness", each([&](std::int32_t i) { return prepared.completeness(i); })},
          {"ebv", each([&](std::int32_t i) { return herd.ebv(i); })},
          {"matings", each([&](std::int32_t i) { return herd.matings(i); })},
          {"left_out", each([&](std::int32_t i) { return text_of(herd.left_out(i)).name; })}};
}

Json json_of(const Prepared& prepared, const Telling& telling) {
  const Book& book = prepared.book;
  const std::vector<std::int64_t> rows = rows_of(book);
  return {{"format", "qob-prepared"},
          {"version", 1},
          {"program", telling.program},
          {"file", telling.file},
          {"sound", prepared.is_sound()},
          {"refused", refusal(prepared)},
          {"decoding", book.sheet.assumed()},
          {"header", book.columns.head},
          {"rows", rows.size()},
          {"columns", columns(book, rows)},
          {"preview", preview(book.sheet, rows)},
          {"step", step(prepared)},
          {"counts", counts(prepared)},
          {"sexes", {sex(prepared, 1, "male"), sex(prepared, 2, "female")}},
          {"planned_matings", prepared.matings},
          {"kinds", kinds(book.findings)},
          {"findings", findings(book)},
          {"findings_total", book.findings.all().size()},
          {"animals", animals(prepared)},
          {"summary", telling.summary}};
}

}  // namespace

void write_json(const Prepared& prepared, const Telling& telling, const Lines& lines) {
  // What is no number comes out as null, and no bytes make it throw.
  lines(json_of(prepared, telling).dump(-1, ' ', false, Json::error_handler_t::replace) + "\n");
}

}  // namespace qob
