// How names are written for the shell, whether there is one or not.
#include "system/shell.h"

namespace qob {
namespace {

constexpr std::string_view kPlain =
    "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789._-/\\+@:,=";

bool is_plain(std::string_view path) {
  return path.find_first_not_of(kPlain) == std::string_view::npos && !path.ends_with('\\') &&
         !path.starts_with("\\-");
}

}  // namespace

std::string shell_word(std::string_view path) {
  std::string word = path.starts_with('-') ? "./" : "";
  if (is_plain(path)) return word.append(path);
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

std::string as_shell_reads(std::string_view path) {
  const bool plain = is_plain(path);
  std::string file;
  for (std::size_t k = 0; k < path.size(); ++k) {
    if (plain && path[k] == '\\') ++k;
    file += path[k];
  }
  return file;
}

}  // namespace qob
