// Candidates, mating capacity and the scale of merit. Reads model.pedigree and the parameters;
// writes model.candidates and model.goal.
#include <algorithm>
#include <cmath>

#include "ocs/qobocs.h"

namespace qob {
namespace {

void count_candidates(Model& model) {
  const Pedigree& pedigree = model.pedigree;
  Candidates& candidates = model.candidates;
  for (std::int32_t i = 1; i <= pedigree.maxid; ++i) {
    if (pedigree.matings(i) > 0) ++(pedigree.sex(i) == 1 ? candidates.nmcands : candidates.nfcands);
  }
  if (candidates.nmcands == 0) handle_error(model, format_list("ERROR: No male candidates"));
  if (candidates.nfcands == 0) handle_error(model, format_list("ERROR: No female candidates"));
  candidates.ncands = candidates.nmcands + candidates.nfcands;
  candidates.birth_time = *std::max_element(pedigree.btime.begin(), pedigree.btime.end()) + 1;
}

// Enters animal i as candidate number k.
void enter_candidate(Model& model, std::int32_t k, std::int32_t i) {
  const Pedigree& pedigree = model.pedigree;
  Candidates& candidates = model.candidates;
  candidates.cands(k) = i;
  candidates.max_matings(k) = pedigree.matings(i);
  candidates.merit(k) = pedigree.ebv(i);
  candidates.age(k) = std::int64_t{candidates.birth_time} - pedigree.btime(i);
  candidates.old_id(k) = pedigree.oldped(i, 1);
  candidates.description(k) = pedigree.txt(i);
}

void fill_candidates(Model& model) {
  const Pedigree& pedigree = model.pedigree;
  Candidates& candidates = model.candidates;
  const std::int32_t n = candidates.ncands;
  candidates.cands.assign(n, 0);
  candidates.max_matings.assign(n, 0);
  candidates.merit.assign(n, 0.0);
  candidates.age.assign(n, 0);
  candidates.old_id.assign(n, 0);
  candidates.description.assign(n, "");
  std::int32_t males = 0;
  std::int32_t females = candidates.nmcands;
  for (std::int32_t i = 1; i <= pedigree.maxid; ++i) {
    if (pedigree.matings(i) <= 0) continue;
    if (pedigree.sex(i) != 1 && pedigree.sex(i) != 2) {
      handle_error(model,
                   format_list("Error in sex codes. Assumed to be 1 (males) or 2 (females)"));
    }
    enter_candidate(model, pedigree.sex(i) == 1 ? ++males : ++females, i);
  }
  // From here on the candidates' own tables are used.
  model.pedigree.sex.release();
  model.pedigree.oldped.release();
  model.pedigree.matings.release();
  model.pedigree.txt.release();
}

void describe_last_generation(Model& model) {
  const Pedigree& pedigree = model.pedigree;
  Candidates& candidates = model.candidates;
  Goal& goal = model.goal;
  double sum_f = 0.0;
  double sum_merit = 0.0;
  for (std::int32_t i = 1; i <= pedigree.maxid; ++i) {
    if (pedigree.btime(i) != candidates.birth_time - 1) continue;
    ++candidates.nlast;
    sum_f += pedigree.f(i);
    sum_merit += pedigree.ebv(i);
  }
  goal.last_f = sum_f / candidates.nlast;
  goal.last_merit = sum_merit / candidates.nlast;
}

void check_capacity(Model& model) {
  const Candidates& candidates = model.candidates;
  OCSParameters& p = model.parameters.ocs;
  Unit& log = model.units.log;
  const std::int64_t males = mating_capacity(candidates, kMale);
  const std::int64_t females = mating_capacity(candidates, kFemale);
  if (p.nmatings > std::min(males, females)) {
    write_list(log);
    write_list(log, " WARNING : More matings attempted than possible");
    write_list(log, " Matings requested        : ", p.nmatings);
    write_list(log, " Male matings available   : ", males);
    write_list(log, " Female matings available : ", females);
    p.nmatings = static_cast<std::int32_t>(std::min(males, females));
    write_list(log, " Matings selected         : ", p.nmatings);
  }
  const auto most = *std::max_element(candidates.max_matings.begin(),
                                      candidates.max_matings.begin() + candidates.nmcands);
  if (most < p.limitmalematings) {
    handle_error(
        model,
        format_list(
            "ERROR: Male candidates should have at least LimitMaleMatings matings in dataset"));
  }
  check_male_limit(model);  // again, as nmatings may be lower now
}

// Mean merit of a sex, each candidate weighted by its mating limit, and the standard deviation,
// which becomes the unit of merit.
void scale_merit(Model& model, int sex) {
  const Candidates& candidates = model.candidates;
  const std::int64_t capacity = mating_capacity(candidates, sex);
  const auto [least, most] =
      std::minmax_element(candidates.merit.begin() + (candidates.first(sex) - 1),
                          candidates.merit.begin() + candidates.last(sex));
  double sum = 0.0;
  double sum_of_squares = 0.0;
  for (std::int32_t i = candidates.first(sex); i <= candidates.last(sex); ++i) {
    const double w = candidates.max_matings(i);
    const double merit = candidates.merit(i);
    sum += w * merit;
    sum_of_squares += w * (merit * merit);
  }
  const double total = static_cast<double>(capacity);
  const double n = candidates.last(sex) - candidates.first(sex) + 1;
  const double mean = sum / static_cast<double>(single(capacity));
  const double divisor = n > 1.0 ? (n - 1.0) * total / n : 1.0;
  const double variance = (sum_of_squares - mean * mean * total) / divisor;
  if (!std::isfinite(variance)) {
    handle_error(model,
                 format_list("ERROR in data : EBVs are too large, from ", *least, " to ", *most));
  }
  const double deviation = std::sqrt(std::max(variance, 0.0));
  model.goal.mean_merit[sex - 1] = mean;
  model.goal.k_factor[sex - 1] = *least == *most || deviation < kTiny ? 1.0 : deviation;
}

}  // namespace

void set_up_selection(Model& model) {
  count_candidates(model);
  const std::int64_t nage = count_age_classes(model);
  both_list(model.units.out, model.units.log, "Computing realised contributions for the previous",
            nage, " periods");
  fill_candidates(model);
  AgeStructure ages;
  allocate(model, "ERROR in allocating memory in Subroutine setup_f_ped.",
           [&] { ages = age_structure(model, nage); });
  describe_last_generation(model);
  allocate(model, "ERROR in allocating memory in subroutine OCS (contrib) ",
           [&] { realised_contributions(model, ages); });
  if (!model.relationship.pedsource) {
    allocate(model, "ERROR in allocating memory ReadID in subroutine Setup_Cnrm",
             [&] { check_required_relationships(model); });
  }
  check_capacity(model);
  scale_merit(model, kMale);
  scale_merit(model, kFemale);
}

}  // namespace qob
