#include "driver/frontier_arguments.h"

#include <CLI/CLI.hpp>
#include <cmath>

#include "core/edit.h"
#include "core/lexer.h"
#include "driver/usage.h"

namespace qob {
namespace {

constexpr int kPoints = 20;
constexpr double kLeastRate = 1.0e-5, kMostRate = 1.0;  // of inbreeding, that a run takes

constexpr const char* kAbout =
    "Shows the whole trade-off between merit and relationship for a herd: the best that any plan could "
    "reach, and beneath it plans with their mating lists, each with its share of the best possible.";
constexpr const char* kMore =
    "HERD.prm is a parameter file of qob; names in it begin where qob-frontier is started. Results come into\n"
    "the folder HERD_frontier beside it: frontier.csv, frontier.html and a folder for each plan, w20 for weight\n"
    "20, w20_s1 for the search of it with seed 1. \"cd FOLDER && qob qob.prm\" repeats a plan. Plans are made in\n"
    "two steps, each mating where it gains most and then exchanges until none helps; --search has qob search, too.\n"
    "Exit status: 0 if all was made, 1 if there is a fault, 2 if the arguments are wrong.\n"
    "Examples: qob-frontier herd.prm\n"
    "          qob-frontier herd.prm --target-ne 50\n"
    "          qob-frontier herd.prm --weights 10,20,40 --search --seeds 5 --jobs 4";

std::string read_number(const std::string& text, double& value) {
  return to_real(text, value) == 0 && std::isfinite(value) ? "" : text + " : expected a number";
}

// Adds an option of one number from `least` to `most`.
void add_number(CLI::App& app, const char* name, const char* form, const char* help,
                std::optional<double>& value, double least, double most) {
  const auto read = [&value, least, most](std::string& text) {
    double number = 0.0;
    const std::string fault = read_number(text, number);
    if (!fault.empty()) return fault;
    value = number;
    if (number >= least && number <= most) return std::string();
    return text + " : expected " + shortest(least) + " to " + shortest(most);
  };
  app.add_option(
         name, [](const CLI::results_t&) { return true; }, help)
      ->check(CLI::Validator(read, ""))
      ->type_name(form)
      ->allow_extra_args(false);
}

// "-20" is a weight as parameter files have it.
void add_weights(CLI::App& app, std::vector<double>& weights) {
  const auto read = [&weights](std::string& text) {
    double number = 0.0;
    const std::string fault = read_number(text, number);
    if (fault.empty()) weights.push_back(std::abs(number));
    return fault;
  };
  app.add_option(
         "--weights", [](const CLI::results_t&) { return true; },
         "plans with these weights of relationship (w_relationship, with or without its minus)")
      ->check(CLI::Validator(read, ""))
      ->type_name("LIST")
      ->delimiter(',')
      ->allow_extra_args(false)
      ->take_all();
}

void add_points(CLI::App& app, FrontierArguments& arguments) {
  app.add_option(
         "--points", arguments.points,
         "so many plans, from most merit to least relationship; 20 unless --weights is given")
      ->type_name("N")
      ->check(CLI::Range(0, 10000));
  add_weights(app, arguments.weights);
  add_number(app, "--target-rate", "RATE",
             "a plan of most merit at this rate of inbreeding per generation",
             arguments.target_rate, kLeastRate, kMostRate);
  add_number(app, "--target-ne", "SIZE", "the same at this effective population size",
             arguments.target_ne, 0.5 / kMostRate, 0.5 / kLeastRate);
  add_number(app, "--target-degrees", "ANGLE",
             "the plan at this angle between most merit (0) and least relationship (90)",
             arguments.target_degrees, 0.0, 90.0);
}

void add_searches(CLI::App& app, FrontierArguments& arguments) {
  app.add_flag("--search", arguments.search, "search each plan as qob does, too");
  app.add_option("--seeds", arguments.seeds, "searches of each plan, with seeds from 1 on; 3")
      ->type_name("N")
      ->check(CLI::Range(1, 1000000));
}

void add_runs(CLI::App& app, FrontierArguments& arguments) {
  app.add_option("--jobs", arguments.jobs, "so many at once; else as many as there are processors")
      ->type_name("N")
      ->check(CLI::Range(1, 1024));
  CLI::Option* output = app.add_option("-o,--output", arguments.output,
                                       "folder of the results; made if it is not there")
                            ->type_name("FOLDER");
  CLI::Option* resume = app.add_flag("--resume", arguments.resume,
                                     "go on after an interruption: plans that are finished stay");
  CLI::Option* collect =
      app.add_flag("--collect", arguments.collect,
                   "only collect the plans that are finished, where qob has made them elsewhere")
          ->excludes(resume);
  app.add_option(
         "--workflow", arguments.workflow,
         "make no plans, but this folder, in which Snakemake makes them, here or on a cluster")
      ->type_name("FOLDER")
      ->excludes(resume)
      ->excludes(collect)
      ->excludes(output);
  app.add_flag("--quiet", arguments.quiet, "do not tell what is odd in the input");
}

// The options among these that are given, each as one word.
std::vector<std::string> given_words(const std::vector<CLI::Option*>& options) {
  std::vector<std::string> words;
  for (const CLI::Option* option : options) {
    if (option->count() == 0) continue;
    const bool is_flag = option->get_expected_max() == 0;
    for (const std::string& value : option->results())
      words.push_back(option->get_name() + (is_flag ? "" : "=" + value));
  }
  return words;
}

}  // namespace

std::optional<FrontierArguments> frontier_arguments(int argc, char** argv, int& status) {
  FrontierArguments arguments;
  CLI::App app(kAbout, "qob-frontier");
  app.footer(kMore);
  add_points(app, arguments);
  add_searches(app, arguments);
  const std::vector<CLI::Option*> options_of_plans = app.get_options();
  add_runs(app, arguments);
  app.add_option("HERD.prm", arguments.parameter_file, "the parameter file")->required();
  app.add_option("MORE.prm", arguments.more, "those of other herds, for --workflow");
  app.set_version_flag("--version", std::string("qob-frontier ") + QOB_VERSION);
  try {
    app.parse(argc, argv);
    if (!arguments.more.empty() && arguments.workflow.empty())
      throw CLI::ValidationError("MORE.prm", "expected one parameter file, or --workflow");
  } catch (const CLI::ParseError& end) {
    status = tell_usage(app, end);
    return std::nullopt;
  }
  if (app.count("--points") == 0 && arguments.weights.empty()) arguments.points = kPoints;
  arguments.of_plans = given_words(options_of_plans);
  std::string& folder = arguments.output;
  while (folder.size() > 1 && folder.ends_with('/')) folder.pop_back();
  if (folder.empty()) {
    const std::string& file = arguments.parameter_file;
    folder = file.substr(0, file.size() - (file.ends_with(".prm") ? 4 : 0)) + "_frontier";
  }
  return arguments;
}

}  // namespace qob
