// A table is a list of columns: each heading beside what makes its cell of a record.
#include "report/tables.h"

#include <map>
#include <span>

#include "report/animal_list.h"

namespace qob {
namespace {

// What the cells are made of: the report, all animals, and what is counted once for both.
class Sources {
 public:
  Sources(const Report& report, const AnimalFigures& animals)
      : report_(report),
        of_(animals),
        offspring_(std::int64_t{animals.pedigree.maxid} + 1, 0),
        merit_(report.animals.size(), kNaN) {
    for (std::int32_t i = 1; i <= pedigree().maxid; ++i) {
      for (const std::int32_t parent : {pedigree().sire(i), pedigree().dam(i)})
        ++offspring_(parent);
    }
    for (const ReportedCandidate& candidate : report.candidates)
      merit_[static_cast<std::size_t>(candidate.animal)] = candidate.merit;
    for (const ReportedMating& mating : report.plan.matings) {
      for (const std::int32_t parent : {mating.sire, mating.dam}) ++matings_[animal(parent).number];
    }
    double sum = 0.0;
    for (const ReportedFounder& founder : animals.founders)
      cumulative_.push_back(sum += founder.contribution);
  }

  // Of one of the report's animals.
  const ReportedAnimal& animal(std::int32_t k) const {
    return report_.animals[static_cast<std::size_t>(k)];
  }
  Cell merit(std::int32_t k) const { return merit_[static_cast<std::size_t>(k)]; }
  // Its number in the pedigree.
  std::int32_t in_pedigree(std::int32_t k) const {
    return pedigree().ids.find(animal(k).number).number;
  }

  // Of an animal of the pedigree.
  const AnimalFigures& of() const { return of_; }
  const Pedigree& pedigree() const { return of_.pedigree; }
  std::int32_t number(std::int64_t i) const { return pedigree().oldped(i, 1); }
  Cell identifier(std::int64_t i) const {
    if (i == 0) return {};
    const std::string_view known = of_.names.identifier(number(i));
    return known.empty() ? std::to_string(number(i)) : std::string(known);
  }
  Cell name(std::int64_t i) const {
    return name_of(pedigree(), of_.names, static_cast<std::int32_t>(i));
  }
  Cell sex(std::int64_t i) const { return sex_cell(pedigree().sex(i)); }
  Cell birth_time(std::int64_t i) const {
    const std::int32_t time = pedigree().btime(i);
    return birth_time_is_known(time) ? Cell(time) : Cell();
  }
  Cell birth(std::int64_t i) const {
    const std::string_view known = of_.names.birth(number(i));
    return known.empty() ? birth_time(i) : std::string(known);
  }
  std::int32_t offspring(std::int64_t i) const { return offspring_(i); }
  std::int32_t matings(std::int64_t i) const {
    const auto found = matings_.find(number(i));
    return found == matings_.end() ? 0 : found->second;
  }
  double cumulative(std::int64_t rank) const {
    return cumulative_[static_cast<std::size_t>(rank - 1)];
  }

  static Cell sex_cell(std::int32_t sex) {
    return sex == 1 ? Cell("M") : sex == 2 ? Cell("F") : Cell();
  }

