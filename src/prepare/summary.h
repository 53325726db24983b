// What a breeder reads of a prepared herd book on the screen.
#pragma once

#include <string>

#include "prepare/prepare.h"

namespace qob {

// Animals, time steps, candidates and what was found, by kind, in lines with their ends. file: the
// herd book; faults_file: where all that was found is, "" for nowhere.
std::string summary_of(const Prepared& prepared, const std::string& file,
                       const std::string& faults_file);

}  // namespace qob
