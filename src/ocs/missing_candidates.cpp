#include "ocs/missing_candidates.h"

#include "analysis/cohorts.h"
#include "analysis/relationship_file.h"

namespace qob {
namespace {

Table<char> animals_on_file(Run& run, const Pedigree& pedigree) {
  Table<char> on_file(pedigree.maxid, 0);
  RelationshipReader file(run, pedigree, RelationshipReader::Reading::kCheck);
  RelationshipReader::Record record;
  while (file.next(record)) {
    if (record.i == record.j) on_file(record.i) = 1;
  }
  return on_file;
}

}  // namespace

void check_missing_candidates(Run& run, const Pedigree& pedigree, const Candidates& candidates) {
  Units& units = run.journal.units;
  Unit& summary = units.summary;
  const Table<char> on_file = animals_on_file(run, pedigree);
  const Cohorts cohorts = group_by_birth_time(pedigree.btime);
  Table<std::int32_t> required(cohorts.count(), 0);
  Table<std::int32_t> missing(cohorts.count(), 0);
  bool any_missing = false;
  for (const std::int32_t animal : candidates.cands) {
    ++required(cohorts.cohort(animal));
    if (on_file(animal) == 1) continue;
    ++missing(cohorts.cohort(animal));
    any_missing = true;
  }
  write_list(summary, "-------------- Summary of individuals not in file -----------------");
  write(summary, "(4A8)", "Group", "N.ped", "N.req", "N.miss");
  for (std::int32_t g = 1; g <= cohorts.count(); ++g) {
    write(summary, "(3I8,I10)", cohorts.btime(g), cohorts.n(g), required(g), missing(g));
  }
  if (any_missing) {
    handle_error(units, "Not all required individuals found in relationship file read");
  }
}

}  // namespace qob
