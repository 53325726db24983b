#include "core/shell.h"

#include <cstdlib>

namespace qob {
namespace {

constexpr std::string_view kPlain =
    "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789._-/\\+@:,=";

}  // namespace

std::string shell_word(std::string_view path) {
  std::string word = path.starts_with('-') ? "./" : "";
  if (path.find_first_not_of(kPlain) == std::string_view::npos) return word.append(path);
  word += '\'';
  for (const char c : path) {
    if (c == '\'') {
      word += "'\\''";  // ends the quotes, a quote for itself, begins them again
    } else {
      word += c;
    }
  }
  return word += '\'';
}

void run_in_shell(const std::string& command) {
  if (std::system(command.c_str()) != 0) return;
}

}  // namespace qob
