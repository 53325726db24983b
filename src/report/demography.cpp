#include "report/demography.h"

#include <functional>
#include <map>
#include <string>

namespace qob {

std::vector<AgeClass> age_classes(const Pedigree& pedigree, const Table<char>& living,
                                  const Table<char>& chosen) {
  std::map<std::int32_t, AgeClass, std::greater<>> classes;
  for (std::int32_t i = 1; i <= pedigree.maxid; ++i) {
    const std::int32_t sex = pedigree.sex(i);
    const bool candidate = pedigree.matings(i) > 0;
    if ((sex != 1 && sex != 2) || (living(i) == 0 && chosen(i) == 0 && !candidate)) continue;
    AgeClass& age = classes[pedigree.btime(i)];
    (sex == 1 ? age.males : age.females) += living(i);
    (sex == 1 ? age.candidate_males : age.candidate_females) += candidate;
    (sex == 1 ? age.chosen_males : age.chosen_females) += chosen(i);
  }
  std::vector<AgeClass> youngest_first;
  for (auto& [birth_time, age] : classes) {
    age.birth_time = birth_time;
    if (birth_time_is_known(birth_time)) age.birth = std::to_string(birth_time);
    youngest_first.push_back(age);
  }
  return youngest_first;
}

std::vector<FamilySize> family_sizes(const Pedigree& pedigree) {
  Table2<std::int32_t> offspring(2, pedigree.maxid, 0);
  for (std::int32_t i = 1; i <= pedigree.maxid; ++i) {
    for (int k = 1; k <= 2; ++k) {
      if (pedigree.newped(k, i) > 0) ++offspring(k, pedigree.newped(k, i));
    }
  }
  std::map<std::int32_t, FamilySize> sizes;
  for (std::int32_t i = 1; i <= pedigree.maxid; ++i) {
    if (offspring(1, i) > 0) ++sizes[offspring(1, i)].sires;
    if (offspring(2, i) > 0) ++sizes[offspring(2, i)].dams;
  }
  std::vector<FamilySize> ascending;
  for (auto& [number, size] : sizes) {
    size.offspring = number;
    ascending.push_back(size);
  }
  return ascending;
}

}  // namespace qob
