// A herd book of any bytes, from the file to the files of a run.
#include "fuzz/herd_book.h"

#include <array>
#include <cmath>
#include <nlohmann/json.hpp>

#include "core/csv.h"
#include "core/parameters.h"
#include "core/text_encoding.h"
#include "prepare/data_files.h"
#include "prepare/json.h"
#include "prepare/summary.h"

using namespace qob;

namespace {

constexpr std::size_t kChoices = 4;  // bytes in front of the file
constexpr std::array<const char*, 7> kNames = {"herd",  "o'brien", "a b",     "DATAFILE",
                                               "NAMES", "MERIT",   "LASTTIME"};

AgeRule rule_of(unsigned choice) {
  AgeRule rule;
  if ((choice & 1U) != 0) rule.matings = static_cast<std::int32_t>(choice >> 1U & 7U) + 1;
  if ((choice & 2U) != 0) rule.youngest = static_cast<std::int32_t>(choice >> 2U & 3U);
  if ((choice & 4U) != 0) rule.oldest = rule.youngest + 2;
  return rule;
}

PrepareOptions options_of(std::string_view choices) {
  const auto byte = [&](std::size_t k) { return static_cast<unsigned char>(choices[k]); };
  constexpr std::array<std::int32_t, 4> kDays = {1, 30, 366, 2147483647};
  PrepareOptions options;
  options.header = (byte(0) & 1U) == 0;
  for (std::size_t f = 0; f < kFields && !options.header; ++f)
    options.columns.emplace_back(static_cast<Field>(f), std::to_string(f + 1));
  options.parents_known = (byte(0) & 2U) != 0;
  if ((byte(0) & 4U) != 0) options.alive = {options.header ? "alive" : "9", "yes"};
  options.missing_ebv = static_cast<MissingEbv>((byte(0) >> 3U & 3U) % 3);
  options.day_order = static_cast<DayOrder>((byte(0) >> 5U & 3U) % 3);
  options.step = static_cast<Step>((byte(1) & 7U) % 7);
  options.days = options.step == Step::kDays ? kDays[byte(1) >> 3U & 3U] : 0;
  options.min_completeness = (byte(1) & 32U) != 0 ? 0.2 : 0.0;
  if ((byte(2) & 8U) != 0) options.rules[0] = rule_of(byte(2) & 7U);
  if ((byte(2) & 128U) != 0) options.rules[1] = rule_of(byte(2) >> 4U & 7U);
  options.matings = byte(3) >> 3U & 3U;
  if ((byte(3) & 32U) != 0)
    options.mating_rules = {"rules.csv", rules_of("kind,a,b,value\nmax-pair,,,1\n")};
  return options;
}

std::string text_of_lines(const Prepared& prepared, auto write) {
  std::string text;
  write(prepared, [&](const std::string& line) { text += line; });
  return text;
}

Sheet read_back(const std::string& text, std::int64_t rows, std::int64_t columns) {
  Sheet sheet;
  fuzz::require(read_csv(text, ',', sheet).empty(), "a table reads back");
  fuzz::require(sheet.rows() == rows + 1, "all its rows");
  for (std::int64_t row = 1; row <= sheet.rows(); ++row)
    fuzz::require(sheet.cells(row) == columns, "all its cells");
  return sheet;
}

void check_findings(const Prepared& prepared) {
  const Book& book = prepared.book;
  const Sheet sheet =
      read_back(text_of_lines(prepared, write_faults), std::ssize(book.findings.all()), 7);
  std::int64_t row = 1, before = 0;
  for (const Found& found : book.findings.all()) {
    fuzz::require(sheet.cell(++row, 3) == book.value_of(found) &&
                      sheet.cell(row, 6) == found.words && sheet.cell(row, 7) == found.done,
                  "a finding reads back");
    fuzz::require(found.row >= before, "findings are in the order of rows");
    before = found.row;
    const bool hinders = text_of(found.kind).is_fault && !book.findings.is_accepted(found.kind);
    fuzz::require(!hinders || !prepared.is_sound(), "a fault hinders");
  }
}

void check_data(const Prepared& prepared) {
  const std::int32_t n = prepared.book.herd.count();
  const Sheet names = read_back(text_of_lines(prepared, write_names), n, 15);
  std::vector<std::int32_t> steps = {0};
  std::string data;
  write_data(prepared, [&](const std::string& line) {
    std::int32_t id = 0, sex = -1, step = 0, matings = -1;
    std::array<std::int32_t, 2> parent = {-1, -1};
    double ebv = 0.0;
    Text<15> label;
    const std::string_view record = std::string_view(line).substr(0, line.size() - 1);
    fuzz::require(line.ends_with('\n') && line.find('\n') == record.size() && record.size() <= 120,
                  "a line that is read whole");
    fuzz::require(
        read_list(record, id, parent[0], parent[1], sex, step, matings, ebv, label) == 0 &&
            id == std::ssize(steps) && sex >= 0 && sex <= 2 && matings >= 0 && std::isfinite(ebv),
        "eight values");
    for (const std::int32_t p : parent) {
      fuzz::require(p >= 0 && p < id, "parents have lower numbers");
      fuzz::require(p == 0 || steps[static_cast<std::size_t>(p)] < step, "and are older");
    }
    fuzz::require(label.trimmed() == names.cell(id + 1, 3), "a label reads back");
    steps.push_back(step);
    data += line;
  });
  fuzz::require(std::ssize(steps) == n + 1, "all animals");
  if (n == 0) return;
  memory_files().put("herd.dat", data);
  fuzz::QuietRun run;
  Pedigree pedigree;
  fuzz::require(fuzz::runs_through([&] { pedigree = readrecode(run); }), "a run reads it");
  fuzz::require(pedigree.nobs == n && pedigree.maxid == n, "with all animals");
}

void check_parameters(const Prepared& prepared, const std::string& name) {
  memory_files().put("qob.prm", parameter_file(prepared, name));
  Parameters parameters;
  for (const Group& group : groups_of(parameters)) {
    NamelistFile file;
    fuzz::require(file.open("qob.prm") == 0, "the parameter file is there");
    const bool is_left_out =
        group.name == group_of(parameters.contrib).name ||
        group.name == group_of(parameters.improvement).name ||
        (group.name == group_of(parameters.rules).name && !prepared.book.options.mating_rules);
    fuzz::require(file.read(group) == (is_left_out ? kEndOfFile : 0), "its groups read");
  }
  fuzz::require(parameters.data.datafile.trimmed() == name + ".dat", "it names the data file");
  fuzz::require(parameters.rules.rulesfile.trimmed() ==
                    (prepared.book.options.mating_rules ? name + ".rules.csv" : "_null_"),
                "and the rules");
}

void check(const Sheet& sheet, const PrepareOptions& options, const std::string& name) {
  const Prepared prepared = prepare(sheet, options);
  fuzz::require(!summary_of(prepared, "herd.csv", "herd.faults.csv").empty(), "a summary");
  check_findings(prepared);
  const auto json = [](const Prepared& p, const Lines& lines) { write_json(p, {}, lines); };
  fuzz::require(nlohmann::json::accept(text_of_lines(prepared, json)), "the JSON reads");
  if (!prepared.is_sound()) return;
  check_data(prepared);
  check_parameters(prepared, name);
}

}  // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  if (size < kChoices) return 0;
  const std::string_view choices = fuzz::text_of(data, kChoices);
  std::string text(fuzz::text_of(data + kChoices, size - kChoices));
  if (decode_text(text) == Encoding::kBinary) return 0;
  Sheet sheet;
  if (!read_csv(text, separator_of(text), sheet).empty()) return 0;
  PrepareOptions options = options_of(choices);
  const std::string name = kNames[(static_cast<unsigned char>(choices[3]) & 7U) % kNames.size()];
  check(sheet, options, name);
  options.accepted = fuzz::all_kinds();
  check(sheet, options, name);
  return 0;
}
