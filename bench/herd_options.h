// The options of simulate_herd: what they are, what they are when not given, and what they may be.
#pragma once

#include <concepts>
#include <cstdint>
#include <string>

#include "core/edit.h"

struct Options {
  std::string prefix;
  std::int64_t animals = 2000, years = 20, last_year = 0;
  std::int64_t sires = 10, dams = 0, litter = 2;
  std::int64_t sire_youngest = 2, sire_oldest = 4, dam_youngest = 2, dam_oldest = 6;
  double sire_replacement = 0.5, dam_replacement = 0.3, unknown = 0.02, noise = 1.0;
  std::int64_t candidates = 100, candidate_years = 4, male_matings = 10, female_matings = 1;
  double male_fraction = 0.2;
  std::int64_t nmatings = 20, limitmalematings = 1, generations = 1000, popsize = 100;
  std::int64_t restart_interval = 200, exchange = 250;
  std::string mode = "penalty", ids = "sequence";
  double w_relationship = -20.0, dfconstraint = 0.01;
  std::int64_t seed = 1;
};

// The options of a command line. Ends the process with the list of options where it asks for help,
// and with a message and status 1 where an option is unknown or makes no sense.
Options read_options(int argc, char** argv);

// Males among the candidates.
std::int64_t male_candidates(const Options& o);

// Ends the process with the message and status 1.
[[noreturn]] void refuse(const std::string& message);

template <std::integral T>
std::string text(T value) {
  return std::to_string(value);
}

inline std::string text(double value) { return qob::shortest(value); }

inline const std::string& text(const std::string& value) { return value; }
