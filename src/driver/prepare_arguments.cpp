#include "driver/prepare_arguments.h"

#include <CLI/CLI.hpp>
#include <sstream>
#include <vector>

#include "core/lexer.h"
#include "driver/usage.h"

namespace qob {
namespace {

constexpr const char* kAbout =
    "Makes the data file and the parameter file of a qob run from a herd book: a table of animals with "
    "a line of headings, saved as CSV. Says everything that is wrong with it, at once.";
constexpr const char* kMore =
    "Exit status: 0 if a data file was written, 1 if there are faults, 2 if the arguments are wrong.\n"
    "Example: qob-prepare herd.csv --males \"matings=30 age=1-6\" --females \"matings=1 age=2-10\"";

bool whole_number(const std::string& text, std::int32_t& value, std::int32_t least) {
  return !text.empty() && text.find_first_not_of("0123456789") == std::string::npos &&
         read_list(text, value) == 0 && value >= least;
}

// "1-6" or "2"
bool set_ages(const std::string& text, AgeRule& rule) {
  const std::size_t at = text.find('-');
  const std::string to = at == std::string::npos ? text : text.substr(at + 1);
  return whole_number(text.substr(0, at), rule.youngest, 0) &&
         whole_number(to, rule.oldest, rule.youngest);
}

// "matings=30 age=1-6", in any order, either may be left out.
std::string set_rule(const std::string& text, std::optional<AgeRule>& rule) {
  AgeRule read;
  std::istringstream words(text);
  for (std::string word; words >> word;) {
    const std::string key = word.substr(0, word.find('=')),
                      value = word.substr(std::min(word.size(), key.size() + 1));
    std::int32_t matings = 0;
    const bool good =
        key == "matings" ? whole_number(value, matings, 1) : key == "age" && set_ages(value, read);
    if (!good) return word + " is no rule : expected matings=NUMBER and age=FROM-TO";
    if (key == "matings") read.matings = matings;
  }
  rule = read;
  return "";
}

// "COLUMN=VALUE"; the value may be empty or hold "=".
std::string set_pair(const std::string& text, std::string& key, std::string& value) {
  const std::size_t at = text.find('=');
  if (at == 0 || at == std::string::npos) return text + " : expected NAME=VALUE";
  key = text.substr(0, at);
  value = text.substr(at + 1);
  return "";
}

std::string add_column(const std::string& text, PrepareOptions& options) {
  std::string name, column;
  const std::string fault = set_pair(text, name, column);
  if (!fault.empty()) return fault;
  if (column.empty()) return text + " : expected " + name + "=HEADING";
  std::string names;
  for (std::size_t f = 0; f < kFields; ++f) {
    const Field field = static_cast<Field>(f);
    names.append(f == 0 ? "" : ", ").append(name_of(field));
    if (name_of(field) != name) continue;
    options.columns.emplace_back(field, column);
    return "";
  }
  return name + " : expected one of " + names;
}

std::string set_alive(const std::string& text, PrepareOptions& options) {
  std::string column, value;
  const std::string fault = set_pair(text, column, value);
  options.alive = {column, value};
  return fault;
}

std::string set_step(const std::string& text, PrepareOptions& options) {
  options.step = Step::kDays;
  for (std::size_t s = 0; s < kStepNames.size(); ++s) {
    if (kStepNames[s] == text) options.step = static_cast<Step>(s);
  }
  return options.step != Step::kDays || whole_number(text, options.days, 1)
             ? ""
             : text +
                   " : expected auto, year, season, quarter, month, generation or a number of days";
}

std::string add_accepted(const std::string& text, PrepareOptions& options) {
  const std::optional<Kind> kind = acceptable_kind(text);
  if (kind) {
    options.accepted.push_back(*kind);
    return "";
  }
  std::string names;
  for (std::size_t k = 0; k < kKindCount; ++k) {
    const KindText& known = text_of(static_cast<Kind>(k));
    if (known.is_acceptable()) names.append(names.empty() ? "" : ", ").append(known.name);
  }
  return text + " : expected one of " + names;
}

// An option whose text `set` reads; what it returns is what is wrong with it, or "".
template <class Set>
CLI::Option* add(CLI::App& app, const std::string& name, const std::string& form,
                 const std::string& help, Set set) {
  return app
      .add_option(
          name, [](const CLI::results_t&) { return true; }, help)
      ->check(CLI::Validator([set](std::string& text) { return set(text); }, ""))
      ->type_name(form)
      ->allow_extra_args(false);
}

void add_table_options(CLI::App& app, PrepareOptions& options) {
  add(app, "--column", "FIELD=HEADING", "the column that holds a field, if it has another name",
      [&](const std::string& text) { return add_column(text, options); })
      ->take_all();
  add(app, "--header", "none", "there are no headings: --column gives positions, as sire=2",
      [&](const std::string& text) {
        options.header = false;
        return text == "none" ? std::string() : text + " : expected none";
      });
  add(app, "--unknown", "TEXT", "one more word for an unknown parent",
      [&](const std::string& text) {
        options.unknown.push_back(text);
        return std::string();
      })
      ->take_all();
  add(app, "--dates", "dmy|mdy", "what 3/4/2001 is, where no date of the column tells",
      [&](const std::string& text) {
        options.day_order = text == "mdy" ? DayOrder::kMonthFirst : DayOrder::kDayFirst;
        return text == "mdy" || text == "dmy" ? std::string() : text + " : expected dmy or mdy";
      });
  app.add_flag("--decimals", options.decimals,
               "1.234 is hardly more than one, where no number of the column tells");
  add(app, "--step", "STEP",
      "time steps: auto, year, season, quarter, month, generation or a number of days",
      [&](const std::string& text) { return set_step(text, options); });
}

void add_candidate_options(CLI::App& app, PrepareOptions& options) {
  add(app, "--males", "RULE",
      "\"matings=30 age=1-6\": matings a male may have, and at what ages in years when the offspring are born",
      [&](const std::string& text) { return set_rule(text, options.rules[0]); });
  add(app, "--females", "RULE", "the same for females",
      [&](const std::string& text) { return set_rule(text, options.rules[1]); });
  add(app, "--alive", "COLUMN=VALUE", "only animals with this value in this column are candidates",
      [&](const std::string& text) { return set_alive(text, options); });
  app.add_option("--min-completeness", options.min_completeness,
                 "least pedigree completeness of a candidate over five generations, 0 to 1")
      ->type_name("SHARE")
      ->check(CLI::Range(0.0, 1.0));
  app.add_flag("--parents-known", options.parents_known,
               "only animals whose parents are known are candidates");
  CLI::Option* none = app.add_flag_callback(
      "--no-ebv", [&] { options.missing_ebv = MissingEbv::kNoneIsRead; },
      "without breeding values: a plan for relationships alone");
  add(app, "--missing-ebv", "mean",
      "candidates without a breeding value get the mean of the others",
      [&](const std::string& text) {
        options.missing_ebv = MissingEbv::kIsTheMean;
        return text == "mean" ? std::string() : text + " : expected mean";
      })
      ->excludes(none);
  app.add_option("--matings", options.matings,
                 "matings to plan; else one for each female candidate")
      ->type_name("NUMBER")
      ->check(CLI::Range(1, 1000000000));
}

}  // namespace

std::optional<PrepareArguments> prepare_arguments(int argc, char** argv, int& status) {
  PrepareArguments arguments;
  CLI::App app(kAbout, "qob-prepare");
  app.footer(kMore);
  app.add_option("HERDBOOK", arguments.file, "the table of animals")->required();
  app.add_option("-o,--output", arguments.folder,
                 "folder to write to; else one of the herd book's name")
      ->type_name("FOLDER");
  app.add_flag("--force", arguments.force, "write over what is there");
  CLI::Option* json =
      app.add_option("--json", arguments.json, "write what was found to FILE, for other programs")
          ->type_name("FILE");
  CLI::Option* check = app.add_flag("--check", arguments.check,
                                    "say what is odd in a data file of qob, and write nothing")
                           ->excludes(json);
  add(app, "--accept", "KIND", "a kind of fault that is not to hinder",
      [&](const std::string& text) { return add_accepted(text, arguments.options); })
      ->take_all()
      ->delimiter(',');
  add_table_options(app, arguments.options);
  add_candidate_options(app, arguments.options);
  app.add_option(
         "--rules", arguments.rules,
         "your rules of matings, with the herd book's identifiers: a CSV file kind,a,b,value")
      ->type_name("FILE")
      ->excludes(check);
  app.set_version_flag("--version", std::string("qob-prepare ") + QOB_VERSION);
  try {
    app.parse(argc, argv);
  } catch (const CLI::ParseError& end) {
    status = tell_usage(app, end);
    return std::nullopt;
  }
  return arguments;
}

}  // namespace qob
