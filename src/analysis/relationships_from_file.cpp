#include "analysis/relationships_from_file.h"

#include <algorithm>
#include <cmath>

#include "analysis/cohorts.h"
#include "analysis/relationship_file.h"
#include "core/numbers.h"

namespace qob {
namespace {

constexpr std::string_view kRule =
    "------------------------------------------------------------------";

// Relationships from markers may go beyond the 2 that a pedigree can give, but not far.
constexpr double kLargestExpected = 5.0;

// One line of the summary.
struct GroupRelationships {
  std::int64_t on_file = 0;  // diagonal records
  std::int32_t expected = 0;
  std::int64_t pairs = 0;  // records of two members
  double sum_a = 0.0;      // of their relationships
  double sum_f = 0.0;      // over all members
};

struct FileContents {
  Table<GroupRelationships> groups;
  Table<char> read;           // per animal: its diagonal record was read
  std::int64_t records = 0;   // lines
  std::int64_t elements = 0;  // records of two candidates
  bool related = false;       // two animals are
  double largest = 0.0;       // absolute relationship
};

void write_head(Unit& summary) {
  write(summary, "(/,A)",
        "-------------- Summary of relationships read from file -----------------");
  write_list(summary, "# N.ped   : Number in group read from data file");
  write_list(summary, "# N.file  : Number read from relationship file");
  write_list(summary, "# N.exp   : Number expected to be read (candidates)");
  write_list(summary, "# avg.f   : Average inbreeding (read from file)");
  write_list(summary,
             "# %.coa   : Percent of relationships read from file, others assumed to be 0.0");
  write_list(summary, "# avg.rel : Average relationship (read from file)");
  write(summary, "(A)", kRule);
  write(summary, "(5A8,3X,2A8)", "Group", "N.ped", "N.file", "N.exp", "avg.F", "%.coa", "avg.rel");
}

void enter(const RelationshipReader::Record& record, const Cohorts& cohorts, Pedigree& pedigree,
           Relationship& relationship, FileContents& contents) {
  const auto& [i, j, a] = record;
  contents.largest = std::max(contents.largest, std::abs(a));
  GroupRelationships& group = contents.groups(cohorts.cohort(i));
  contents.related = contents.related || (i != j && a != 0.0);
  if (i == j) {
    pedigree.f(i) = a - 1.0;
    ++group.on_file;
    contents.read(i) = 1;
  } else if (cohorts.cohort(i) == cohorts.cohort(j)) {
    ++group.pairs;
    group.sum_a += a;
  }
  const std::int32_t row = relationship.nrm_id(i);
  const std::int32_t column = relationship.nrm_id(j);
  if (row > 0 && column > 0) {
    ++contents.elements;
    relationship.nrm(ute(row, column)) = a;
  }
}

FileContents read_file(Units& units, RelationshipReader& file, const Cohorts& cohorts,
                       Pedigree& pedigree, Relationship& relationship) {
  FileContents contents;
  allocate(units, "Error in allocating memory in SubRoutine PopHistory", [&] {
    contents.groups.assign(cohorts.count(), {});
    contents.read.assign(pedigree.maxid, 0);
  });
  pedigree.f.fill(0.0);
  RelationshipReader::Record record;
  while (file.next(record)) enter(record, cohorts, pedigree, relationship, contents);
  file.tell_odd_lines();
  contents.records = file.records();
  for (std::int32_t i = 1; i <= pedigree.maxid; ++i) {
    GroupRelationships& group = contents.groups(cohorts.cohort(i));
    group.sum_f += pedigree.f(i);
    if (relationship.nrm_id(i) > 0) ++group.expected;
  }
  return contents;
}

// Writes a line for each group. Returns the mean relationship of the last one.
double write_groups(Unit& summary, const Cohorts& cohorts, const FileContents& contents) {
  double of_last = 0.0;
  for (std::int32_t g = 1; g <= cohorts.count(); ++g) {
    const GroupRelationships& group = contents.groups(g);
    const double n = cohorts.n(g);
    const float pairs = single(n) * single(n - 1.0) / 2.0F;
    const bool alone = cohorts.n(g) == 1;
    const double avg_f =
        group.on_file > 0 ? group.sum_f / static_cast<double>(group.on_file) : group.sum_f;
    const float percent = alone ? 0.0F : 100.0F * single(group.pairs) / pairs;
    const double avg_rel = alone ? 0.0 : group.sum_a / (n * (n - 1.0) / 2.0);
    write(summary, "(4I8,3X,f8.4,f8.2,f8.4)", cohorts.btime(g), cohorts.n(g), group.on_file,
          group.expected, avg_f, percent, avg_rel);
    of_last = avg_rel;
  }
  write(summary, "(A)", kRule);
  return of_last;
}

void report_elements(Units& units, std::string_view gfile, std::int64_t size,
                     const FileContents& contents) {
  Unit& log = units.log;
  write(log, "(/,A,I8,2A)", "Read ", contents.records, " records from file : ", gfile);
  write_list(log, "Read ", contents.elements, " elements of relationship matrix for candidates");
  const float percent = size == 0 ? 0.0F : 100.0F * single(contents.elements) / single(size);
  write(log, "(A7,F5.1,A17)", " ", percent, "% of all elements");
  const std::string file = printable(gfile);
  if (!contents.related) {
    units.tell(file + ": no two animals have a relationship other than 0 : all are unrelated");
  }
  if (contents.largest > kLargestExpected) {
    units.tell(file + ": largest relationship " + shortest(contents.largest) +
               ", in per cent? Fully inbred animals have 2.0 with themselves");
  }
}

void drop_missing_candidates(Units& units, const std::string& file,
                             const Relationship& relationship, const FileContents& contents,
                             Pedigree& pedigree) {
  Unit& log = units.log;
  std::int64_t dropped = 0;
  std::int32_t first = 0;
  for (std::int32_t i = 1; i <= pedigree.maxid; ++i) {
    if (relationship.nrm_id(i) == 0 || contents.read(i) == 1) continue;
    write_list(log);
    write_list(log,
               "Individual marked as candidate was not in pedigree file :", pedigree.oldped(i, 1),
               i, static_cast<int>(contents.read(i)));
    write_list(log, "Individual ignored as candidate");
    pedigree.matings(i) = 0;
    if (dropped++ == 0) first = pedigree.oldped(i, 1);
  }
  if (dropped == 0) return;
  units.tell(file + ": candidate " + std::to_string(first) +
             " has no line of its own : it is left out" + and_more(dropped));
}

}  // namespace

void read_relationships(Run& run, Pedigree& pedigree, Relationship& relationship) {
  Units& units = run.journal.units;
  const std::string_view gfile = run.parameters.relationship.gfile.trimmed();
  write_list(units.out, "Reading relationship matrix from file");
  write_list(units.log, "Reading Relationship from file :", gfile);
  RelationshipReader file(run, pedigree, RelationshipReader::Reading::kMatrix);
  Cohorts cohorts;
  allocate(units, "Error in allocating memory in SubRoutine PopHistory",
           [&] { cohorts = group_by_birth_time(pedigree.btime); });
  write_head(units.summary);
  const FileContents contents = read_file(units, file, cohorts, pedigree, relationship);
  relationship.cohortrel = write_groups(units.summary, cohorts, contents);
  report_elements(units, gfile, relationship.nrm.size(), contents);
  drop_missing_candidates(units, printable(gfile), relationship, contents, pedigree);
}

}  // namespace qob
