#include "report/warnings.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <map>

#include "analysis/last_birth_time.h"
#include "core/text.h"
#include "ocs/objective.h"

namespace qob {
namespace {

constexpr double kManyMatings = 0.5;  // of two brothers, together
constexpr double kSameText = 1.0e-5;  // results files tell six digits

enum class Kin { kNotKin, kParent, kFullSibs, kHalfSibs };

Kin kin(const Pedigree& pedigree, std::int32_t a, std::int32_t b) {
  const auto is_parent_of = [&](std::int32_t p, std::int32_t i) {
    return pedigree.sire(i) == p || pedigree.dam(i) == p;
  };
  if (is_parent_of(a, b) || is_parent_of(b, a)) return Kin::kParent;
  const bool sire = pedigree.sire(a) != 0 && pedigree.sire(a) == pedigree.sire(b);
  const bool dam = pedigree.dam(a) != 0 && pedigree.dam(a) == pedigree.dam(b);
  if (sire && dam) return Kin::kFullSibs;
  return sire || dam ? Kin::kHalfSibs : Kin::kNotKin;
}

class Warner {
 public:
  Warner(FinishedRun& finished, const Report& report, AnimalList& animals)
      : finished_(finished), report_(report), animals_(animals) {}

  std::vector<Warning> all();

 private:
  void of_plan();
  void of_rules();
  void of_rate();
  void of_changed_results();
  void of_unknown_parents();
  void of_close_relatives();
  void of_brothers();
  void of_undated_parents();
  void of_unfinished_time();
  void of_regression();
  void told();
  std::int64_t broken() const;
  std::string rules_now() const;
  Warning& add(std::string kind, bool serious) {
    list_.push_back({std::move(kind), serious, "", {}, {}});
    return list_.back();
  }

