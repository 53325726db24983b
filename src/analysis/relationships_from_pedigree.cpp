#include "analysis/relationships_from_pedigree.h"

#include <algorithm>
#include <array>
#include <optional>
#include <vector>

#include "analysis/kernels/product_lanes.h"
#include "analysis/relationship_file.h"
#include "core/numbers.h"
#include "core/progress.h"

namespace qob {
namespace {

// Computes the matrix column by column, each column the product of A with a unit vector. Columns
// of animals that are marked but no candidates are only needed for the file.
class MatrixFromPedigree {
 public:
  MatrixFromPedigree(Run& run, const Pedigree& pedigree, const Table<char>& mark,
                     Relationship& relationship)
      : units_(run.journal.units),
        pedigree_(pedigree),
        mark_(mark),
        relationship_(relationship),
        gfile_(run.parameters.relationship.gfile.trimmed()),
        ancestry_(pedigree.newped) {
    if (option_text(gfile_) == "_null_") return;
    file_.emplace(run);
    write_list(units_.log, "Computing full pedigree for the previous ", relationship.maxage,
               " periods");
  }

  // Takes up the animals that have a column. Needs memory.
  void prepare() {
    const auto for_each_needed = [&](auto action) {
      for (std::int32_t i = 1; i <= pedigree_.maxid; ++i) {
        if (file_ ? mark_(i) == 1 : row_of(i) > 0) action(i);
      }
    };
    for_each_needed([&](std::int32_t i) { ancestry_.add(i); });
    ancestry_.close();
    for_each_needed([&](std::int32_t i) {
      needed_.push_back({i, ancestry_.number(i)});
      if (row_of(i) > 0) candidate_.push_back(ancestry_.number(i));
    });
    product_.start(ancestry_, pedigree_.newped, pedigree_.f);
  }

  void compute() {
    Progress progress("Relationships");
    for (std::size_t first = 0; first < needed_.size(); first += ProductLanes::kLanes) {
      progress.show(static_cast<double>(first) / static_cast<double>(needed_.size()));
      const std::size_t past = std::min(first + ProductLanes::kLanes, needed_.size());
      for (std::size_t at = first; at < past; ++at) {
        product_.add(needed_[at].number, static_cast<int>(at - first), 1.0);
      }
      product_.multiply(needed_[past - 1].number);
      store(first, past);
      for (std::size_t at = first; at < past; ++at) {
        finish_before(needed_[at].animal);
        if (file_) write_column(at, static_cast<int>(at - first));
      }
    }
    finish_before(pedigree_.maxid + 1);
    if (file_) close_file();
  }

 private:
  struct Needed {
    std::int32_t animal, number;
  };

  std::int32_t row_of(std::int32_t animal) const { return relationship_.nrm_id(animal); }

  // Puts the columns of needed animals first..past-1 into their rows of the matrix.
  void store(std::size_t first, std::size_t past) {
    std::array<std::int32_t, ProductLanes::kLanes> row{};  // 0: none
    std::array<double*, ProductLanes::kLanes> element{};
    for (std::size_t lane = 0; lane < past - first; ++lane) {
      row[lane] = row_of(needed_[first + lane].animal);
      if (row[lane] > 0) element[lane] = &relationship_.nrm(ute(row[lane], 1));
    }
    const std::int32_t last = *std::max_element(row.begin(), row.end());
    for (std::int32_t column = 0; column < last; ++column) {
      const std::int32_t number = candidate_[static_cast<std::size_t>(column)];
      for (std::size_t lane = 0; lane < row.size(); ++lane) {
        if (column < row[lane]) element[lane][column] = product_(number, static_cast<int>(lane));
      }
    }
  }

  // Writes the relationships of a needed animal with those up to itself.
  void write_column(std::size_t at, int lane) {
    const Table2<std::int32_t>& oldped = pedigree_.oldped;
    for (std::size_t other = 0; other <= at; ++other) {
      const double a = product_(needed_[other].number, lane);
      if (a > kTiny)
        file_->write(oldped(needed_[at].animal, 1), oldped(needed_[other].animal, 1), a);
    }
  }

  // All marked animals before `animal` are done with.
  void finish_before(std::int32_t animal) {
    for (; next_ < animal; ++next_) {
      if (mark_(next_) == 0) continue;
      ++finished_;
      if (finished_ % 1000 == 0) write_list(units_.out, "Finished ", finished_, " individuals");
    }
  }

  void close_file() {
    Unit& log = units_.log;
    file_->close();
    write(log, "(/,2A)", "Relationship matrix written to file :", gfile_);
    write(log, "(A,I10)", "Number of animals included          :", finished_);
    write(log, "(A,I10)", "Number of records written to file   :", file_->records());
  }

  Units& units_;
  const Pedigree& pedigree_;
  const Table<char>& mark_;
  Relationship& relationship_;
  std::string_view gfile_;
  std::optional<RelationshipWriter> file_;
  Ancestry ancestry_;  // of the needed animals
  ProductLanes product_{kTiny};
  std::vector<Needed> needed_;           // in animal order
  std::vector<std::int32_t> candidate_;  // numbers, by matrix row from 0
  std::int32_t next_ = 1;                // the next animal to be finished
  std::int32_t finished_ = 0;
};

}  // namespace

void compute_relationships(Run& run, const Pedigree& pedigree, const Table<char>& mark,
                           Relationship& relationship) {
  Units& units = run.journal.units;
  write_list(units.out);
  write_list(units.log);
  both_list(units.out, units.log, "Computing Numerator Relationship Matrix for ", relationship.nnrm,
            " individuals");
  std::optional<MatrixFromPedigree> matrix;
  allocate(units, "ERROR in allocating memory NRM in subroutine Relationship", [&] {
    matrix.emplace(run, pedigree, mark, relationship);
    matrix->prepare();
  });
  matrix->compute();
}

}  // namespace qob
