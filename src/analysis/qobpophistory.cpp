#include "analysis/qobpophistory.h"

#include <algorithm>
#include <string>

#include "analysis/animal_statistics.h"
#include "analysis/cohorts.h"
#include "analysis/contributions.h"
#include "analysis/group_coancestry.h"
#include "analysis/inbreeding.h"
#include "core/lines_in_parts.h"

namespace qob {
namespace {

void read_parameters(Run& run) {
  PopulationHistory& history = run.parameters.history;
  Units& units = run.journal.units;
  const Group group = group_of(history);
  const int status = run.parameter_file.read(group);
  if (status != 0) {
    handle_error(units, ErrorValue{status},
                 "ERROR in reading QOB Parameter file, Namelist PopulationHistory");
  }
  if (history.pci_ngen < 1) {
    handle_error(
        units, ErrorValue{kMalformed},
        "ERROR in reading QOB Parameter file, Namelist PopulationHistory : pci_ngen should be at least 1");
  }
  Unit& log = units.log;
  write_list(log, std::string(71, '-'));
  write_list(log, "Calculating Population history  ");
  write_list(log, std::string(71, '-'));
  write_list(log, "Parameters ");
  echo(log, group);
  write_list(log, std::string(70, '-'));
}

// " PCI" and the number of generations.
std::string completeness_name(std::int32_t pci_ngen) {
  return " PCI" + std::string(adjustl_trim(formatted("(I3)", pci_ngen)));
}

// Who writes the first result keeps it, so that of two runs one is refused, and leaves none.
void open_first_result(Run& run, Unit& file) {
  const Text<80>& prefix = run.parameters.data.resultsdirectory;
  const FolderLock not_moved_aside{std::string(adjustl_trim(prefix))};
  openresultsfile(run, prefix, run.parameters.files.fcoefffile, file, OutputFile::Show::kAndKeep);
}

void write_coefficients(Run& run, const Pedigree& pedigree, const AnimalStatistics& animals) {
  Units& units = run.journal.units;
  Unit file(18);
  open_first_result(run, file);
  write_list(file, "# F    : Inbreeding coefficient");
  write_list(file, "# GEN  : Generation coefficient");
  write_list(file, "# PECn : Pedigree Completeness index in n generations");
  write(file, "(3A12,A4,4A8)", "Animal", "Sire", "Dam", "Sex", "Group", "F", "GEN",
        completeness_name(run.parameters.history.pci_ngen));
  write_lines(file, pedigree.maxid, run.parallel, [&](Unit& part, std::int64_t i) {
    write(part, "(3I12,I4,I8,3F8.4)", pedigree.oldped(i, 1), pedigree.oldped(i, 2),
          pedigree.oldped(i, 3), pedigree.sex(i), pedigree.btime(i), pedigree.f(i), animals.gen(i),
          animals.pcin(i));
  });
  closeresultsfile(units, file);
  write_list(units.log, "Written indidvidual inbreeding coefficients to results file");
}

// One line of the summary.
struct GroupStatistics {
  std::int32_t n = 0;       // members
  std::int32_t inbred = 0;  // those with F above 0
  double sum_f = 0.0, max_f = 0.0;
  double sum_gen = 0.0, sum_pcin = 0.0;
  double sum_genint = 0.0;  // over those with parents of known age
  std::int32_t n_genint = 0;

