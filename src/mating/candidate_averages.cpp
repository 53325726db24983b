#include "mating/candidate_averages.h"

#include "ocs/candidate_rows.h"

namespace qob {

Table<Averages> candidate_averages(const Relationship& relationship, const Candidates& candidates,
                                   Mateset mateset) {
  Table<Averages> averages(candidates.ncands);
  const std::int32_t nm = candidates.nmcands;
  const std::int64_t nmatings = mateset.nmatings();
  const auto n = static_cast<double>(nmatings);
  for (CandidateRows rows(relationship, candidates); rows.next();) {
    CandidateRows::Column males = {}, females = {}, males_sel = {}, females_sel = {};
    rows.add_columns(1, nm, males);
    rows.add_columns(nm + 1, candidates.ncands, females);
    rows.add_columns(&mateset.male(1), nmatings, males_sel);
    rows.add_columns(&mateset.female(1), nmatings, females_sel);
    for (std::size_t l = 0; l < rows.size(); ++l) {
      averages(rows.candidate(l)) = {males[l] / nm, females[l] / candidates.nfcands,
                                     males_sel[l] / n, females_sel[l] / n};
    }
  }
  return averages;
}

}  // namespace qob