 private:
  const Report& report_;
  const AnimalFigures& of_;
  Table<std::int32_t, 0> offspring_;              // by number in the pedigree
  std::vector<double> merit_;                     // by place in the report
  std::map<std::int32_t, std::int32_t> matings_;  // by number in the data file
  std::vector<double> cumulative_;
};

template <class Record>
struct Column {
  std::string_view heading;
  Cell (*cell)(const Sources& s, const Record& record);
};

constexpr Column<ReportedMating> kMatings[] = {
    {"sire", [](auto& s, auto& m) -> Cell { return s.animal(m.sire).id; }},
    {"dam", [](auto& s, auto& m) -> Cell { return s.animal(m.dam).id; }},
    {"sire_name", [](auto& s, auto& m) -> Cell { return s.animal(m.sire).name; }},
    {"dam_name", [](auto& s, auto& m) -> Cell { return s.animal(m.dam).name; }},
    {"sire_merit", [](auto& s, auto& m) -> Cell { return s.merit(m.sire); }},
    {"dam_merit", [](auto& s, auto& m) -> Cell { return s.merit(m.dam); }},
    {"sire_inbreeding", [](auto& s, auto& m) -> Cell { return s.animal(m.sire).f; }},
    {"dam_inbreeding", [](auto& s, auto& m) -> Cell { return s.animal(m.dam).f; }},
    {"sire_completeness", [](auto& s, auto& m) -> Cell { return s.animal(m.sire).completeness; }},
    {"dam_completeness", [](auto& s, auto& m) -> Cell { return s.animal(m.dam).completeness; }},
    {"expected_merit", [](auto&, auto& m) -> Cell { return m.merit; }},
    {"expected_inbreeding", [](auto&, auto& m) -> Cell { return m.f; }},
    {"mendelian_variance", [](auto&, auto& m) -> Cell { return m.vf; }},
    {"common_ancestors",
     [](auto&, auto& m) -> Cell { return std::ssize(m.common) + std::int64_t{m.other_common}; }},
    {"main_common_ancestor",
     [](auto& s, auto& m) -> Cell {
       return m.common.empty() ? Cell() : s.animal(m.common.front().animal).id;
     }},
    {"main_common_ancestor_inbreeding",
     [](auto&, auto& m) -> Cell { return m.common.empty() ? Cell() : m.common.front().f; }},
};

constexpr Column<ReportedCandidate> kCandidates[] = {
    {"rank", [](auto&, auto& c) -> Cell { return c.rank; }},
    {"identifier", [](auto& s, auto& c) -> Cell { return s.animal(c.animal).id; }},
    {"name", [](auto& s, auto& c) -> Cell { return s.animal(c.animal).name; }},
    {"sex", [](auto& s, auto& c) -> Cell { return s.sex_cell(s.animal(c.animal).sex); }},
    {"birth", [](auto& s, auto& c) -> Cell { return s.animal(c.animal).birth; }},
    {"sire",
     [](auto& s, auto& c) -> Cell {
       return s.identifier(s.pedigree().sire(s.in_pedigree(c.animal)));
     }},
    {"dam",
     [](auto& s, auto& c) -> Cell {
       return s.identifier(s.pedigree().dam(s.in_pedigree(c.animal)));
     }},
    {"merit", [](auto&, auto& c) -> Cell { return c.merit; }},
    {"inbreeding", [](auto& s, auto& c) -> Cell { return s.animal(c.animal).f; }},
    {"completeness", [](auto& s, auto& c) -> Cell { return s.animal(c.animal).completeness; }},
    {"unknown_parent", [](auto&, auto& c) -> Cell { return c.unknown_parent ? "yes" : "no"; }},
    {"offspring", [](auto&, auto& c) -> Cell { return c.offspring; }},
    {"max_matings", [](auto&, auto& c) -> Cell { return c.max_matings; }},
    {"matings", [](auto&, auto& c) -> Cell { return c.matings; }},
    {"relationship", [](auto&, auto& c) -> Cell { return c.relationship; }},
    {"relationship_to_chosen", [](auto&, auto& c) -> Cell { return c.to_chosen; }},
    {"relationship_to_others_chosen", [](auto&, auto& c) -> Cell { return c.to_others; }},
    {"mean_kinship", [](auto&, auto& c) -> Cell { return c.mean_kinship; }},
    {"contribution_so_far", [](auto&, auto& c) -> Cell { return c.contribution_so_far; }},
    {"contribution_wanted", [](auto&, auto& c) -> Cell { return c.contribution_wanted; }},
    {"lack", [](auto&, auto& c) -> Cell { return std::string(word_of(c.lack)); }},
    {"lacking_value", [](auto&, auto& c) -> Cell { return c.lacking_value; }},
    {"lacking_merit", [](auto&, auto& c) -> Cell { return c.lacking_merit; }},
};

// By number in the pedigree.
constexpr Column<std::int64_t> kAnimals[] = {
    {"identifier", [](auto& s, auto& i) -> Cell { return s.identifier(i); }},
    {"number", [](auto& s, auto& i) -> Cell { return s.number(i); }},
    {"name", [](auto& s, auto& i) -> Cell { return s.name(i); }},
    {"sex", [](auto& s, auto& i) -> Cell { return s.sex(i); }},
    {"birth", [](auto& s, auto& i) -> Cell { return s.birth(i); }},
    {"birth_time", [](auto& s, auto& i) -> Cell { return s.birth_time(i); }},
    {"sire", [](auto& s, auto& i) -> Cell { return s.identifier(s.pedigree().sire(i)); }},
    {"dam", [](auto& s, auto& i) -> Cell { return s.identifier(s.pedigree().dam(i)); }},
    {"inbreeding", [](auto& s, auto& i) -> Cell { return s.pedigree().f(i); }},
    {"generation_coefficient", [](auto& s, auto& i) -> Cell { return s.of().statistics.gen(i); }},
    {"complete_generations",
     [](auto& s, auto& i) -> Cell { return s.of().complete_generations(i); }},
    {"completeness", [](auto& s, auto& i) -> Cell { return s.of().statistics.pcin(i); }},
    {"mean_kinship", [](auto& s, auto& i) -> Cell { return s.of().mean_kinship(i); }},
    {"contribution_last_birth_time",
     [](auto& s, auto& i) -> Cell { return s.of().contribution(i); }},
    {"offspring", [](auto& s, auto& i) -> Cell { return s.offspring(i); }},
    {"matings", [](auto& s, auto& i) -> Cell { return s.matings(i); }},
};

constexpr Column<TrendRow> kTrend[] = {
    {"birth_time", [](auto&, auto& t) -> Cell { return t.birth_time; }},
    {"birth", [](auto&, auto& t) -> Cell { return t.birth; }},
    {"animals", [](auto&, auto& t) -> Cell { return t.animals; }},
    {"males", [](auto&, auto& t) -> Cell { return t.males; }},
    {"females", [](auto&, auto& t) -> Cell { return t.females; }},
    {"sires", [](auto&, auto& t) -> Cell { return t.sires; }},
    {"dams", [](auto&, auto& t) -> Cell { return t.dams; }},
    {"inbred", [](auto&, auto& t) -> Cell { return t.inbred; }},
    {"mean_inbreeding", [](auto&, auto& t) -> Cell { return t.mean_f; }},
    {"largest_inbreeding", [](auto&, auto& t) -> Cell { return t.max_f; }},
    {"coancestry", [](auto&, auto& t) -> Cell { return t.coancestry; }},
    {"completeness", [](auto&, auto& t) -> Cell { return t.completeness; }},
    {"complete_generations", [](auto&, auto& t) -> Cell { return t.generations; }},
    {"parents_age", [](auto&, auto& t) -> Cell { return t.interval; }},
};

// A founder and its rank.
struct Ranked {
  std::int64_t rank;
  const ReportedFounder& founder;
};

constexpr Column<Ranked> kFounders[] = {
    {"rank", [](auto&, auto& f) -> Cell { return f.rank; }},
    {"identifier", [](auto& s, auto& f) -> Cell { return s.identifier(f.founder.animal); }},
    {"name", [](auto& s, auto& f) -> Cell { return s.name(f.founder.animal); }},
    {"sex", [](auto& s, auto& f) -> Cell { return s.sex(f.founder.animal); }},
    {"birth", [](auto& s, auto& f) -> Cell { return s.birth(f.founder.animal); }},
    {"contribution", [](auto&, auto& f) -> Cell { return f.founder.contribution; }},
    {"cumulative_contribution", [](auto& s, auto& f) -> Cell { return s.cumulative(f.rank); }},
};

constexpr Column<ReportedRule> kRules[] = {
    {"line", [](auto&, auto& r) -> Cell { return r.line; }},
    {"kind", [](auto&, auto& r) -> Cell { return std::string(r.kind); }},
    {"a", [](auto&, auto& r) -> Cell { return r.a; }},
    {"b", [](auto&, auto& r) -> Cell { return r.b; }},
    {"limit", [](auto&, auto& r) -> Cell { return r.limit; }},
    {"broken_by", [](auto&, auto& r) -> Cell { return r.broken; }},
    {"value_gained", [](auto&, auto& r) -> Cell { return r.gain.value; }},
    {"merit_gained", [](auto&, auto& r) -> Cell { return r.gain.merit; }},
    {"relationship_gained", [](auto&, auto& r) -> Cell { return r.gain.relationship; }},
    {"rate_gained", [](auto&, auto& r) -> Cell { return r.gain.rate; }},
    {"inbreeding_gained", [](auto&, auto& r) -> Cell { return r.gain.inbreeding; }},
    {"value_without", [](auto&, auto& r) -> Cell { return r.without.value; }},
    {"merit_without", [](auto&, auto& r) -> Cell { return r.without.merit; }},
    {"relationship_without", [](auto&, auto& r) -> Cell { return r.without.relationship; }},
    {"rate_without", [](auto&, auto& r) -> Cell { return r.without.rate; }},
    {"inbreeding_without", [](auto&, auto& r) -> Cell { return r.without.inbreeding; }},
};

// record: gives that of a row, from 0.
template <class Record, std::size_t N, class RecordOf>
ReportTable table_of(std::string_view name, const Sources& sources,
                     const Column<Record> (&columns)[N], std::int64_t rows, RecordOf record) {
  ReportTable table{name, {}, rows, {}};
  for (const Column<Record>& column : columns) table.headings.push_back(column.heading);
  table.cell = [&sources, &columns, record](std::int64_t row, std::size_t column) {
    return columns[column].cell(sources, record(static_cast<std::size_t>(row)));
  };
  return table;
}

template <class Record, std::size_t N>
ReportTable table_of(std::string_view name, const Sources& sources,
                     const Column<Record> (&columns)[N], const std::vector<Record>& records) {
  return table_of(name, sources, columns, std::ssize(records),
                  [&](std::size_t row) -> const Record& { return records[row]; });
}

}  // namespace

void for_each_table(const Report& report, const AnimalFigures& animals,
                    const std::function<void(const ReportTable&)>& use) {
  const Sources sources(report, animals);
  const auto& founders = animals.founders;
  use(table_of("matings", sources, kMatings, report.plan.matings));
  use(table_of("candidates", sources, kCandidates, report.candidates));
  use(table_of("animals", sources, kAnimals, animals.pedigree.maxid,
               [](std::size_t row) { return static_cast<std::int64_t>(row) + 1; }));
  use(table_of("trend", sources, kTrend, report.population.trend));
  use(table_of("founders", sources, kFounders, std::ssize(founders), [&](std::size_t row) {
    return Ranked{static_cast<std::int64_t>(row) + 1, founders[row]};
  }));
  const ReportedRules& rules = report.plan.rules;
  if (!rules.file.empty()) use(table_of("rules", sources, kRules, rules.list));
}

}  // namespace qob
