#include "analysis/qobrelshipmatrix.h"

#include <algorithm>
#include <limits>
#include <string>

#include "analysis/relationships_from_file.h"
#include "analysis/relationships_from_pedigree.h"
#include "core/numbers.h"

namespace qob {
namespace {

void read_parameters(Run& run) {
  const Group group = group_of(run.parameters.relationship);
  read_group(run, group);
  Unit& log = run.journal.units.log;
  write_list(log, std::string(71, '-'));
  write_list(log, "Computing/Reading Relationship Matrix  ");
  write_list(log, std::string(71, '-'));
  write_list(log, "Parameters ");
  echo(log, group);
  write_list(log, std::string(71, '-'));
}

// The age at time `now` of a parent, 1 when it is unknown.
std::int64_t age_of_parent(const Pedigree& pedigree, std::int32_t parent, std::int64_t now) {
  if (parent == 0 || !birth_time_is_known(pedigree.btime(parent))) return 1;
  return now - pedigree.btime(parent);
}

// The time steps that the selection looks back. next: the time step of the coming offspring.
std::int64_t cohorts_to_include(const Pedigree& pedigree, std::int64_t next) {
  std::int64_t oldest = std::numeric_limits<std::int32_t>::max();
  for (std::int32_t i = 1; i <= pedigree.maxid; ++i) {
    if (pedigree.matings(i) > 0 && birth_time_is_known(pedigree.btime(i))) {
      oldest = std::min(oldest, std::int64_t{pedigree.btime(i)});
    }
  }
  std::int64_t maxage = next - oldest;
  for (std::int32_t i = 1; i <= pedigree.maxid; ++i) {
    if (pedigree.btime(i) != next - 1 && pedigree.matings(i) <= 0) continue;
    maxage = std::max(maxage, age_of_parent(pedigree, pedigree.sire(i), next - 1));
    maxage = std::max(maxage, age_of_parent(pedigree, pedigree.dam(i), next - 1));
  }
  return maxage;
}

// Marks the animals that matter for the selection, the candidates and all animals up to maxage
// with their parents, and numbers the candidates' rows. Returns the number of marked animals.
std::int32_t mark_animals(Units& units, const Pedigree& pedigree, std::int32_t next,
                          Relationship& relationship, Table<char>& mark) {
  for (std::int32_t i = pedigree.maxid; i >= 1; --i) {
    if (pedigree.matings(i) > 0) mark(i) = 1;
    const std::int64_t age = std::int64_t{next} - pedigree.btime(i);
    if (age < 1) {
      handle_error(units, "ERROR in data : Illegal birth_time in record :", i, age, next,
                   pedigree.btime(i));
    }
    if (age > relationship.maxage) continue;
    mark(i) = 1;
    if (pedigree.sire(i) > 0) mark(pedigree.sire(i)) = 1;
    if (pedigree.dam(i) > 0) mark(pedigree.dam(i)) = 1;
  }
  relationship.nnrm = 0;
  for (std::int32_t i = 1; i <= pedigree.maxid; ++i) {
    if (pedigree.matings(i) > 0) relationship.nrm_id(i) = ++relationship.nnrm;
  }
  return static_cast<std::int32_t>(std::count(mark.begin(), mark.end(), 1));
}

// Allocates the matrix, all 0.
void allocate_matrix(Units& units, Relationship& relationship) {
  const std::int64_t n = relationship.nnrm;
  const std::int64_t elements = n * (n + 1) / 2;
  const float gigabytes = single(elements) * 8.0F * 9.313226e-10F;
  write_list(units.out, "Allocating memory for relationship matrix with ", elements, " elements");
  write(units.out, "(A,F8.2)", "App. memory required for NRM (Gb):", gigabytes);
  if (n > kLargestMatrix) {
    handle_error(units, "Dimension of NRM too large. Program aborted. Candidates :", n,
                 " at most :", kLargestMatrix);
  }
  if (memory_suffices([&] { relationship.nrm.make(elements); })) return;
  write_list(units.out, "Allocating memory for Relationship file");
  write_list(units.out, "Allocation failed ");
  write_list(units.out, "Size of real array NRM to be allocated :", elements);
  handle_error(units, "ERROR in allocating memory NRM in subroutine Relationship");
}

}  // namespace

std::optional<Relationship> setup_nrm(Run& run, Pedigree& pedigree) {
  const TimedPhase timed(run.journal, run.journal.watches.pedigree);
  read_parameters(run);
  if (run.parameters.relationship.timesteps < 0) {
    Unit& log = run.journal.units.log;
    write_list(log, "Numerator Relationship not computed");
    write_list(log, "QOB terminated with parameter TimeSteps<0 in &RelationshipMatrix");
    return std::nullopt;
  }
  return relationships(run, pedigree);
}

Relationship relationships(Run& run, Pedigree& pedigree) {
  Units& units = run.journal.units;
  Unit& log = units.log;
  const RelationshipMatrix& parameters = run.parameters.relationship;
  const std::int32_t last = *std::max_element(pedigree.btime.begin(), pedigree.btime.end());
  // Behind the last time step of 32 bits the next one wraps, and every animal is told as illegal.
  const auto next = static_cast<std::int32_t>(static_cast<std::uint32_t>(last) + 1);
  Relationship relationship;
  relationship.maxage =
      parameters.timesteps > 0 ? parameters.timesteps : cohorts_to_include(pedigree, next);
  write(log, "(/,A,I8)", "Number of cohorts included in computing the numerator relationship : ",
        relationship.maxage);
  Table<char> mark(pedigree.maxid, 0);
  relationship.nrm_id.assign(pedigree.maxid, 0);
  const std::int32_t marked = mark_animals(units, pedigree, next, relationship, mark);
  write(log, "(/,A,I8)",
        "Candidates in Numerator Relationship Matrix stored in memeory:", relationship.nnrm);
  write(log, "(/,A,I8)", "Individuals in Numerator Relationship Matrix required for OCS:", marked);
  allocate_matrix(units, relationship);
  relationship.pedsource = option_text(parameters.source) == "pedigree";
  if (relationship.pedsource) {
    compute_relationships(run, pedigree, mark, relationship);
  } else {
    read_relationships(run, pedigree, relationship);
  }
  return relationship;
}

}  // namespace qob
