#include "report/rules.h"

#include <algorithm>
#include <cstddef>
#include <iterator>
#include <utility>

#include "core/lexer.h"
#include "core/text.h"
#include "ocs/evaluation.h"
#include "ocs/exchanges.h"
#include "ocs/rules/breaches.h"
#include "ocs/rules/pairing.h"
#include "ocs/rules/set_up_rules.h"
#include "report/animal_list.h"

namespace qob {
namespace {

// Costs that are worked out: so many at most, and in large herds, where each takes long, fewer.
constexpr double kMostCosts = 60.0, kMostWork = 1.0e11;

// What a cell of a rule names, as the breeder calls it.
std::string called(const FinishedRun& finished, const Names& names, RuleCell cell,
                   const std::string& text) {
  std::int32_t number = 0;
  if (!names_animal(cell) || read_list(text, number) != 0) return text;
  const std::int32_t animal = finished.pedigree.ids.find(number).number;
  const std::string id = identifier_of(finished.pedigree, names, animal),
                    name = name_of(finished.pedigree, names, animal);
  return name.empty() || name == id ? id : id + " " + name;
}

double limit_of(const Rule& rule) {
  const RuleCell cell = form_of(rule.kind).value;
  return cell == RuleCell::kNothing ? kNaN : cell == RuleCell::kInbreeding ? rule.f : rule.n;
}

PlanFigures less(const PlanFigures& a, const PlanFigures& b) {
  const auto difference = [](double x, double y) { return x - y + 0.0; };  // and no -0
  return {.value = difference(a.value, b.value),
          .merit = difference(a.merit, b.merit),
          .relationship = difference(a.relationship, b.relationship),
          .rate = difference(a.rate, b.rate),
          .inbreeding = difference(a.inbreeding, b.inbreeding)};
}

// The parents of each sex in ascending order, so that the same ones come to the same sums.
void enter_ascending(const std::vector<Pair>& pairs, Mateset plan) {
  std::vector<std::int32_t> males, females;
  for (const auto& [male, female] : pairs) {
    males.push_back(male);
    females.push_back(female);
  }
  std::sort(males.begin(), males.end());
  std::sort(females.begin(), females.end());
  for (std::size_t j = 0; j < pairs.size(); ++j) {
    const auto row = static_cast<std::int64_t>(j) + 1;
    plan.male(row) = males[j];
    plan.female(row) = females[j];
  }
}

class Costs {
 public:
  explicit Costs(FinishedRun& finished)
      : finished_(finished),
        planned_(*finished.planned),
        uses_(uses_of(planned_.selection.candidates, planned_.mateset())),
        rows_(planned_.relationship, planned_.selection.candidates),
        weights_(greedy_weights(problem(planned_.selection), rows_)) {}

  // Of the plan within all rules. Before all others, which begin with it.
  PlanFigures with_all() { return improved(planned_.selection, uses_); }
  // Of the plan without rule k.
  PlanFigures without(std::size_t k);

 private:
  Problem problem(const Selection& selection) const {
    return {selection, planned_.relationship,
            objective_of(finished_.run.parameters.ocs, selection.goal)};
  }
  PlanFigures improved(const Selection& selection, Uses& uses);
  double mean_inbreeding(std::vector<Pair> pairs) const;

