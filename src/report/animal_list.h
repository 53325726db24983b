// The animals that a report names, each told once.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "analysis/animal_statistics.h"
#include "pedigree/pedigree.h"
#include "report/names.h"
#include "report/report.h"

namespace qob {

class AnimalList {
 public:
  // All must outlive the list. Names may be empty.
  AnimalList(const Pedigree& pedigree, const AnimalStatistics& statistics, const Names& names);

  // The place of an animal of the pedigree (not 0), which is taken up if it is new.
  std::int32_t place(std::int32_t animal);
  // Takes up an animal and its ancestors over so many generations.
  void add_ancestors(std::int32_t animal, int generations);

  // The animals, in the order in which they were taken up.
  std::vector<ReportedAnimal> told() const;

 private:
  ReportedAnimal describe(std::int32_t animal) const;
  std::int32_t place_of_parent(std::int32_t parent) const;

  const Pedigree& pedigree_;
  const AnimalStatistics& statistics_;
  const Names& names_;
  Table<std::int32_t> place_;          // by animal, kNotShown when it is not told
  std::vector<std::int32_t> animals_;  // by place
};

// The identifier by which its breeder knows the animal.
std::string identifier_of(const Pedigree& pedigree, const Names& names, std::int32_t animal);
// What it is called besides: "" if nothing.
std::string name_of(const Pedigree& pedigree, const Names& names, std::int32_t animal);
// When it was born, in the herd book's words or as time step; "" when that is not known.
std::string birth_of(const Pedigree& pedigree, const Names& names, std::int32_t animal);

}  // namespace qob
