#include "driver/help.h"

#include <algorithm>
#include <string>

#include "core/format.h"
#include "core/parameters.h"
#include "core/unit.h"

namespace qob {
namespace {

constexpr const char* kUsage =
    "qob - genetic management of a breeding population\n"
    "\n"
    "Usage: qob PARAMETERFILE [--quiet] [--threads N]\n"
    "       qob --help | --version\n"
    "\n"
    "Reads the parameter file and the pedigree that it names, analyses the population, searches\n"
    "the set of matings with the best balance of merit and relationship, and writes a mating list\n"
    "and reports. Exit status: 0 on success, 1 on every fault. Standard error tells what is odd in\n"
    "the input and yet no fault; --quiet leaves that out. Large herds are worked on by all\n"
    "processors, or as many as --threads or QOB_THREADS in the environment says: the same files.\n"
    "\n"
    "Data file: one animal a line, parents before their offspring, at most 120 characters; a line of\n"
    "fewer than three values ends it:\n"
    "  Animal_id Sire_is Dam_id sex birth_time max_matings ebv optional_text\n"
    "  (identifiers are integers, 0 = unknown parent; sex 1 male, 2 female; an animal with\n"
    "  max_matings above 0 is a selection candidate)\n"
    "\n"
    "Groups and keys of the parameter file, with their defaults:\n";

constexpr const char* kFiles =
    "\n"
    "Files written, each behind the prefix `resultsdirectory` (the log in the working directory,\n"
    "with a copy behind the prefix):\n"
    "  qob_MatingList.txt  the mating list          Candidates.txt  all candidates\n"
    "  male_list.txt       the selected males       F_summary.txt   summaries and reports\n"
    "  f_coeff.txt         inbreeding by animal     qob_best.txt    best solution by generation\n"
    "  gencont.txt         genetic contributions    qob_conv.txt    convergence of the search\n"
    "  max_gc.txt          largest contributions    qob.log         the log";

void print_group(Unit& out, const Group& group) {
  out.write_line("  &" + std::string(group.name));
  for (const Key& key : group.keys) {
    std::string line = "    " + std::string(key.name);
    line.resize(std::max<std::size_t>(line.size(), 34), ' ');
    out.write_line(line + " = " + key.show());
  }
}

}  // namespace

int print_help() {
  Unit out(6);
  out.open_standard_output();
  out.write_line(kUsage);
  Parameters p;
  for (const Group& group : groups_of(p)) print_group(out, group);
  out.write_line(kFiles);
  return 0;
}

int print_version() {
  Unit out(6);
  out.open_standard_output();
  out.write_line("QOB v3.0 build 16.05.29");
  return 0;
}

}  // namespace qob
