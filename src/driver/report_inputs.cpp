#include "driver/report_inputs.h"

#include <algorithm>
#include <array>
#include <memory>

#include "core/letters.h"
#include "core/lexer.h"
#include "core/text.h"
#include "core/units.h"
#include "driver/checksum.h"
#include "driver/sheet_file.h"
#include "prepare/findings.h"
#include "prepare/words.h"
#include "system/byte_files.h"
#include "system/clock.h"
#include "system/paths.h"

namespace qob {
namespace {

constexpr std::int32_t kMostMatings = 100000;  // of a row, and of all together
constexpr std::size_t kMostFaults = 20;
constexpr std::size_t kPiece = std::size_t{1} << 20U;

std::int64_t first_filled_row(const Sheet& sheet) {
  std::int64_t row = 1;
  while (row <= sheet.rows() && sheet.is_empty(row)) ++row;
  return row;
}

struct GivenColumns {
  std::int64_t sire = 0, dam = 0, number = 0;
};

GivenColumns given_columns(const Sheet& sheet, std::int64_t head) {
  GivenColumns columns;
  for (std::int64_t k = 1; head <= sheet.rows() && k <= sheet.cells(head); ++k) {
    const std::string_view heading = sheet.cell(head, k);
    const std::optional<Field> field = field_of(heading);
    const std::string word = plain(heading);
    if (field == Field::kSire) columns.sire = k;
    if (field == Field::kDam) columns.dam = k;
    if (field == Field::kMatings || word == "number" || word == "n") columns.number = k;
  }
  return columns;
}

// Adds the matings of a row. Returns what is wrong with it, or "".
std::string add_row(const Sheet& sheet, std::int64_t row, const GivenColumns& columns,
                    GivenList& list) {
  GivenMating mating{row, std::string(sheet.cell(row, columns.sire)),
                     std::string(sheet.cell(row, columns.dam)), 1};
  const std::string_view number = columns.number > 0 ? sheet.cell(row, columns.number) : "1";
  if (to_integer(number, mating.matings) != 0 || mating.matings < 0 ||
      mating.matings > kMostMatings) {
    return "the number of matings is \"" + printable(number) +
           "\" : expected a whole number from 0 to " + std::to_string(kMostMatings);
  }
  list.matings.push_back(std::move(mating));
  return "";
}

// Of a kind of findings that a faults file names.
std::string title_of(std::string_view kind) {
  for (std::size_t k = 0; k < kKindCount; ++k) {
    const KindText& known = text_of(static_cast<Kind>(k));
    if (known.name == kind) return std::string(known.title);
  }
  return std::string(kind);
}

// Columns of a faults file.
enum : std::int64_t { kRow = 1, kColumn, kValue, kSeverity, kKind, kWords, kDone };

std::string finding_text(const Sheet& sheet, std::int64_t row) {
  const std::string_view at = sheet.cell(row, kRow), done = sheet.cell(row, kDone);
  std::string text = at.empty() ? "" : "row " + std::string(at);
  for (const std::int64_t k : {kColumn, kValue}) {
    const std::string_view cell = sheet.cell(row, k);
    if (!cell.empty()) text += (text.empty() ? "" : ", ") + std::string(cell);
  }
  text += (text.empty() ? "" : ": ") + std::string(sheet.cell(row, kWords));
  return done.empty() ? text : text + " : " + std::string(done);
}

// Findings of one kind: the row of the first, and how many there are.
struct OneKind {
  std::int64_t first, count;
};

// In the order of their first rows.
std::vector<OneKind> by_kind(const Sheet& sheet) {
  std::vector<OneKind> kinds;
  for (std::int64_t row = 2; row <= sheet.rows(); ++row) {
    const auto known = std::find_if(kinds.begin(), kinds.end(), [&](const OneKind& one) {
      return sheet.cell(one.first, kKind) == sheet.cell(row, kKind);
    });
    if (known != kinds.end()) {
      ++known->count;
    } else {
      kinds.push_back({row, 1});
    }
  }
  return kinds;
}

std::string two_digits(int number) { return (number < 10 ? "0" : "") + std::to_string(number); }

void add_checksum(MadeFile& file) {
  std::unique_ptr<ByteSource> source;
  if (open_source(file.name, source) != 0) return;
  Checksum sum;
  std::string piece(kPiece, '\0');
  std::ptrdiff_t count = 0;
  while ((count = source->read(piece.data(), piece.size())) > 0)
    sum.add({piece.data(), static_cast<std::size_t>(count)});
  if (count < 0) return;
  file.bytes = source->size();
  file.sha256 = sum.digits();
}

}  // namespace

std::string prepared_file(const std::string& data_file, const std::string& ending) {
  const std::size_t begin = data_file.find_last_of('/') + 1;  // npos + 1 is 0
  const std::size_t dot = data_file.find_last_of('.');
  const bool has_dot = dot != std::string::npos && dot > begin;
  const std::string file = data_file.substr(0, has_dot ? dot : std::string::npos) + ending;
  return path_exists(file) ? file : "";
}

void read_names(const std::string& file, Names& names) {
  const std::string fault = names.read(sheet_of(file));
  if (!fault.empty()) refuse(file, fault);
}

GivenList given_list(const std::string& file) {
  const Sheet sheet = sheet_of(file);
  const std::int64_t head = first_filled_row(sheet);
  const GivenColumns columns = given_columns(sheet, head);
  if (columns.sire == 0 || columns.dam == 0) {
    refuse(file, "row " + std::to_string(head) +
                     ": no columns sire and dam : expected the headings sire, dam, number");
  }
  GivenList list{file, {}};
  std::string faults;
  std::size_t count = 0;
  std::int64_t matings = 0;
  for (std::int64_t row = head + 1; row <= sheet.rows(); ++row) {
    if (sheet.is_empty(row)) continue;
    const std::string fault = add_row(sheet, row, columns, list);
    if (fault.empty()) matings += list.matings.back().matings;
    if (fault.empty() || ++count > kMostFaults) continue;
    faults += "\n  row " + std::to_string(row) + ": " + fault;
  }
  if (count > kMostFaults) faults += "\n  ... and " + std::to_string(count - kMostFaults) + " more";
  if (count > 0) refuse(file, "the plan cannot be read" + faults);
  if (matings > kMostMatings) {
    refuse(file, std::to_string(matings) + " matings : expected at most " +
                     std::to_string(kMostMatings) + " in all");
  }
  return list;
}

std::vector<Warning> prepared_findings(const std::string& faults_file) {
  const Sheet sheet = sheet_of(faults_file);
  std::vector<Warning> warnings;
  for (const OneKind& found : by_kind(sheet)) {
    Warning warning;
    warning.kind = "prepared";
    warning.serious = sheet.cell(found.first, kSeverity) == "fault";
    warning.text = title_of(sheet.cell(found.first, kKind)) + ": " + std::to_string(found.count) +
                   " (" + finding_text(sheet, found.first) + and_more(found.count) + ")";
    warnings.push_back(std::move(warning));
  }
  return warnings;
}

std::string time_now() {
  const LocalTime now = local_time();
  return std::to_string(now.year) + "-" + two_digits(now.month) + "-" + two_digits(now.day) + " " +
         two_digits(now.hour) + ":" + two_digits(now.minute) + ":" + two_digits(now.second);
}

void add_checksums(std::vector<MadeFile>& files) {
  for (MadeFile& file : files) add_checksum(file);
}

}  // namespace qob
