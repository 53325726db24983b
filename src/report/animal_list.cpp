#include "report/animal_list.h"

namespace qob {

AnimalList::AnimalList(const Pedigree& pedigree, const AnimalStatistics& statistics,
                       const Names& names)
    : pedigree_(pedigree),
      statistics_(statistics),
      names_(names),
      place_(pedigree.maxid, kNotShown) {}

std::int32_t AnimalList::place(std::int32_t animal) {
  if (place_(animal) == kNotShown) {
    place_(animal) = static_cast<std::int32_t>(animals_.size());
    animals_.push_back(animal);
  }
  return place_(animal);
}

void AnimalList::add_ancestors(std::int32_t animal, int generations) {
  if (animal == 0) return;
  place(animal);
  if (generations == 0) return;
  add_ancestors(pedigree_.sire(animal), generations - 1);
  add_ancestors(pedigree_.dam(animal), generations - 1);
}

std::int32_t AnimalList::place_of_parent(std::int32_t parent) const {
  return parent == 0 ? kNobody : place_(parent);
}

ReportedAnimal AnimalList::describe(std::int32_t i) const {
  return {.number = pedigree_.oldped(i, 1),
          .id = identifier_of(pedigree_, names_, i),
          .name = name_of(pedigree_, names_, i),
          .birth = birth_of(pedigree_, names_, i),
          .birth_time = pedigree_.btime(i),
          .birth_is_known = birth_time_is_known(pedigree_.btime(i)),
          .sex = pedigree_.sex(i),
          .sire = place_of_parent(pedigree_.sire(i)),
          .dam = place_of_parent(pedigree_.dam(i)),
          .f = pedigree_.f(i),
          .completeness = statistics_.pcin(i)};
}

std::vector<ReportedAnimal> AnimalList::told() const {
  std::vector<ReportedAnimal> list;
  list.reserve(animals_.size());
  for (const std::int32_t animal : animals_) list.push_back(describe(animal));
  return list;
}

std::string identifier_of(const Pedigree& pedigree, const Names& names, std::int32_t animal) {
  const std::int32_t number = pedigree.oldped(animal, 1);
  const std::string_view identifier = names.identifier(number);
  return identifier.empty() ? std::to_string(number) : std::string(identifier);
}

// The text of a data file that qob-prepare made is the identifier, shortened.
std::string name_of(const Pedigree& pedigree, const Names& names, std::int32_t animal) {
  if (names.count() > 0) return std::string(names.name(pedigree.oldped(animal, 1)));
  const std::string_view text = adjustl_trim(pedigree.txt(animal));
  return text == "." || text == std::to_string(pedigree.oldped(animal, 1)) ? "" : std::string(text);
}

std::string birth_of(const Pedigree& pedigree, const Names& names, std::int32_t animal) {
  const std::string_view birth = names.birth(pedigree.oldped(animal, 1));
  if (!birth.empty()) return std::string(birth);
  const std::int32_t time = pedigree.btime(animal);
  return birth_time_is_known(time) ? std::to_string(time) : "";
}

}  // namespace qob
