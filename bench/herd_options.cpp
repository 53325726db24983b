#include "herd_options.h"

#include <algorithm>
#include <charconv>
#include <cstdio>
#include <cstdlib>
#include <string_view>
#include <variant>
#include <vector>

#include "core/lexer.h"

namespace {

struct Option {
  std::string_view name;
  std::variant<std::int64_t*, double*, std::string*> value;
  double least, most;  // bounds of a number
  std::string_view help;
};

constexpr double kMany = 100e6;

std::vector<Option> table(Options& o) {
  return {
      {"animals", &o.animals, 1, kMany, "animals in the pedigree"},
      {"years", &o.years, 1, 1e6, "years of birth, 1 to this one"},
      {"last-year", &o.last_year, 0, kMany, "animals born in the last year; 0: as in other years"},
      {"sires", &o.sires, 1, kMany, "sires a year"},
      {"dams", &o.dams, 0, kMany, "dams a year; 0: one for each litter"},
      {"litter", &o.litter, 1, kMany, "full sibs in a litter"},
      {"sire-youngest", &o.sire_youngest, 1, 1e6, "youngest age at which a male breeds"},
      {"sire-oldest", &o.sire_oldest, 1, 1e6, "oldest age at which a male breeds"},
      {"dam-youngest", &o.dam_youngest, 1, 1e6, "youngest age at which a female breeds"},
      {"dam-oldest", &o.dam_oldest, 1, 1e6, "oldest age at which a female breeds"},
      {"sire-replacement", &o.sire_replacement, 0, 1, "least share of sires replaced a year"},
      {"dam-replacement", &o.dam_replacement, 0, 1, "least share of dams replaced a year"},
      {"unknown", &o.unknown, 0, 1, "share of litters whose sire has no record; and dam"},
      {"noise", &o.noise, 0, 1000, "noise of breeding values, in standard deviations of merit"},
      {"candidates", &o.candidates, 2, kMany, "selection candidates, the best of year and sex"},
      {"candidate-years", &o.candidate_years, 1, 1e6, "last years, which share them evenly"},
      {"male-fraction", &o.male_fraction, 0, 1, "share of males among them"},
      {"male-matings", &o.male_matings, 1, 1e6, "most matings of a male candidate"},
      {"female-matings", &o.female_matings, 1, 1e6, "most matings of a female candidate"},
      {"nmatings", &o.nmatings, -1, kMany, "matings to plan; -1: none"},
      {"limitmalematings", &o.limitmalematings, 1, 1e6, "a male used gets a multiple of so many"},
      {"mode", &o.mode, 0, 0, "penalty, constraint or merit"},
      {"w-relationship", &o.w_relationship, -1e9, 0, "weight of relationships under penalty"},
      {"dfconstraint", &o.dfconstraint, 0, 1, "largest rate of inbreeding under constraint"},
      {"generations", &o.generations, -1, 1e9, "generations of the search"},
      {"popsize", &o.popsize, 10, 1e6, "solutions kept by the search"},
      {"restart-interval", &o.restart_interval, 0, 1e9, "generations without gain to a restart"},
      {"exchange", &o.exchange, 0, 1e9, "generations to the worst solution's improvement"},
      {"ids", &o.ids, 0, 0, "identifiers in the data file: sequence or shuffled"},
      {"seed", &o.seed, 1, 2e9, "seed of the herd and of the search"},
  };
}

void print_help() {
  Options defaults;
  std::puts(
      "usage: simulate_herd PREFIX [--OPTION VALUE]...\n"
      "Writes a simulated herd, PREFIX.dat and PREFIX.prm; `qob PREFIX.prm` runs it.\n");
  for (const Option& option : table(defaults)) {
    const auto shown = [](const auto* value) { return text(*value); };
    std::printf("  --%-17s %-9s %s\n", std::string(option.name).c_str(),
                std::visit(shown, option.value).c_str(), std::string(option.help).c_str());
  }
}

bool to_number(std::string_view text, double& value) { return qob::to_real(text, value) == 0; }
bool to_number(std::string_view text, std::int64_t& value) {
  const char* end = text.data() + text.size();
  const auto [rest, error] = std::from_chars(text.data(), end, value);
  return error == std::errc() && rest == end;
}

// Sets the option from its text.
struct Assign {
  const Option& option;
  const std::string_view given;

  template <class T>
  void operator()(T* target) const {
    const bool is_number = to_number(given, *target);
    const auto value = static_cast<double>(*target);
    if (is_number && value >= option.least && value <= option.most) return;
    refuse("--" + std::string(option.name) + " takes a number from " + text(option.least) + " to " +
           text(option.most) + ", not " + std::string(given));
  }
  void operator()(std::string* target) const { *target = given; }
};

void check(const Options& o) {
  const auto require = [](bool condition, const char* message) {
    if (!condition) refuse(message);
  };
  const std::int64_t males = male_candidates(o);
  require(!o.prefix.empty(), "a PREFIX is missing");
  require(o.prefix.find('\'') == std::string::npos, "a PREFIX without quotes");
  require(o.last_year < o.animals, "--last-year leaves no animals for the other years");
  require(o.animals - o.last_year >= o.years, "--animals: fewer than one a year");
  require(o.sire_youngest <= o.sire_oldest, "--sire-youngest is above --sire-oldest");
  require(o.dam_youngest <= o.dam_oldest, "--dam-youngest is above --dam-oldest");
  require(o.candidate_years <= o.years, "--candidate-years is above --years");
  require(males > 0 && males < o.candidates, "--male-fraction leaves a sex without candidates");
  require(o.nmatings <= males * o.male_matings, "--nmatings: more than the males may have");
  require(o.nmatings <= (o.candidates - males) * o.female_matings,
          "--nmatings: more than the females may have");
  require(o.limitmalematings <= o.male_matings, "--limitmalematings is above --male-matings");
  require(o.nmatings < 0 || o.nmatings % o.limitmalematings == 0,
          "--limitmalematings does not divide --nmatings");
  require(o.mode == "penalty" || o.mode == "constraint" || o.mode == "merit",
          "--mode is penalty, constraint or merit");
  require(o.ids == "sequence" || o.ids == "shuffled", "--ids is sequence or shuffled");
}

}  // namespace

void refuse(const std::string& message) {
  std::fprintf(stderr, "simulate_herd: %s (--help lists the options)\n", message.c_str());
  std::exit(1);
}

std::int64_t male_candidates(const Options& o) {
  return static_cast<std::int64_t>(o.male_fraction * static_cast<double>(o.candidates) + 0.5);
}

Options read_options(int argc, char** argv) {
  Options o;
  const std::vector<Option> options = table(o);
  for (int k = 1; k < argc; ++k) {
    const std::string_view word = argv[k];
    if (word == "--help") {
      print_help();
      std::exit(0);
    }
    if (!word.starts_with("--")) {
      if (!o.prefix.empty()) refuse("one PREFIX, not also " + std::string(word));
      o.prefix = word;
      continue;
    }
    const auto named = [&](const Option& option) { return option.name == word.substr(2); };
    const auto option = std::find_if(options.begin(), options.end(), named);
    if (option == options.end()) refuse("no option " + std::string(word));
    if (++k == argc) refuse(std::string(word) + " takes a value");
    std::visit(Assign{*option, argv[k]}, option->value);
  }
  check(o);
  return o;
}