  void add(double f, double gen, double pcin, double genint) {
    ++n;
    if (f > 0.0) ++inbred;
    sum_f += f;
    max_f = n == 1 ? f : std::max(max_f, f);
    sum_gen += gen;
    sum_pcin += pcin;
    if (genint > 0.01) {
      sum_genint += genint;
      ++n_genint;
    }
  }
  double mean_genint() const { return n_genint > 0 ? sum_genint / n_genint : 0.0; }
};

Table<GroupStatistics> statistics_by_group(const Pedigree& pedigree, const Cohorts& cohorts,
                                           const AnimalStatistics& animals) {
  Table<GroupStatistics> groups(cohorts.count());
  for (std::int32_t i = 1; i <= pedigree.maxid; ++i) {
    groups(cohorts.cohort(i))
        .add(pedigree.f(i), animals.gen(i), animals.pcin(i), animals.genint(i));
  }
  return groups;
}

void write_head(Run& run) {
  Units& units = run.journal.units;
  const std::string head =
      formatted("(2A8,A9,3X,8A8)", "Group", "N", "N.inbred", "avg.F", "max.F", "avg.coa", "exp.F",
                "alpha", completeness_name(run.parameters.history.pci_ngen), "Gencoef", "GenInt");
  units.log.write_line(head);
  openresultsfile(run, run.parameters.data.resultsdirectory, run.parameters.files.fsummaryfile,
                  units.summary, OutputFile::Show::kEachLine);
  write_list(units.summary, "# avg.F   : Average inbreeding coefficient");
  write_list(units.summary, "# max.F   : largest inbreeding coefficient");
  write_list(units.summary, "# avg.coa : Average coancestry incl. self");
  write_list(units.summary, "# exp.F   : Expected inbreeding under random mating");
  write_list(units.summary,
             "# alpha   : Deviation from random mating, <0 indicates avoidance of inbreeding");
  write_list(units.summary, "# PCIn    : Pedigree Completeness Index for n generations");
  write_list(units.summary, "# Gencoef : Average generation coefficient");
  write_list(units.summary, "# GenInt  : Generation Interval");
  units.summary.write_line(head);
}

void write_summary(Run& run, const Pedigree& pedigree, const Cohorts& cohorts,
                   const AnimalStatistics& animals) {
  Units& units = run.journal.units;
  const Table<GroupStatistics> groups = statistics_by_group(pedigree, cohorts, animals);
  const Table<GroupCoancestry> coancestry =
      group_coancestries(pedigree.newped, pedigree.f, cohorts, run.parallel);
  std::int32_t inbred = 0;
  for (std::int32_t g = 1; g <= cohorts.count(); ++g) {
    const GroupStatistics& s = groups(g);
    const double avg_f = s.sum_f / s.n;
    const double exp_f = coancestry(g).expected;
    const double alpha = 1.0 - (1.0 - avg_f) / (1.0 - exp_f);
    both(units.log, units.summary, "(3I8, 4X, 6F8.4,2F8.2)", cohorts.btime(g), s.n, s.inbred, avg_f,
         s.max_f, coancestry(g).average, exp_f, alpha, s.sum_pcin / s.n, s.sum_gen / s.n,
         s.mean_genint());
    inbred += s.inbred;
  }
  double sum_f = 0.0;
  double max_f = pedigree.f(1);
  for (std::int32_t i = 1; i <= pedigree.maxid; ++i) {
    sum_f += pedigree.f(i);
    max_f = std::max(max_f, pedigree.f(i));
  }
  both(units.summary, units.log, "(A, 2I8, 4X, 2F8.4)", "     ALL", pedigree.maxid, inbred,
       sum_f / pedigree.maxid, max_f);
  write_list(units.out);
  write_list(units.log, " Written summary of inbreeding to results file");
}

// The last group is the one that appears last, which need not be the youngest.
void remark_on_last_group(Units& units, const Cohorts& cohorts) {
  const std::int32_t youngest = *std::max_element(cohorts.btime.begin(), cohorts.btime.end());
  const std::int32_t last = cohorts.btime(cohorts.count());
  if (last == youngest) return;
  units.tell("The group that comes last in the data file is that of " + std::to_string(last) +
             (birth_time_is_known(last) ? "" : " (parents without a record)") + ", not of " +
             std::to_string(youngest) + " : contributions are to its animals");
}

}  // namespace

void pophistory(Run& run, Pedigree& pedigree) {
  const TimedPhase timed(run.journal, run.journal.watches.history);
  Units& units = run.journal.units;
  read_parameters(run);
  write_list(units.out, " Starts calculating inbreeding coefficients");
  AnimalStatistics animals;
  allocate(units, "Error in allocating memory in SubRoutine PopHistory", [&] {
    inbreeding_coefficients(pedigree.newped, pedigree.f, units.out, run.parallel);
    animals = animal_statistics(pedigree.newped, pedigree.btime, run.parameters.history.pci_ngen);
  });
  write_list(units.out, "Computed inbreeding for : ", pedigree.maxid);
  write_list(units.log, "Finished computing inbreeding coefficient");
  write_coefficients(run, pedigree, animals);
  Cohorts cohorts;
  allocate(units, "Error in allocating memory in SubRoutine PopHistory", [&] {
    cohorts = group_by_birth_time(pedigree.btime);
    write_head(run);
    write_summary(run, pedigree, cohorts, animals);
  });
  allocate(units, "Error in allocating memory in SubRoutine PopHistory (2)",
           [&] { contributions(run, pedigree, cohorts); });
  remark_on_last_group(units, cohorts);
}

}  // namespace qob