  FinishedRun& finished_;
  const Report& report_;
  AnimalList& animals_;
  std::vector<Warning> list_;
};

// A rate without a firm base is known, and no more.
void Warner::of_rate() {
  const bool is_firm = std::none_of(list_.begin(), list_.end(), [](const Warning& one) {
    return one.kind == "unfinished_last_time";
  });
  const ReportedPlan& plan = report_.plan;
  const double rate = plan.value.rate;
  if (rate > plan.constraint)
    add("constraint", true).values = {{"rate", rate}, {"constraint", plan.constraint}};
  if (rate > kLargestRate) add("rate", is_firm).values = {{"rate", rate}, {"limit", kLargestRate}};
  if (plan.ne < kLeastSize) add("ne", is_firm).values = {{"ne", plan.ne}, {"limit", kLeastSize}};
}

// The value depends on the merit of all candidates, the inbreeding of matings on who has whom.
void Warner::of_changed_results() {
  std::string text;
  const auto compare = [&](std::string_view what, double told, double now) {
    if (!(std::abs(told - now) > kSameText * std::max(std::abs(told), 1.0e-3))) return;
    text.append(text.empty() ? "" : ", ").append(what);
  };
  const PlanValue& value = report_.plan.value;
  if (!report_.search.rows.empty()) {
    const SearchRow& best = report_.search.rows.back();
    compare("value", best.best, value.fitness);
    compare("merit", best.merit, value.merit);
    compare("relationship", best.relationship, value.relationship);
  }
  double told = 0.0, now = 0.0;
  const std::vector<ReportedMating>& matings = report_.plan.matings;
  for (std::size_t j = 0; j < matings.size(); ++j) {
    const double listed = finished_.planned->listed_f[j];
    if (!(std::abs(listed - matings[j].f) > std::abs(told - now))) continue;
    told = listed;
    now = matings[j].f;
  }
  if (std::abs(told - now) > kSameText)
    text.append(text.empty() ? "" : ", ").append("inbreeding of matings");
  if (finished_.log.rules != rules_now()) text.append(text.empty() ? "" : ", ").append("rules");
  if (!text.empty()) add("changed", true).text = text;
}

// As the log tells it.
std::string Warner::rules_now() const {
  const ReportedRules& rules = report_.plan.rules;
  if (rules.file.empty()) return "";
  return std::to_string(rules.list.size()) + (rules.list.size() == 1 ? " rule" : " rules") +
         ", broken by " + std::to_string(broken());
}

std::int64_t Warner::broken() const {
  std::int64_t sum = 0;
  for (const ReportedRule& rule : report_.plan.rules.list) sum += rule.broken;
  return sum;
}

void Warner::of_rules() {
  const std::int64_t sum = broken();
  if (sum > 0) add("rules", true).values = {{"broken", static_cast<double>(sum)}};
}

void Warner::of_unknown_parents() {
  const Candidates& candidates = finished_.planned->selection.candidates;
  const Uses uses = uses_of(candidates, finished_.planned->mateset());
  std::array<double, 2> chosen = {0.0, 0.0}, matings = {0.0, 0.0};
  for (std::int32_t i = 1; i <= candidates.ncands; ++i) {
    if (uses(i) == 0 || !candidates.has_unknown_parent(i)) continue;
    const std::size_t sex = candidates.is_male(i) ? 0 : 1;
    chosen[sex] += 1.0;
    matings[sex] += uses(i);
  }
  if (chosen[0] + chosen[1] == 0.0) return;
  add("unknown_parents", true).values = {{"chosen_males", chosen[0]},
                                         {"chosen_females", chosen[1]},
                                         {"male_matings", matings[0]},
                                         {"female_matings", matings[1]},
                                         {"genes", report_.plan.unknown_genes}};
}

void Warner::of_close_relatives() {
  const FinishedRun::Planned& planned = *finished_.planned;
  const Mateset mateset = finished_.planned->mateset();
  std::map<Kin, double> count;
  std::vector<std::int32_t> pairs;
  for (std::int64_t j = 1; j <= mateset.nmatings(); ++j) {
    const std::int32_t sire = planned.selection.candidates.cands(mateset.male(j)),
                       dam = planned.selection.candidates.cands(mateset.female(j));
    const Kin found = kin(finished_.pedigree, sire, dam);
    if (found == Kin::kNotKin) continue;
    count[found] += 1.0;
    pairs.push_back(animals_.place(sire));
    pairs.push_back(animals_.place(dam));
  }
  if (pairs.empty()) return;
  Warning& warning = add("close_relatives", true);
  warning.values = {{"parent_offspring", count[Kin::kParent]},
                    {"full_sibs", count[Kin::kFullSibs]},
                    {"half_sibs", count[Kin::kHalfSibs]}};
  warning.animals = std::move(pairs);
}

// The two that have most.
void Warner::of_brothers() {
  const Candidates& candidates = finished_.planned->selection.candidates;
  const Uses uses = uses_of(candidates, finished_.planned->mateset());
  std::int32_t most = 0, a = 0, b = 0;
  for (std::int32_t i = 1; i <= candidates.nmcands; ++i) {
    for (std::int32_t k = i + 1; uses(i) > 0 && k <= candidates.nmcands; ++k) {
      if (uses(k) == 0 || uses(i) + uses(k) <= most) continue;
      const Kin found = kin(finished_.pedigree, candidates.cands(i), candidates.cands(k));
      if (found != Kin::kFullSibs && found != Kin::kHalfSibs) continue;
      most = uses(i) + uses(k);
      a = candidates.cands(i);
      b = candidates.cands(k);
    }
  }
  const double share = static_cast<double>(most) / finished_.planned->selection.nmatings;
  if (share <= kManyMatings) return;
  Warning& warning = add("brothers", true);
  warning.values = {{"share", share}, {"matings", static_cast<double>(most)}};
  warning.animals = {animals_.place(a), animals_.place(b)};
}

// Parents of unknown age, whom the generation interval takes for thousands of time steps old.
void Warner::of_undated_parents() {
  const Pedigree& pedigree = finished_.pedigree;
  double parentages = 0.0, undated = 0.0;
  for (std::int32_t i = 1; i <= pedigree.maxid; ++i) {
    if (pedigree.btime(i) != report_.plan.last_birth_time) continue;
    for (const std::int32_t parent : {pedigree.sire(i), pedigree.dam(i)}) {
      if (parent == 0) continue;
      parentages += 1.0;
      if (!birth_time_is_known(pedigree.btime(parent))) undated += 1.0;
    }
  }
  if (undated == 0.0) return;
  add("undated_parents", true).values = {{"undated", undated}, {"parentages", parentages}};
}

// The rate of the times before it tells where its own has no base.
void Warner::of_unfinished_time() {
  const LastBirthTime last = last_birth_time(finished_.pedigree.btime);
  if (!last.is_unfinished()) return;
  const std::vector<TrendRow>& trend = report_.population.trend;
  const TrendRow& to = trend[trend.size() - 2];
  const double interval = std::max(1.0, std::round(report_.population.interval));  // 1 for none
  double rate = kNaN;
  double from = kNaN;
  for (const TrendRow& row : trend) {
    if (row.birth_time > to.birth_time - interval || !(row.mean_f < 1.0)) continue;
    rate = 1.0 - std::pow((1.0 - to.mean_f) / (1.0 - row.mean_f),
                          interval / (to.birth_time - row.birth_time));
    from = row.birth_time;
  }
  add("unfinished_last_time", true).values = {{"birth_time", last.birth_time},
                                              {"animals", static_cast<double>(last.animals)},
                                              {"usual", static_cast<double>(last.usual)},
                                              {"rate", rate},
                                              {"from", from},
                                              {"to", to.birth_time},
                                              {"interval", interval}};
}

void Warner::of_regression() {
  for (const EffectiveSize* size :
       {&report_.population.by_inbreeding, &report_.population.by_coancestry}) {
    const bool is_inbreeding = size == &report_.population.by_inbreeding;
    if (!(size->rate > kLargestRate)) continue;
    add("regression_rate", false).values = {{"rate", size->rate},
                                            {"ne", size->ne},
                                            {"limit", kLargestRate},
                                            {"by_inbreeding", is_inbreeding ? 1.0 : 0.0}};
  }
}

void Warner::told() {
  std::string_view rest = finished_.told;
  while (!rest.empty()) {
    const std::size_t end = rest.find('\n');
    add("told", false).text = rest.substr(0, end);
    rest.remove_prefix(end == std::string_view::npos ? rest.size() : end + 1);
  }
}

void Warner::of_plan() {
  of_changed_results();
  of_rules();
  of_rate();
  of_undated_parents();
  of_unknown_parents();
  of_close_relatives();
  of_brothers();
  if (!finished_.planned->relationship.pedsource) add("relationships_from_file", false);
}

std::vector<Warning> Warner::all() {
  of_unfinished_time();
  if (finished_.planned) of_plan();
  of_regression();
  told();
  std::stable_sort(list_.begin(), list_.end(),
                   [](const Warning& a, const Warning& b) { return a.serious > b.serious; });
  return std::move(list_);
}

}  // namespace

std::vector<Warning> warnings_of(FinishedRun& finished, const Report& report, AnimalList& animals) {
  return Warner(finished, report, animals).all();
}

}  // namespace qob
