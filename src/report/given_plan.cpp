#include "report/given_plan.h"

#include <set>

#include "core/lexer.h"
#include "core/stop.h"
#include "core/text.h"
#include "ocs/rules/pairing.h"
#include "report/plan.h"
#include "report/rules.h"

namespace qob {
namespace {

// Most faults that are shown one by one.
constexpr std::size_t kShown = 20;

class GivenReader {
 public:
  GivenReader(const FinishedRun& finished, const Names& names, const GivenList& given)
      : pedigree_(finished.pedigree),
        candidates_(finished.planned->selection.candidates),
        names_(names),
        given_(given),
        candidate_of_(pedigree_.maxid, 0) {
    for (std::int32_t i = 1; i <= candidates_.ncands; ++i) candidate_of_(candidates_.cands(i)) = i;
  }

  MatesetTable read();

 private:
  // The candidate of that identifier and sex; 0, and a fault, if there is none.
  std::int32_t candidate(const GivenMating& mating, const std::string& identifier, int sex);
  bool number_of(const std::string& identifier, std::int32_t& number) const;
  void stop_at_faults() const;

  const Pedigree& pedigree_;
  const Candidates& candidates_;
  const Names& names_;
  const GivenList& given_;
  Table<std::int32_t> candidate_of_;  // by animal
  std::vector<std::string> faults_;
};

bool GivenReader::number_of(const std::string& identifier, std::int32_t& number) const {
  if (names_.count() > 0) {
    number = names_.number_of(identifier);
    return number != 0;
  }
  return !identifier.empty() && identifier.find_first_not_of("0123456789") == std::string::npos &&
         read_list(identifier, number) == 0;
}

std::int32_t GivenReader::candidate(const GivenMating& mating, const std::string& identifier,
                                    int sex) {
  const std::string_view role = sex == kMale ? "sire" : "dam";
  const auto fault = [&](std::string_view why) {
    faults_.push_back("row " + std::to_string(mating.row) + ": " + std::string(role) + " '" +
                      printable(identifier) + "' " + std::string(why));
    return 0;
  };
  std::int32_t number = 0;
  if (!number_of(identifier, number)) return fault("is not in the herd");
  const IdTree::Found found = pedigree_.ids.find(number);
  if (!found.in_tree || found.number < 1 || found.number > pedigree_.maxid)
    return fault("is not in the herd");
  const std::int32_t i = candidate_of_(found.number);
  if (i == 0) return fault("is no candidate of the run : expected one with matings above 0");
  if (candidates_.is_male(i) != (sex == kMale))
    return fault(sex == kMale ? "is female : expected a male" : "is male : expected a female");
  return i;
}

void GivenReader::stop_at_faults() const {
  if (faults_.empty()) return;
  std::string text = printable(given_.file) + ": the plan cannot be valued";
  for (std::size_t k = 0; k < std::min(faults_.size(), kShown); ++k) text += "\n  " + faults_[k];
  if (faults_.size() > kShown)
    text += "\n  ... and " + std::to_string(faults_.size() - kShown) + " more";
  stop(text);
}

MatesetTable GivenReader::read() {
  std::vector<std::pair<std::int32_t, std::int32_t>> rows;
  for (const GivenMating& mating : given_.matings) {
    const std::int32_t sire = candidate(mating, mating.sire, kMale),
                       dam = candidate(mating, mating.dam, kFemale);
    rows.insert(rows.end(), static_cast<std::size_t>(mating.matings), {sire, dam});
  }
  if (rows.empty()) faults_.emplace_back("no matings : expected rows of sire, dam and number");
  stop_at_faults();
  MatesetTable table;
  table.assign(1, std::ssize(rows));
  for (std::size_t j = 0; j < rows.size(); ++j) {
    table(1).male(static_cast<std::int64_t>(j) + 1) = rows[j].first;
    table(1).female(static_cast<std::int64_t>(j) + 1) = rows[j].second;
  }
  return table;
}

// Matings of each candidate that are to come in whole units: all but those that rules decide.
Uses in_units(const Selection& selection, Mateset mateset) {
  Uses uses = uses_of(selection.candidates, mateset);
  const std::vector<Pair> pairs = pairs_of(mateset);
  std::multiset<Pair> left(pairs.begin(), pairs.end());
  for (const Pair& decided : selection.rules.decided) {
    const auto found = left.find(decided);
    if (found == left.end()) continue;
    left.erase(found);
    --uses(decided.first);
  }
  return uses;
}

std::vector<std::string> broken_limits(const FinishedRun& finished, const Names& names,
                                       Mateset mateset) {
  const Selection& selection = finished.planned->selection;
  const Candidates& candidates = selection.candidates;
  const Uses uses = uses_of(candidates, mateset), units = in_units(selection, mateset);
  std::vector<std::string> faults;
  const auto say = [&](std::int32_t i, const std::string& what) {
    faults.push_back(identifier_of(finished.pedigree, names, candidates.cands(i)) + ": " +
                     std::to_string(uses(i)) + " matings, " + what);
  };
  for (std::int32_t i = 1; i <= candidates.ncands; ++i) {
    if (uses(i) > candidates.max_matings(i))
      say(i, "at most " + std::to_string(candidates.max_matings(i)) + " are allowed");
    if (candidates.is_male(i) && units(i) % selection.limitmalematings != 0)
      say(i, "males have units of " + std::to_string(selection.limitmalematings));
  }
  for (const ReportedRule& rule : told_rules(finished, names, mateset)) {
    if (rule.broken > 0)
      faults.push_back("rule of line " + std::to_string(rule.line) + " (" + printable(rule.text) +
                       "): broken by " + std::to_string(rule.broken));
  }
  return faults;
}

}  // namespace

GivenPlan value_given_plan(FinishedRun& finished, const Names& names, const GivenList& given,
                           AnimalList& animals) {
  MatesetTable table = GivenReader(finished, names, given).read();
  const FinishedRun::Planned& planned = *finished.planned;
  GivenPlan plan;
  plan.file = given.file;
  plan.value = reported_value(value_of(finished, table(1)));
  plan.matings = reported_matings(planned, table(1), animals);
  plan.males = use_of(planned.selection.candidates, table(1), kMale);
  plan.females = use_of(planned.selection.candidates, table(1), kFemale);
  plan.faults = broken_limits(finished, names, table(1));
  return plan;
}

}  // namespace qob