  FinishedRun& finished_;
  FinishedRun::Planned& planned_;
  Uses uses_;
  RowCache rows_;
  Weights weights_;
};

// Of the best that exchanges make of a plan. Not known where that is none for this selection.
PlanFigures Costs::improved(const Selection& selection, Uses& uses) {
  MatesetTable table;
  table.assign(1, selection.nmatings);
  const Mateset plan = table(1);
  if (!selection.enter(uses, plan) || !is_legal(selection, plan)) return {};
  exchange_until_best(problem(selection), weights_, rows_, uses);
  if (!selection.enter(uses, plan)) return {};
  const std::vector<Pair> pairs = least_inbred_pairs(selection, planned_.relationship, true, plan);
  if (pairs.empty()) return {};
  enter_ascending(pairs, plan);
  const MatesetValue value = value_of(problem(selection), rows_, plan, finished_.run.journal);
  if (!value.legal) return {};
  return {.value = value.fitness,
          .merit = value.merit,
          .relationship = value.relationship,
          .rate = value.rate,
          .inbreeding = mean_inbreeding(pairs)};
}

double Costs::mean_inbreeding(std::vector<Pair> pairs) const {
  std::sort(pairs.begin(), pairs.end());
  double sum = 0.0;
  for (const auto& [male, female] : pairs)
    sum += 0.5 * cnrm(planned_.relationship, planned_.selection.candidates, male, female);
  return sum / static_cast<double>(pairs.size());
}

PlanFigures Costs::without(std::size_t k) {
  Selection selection = planned_.selection;
  std::vector<MatingRule>& rules = selection.rules.set.rules;
  rules.erase(rules.begin() + static_cast<std::ptrdiff_t>(k));
  selection.rules.decided = decided_matings(selection.rules.set, selection.nmatings);
  if (selection.rows() % selection.limitmalematings != 0) return {};
  const bool give_way = !finished_.run.parameters.rules.keep_all;
  if (apply_rules(give_way, planned_.relationship, selection).known == Known::kNone) return {};
  Uses uses = uses_;
  return improved(selection, uses);
}

// The rules whose cost is worked out: all, or the first that do not decide matings.
std::vector<std::size_t> tried(const Selection& selection) {
  const Candidates& candidates = selection.candidates;
  const std::vector<MatingRule>& rules = selection.rules.set.rules;
  const double work = static_cast<double>(selection.nmatings) * candidates.nmcands *
                      candidates.nfcands;  // of one: a pairing of all candidates
  const auto most = static_cast<std::size_t>(std::clamp(kMostWork / work, 1.0, kMostCosts));
  std::vector<std::size_t> places;
  for (std::size_t k = 0; k < rules.size(); ++k)
    if (rules.size() <= most || rules[k].kind() != RuleKind::kFix) places.push_back(k);
  places.resize(std::min(places.size(), most));
  return places;
}

}  // namespace

std::vector<ReportedRule> told_rules(const FinishedRun& finished, const Names& names,
                                     Mateset mateset) {
  const Selection& selection = finished.planned->selection;
  const std::vector<std::int64_t> broken = breaches(
      selection.rules.set, selection.candidates, finished.planned->relationship, pairs_of(mateset));
  std::vector<ReportedRule> list;
  for (std::size_t k = 0; k < broken.size(); ++k) {
    const Rule& rule = selection.rules.set.rules[k].told;
    const RuleForm& form = form_of(rule.kind);
    ReportedRule told;
    told.line = rule.line;
    told.text = rule.text();
    told.kind = form.name;
    told.a = called(finished, names, form.a, rule.a);
    told.b = called(finished, names, form.b, rule.b);
    told.limit = limit_of(rule);
    told.broken = broken[k];
    list.push_back(std::move(told));
  }
  return list;
}

ReportedRules reported_rules(FinishedRun& finished, const Names& names) {
  ReportedRules rules;
  const PlanRules& of_run = finished.planned->selection.rules;
  if (of_run.empty()) return rules;
  rules.file = of_run.file;
  rules.list = told_rules(finished, names, finished.planned->mateset());
  const std::vector<std::size_t> places = tried(finished.planned->selection);
  rules.left_out = std::ssize(rules.list) - std::ssize(places);
  Costs costs(finished);
  rules.with_all = costs.with_all();
  for (const std::size_t k : places) {
    rules.list[k].without = costs.without(k);
    rules.list[k].gain = less(rules.list[k].without, rules.with_all);
  }
  return rules;
}

}  // namespace qob
