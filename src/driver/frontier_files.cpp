#include "driver/frontier_files.h"

#include <algorithm>
#include <cmath>
#include <map>
#include <nlohmann/json.hpp>
#include <vector>

#include "core/edit.h"
#include "core/format.h"
#include "ocs/objective.h"

namespace qob {
namespace {

using Json = nlohmann::ordered_json;

constexpr std::string_view kHeadings =
    "weight,seed,optimise,constraint,merit,scaled_merit,relationship,rate,effective_size,inbreeding,"
    "males,females,bound,share,how,seconds,folder\n";

Criterion criterion_of(const FrontierPlan& plan) {
  return criterion_of(plan.run.parameters.goal.optimise);
}

// Of relationship for a unit of merit; NaN where the goal has none.
double weight_of(const FrontierPlan& plan) {
  const OCSParameters& goal = plan.run.parameters.goal;
  if (criterion_of(plan) != Criterion::kPenalty && criterion_of(plan) != Criterion::kUnknown)
    return kNaN;
  return goal.w_relationship == 0.0 ? 0.0 : -goal.w_relationship / goal.w_merit;
}

double bound_of(const FrontierPlan& plan) { return plan.reach ? plan.reach->bound : kNaN; }

std::string number(double x) { return std::isfinite(x) ? shortest(x) : ""; }

Json list_of(const std::vector<ListedMating>& matings) {
  Json list = Json::array();
  for (const ListedMating& mating : matings)
    list.push_back(Json::array({mating.sire, mating.dam, mating.f}));
  return list;
}

Json target_of(const Point& point) {
  if (!point.target) return {};
  return {{"kind", point.target->kind}, {"value", point.target->value}};
}

Json json_of(const FrontierPlan& plan) {
  const MatesetValue& value = plan.value;
  const bool constrained = plan.constraint.has_value();
  return {{"folder", plan.run.folder},
          {"how", plan.how},
          {"weight", weight_of(plan)},
          {"constraint", constrained ? Json(plan.run.parameters.goal.dfconstraint) : Json()},
          {"seed", plan.run.is_search() ? Json(plan.run.seed) : Json()},
          {"own", plan.run.point.is_own},
          {"target", target_of(plan.run.point)},
          {"merit", value.merit},
          {"scaled_merit", value.scaled_merit},
          {"relationship", value.relationship},
          {"rate", value.rate},
          {"effective_size", effective_size(value.rate)},
          {"inbreeding", value.inbreeding},
          {"males", plan.males},
          {"females", plan.females},
          {"bound", bound_of(plan)},
          {"share", plan.share()},
          {"degrees", plan.degrees},
          {"seconds", plan.seconds},
          {"keeps_constraint", constrained ? Json(value.relationship <= *plan.constraint) : Json()},
          {"matings", list_of(plan.matings)}};
}

Json json_of(const CurvePoint& point) {
  return {{"weight", point.weight},
          {"scaled_merit", point.scaled_merit},
          {"relationship", point.relationship},
          {"rate", point.rate},
          {"effective_size", effective_size(point.rate)},
          {"degrees", point.degrees}};
}

template <class Record>
Json all_of(const std::vector<Record>& records) {
  Json list = Json::array();
  for (const Record& record : records) list.push_back(json_of(record));
  return list;
}

Json herd_of(const Selection& selection, const FrontierMaking& making) {
  const Candidates& candidates = selection.candidates;
  return {{"name", making.herd},
          {"candidates", candidates.ncands},
          {"males", candidates.nmcands},
          {"females", candidates.nfcands},
          {"matings", selection.nmatings},
          {"unit", selection.limitmalematings},
          {"last_relationship", selection.goal.last_rel},
          {"last_inbreeding", selection.goal.last_f},
          {"last_animals", making.last.animals},
          {"last_is_unfinished", making.last.is_unfinished()},
          {"generation_interval", selection.goal.last_genint},
          {"time_step", candidates.birth_time}};
}

Json names_of(const Frontier& frontier, const FrontierMaking& making) {
  Json names = Json::object();
  for (const FrontierPlan& plan : frontier.plans) {
    for (const ListedMating& mating : plan.matings) {
      for (const std::int32_t id : {mating.sire, mating.dam}) {
        const std::string name = making.name(id);
        if (!name.empty()) names[std::to_string(id)] = name;
      }
    }
  }
  return names;
}

}  // namespace

std::string csv_of(const Frontier& frontier) {
  std::string text(kHeadings);
  for (const FrontierPlan& plan : frontier.plans) {
    const MatesetValue& value = plan.value;
    const PointRun& run = plan.run;
    const bool constrained = plan.constraint.has_value();
    for (const std::string& cell :
         {number(weight_of(plan)), run.is_search() ? std::to_string(run.seed) : "",
          option_text(run.parameters.goal.optimise),
          constrained ? number(run.parameters.goal.dfconstraint) : "", number(value.merit),
          number(value.scaled_merit), number(value.relationship), number(value.rate),
          number(effective_size(value.rate)), number(value.inbreeding), std::to_string(plan.males),
          std::to_string(plan.females), number(bound_of(plan)), number(plan.share()), plan.how,
          number(plan.seconds)})
      text += cell + ",";
    text += run.folder + "\n";
  }
  return text;
}

std::string json_of(const Frontier& frontier, const Selection& selection,
                    const FrontierMaking& making) {
  Json json = {{"format", "qob-frontier"},
               {"version", 1},
               {"made",
                {{"program", making.program},
                 {"time", making.time},
                 {"parameter_file", making.parameter_file},
                 {"data_file", making.data_file}}},
               {"herd", herd_of(selection, making)},
               {"curve", frontier.curve.empty() ? Json() : all_of(frontier.curve)},
               {"plans", all_of(frontier.plans)},
               {"marked", frontier.marked}};
  const Json names = names_of(frontier, making);
  if (!names.empty()) json["names"] = names;
  return json.dump(-1, ' ', false, Json::error_handler_t::replace) + "\n";
}

std::string table_of(const Frontier& frontier) {
  std::vector<std::size_t> order(frontier.plans.size());
  for (std::size_t k = 0; k < order.size(); ++k) order[k] = k;
  std::stable_sort(order.begin(), order.end(), [&](std::size_t a, std::size_t b) {
    return frontier.plans[a].degrees < frontier.plans[b].degrees;
  });
  std::string text = formatted("(3X,A10,A12,A10,3A9,2A8,A9,2X,A)", "Degrees", "Weight", "Merit",
                               "Rate %", "Ne", "F %", "Males", "Females", "Share %", "Folder") +
                     "\n";
  for (const std::size_t k : order) {
    const FrontierPlan& plan = frontier.plans[k];
    const double weight = weight_of(plan), size = effective_size(plan.value.rate);
    text += formatted("(A3,F10.1,A12,F10.3,F9.3,A9,F9.3,2I8,A9,2X,A)",
                      k == frontier.marked ? " > " : "   ", plan.degrees, number(weight),
                      plan.value.scaled_merit, 100.0 * plan.value.rate,
                      std::isnan(size) ? "-" : formatted("(F9.1)", size),
                      100.0 * plan.value.inbreeding, plan.males, plan.females,
                      std::isnan(plan.share())
                          ? "-"
                          : formatted("(F9.2)", std::floor(1e4 * plan.share()) / 100.0),
                      plan.run.folder) +
            "\n";
  }
  return text;
}

}  // namespace qob
