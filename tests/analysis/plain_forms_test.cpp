// The fast forms of the pedigree's computations give the bits of the plain ones.
#include <array>
#include <cstring>

#include "analysis/kernels/product_lanes.h"
#include "analysis/relationships_from_pedigree.h"
#include "core/numbers.h"
#include "plain/inbreeding.h"
#include "plain/pedigree_products.h"
#include "plain/relationship_matrix.h"
#include "support/random_pedigree.h"
#include "support/run_fixture.h"

namespace qob::test {
namespace {

bool same_bits(double a, double b) { return std::memcmp(&a, &b, sizeof a) == 0; }

class PlainForms : public RunTest {
 protected:
  int draw(int n) { return test::draw(rng_, n); }
  // Calls judge(newped, f) on pedigrees of every shape.
  void for_each_pedigree(auto judge) {
    for (int k = 0; k < 30; ++k) {
      SCOPED_TRACE(k);
      run.parallel = Parallel(1 + k % 4, 0);
      const Table2<std::int32_t> newped = random_pedigree(k, rng_);
      judge(newped, plain::inbreeding_coefficients(newped));
    }
  }
  std::mt19937 rng_{29};
};

TEST_F(PlainForms, InbreedingAndCoancestryOfGroups) {
  for_each_pedigree([&](const auto& newped, const auto& plain) {
    Table<double, 0> f;
    out.clear();
    inbreeding_coefficients(newped, f, units.out, run.parallel);
    ASSERT_TRUE(std::equal(f.begin(), f.end(), plain.begin(), plain.end(), same_bits));
    EXPECT_EQ(out, newped.columns() < 1000 ? "" : " Finished         1000 animals\n");
    Table<std::int32_t> btime(newped.columns(), 0);
    for (std::int32_t born = 0; std::int32_t & time : btime) time = ++born / 20 + draw(3);
    const auto cohorts = group_by_birth_time(btime);
    const auto fast = group_coancestries(newped, f, cohorts, run.parallel);
    for (std::int32_t g = 1; g <= cohorts.count(); ++g) {
      const auto by_ax = plain::group_coancestry(newped, f, cohorts, g);
      ASSERT_TRUE(std::memcmp(&fast(g), &by_ax, sizeof by_ax) == 0) << g;
    }
  });
}

// Coefficients as they may come from a file, and weights of either sign around the threshold.
TEST_F(PlainForms, ProductsWithSeveralVectors) {
  for_each_pedigree([&](const auto& newped, Table<double, 0> f) {
    std::generate(f.begin() + 1, f.end(), [&] { return -0.5 + 0.1 * draw(25); });
    Ancestry ancestry(newped);
    for (std::int32_t i = 1; i <= newped.columns(); i += 1 + draw(5)) ancestry.add(i);
    ancestry.close();
    for (const double above : {0.0, kTiny, 0.0, kTiny}) {
      ProductLanes product(above);
      product.start(ancestry, newped, f);
      std::array<Table<double>, 8> x;
      x.fill(Table<double>(newped.columns(), 0.0));
      const int last = 1 + draw(ancestry.size());
      for (unsigned entry = 0; entry < 100; ++entry) {
        const int k = 1 + draw(last);
        const double value = std::ldexp(draw(2001) - 1000, -10 * draw(4) - 8);
        x[entry % 8](ancestry.animal(k)) += value;
        product.add(k, static_cast<int>(entry % 8), value);
      }
      product.multiply(last);
      for (unsigned lane = 0; lane < 8; ++lane) {
        above > 0.0 ? ak(newped, f, x[lane], newped.columns()) : ax(newped, f, x[lane]);
        for (int k = 1; k <= last; ++k) {
          ASSERT_TRUE(same_bits(product(k, static_cast<int>(lane)), x[lane](ancestry.animal(k))))
              << k;
        }
      }
    }
  });
}

// With a file, marked animals that are no candidates have a column too.
TEST_F(PlainForms, RelationshipMatrix) {
  Relationship r;
  Pedigree& p = pedigree;
  for_each_pedigree([&](const auto& newped, const auto& f) {
    p.newped = newped;
    p.f = f;
    p.maxid = static_cast<std::int32_t>(newped.columns());
    p.oldped.assign(p.maxid, 3, 0);
    Table<char> mark(p.maxid, 0);
    r.nnrm = 0;
    r.nrm_id.assign(p.maxid, 0);
    for (std::int32_t i = 1; i <= p.maxid; i += 1 + draw(6)) {
      mark(i) = 1;
      if (draw(3) != 0) r.nrm_id(i) = ++r.nnrm;
    }
    for (const std::string& gfile : {std::string("_null_"), folder / "written.rel"}) {
      parameters.relationship.gfile = gfile;
      r.nrm.assign(std::int64_t{r.nnrm} * (r.nnrm + 1) / 2, -1.0);
      run.files.outputs.clear();
      compute_relationships(run, p, mark, r);
      plain::relationships(newped, f, mark, [&](int i, int j, double a) {
        if (r.nrm_id(i) == 0 || r.nrm_id(j) == 0) return;
        ASSERT_TRUE(same_bits(nrmelement(r, r.nrm_id(i), r.nrm_id(j)), a)) << i << ' ' << j;
      });
    }
  });
}

}  // namespace
}  // namespace qob::test
