// Commands and what they show, in a text: what is given, then lines "$ COMMAND", then what these
// show; an empty line ends a transcript, lines that begin with "# " are remarks.
#pragma once

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include "support/program.h"

namespace qob::test {

struct Transcript {
  std::string given, script, shown;
};

inline std::vector<Transcript> transcripts_of(const std::string& path) {
  std::ifstream file(path);
  std::vector<Transcript> all(1);
  for (std::string line; std::getline(file, line);) {
    Transcript& last = all.back();
    if (line.starts_with("$ ")) {
      last.script += line.substr(2) + "\n";
    } else if (!line.empty()) {
      if (!line.starts_with("# ")) (last.script.empty() ? last.given : last.shown) += line + "\n";
    } else if (!last.script.empty()) {
      all.emplace_back();
    }
  }
  if (all.back().script.empty()) all.pop_back();
  return all;
}

// What a shell shows that runs `script` in `folder`.
inline std::string shown_by(const TemporaryFolder& folder, const std::string& script) {
  const std::string file = folder.write("../" + folder.name() + ".sh", script);
  std::system(("cd " + (folder / "") + " && sh " + file + " > " + file + ".txt").c_str());
  const std::string shown = read_file(file + ".txt");
  std::filesystem::remove(file), std::filesystem::remove(file + ".txt");
  return shown;
}

// Each transcript of a file, after these words, shows what it says in a folder of its own, which
// furnish(folder, transcript) fills. count: of transcripts.
template <class Furnish>
void expect_followed(const std::string& path, std::size_t count, const std::string& words,
                     Furnish furnish) {
  const auto transcripts = transcripts_of(path);
  for (const Transcript& one : transcripts) {
    const TemporaryFolder folder;
    furnish(folder, one);
    EXPECT_EQ(shown_by(folder, words + one.script), one.shown) << one.script;
  }
  EXPECT_EQ(transcripts.size(), count);
}

}  // namespace qob::test
