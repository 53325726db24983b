#include "ocs/remarks.h"

#include <cmath>
#include <string>

#include "core/edit.h"
#include "ocs/objective.h"

namespace qob {
namespace {

constexpr std::int32_t kFewAnimals = 10;

std::string of(std::int64_t part, std::int64_t whole, std::string_view what) {
  return std::to_string(part) + " of " + std::to_string(whole) + " " + std::string(what);
}

}  // namespace

void remark_on_last_time_step(const Pedigree& pedigree, const Candidates& candidates,
                              Units& units) {
  const std::int32_t last = candidates.birth_time - 1;
  const std::string born = " born in " + std::to_string(last) + " (the last time step)";
  std::int64_t animals = 0, parents = 0, undated = 0;
  for (std::int32_t i = 1; i <= pedigree.maxid; ++i) {
    if (pedigree.btime(i) != last) continue;
    ++animals;
    for (const std::int32_t parent : {pedigree.sire(i), pedigree.dam(i)}) {
      if (parent == 0) continue;
      ++parents;
      undated += !birth_time_is_known(pedigree.btime(parent));
    }
  }
  if (parents == 0) {
    units.tell("No animal" + born + " has a known parent : the rate of inbreeding has a weak base");
  } else if (animals < kFewAnimals) {
    units.tell("Animals" + born + " : " + std::to_string(animals) +
               ", a weak base for the rate of inbreeding");
  }
  if (undated > 0) {
    units.tell(of(undated, parents, "parentages of the animals") + born +
               " are by parents without a known birth time, who count as born in " +
               std::to_string(kNoBirthTime) +
               " : generation interval and rate of inbreeding are wrong by that");
  }
}

void remark_on_unknown_parents(const Candidates& candidates, Units& units) {
  std::int64_t unknown[2] = {0, 0};
  for (std::int32_t i = 1; i <= candidates.ncands; ++i) {
    unknown[candidates.is_male(i) ? 0 : 1] += candidates.has_unknown_parent(i);
  }
  if (unknown[0] + unknown[1] == 0) return;
  units.tell(of(unknown[0], candidates.nmcands, "male and ") +
             of(unknown[1], candidates.nfcands, "female candidates have an unknown parent, ") +
             "which counts as unrelated : they are favoured");
}

void remark_on_unknown_parents(const Candidates& candidates, Mateset best, Units& units) {
  const Uses uses = uses_of(candidates, best);
  std::string text;
  for (const int sex : {kMale, kFemale}) {
    std::int64_t chosen = 0, unknown = 0, matings = 0;
    for (std::int32_t i = candidates.first(sex); i <= candidates.last(sex); ++i) {
      if (uses(i) == 0) continue;
      ++chosen;
      unknown += candidates.has_unknown_parent(i);
      if (candidates.has_unknown_parent(i)) matings += uses(i);
    }
    if (unknown == 0) continue;
    text.append(text.empty() ? "" : ", ")
        .append(of(unknown, chosen, sex == kMale ? "chosen males" : "chosen females"))
        .append(" with " + of(matings, best.nmatings(), "matings"));
  }
  if (!text.empty()) units.tell("With an unknown parent : " + text);
}

void remark_on_constraint(const OCSParameters& p, const MatesetValue& best, Units& units) {
  if (!std::isfinite(best.rate)) {
    units.tell("The rate of inbreeding is no number : 0/0 where all animals are fully inbred");
  }
  if (criterion_of(p.optimise) != Criterion::kConstraint || !(best.rate > p.dfconstraint)) return;
  units.tell("The plan does not meet the constraint : rate of inbreeding" +
             formatted("(F9.6)", best.rate) + ", dfconstraint = " + shortest(p.dfconstraint));
}

}  // namespace qob
