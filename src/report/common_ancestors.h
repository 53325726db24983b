// What makes the inbreeding of an offspring: the common ancestors of its parents.
//
// F is the sum, over every animal A that both parents descend from (or are), of
//
//   (1/2)^(n1 + n2 + 1) (1 + F(A))
//
// over all pairs of paths, n1 steps up from the sire and n2 from the dam, that meet in A and share
// no other animal (Wright 1922, Am. Nat. 56:330). The pairs of paths are not followed one by one.
// With L the gene flow from an animal to another (the sum of (1/2)^n over all paths) and c(A) the
// sum of (1/2)^(n1 + n2) over the pairs that first meet in A, every pair that leads to A has first
// met in A or in one of its descendants B, and gone on twice from there:
//
//   L(sire, A) L(dam, A) = c(A) + sum over B of c(B) L(B, A)^2,
//
// so that c follows from the youngest common ancestor to the oldest.
#pragma once

#include <cstdint>
#include <vector>

#include "analysis/kernels/ancestry.h"
#include "core/tables.h"
#include "pedigree/pedigree.h"

namespace qob {

class CommonAncestors {
 public:
  struct Share {
    std::int32_t animal = 0;
    double f = 0.0;
  };
  struct Result {
    std::vector<Share> shares;  // of those looked at, the largest first
    std::int64_t others = 0;    // older ones, which were not looked at one by one
  };

  // Most animals in which paths first meet that are looked at, the youngest first: so that parents
  // of a long pedigree take milliseconds.
  static constexpr int kMost = 400;

  // parents: all that will be asked for, by animal. The pedigree, with its F, must outlive this.
  CommonAncestors(const Pedigree& pedigree, const std::vector<std::int32_t>& parents);

  Result of(std::int32_t sire, std::int32_t dam);

 private:
  // By number in the ancestry: what flows from it to each of its ancestors, 1 to itself.
  void flow(std::int32_t from, std::vector<double>& share) const;

  const Pedigree& pedigree_;
  Ancestry ancestry_;
  std::vector<double> of_sire_, of_dam_, of_meeting_, met_before_;
  std::int32_t sire_ = 0;  // whose gene flow is in `of_sire_`
};

}  // namespace qob
