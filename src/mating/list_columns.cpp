#include "mating/list_columns.h"

#include "ocs/kernels/triangle_walk.h"

namespace qob {

Table<ListColumns> list_columns(const Relationship& relationship, const Candidates& candidates,
                                Mateset mateset) {
  Table<ListColumns> columns(candidates.ncands);
  const std::int32_t nm = candidates.nmcands;
  const std::int64_t nmatings = mateset.nmatings();
  const auto n = static_cast<double>(nmatings);
  for (TriangleWalk walk(relationship, candidates); walk.next();) {
    TriangleWalk::Column males = {}, females = {}, males_sel = {}, females_sel = {};
    walk.add_columns(1, nm, males);
    walk.add_columns(nm + 1, candidates.ncands, females);
    walk.add_columns(&mateset.male(1), nmatings, males_sel);
    walk.add_columns(&mateset.female(1), nmatings, females_sel);
    for (std::size_t l = 0; l < walk.size(); ++l) {
      columns(walk.candidate(l)) = {males[l] / nm, females[l] / candidates.nfcands,
                                    males_sel[l] / n, females_sel[l] / n};
    }
  }
  return columns;
}

}  // namespace qob
