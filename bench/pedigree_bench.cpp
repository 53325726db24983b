// Inbreeding, coancestry of birth-time groups, and the relationship matrix.
#include "analysis/group_coancestry.h"
#include "analysis/inbreeding.h"
#include "analysis/relationships_from_pedigree.h"
#include "bench.h"
#include "plain/inbreeding.h"
#include "plain/pedigree_products.h"
#include "plain/relationship_matrix.h"

namespace qob::bench {
namespace {

void inbreeding_plain(const std::string& name, const std::string& size, Repeat repeat) {
  const auto form = [=](benchmark::State& state) {
    const Pedigree& pedigree = herd(name).pedigree;
    measure(state, pedigree.maxid,
            [&] { benchmark::DoNotOptimize(plain::inbreeding_coefficients(pedigree.newped)); });
  };
  add_plain("inbreeding", size, form, repeat);
}

void inbreeding_fast(const std::string& name, const std::string& size) {
  const auto form = [=](benchmark::State& state) {
    Herd& of = herd(name);
    Table<double, 0> f;
    measure(state, of.pedigree.maxid, [&] {
      inbreeding_coefficients(of.pedigree.newped, f, of.run.journal.units.out, of.run.parallel);
    });
  };
  add_fast("inbreeding", size, form);
}

void coancestry(const std::string& name, const std::string& size, Repeat plain) {
  add_plain(
      "coancestry of birth-time groups", size,
      [=](benchmark::State& state) {
        const Pedigree& pedigree = herd(name).pedigree;
        const Cohorts cohorts = group_by_birth_time(pedigree.btime);
        measure(state, cohorts.count(), [&] {
          for (std::int32_t g = 1; g <= cohorts.count(); ++g) {
            benchmark::DoNotOptimize(
                plain::group_coancestry(pedigree.newped, pedigree.f, cohorts, g));
          }
        });
      },
      plain);
  add_fast("coancestry of birth-time groups", size, [=](benchmark::State& state) {
    Herd& of = herd(name);
    const Pedigree& pedigree = of.pedigree;
    const Cohorts cohorts = group_by_birth_time(pedigree.btime);
    measure(state, cohorts.count(), [&] {
      benchmark::DoNotOptimize(
          group_coancestries(pedigree.newped, pedigree.f, cohorts, of.run.parallel));
    });
  });
}

// The candidates, which are marked, and a matrix of 0 with a row for each.
struct Rows {
  explicit Rows(const Pedigree& pedigree) : mark(pedigree.maxid, 0) {
    relationship.nrm_id.assign(pedigree.maxid, 0);
    for (std::int32_t i = 1; i <= pedigree.maxid; ++i) {
      if (pedigree.matings(i) <= 0) continue;
      mark(i) = 1;
      relationship.nrm_id(i) = ++relationship.nnrm;
    }
    const std::int64_t rows = relationship.nnrm;
    relationship.nrm.assign(rows * (rows + 1) / 2, 0.0);
  }

  Table<char> mark;
  Relationship relationship;
};

void matrix(const std::string& name, const std::string& size, Repeat plain) {
  const auto plain_form = [=](benchmark::State& state) {
    const Pedigree& pedigree = herd(name).pedigree;
    Rows rows(pedigree);
    Relationship& relationship = rows.relationship;
    const auto keep = [&](std::int32_t i, std::int32_t j, double a) {
      relationship.nrm(ute(relationship.nrm_id(i), relationship.nrm_id(j))) = a;
    };
    measure(state, relationship.nrm.size(),
            [&] { plain::relationships(pedigree.newped, pedigree.f, rows.mark, keep); });
  };
  const auto fast_form = [=](benchmark::State& state) {
    Herd& of = herd(name);
    Rows rows(of.pedigree);
    measure(state, rows.relationship.nrm.size(),
            [&] { compute_relationships(of.run, of.pedigree, rows.mark, rows.relationship); });
  };
  add_plain("relationship matrix", size, plain_form, plain);
  add_fast("relationship matrix", size, fast_form);
}

}  // namespace

void add_pedigree_kernels() {
  inbreeding_plain("p100k", "100k, 30 years", Repeat::kSeveral);
  inbreeding_fast("p100k", "100k, 30 years");
  inbreeding_plain("g100k", "100k, 30 generations", Repeat::kOnce);
  inbreeding_fast("g100k", "100k, 30 generations");
  inbreeding_plain("p1m", "1M, 40 years", Repeat::kOnDemand);
  inbreeding_fast("p1m", "1M, 40 years");
  inbreeding_fast("g1m", "1M, 40 generations");  // the plain form would need hours
  coancestry("p1m", "1M, 40 groups", Repeat::kOnce);
  coancestry("groups1000", "1M, 1000 groups", Repeat::kOnce);
  matrix("p100k", "1k of 100k", Repeat::kSeveral);
  matrix("p100k10k", "10k of 100k", Repeat::kOnce);
  matrix("p1m", "10k of 1M", Repeat::kOnDemand);
}

}  // namespace qob::bench
