// Each kind of record has one list of its fields, by which it becomes an object, and a vector of it
// an object of columns.
#include "report/json.h"

#include <cmath>
#include <functional>
#include <nlohmann/json.hpp>

namespace qob {
namespace {

using Json = nlohmann::ordered_json;

// One field: its key, and what gives its value (a member, or a function of the record).
template <class Get>
struct Field {
  const char* key;
  Get get;
};
template <class Get>
Field(const char*, Get) -> Field<Get>;

template <class Record, class... Get>
Json object_of(const Record& record, const Field<Get>&... fields) {
  Json object = Json::object();
  (object.emplace(fields.key, std::invoke(fields.get, record)), ...);
  return object;
}

template <class Record, class... Get>
Json columns_of(const std::vector<Record>& records, const Field<Get>&... fields) {
  Json object = Json::object();
  const auto add = [&](const auto& field) {
    Json::array_t column;
    column.reserve(records.size());
    for (const Record& record : records) column.emplace_back(std::invoke(field.get, record));
    object.emplace(field.key, std::move(column));
  };
  (add(fields), ...);
  return object;
}

// Of tables with a row for each candidate, reals have eight digits, so that a page of 20,000 is
// sent by mail; the CSV tables have all.
template <class Record>
auto eight_digits(double Record::*real) {
  return [real](const Record& record) {
    const double x = record.*real;
    if (x == 0.0 || !std::isfinite(x)) return x;
    const double unit = std::pow(10.0, 7.0 - std::floor(std::log10(std::abs(x))));
    const double rounded = std::round(x * unit) / unit;
    return std::isfinite(rounded) ? rounded : x;
  };
}

// The array of what `make` makes of each.
template <class Record, class Make>
Json list_of(const std::vector<Record>& records, Make make) {
  Json list = Json::array();
  for (const Record& record : records) list.push_back(make(record));
  return list;
}

Json animals(const std::vector<ReportedAnimal>& animals) {
  using A = ReportedAnimal;
  const auto birth_time = [](const A& a) { return a.birth_is_known ? Json(a.birth_time) : Json(); };
  return columns_of(animals, Field{"number", &A::number}, Field{"id", &A::id},
                    Field{"name", &A::name}, Field{"birth", &A::birth},
                    Field{"birth_time", birth_time}, Field{"sex", &A::sex}, Field{"sire", &A::sire},
                    Field{"dam", &A::dam}, Field{"f", eight_digits(&A::f)},
                    Field{"completeness", eight_digits(&A::completeness)});
}

Json value(const PlanValue& value) {
  using V = PlanValue;
  return object_of(value, Field{"inbreeding", &V::inbreeding}, Field{"rate", &V::rate},
                   Field{"relationship", &V::relationship}, Field{"merit", &V::merit},
                   Field{"scaled_merit", &V::scaled_merit}, Field{"fitness", &V::fitness},
                   Field{"age", &V::age}, Field{"legal", &V::legal});
}

Json use_of(const SexUse& use) {
  using U = SexUse;
  return object_of(use, Field{"candidates", &U::candidates}, Field{"chosen", &U::chosen},
                   Field{"mean_matings", &U::mean_matings}, Field{"sd_matings", &U::sd_matings},
                   Field{"mean_merit", &U::mean_merit});
}

Json common(const ReportedMating& mating) {
  return list_of(mating.common, [](const CommonAncestor& c) {
    return Json::array({c.animal, c.f});
  });
}

Json matings(const std::vector<ReportedMating>& matings) {
  using M = ReportedMating;
  return columns_of(matings, Field{"sire", &M::sire}, Field{"dam", &M::dam},
                    Field{"merit", &M::merit}, Field{"f", &M::f}, Field{"vf", &M::vf},
                    Field{"common", common}, Field{"other_common", &M::other_common},
                    Field{"other_f", &M::other_f});
}

Json last_time(const ReportedPlan& plan) {
  using P = ReportedPlan;
  return object_of(plan, Field{"birth_time", &P::last_birth_time},
                   Field{"animals", &P::last_animals}, Field{"f", &P::last_f},
                   Field{"merit", &P::last_merit}, Field{"relationship", &P::last_relationship},
                   Field{"generation_interval", &P::generation_interval});
}

Json alternatives(const ReportedPlan& plan) {
  return list_of(plan.alternatives, [](const Alternatives& a) {
    Json object = {{"dam", a.dam}};
    object.update(
        columns_of(a.males, Field{"sires", &Alternative::sire}, Field{"f", &Alternative::f}));
    return object;
  });
}

Json matrix(const ReportedPlan& plan) {
  return {{"sires", plan.sires}, {"dams", plan.dams}, {"f", plan.matrix}};
}

Json figures(const PlanFigures& figures) {
  using F = PlanFigures;
  return object_of(figures, Field{"value", &F::value}, Field{"merit", &F::merit},
                   Field{"relationship", &F::relationship}, Field{"rate", &F::rate},
                   Field{"inbreeding", &F::inbreeding});
}

// Places among the matings.
Json decided(const std::vector<ReportedMating>& matings) {
  Json places = Json::array();
  for (std::size_t j = 0; j < matings.size(); ++j)
    if (matings[j].decided) places.push_back(j);
  return places;
}

Json rules(const ReportedPlan& plan) {
  using P = ReportedPlan;
  using R = ReportedRule;
  if (plan.rules.file.empty()) return {};
  const auto list = [](const P& p) {
    return list_of(p.rules.list, [](const R& rule) {
      return object_of(rule, Field{"line", &R::line}, Field{"text", &R::text},
                       Field{"kind", &R::kind}, Field{"a", &R::a}, Field{"b", &R::b},
                       Field{"limit", &R::limit}, Field{"broken", &R::broken},
                       Field{"without", [](const R& r) { return figures(r.without); }},
                       Field{"gain", [](const R& r) { return figures(r.gain); }});
    });
  };
  return object_of(plan, Field{"file", [](const P& p) { return p.rules.file; }},
                   Field{"decided", [](const P& p) { return decided(p.matings); }},
                   Field{"with_all", [](const P& p) { return figures(p.rules.with_all); }},
                   Field{"left_out", [](const P& p) { return p.rules.left_out; }},
                   Field{"list", list});
}

Json plan(const ReportedPlan& plan) {
  using P = ReportedPlan;
  return object_of(
      plan, Field{"criterion", &P::criterion}, Field{"w_merit", &P::w_merit},
      Field{"w_relationship", &P::w_relationship}, Field{"constraint", &P::constraint},
      Field{"pairing", &P::pairing}, Field{"value", [](const P& p) { return value(p.value); }},
      Field{"bound", &P::bound}, Field{"share", &P::share}, Field{"ne", &P::ne},
      Field{"gain", &P::gain}, Field{"males", [](const P& p) { return use_of(p.males); }},
      Field{"females", [](const P& p) { return use_of(p.females); }},
      Field{"unknown_genes", &P::unknown_genes}, Field{"last", last_time},
      Field{"matings", [](const P& p) { return matings(p.matings); }},
      Field{"alternatives", alternatives}, Field{"matrix", matrix}, Field{"rules", rules});
}

Json candidates(const std::vector<ReportedCandidate>& candidates) {
  using C = ReportedCandidate;
  return columns_of(candidates, Field{"animal", &C::animal}, Field{"rank", &C::rank},
                    Field{"merit", &C::merit}, Field{"max_matings", &C::max_matings},
                    Field{"matings", &C::matings}, Field{"offspring", &C::offspring},
                    Field{"relationship", eight_digits(&C::relationship)},
                    Field{"to_chosen", eight_digits(&C::to_chosen)},
                    Field{"to_others", eight_digits(&C::to_others)},
                    Field{"mean_kinship", eight_digits(&C::mean_kinship)},
                    Field{"contribution_so_far", eight_digits(&C::contribution_so_far)},
                    Field{"contribution_wanted", eight_digits(&C::contribution_wanted)},
                    Field{"unknown_parent", &C::unknown_parent},
                    Field{"lack", [](const C& c) { return word_of(c.lack); }},
                    Field{"lacking_value", eight_digits(&C::lacking_value)},
                    Field{"lacking_merit", eight_digits(&C::lacking_merit)});
}

Json trend(const std::vector<TrendRow>& rows) {
  using T = TrendRow;
  return columns_of(rows, Field{"birth_time", &T::birth_time}, Field{"birth", &T::birth},
                    Field{"animals", &T::animals}, Field{"males", &T::males},
                    Field{"females", &T::females}, Field{"sires", &T::sires},
                    Field{"dams", &T::dams}, Field{"inbred", &T::inbred},
                    Field{"mean_f", &T::mean_f}, Field{"max_f", &T::max_f},
                    Field{"coancestry", &T::coancestry}, Field{"completeness", &T::completeness},
                    Field{"generations", &T::generations}, Field{"interval", &T::interval});
}

Json effective_size(const EffectiveSize& size) {
  using E = EffectiveSize;
  return object_of(size, Field{"rate", &E::rate}, Field{"rate_se", &E::rate_se},
                   Field{"ne", &E::ne}, Field{"ne_low", &E::ne_low}, Field{"ne_high", &E::ne_high},
                   Field{"n", &E::n}, Field{"first", &E::first}, Field{"last", &E::last},
                   Field{"why_not", &E::why_not});
}

Json intervals(const std::vector<PathInterval>& paths) {
  using I = PathInterval;
  return columns_of(paths, Field{"path", &I::path}, Field{"n", &I::n}, Field{"mean", &I::mean},
                    Field{"se", &I::se});
}

Json founders(const std::vector<ReportedFounder>& founders) {
  return columns_of(founders, Field{"animal", &ReportedFounder::animal},
                    Field{"contribution", &ReportedFounder::contribution});
}

Json families(const std::vector<FamilySize>& families) {
  using F = FamilySize;
  return columns_of(families, Field{"offspring", &F::offspring}, Field{"sires", &F::sires},
                    Field{"dams", &F::dams});
}

Json ages(const std::vector<AgeClass>& ages) {
  using A = AgeClass;
  return columns_of(ages, Field{"birth_time", &A::birth_time}, Field{"birth", &A::birth},
                    Field{"males", &A::males}, Field{"females", &A::females},
                    Field{"candidate_males", &A::candidate_males},
                    Field{"candidate_females", &A::candidate_females},
                    Field{"chosen_males", &A::chosen_males},
                    Field{"chosen_females", &A::chosen_females});
}

Json population(const ReportedPopulation& population) {
  using P = ReportedPopulation;
  return object_of(
      population, Field{"animals", &P::animals}, Field{"founders", &P::founders},
      Field{"living", &P::living}, Field{"living_by", &P::living_by},
      Field{"living_since", &P::living_since}, Field{"mean_f", &P::mean_f},
      Field{"max_f", &P::max_f}, Field{"trend", [](const P& p) { return trend(p.trend); }},
      Field{"by_inbreeding", [](const P& p) { return effective_size(p.by_inbreeding); }},
      Field{"by_coancestry", [](const P& p) { return effective_size(p.by_coancestry); }},
      Field{"interval", &P::interval},
      Field{"intervals", [](const P& p) { return intervals(p.intervals); }},
      Field{"recent_intervals", [](const P& p) { return intervals(p.recent_intervals); }},
      Field{"recent_since", &P::recent_since},
      Field{"founder_equivalents", &P::founder_equivalents},
      Field{"founder_genomes", &P::founder_genomes},
      Field{"effective_ancestors", &P::effective_ancestors},
      Field{"effective_ancestors_high", &P::effective_ancestors_high},
      Field{"mean_kinship", &P::mean_kinship}, Field{"gene_diversity", &P::gene_diversity},
      Field{"unknown_genes", &P::unknown_genes},
      Field{"founders_ranked", [](const P& p) { return founders(p.founders_ranked); }},
      Field{"founders_cumulative", &P::founders_cumulative},
      Field{"families", [](const P& p) { return families(p.families); }},
      Field{"ages", [](const P& p) { return ages(p.ages); }});
}

Json search_rows(const ReportedSearch& search) {
  using R = SearchRow;
  return columns_of(search.rows, Field{"generation", &R::generation}, Field{"best", &R::best},
                    Field{"median", &R::median}, Field{"worst", &R::worst}, Field{"mean", &R::mean},
                    Field{"sd", &R::sd}, Field{"merit", &R::merit},
                    Field{"relationship", &R::relationship}, Field{"rate", &R::rate});
}

Json search(const ReportedSearch& search) {
  using S = ReportedSearch;
  return object_of(search, Field{"rows", search_rows}, Field{"found", &S::found},
                   Field{"ended", &S::ended}, Field{"restarts", &S::restarts});
}

Json warning(const Warning& warning) {
  const auto values = [](const Warning& w) {
    Json object = Json::object();
    for (const auto& [name, number] : w.values) object.emplace(name, number);
    return object;
  };
  return object_of(warning, Field{"kind", &Warning::kind}, Field{"serious", &Warning::serious},
                   Field{"text", &Warning::text}, Field{"values", values},
                   Field{"animals", &Warning::animals});
}

Json parameters(const Making& making) {
  using P = MadeParameter;
  return columns_of(making.parameters, Field{"group", &P::group}, Field{"key", &P::key},
                    Field{"value", &P::value});
}

Json files(const Making& making) {
  using F = MadeFile;
  return columns_of(making.files, Field{"role", &F::role}, Field{"name", &F::name},
                    Field{"sha256", &F::sha256}, Field{"bytes", &F::bytes});
}

Json making(const Making& making) {
  using M = Making;
  return object_of(making, Field{"program", &M::program}, Field{"time", &M::time},
                   Field{"run_program", &M::run_program}, Field{"run_started", &M::run_started},
                   Field{"prefix", &M::prefix}, Field{"seed", &M::seed},
                   Field{"parameters", parameters}, Field{"files", files});
}

Json given(const GivenPlan& given) {
  using G = GivenPlan;
  const auto matings = [](const G& g) {
    using M = ReportedMating;
    return columns_of(g.matings, Field{"sire", &M::sire}, Field{"dam", &M::dam},
                      Field{"merit", &M::merit}, Field{"f", &M::f}, Field{"vf", &M::vf});
  };
  return object_of(
      given, Field{"file", &G::file}, Field{"matings", matings},
      Field{"value", [](const G& g) { return value(g.value); }}, Field{"share", &G::share},
      Field{"males", [](const G& g) { return use_of(g.males); }},
      Field{"females", [](const G& g) { return use_of(g.females); }}, Field{"faults", &G::faults});
}

Json result(const Report& report) {
  using R = Report;
  return object_of(report, Field{"format", [](const R&) { return "qob-result"; }},
                   Field{"version", [](const R&) { return 1; }}, Field{"title", &R::title},
                   Field{"has_names", &R::has_names},
                   Field{"planned_birth_time", &R::planned_birth_time},
                   Field{"animals", [](const R& r) { return animals(r.animals); }},
                   Field{"plan", [](const R& r) { return r.has_plan ? plan(r.plan) : Json(); }},
                   Field{"candidates", [](const R& r) { return candidates(r.candidates); }},
                   Field{"population", [](const R& r) { return population(r.population); }},
                   Field{"search", [](const R& r) { return search(r.search); }},
                   Field{"warnings", [](const R& r) { return list_of(r.warnings, warning); }},
                   Field{"making", [](const R& r) { return making(r.making); }},
                   Field{"given", [](const R& r) { return list_of(r.given, given); }});
}

// What is no number comes out as null, and no bytes make it throw.
std::string text_of(const Json& json) {
  return json.dump(-1, ' ', false, Json::error_handler_t::replace);
}

}  // namespace

std::string json_of(const Report& report) { return text_of(result(report)); }

std::string comparison_json(std::span<const Report> plans) {
  Json list = Json::array();
  for (const Report& plan : plans) list.push_back(result(plan));
  return text_of({{"format", "qob-comparison"}, {"version", 1}, {"plans", std::move(list)}});
}

}  // namespace qob
