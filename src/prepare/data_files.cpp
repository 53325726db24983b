#include "prepare/data_files.h"

#include <algorithm>
#include <cmath>

#include "core/csv_row.h"
#include "core/edit.h"
#include "core/format.h"
#include "core/text.h"
#include "prepare/dates.h"

namespace qob {
namespace {

// A text as the lexer of data files takes it whole.
void append_text(std::string& line, std::string_view text) {
  const bool plain = std::all_of(text.begin(), text.end(), [](char c) {
    return (c >= '0' && c <= '9') || (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') || c == '_' ||
           c == '-' || c == '.' || static_cast<unsigned char>(c) >= 0x80;
  });
  if (plain) {
    line.append(text);
    return;
  }
  line.push_back('\'');
  for (const char c : text) line.append(c == '\'' ? 2 : 1, c);
  line.push_back('\'');
}

std::string number_or_nothing(std::int64_t number) {
  return number == 0 ? "" : std::to_string(number);
}

// Of those without a value that matters to nobody.
double ebv_of(const Herd& herd, std::int32_t i) {
  return std::isnan(herd.ebv(i)) ? 0.0 : herd.ebv(i);
}

Table<std::int32_t, 0> numbers_of(const Table<std::int32_t>& animal) {
  Table<std::int32_t, 0> number(animal.size() + 1, 0);
  for (std::int64_t k = 1; k <= animal.size(); ++k)
    number(animal(k)) = static_cast<std::int32_t>(k);
  return number;
}

std::string_view sex_text(std::int8_t sex) { return sex == 1 ? "M" : sex == 2 ? "F" : ""; }

}  // namespace

void write_data(const Prepared& prepared, const Lines& lines) {
  const Herd& herd = prepared.book.herd;
  const Table<std::int32_t, 0> number = numbers_of(prepared.animal);
  std::string line;
  for (const std::int32_t i : prepared.animal) {
    line.clear();
    for (const std::int32_t value :
         {number(i), number(herd.parents(1, i)), number(herd.parents(2, i)),
          std::int32_t{herd.sex(i)}, herd.step(i), herd.matings(i)}) {
      line.append(std::to_string(value)).push_back(' ');
    }
    line.append(shortest(ebv_of(herd, i))).push_back(' ');
    append_text(line, prepared.labels.of(herd.identifier(i)));
    line.push_back('\n');
    lines(line);
  }
}

void write_names(const Prepared& prepared, const Lines& lines) {
  const Book& book = prepared.book;
  const Herd& herd = book.herd;
  lines(
      "number,identifier,label,row,name,sex,birth,time,sire,dam,matings,ebv,completeness,alive,herd\n");
  const auto parent = [&](std::int32_t i, int k) {
    const std::int32_t p = herd.parents(k, i);
    return p == 0 ? std::string_view{} : herd.identifier(p);
  };
  std::int32_t number = 0;
  for (const std::int32_t i : prepared.animal) {
    lines(csv_row({std::to_string(++number), herd.identifier(i),
                   prepared.labels.of(herd.identifier(i)), number_or_nothing(herd.row(i)),
                   book.cell(i, Field::kName), sex_text(herd.sex(i)), iso_date(herd.birth(i)),
                   std::to_string(herd.step(i)), parent(i, 1), parent(i, 2),
                   std::to_string(herd.matings(i)),
                   std::isnan(herd.ebv(i)) ? std::string() : shortest(herd.ebv(i)),
                   formatted("(F6.4)", prepared.completeness(i)), book.cell(i, Field::kAlive),
                   book.cell(i, Field::kHerd)}));
  }
}

void write_faults(const Prepared& prepared, const Lines& lines) {
  const Book& book = prepared.book;
  lines("row,column,value,severity,kind,words,done\n");
  for (const Found& found : book.findings.all()) {
    const KindText& kind = text_of(found.kind);
    lines(csv_row({number_or_nothing(found.row), heading(book.sheet, book.columns, found.column),
                   book.value_of(found), kind.severity(), kind.name, found.words, found.done}));
  }
}

void write_rules(const Prepared& prepared, const Lines& lines) {
  const Table<std::int32_t, 0> number = numbers_of(prepared.animal);
  lines("kind,a,b,value\n");
  for (const auto& [found, a, b] : prepared.rules) {
    Rule rule = found;
    if (a != 0) rule.a = std::to_string(number(a));
    if (b != 0) rule.b = std::to_string(number(b));
    lines(rule.text() + "\n");
  }
}

}  // namespace qob
