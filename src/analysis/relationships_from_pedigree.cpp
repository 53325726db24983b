#include "analysis/relationships_from_pedigree.h"

#include <algorithm>
#include <array>
#include <memory>
#include <optional>
#include <span>
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
        parallel_(run.parallel),
        mark_(mark),
        relationship_(relationship),
        gfile_(run.parameters.relationship.gfile.trimmed()),
        ancestry_(pedigree.newped),
        products_(parallel_, [this] { return make_product(); }) {
    if (option_text(gfile_) == "_null_") return;
    file_.emplace(run);
    write_list(units_.log, "Computing full pedigree for the previous ", relationship.maxage,
               " periods");
  }

  // Takes up the animals that have a column.
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
  }

  // The text of columns takes much memory, so that of few blocks at a time is made.
  void compute() {
    Progress progress("Relationships");
    const auto threads = static_cast<std::size_t>(parallel_.threads());
    const std::size_t most = threads * (file_ ? 1 : 32) * ProductLanes::kLanes;
    for (std::size_t first = 0; first < needed_.size(); first += most) {
      progress.show(static_cast<double>(first) / static_cast<double>(needed_.size()));
      compute(Columns(needed_).subspan(first, std::min(most, needed_.size() - first)));
    }
    finish_before(pedigree_.maxid + 1);
    if (file_) close_file();
  }

 private:
  struct Needed {
    std::int32_t animal, number;
  };
  using Columns = std::span<const Needed>;

  std::unique_ptr<ProductLanes> make_product() const {
    auto product = std::make_unique<ProductLanes>(kTiny);
    product->start(ancestry_, pedigree_.newped, pedigree_.f);
    return product;
  }

  std::int32_t row_of(std::int32_t animal) const { return relationship_.nrm_id(animal); }

  void compute(Columns columns) {
    constexpr std::size_t kLanes = ProductLanes::kLanes;
    const std::int64_t nanoseconds = std::ssize(columns) * ancestry_.size();
    std::vector<Lines> text(file_ ? (columns.size() + kLanes - 1) / kLanes : 0);
    parallel_.for_each_block(columns, kLanes, nanoseconds, [&](Columns block, int worker) {
      multiply(block, products_(worker));
      if (!file_) return;
      const auto first = static_cast<std::size_t>(block.data() - columns.data());
      make_text(block, products_(worker), text[first / kLanes].renew());
    });
    for (const Lines& records : text) file_->write(records);
    for (const Needed& column : columns) finish_before(column.animal);
  }

  // Computes the columns of a block and puts them into their rows of the matrix.
  void multiply(Columns block, ProductLanes& product) {
    int lane = 0;
    for (const Needed& column : block) product.add(column.number, lane++, 1.0);
    product.multiply(block.back().number);
    store(block, product);
  }

  void store(Columns block, const ProductLanes& product) {
    std::array<std::int32_t, ProductLanes::kLanes> row{};  // 0: none
    std::array<double*, ProductLanes::kLanes> element{};
    for (std::size_t lane = 0; lane < block.size(); ++lane) {
      row[lane] = row_of(block[lane].animal);
      if (row[lane] > 0) element[lane] = &relationship_.nrm(ute(row[lane], 1));
    }
    const std::int32_t last = *std::max_element(row.begin(), row.end());
    for (std::int32_t column = 0; column < last; ++column) {
      const std::int32_t number = candidate_[static_cast<std::size_t>(column)];
      for (std::size_t lane = 0; lane < row.size(); ++lane) {
        if (column < row[lane]) element[lane][column] = product(number, static_cast<int>(lane));
      }
    }
  }

  // Writes the relationships of each animal of the block with those up to itself.
  void make_text(Columns block, const ProductLanes& product, Unit& unit) const {
    const Table2<std::int32_t>& oldped = pedigree_.oldped;
    int lane = 0;
    for (const Needed& column : block) {
      for (const Needed& other : Columns(needed_.data(), &column + 1)) {
        const double a = product(other.number, lane);
        if (a > kTiny)
          write_relationship(unit, oldped(column.animal, 1), oldped(other.animal, 1), a);
      }
      ++lane;
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
  Parallel& parallel_;
  const Table<char>& mark_;
  Relationship& relationship_;
  std::string_view gfile_;
  std::optional<RelationshipWriter> file_;
  Ancestry ancestry_;  // of the needed animals
  PerWorker<ProductLanes> products_;
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
  allocate(units, "ERROR in allocating memory NRM in subroutine Relationship", [&] {
    MatrixFromPedigree matrix(run, pedigree, mark, relationship);
    matrix.prepare();
    matrix.compute();
  });
}

}  // namespace qob
