#include "mating/mating_lists.h"

#include <algorithm>
#include <numeric>
#include <string>
#include <tuple>

#include "mating/list_columns.h"

namespace qob {
namespace {

class Lists {
 public:
  Lists(Run& run, const Selection& selection, const Relationship& relationship, Mateset mateset)
      : run_(run),
        selection_(selection),
        candidates_(selection.candidates),
        relationship_(relationship),
        mateset_(mateset),
        columns_(list_columns(relationship, candidates_, mateset)) {}

  void write_matings();
  void write_candidates();

 private:
  double relationship(std::int32_t a, std::int32_t b) const {
    return cnrm(relationship_, candidates_, a, b);
  }
  void open(const Text<80>& name, Unit& unit) {
    openresultsfile(run_, run_.parameters.data.resultsdirectory, name, unit);
  }
  void close(Unit& unit) { closeresultsfile(run_.journal.units, unit); }
  void write_legend(Unit& unit) const;
  void write_males(Unit& males) const;
  void write_mating(Unit& unit, std::int64_t line, std::int32_t row, std::int32_t nm,
                    std::int32_t nf) const;

  Run& run_;
  const Selection& selection_;
  const Candidates& candidates_;
  const Relationship& relationship_;
  Mateset mateset_;
  Table<ListColumns> columns_;  // by candidate
};

void Lists::write_legend(Unit& unit) const {
  write(unit, "(A)", "Prev.offspr     : Number of offspring born in previous timesteps");
  write(unit, "(A)", "Rel.males       : Average relationship to all male candidates");
  write(unit, "(A)", "Rel.females     : Average relationship to all female candidates");
  write(unit, "(A)", "Rel.males.sel   : Average relationship to all selected males");
  write(unit, "(A)", "Rel.females.sel : Average relationship to all selected females");
}

void Lists::write_mating(Unit& unit, std::int64_t line, std::int32_t row, std::int32_t nm,
                         std::int32_t nf) const {
  const std::int32_t sire = mateset_.male(row), dam = mateset_.female(row);
  const double merit = (candidates_.merit(sire) + candidates_.merit(dam)) / 2.0;
  const double f = 0.5 * relationship(sire, dam);
  const double vf = (2.0 - (relationship(sire, sire) + relationship(dam, dam)) / 2.0) / 2.0;
  write(unit, "(2I12,3I8,1X,G12.4,2F9.5,4X,A15,X,A15,A)", candidates_.old_id(sire),
        candidates_.old_id(dam), line, nm, nf, merit, f, vf, candidates_.description(sire),
        candidates_.description(dam), row > selection_.rows() ? " decided" : "");
}

void Lists::write_males(Unit& males) const {
  write_legend(males);
  write(males, "(2A15,5A16,A20)", "Sire", "N.matings", "Prev.offspr", "Rel.males", "Rel.females",
        "Rel.males.sel", "Rel.females.sel", "Sire.txt");
  const Uses matings = uses_of(candidates_, mateset_);
  for (std::int32_t i = 1; i <= candidates_.nmcands; ++i) {
    if (matings(i) == 0) continue;
    const ListColumns& a = columns_(i);
    const std::string text = formatted("(A15)", candidates_.description(i).trimmed());
    write(males, "(2I15,I16,4F16.4,1X,A20)", candidates_.old_id(i), matings(i),
          candidates_.previous_offspring(i), a.males, a.females, a.males_sel, a.females_sel, text);
  }
}

void Lists::write_matings() {
  Unit matings(19);
  Unit males(20);
  open(run_.parameters.files.lst_file, matings);
  open(run_.parameters.files.male_file, males);
  write(matings, "(2A12,3A8,3A9,2A15)", "Sire", "Dam ", "N.mating", "Nm", "Nf.m", "EBV", "F", "vF",
        "Sire.txt", "Dam.txt");
  const Table<std::int32_t> row = rows_in_order(selection_, mateset_);
  Uses of_sire(std::int64_t{candidates_.ncands} + 1, 0);  // matings so far
  std::int32_t dam = 0, nf = 0;  // of the line before: its dam, and her matings running
  for (std::int64_t line = 1; line <= row.size(); ++line) {
    const std::int32_t f = mateset_.female(row(line));
    nf = f == dam ? nf + 1 : 1;
    dam = f;
    write_mating(matings, line, row(line), ++of_sire(mateset_.male(row(line))), nf);
  }
  write_males(males);
  close(matings);
  close(males);
}

void Lists::write_candidates() {
  Unit unit(21);
  open(run_.parameters.files.candfile, unit);
  write(unit, "(A)", "N.matings       : Number of matings in optimal mateset");
  write_legend(unit);
  write(unit, "(A15,A5,3A12,4A16,A20)", "ID", "Sex", "N.matings", "Prev.offspr", "Merit",
        "Rel.males", "Rel.females", "Rel.males.sel", "Rel.females.sel", "txt");
  const Uses matings = uses_of(candidates_, mateset_);
  for (std::int32_t i = 1; i <= candidates_.ncands; ++i) {
    const ListColumns& a = columns_(i);
    write(unit, "(I15,I5,2I12,G12.3,4F16.4,1X,A20)", candidates_.old_id(i),
          candidates_.is_male(i) ? kMale : kFemale, matings(i), candidates_.previous_offspring(i),
          candidates_.merit(i), a.males, a.females, a.males_sel, a.females_sel,
          candidates_.description(i));
  }
  close(unit);
}

}  // namespace

Table<std::int32_t> rows_in_order(const Selection& selection, Mateset mateset) {
  Table<std::int32_t> row(mateset.nmatings(), 0);
  std::iota(row.begin(), row.end(), 1);
  const auto mating = [&](std::int32_t j) {
    return std::tuple(j <= selection.rows(), mateset.male(j), mateset.female(j));
  };
  std::sort(row.begin(), row.end(), [&](auto a, auto b) { return mating(a) < mating(b); });
  return row;
}

void write_lists(Run& run, const Selection& selection, const Relationship& relationship,
                 Mateset mateset) {
  Lists lists(run, selection, relationship, mateset);
  lists.write_matings();
  lists.write_candidates();
}

}  // namespace qob
