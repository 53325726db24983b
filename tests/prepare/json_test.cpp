// What is told of herd books as JSON is what the screen and the files tell.
#include "prepare/json.h"

#include <gtest/gtest.h>

#include <map>
#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "core/csv.h"
#include "core/edit.h"
#include "core/format.h"
#include "prepare/data_files.h"
#include "prepare/summary.h"
#include "support/transcripts.h"

namespace qob::test {
namespace {

using nlohmann::json;

Sheet table_of(const std::string& text) {
  Sheet table;
  EXPECT_EQ(read_csv(text, separator_of(text), table), "");
  return table;
}

template <class Write>
std::string written(Write write) {
  std::string text;
  write([&](const std::string& line) { text += line; });
  return text;
}

json told(const Prepared& prepared) {
  return json::parse(written([&](const Lines& lines) {
    write_json(prepared, {"program", "herd.csv", summary_of(prepared, "herd.csv", "")}, lines);
  }));
}

std::string in_table(const std::string& key, const json& value) {
  if (value.is_string()) return value;
  if (value.is_null() || (key == "row" && value == 0)) return "";
  if (key == "sex") return value == 1 ? "M" : value == 2 ? "F" : "";
  return key == "completeness" ? formatted("(F6.4)", value.get<double>()) : shortest(value);
}

// keys: of the file's columns, "" for one that is not told.
void expect_as_in_file(const json& told, const std::string& file,
                       const std::vector<std::string>& keys) {
  const Sheet table = table_of(file);
  for (std::size_t column = 0; column < keys.size(); ++column) {
    if (keys[column].empty()) continue;
    std::vector<std::string> cells, values;
    for (std::int64_t row = 2; row <= table.rows(); ++row)
      cells.emplace_back(table.cell(row, static_cast<std::int64_t>(column) + 1));
    for (const json& value : told[keys[column]]) values.push_back(in_table(keys[column], value));
    EXPECT_EQ(values, cells) << keys[column];
  }
}

// The lines of kinds, in their order.
void expect_kinds(const json& kinds, const std::string& summary) {
  std::size_t at = 0;
  for (const json& kind : kinds) {
    const std::string line = "  " + std::string(kind["title"]) + ": " + kind["count"].dump() +
                             " [" + std::string(kind["kind"]) +
                             (kind["accepted"] ? ", accepted]\n" : "]\n");
    at = summary.find(line, at);
    ASSERT_NE(at, std::string::npos) << line << summary;
  }
}

// As many as are so among the animals.
void expect_left_out(const json& sexes, const json& animals, const std::string& summary) {
  std::map<std::string, std::int64_t> count;
  for (std::size_t k = 0; k < animals["sex"].size(); ++k)
    ++count[animals["sex"][k].dump() + std::string(animals["left_out"][k])];
  for (const std::size_t sex : {1U, 2U}) {
    for (const json& rule : sexes[sex - 1]["left_out"]) {
      EXPECT_EQ(rule["count"], count[std::to_string(sex) + std::string(rule["reason"])]) << rule;
      const std::string words = rule["count"].dump() + " " + std::string(rule["text"]);
      EXPECT_NE(summary.find(words), std::string::npos) << words << summary;
    }
  }
}

// Returns how many animals are told of.
std::size_t expect_agreement(const std::string& text, const PrepareOptions& options) {
  const Sheet sheet = table_of(text);
  const Prepared prepared = prepare(sheet, options);
  const json all = told(prepared);
  EXPECT_EQ(all["sound"], prepared.is_sound());
  EXPECT_EQ(all["refused"] == "", prepared.book.herd.count() > 0);
  EXPECT_EQ(all["findings_total"], all["findings"]["row"].size());
  expect_as_in_file(all["findings"],
                    written([&](const Lines& lines) { write_faults(prepared, lines); }),
                    {"row", "column", "value", "severity", "kind", "text", "done"});
  expect_kinds(all["kinds"], all["summary"]);
  if (!prepared.is_sound()) return 0;
  expect_as_in_file(all["animals"],
                    written([&](const Lines& lines) { write_names(prepared, lines); }),
                    {"", "identifier", "", "", "name", "sex", "birth", "", "", "", "matings", "ebv",
                     "completeness"});
  expect_left_out(all["sexes"], all["animals"], all["summary"]);
  const std::string matings = "nmatings=" + all["planned_matings"].dump() + ",";
  EXPECT_NE(parameter_file(prepared, "herd").find(matings), std::string::npos) << matings;
  return all["animals"]["sex"].size();
}

TEST(PreparedJson, AgreesWithScreenAndFiles) {
  PrepareOptions options;
  options.rules = {AgeRule{20, 1, 6}, AgeRule{1, 2, 12}};
  options.min_completeness = 0.6;
  const std::string herd = read_file(QOB_SOURCE_DIR "/examples/hinterwald/hinterwald.csv");
  EXPECT_EQ(expect_agreement(herd, options), 10865U);
  std::size_t animals = 0;
  for (const Transcript& one : transcripts_of(QOB_SOURCE_DIR "/tests/prepare/cases.txt")) {
    options = {};
    animals += expect_agreement(one.given, options);
    for (std::size_t k = 0; k < kKindCount; ++k) {
      const Kind kind = static_cast<Kind>(k);
      if (text_of(kind).is_acceptable()) options.accepted.push_back(kind);
    }
    animals += expect_agreement(one.given, options);
  }
  EXPECT_GT(animals, 50U);
}

TEST(PreparedJson, TellsOfColumnsAndRowsAndAges) {
  const Sheet sheet =
      table_of("Nr;sire;dam;sex;born;merit;odd\n\nA;;;m;13/2/2000;1,5;?\n\\\xff;A;;f;;2;\n");
  PrepareOptions options;
  options.alive = {"odd", "?"};
  options.rules = {AgeRule{2, 1, 9}, AgeRule{2, 1, 9}};
  json all = told(prepare(sheet, options));
  EXPECT_EQ(all["columns"][4],
            json::parse(R"({"heading":"born","field":"birth","how":"days before months",
                            "values":["","13/2/2000"]})"));
  EXPECT_EQ(all["columns"][5]["how"], "decimal commas");
  EXPECT_EQ(all["columns"][6]["field"], "alive");
  EXPECT_EQ(all["preview"], json::parse(R"({"rows":[3,4],"cells":[
      ["A","","","m","13/2/2000","1,5","?"],["\\\uFFFD","A","","f","","2",""]]})"));
  EXPECT_EQ(all["step"]["name"], "year");
  EXPECT_EQ(all["animals"]["age"], json::parse("[2,null]"));
  EXPECT_EQ(all["animals"]["left_out"], json::parse(R"(["","not_alive"])"));
  options.alive = {"odd", ""};
  EXPECT_EQ(told(prepare(sheet, options))["animals"]["left_out"],
            json::parse(R"(["not_alive","no_birth"])"));
  options.step = Step::kGeneration;  // where there are dates, an age is still one in years
  EXPECT_EQ(told(prepare(sheet, options))["animals"]["age"], json::parse("[1,null]"));
  options = {};
  options.header = false;
  all = told(prepare(sheet, options));
  EXPECT_EQ(all["columns"][0], json::parse(R"({"heading":"","field":null,"how":"",
                                                "values":["A","Nr","\\\uFFFD"]})"));
  EXPECT_EQ(all["refused"], all["findings"]["text"][0]);
  EXPECT_EQ(all["rows"], 3);
}

// A page need not hold millions, but of no kind is nothing there.
TEST(PreparedJson, HasSomeOfEveryKindAmongManyFindings) {
  std::string book = "id,sire,dam,ebv,died\n";
  for (int i = 1; i <= 100'100; ++i)
    book += std::to_string(i) + ",,,x," + (i == 50 ? "" : std::to_string(i)) + "\n";
  const Sheet sheet = table_of(book + "1,,,1,1\n");
  const json all = told(prepare(sheet, {}));
  EXPECT_EQ(all["findings_total"], 100'101);
  EXPECT_EQ(all["findings"]["kind"].size(), 100'000U);
  EXPECT_EQ(all["findings"]["kind"].back(), "duplicate");
  EXPECT_EQ(all["columns"][0]["values"], json::array());
  EXPECT_EQ(all["columns"][3]["values"], json::parse(R"(["1","x"])"));
  EXPECT_EQ(all["columns"][4]["values"], json::parse(R"([""])"));
}

// Twenty sires of 2 to 21 years, of which one on each side is unusual; of the dams one has no
// birth.
TEST(PreparedJson, ToldAgesAreThoseOfNineOfTenParents) {
  std::string herd = "id,sire,dam,sex,born\n";
  for (int age = 2; age <= 21; ++age) {
    const std::string n = std::to_string(age);
    herd += "s" + n + ",,,M," + std::to_string(2020 - age) + "\n";
    herd += "d" + n + ",,,F," + (age == 9 ? "" : "2010") + "\n";
    herd += "o" + n + ",s" + n + ",d" + n + ",F,2020\n";
  }
  for (const Step step : {Step::kYear, Step::kMonth, Step::kGeneration}) {
    PrepareOptions options;
    options.step = step;
    const json sexes = told(prepare(table_of(herd), options))["sexes"];
    EXPECT_EQ(sexes[0]["parent_ages"], json::parse("[3,20]")) << static_cast<int>(step);
    EXPECT_TRUE(sexes[1]["parent_ages"].is_null());
  }
}

}  // namespace
}  // namespace qob::test
