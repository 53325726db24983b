// What the plan's value would lose if a candidate that was not chosen took part: why it was not.
#pragma once

#include <vector>

#include "ocs/mateset.h"
#include "ocs/objective.h"
#include "report/report.h"

namespace qob {

struct Choice {
  Lack lack = Lack::kChosen;
  double value = kNaN, merit = kNaN;  // lacking_value, lacking_merit of ReportedCandidate
};

// By candidate, from 0. Each candidate that was not chosen takes one mating (a male: one unit of
// them) of each chosen animal of its sex in turn that rules let give one up; what counts is the
// exchange that costs least.
// to_chosen: by candidate, the mean relationship to the chosen, weighted by their matings.
std::vector<Choice> choices(const Problem& problem, Mateset plan, const MatesetValue& value,
                            const Table<double>& to_chosen);

}  // namespace qob
