#include "report/page.h"

#include <algorithm>

namespace qob {
namespace {

constexpr std::string_view kBefore = "<script type=\"application/json\" id=\"data\">";
constexpr std::string_view kData = "/*DATA*/";
constexpr std::string_view kAfter = "</script>";
constexpr std::string_view kLess = "\\u003c";

}  // namespace

std::string page_of(std::string_view page_template, std::string_view json) {
  const std::string place = std::string(kBefore).append(kData).append(kAfter);
  const std::size_t at = page_template.find(place);
  if (at == std::string_view::npos) return "";
  const auto less = static_cast<std::size_t>(std::count(json.begin(), json.end(), '<'));
  std::string page;
  page.reserve(page_template.size() + json.size() + less * kLess.size());
  page += page_template.substr(0, at + kBefore.size());
  for (std::size_t begin = 0; begin < json.size();) {
    const std::size_t end = std::min(json.find('<', begin), json.size());
    page += json.substr(begin, end - begin);
    if (end < json.size()) page += kLess;
    begin = end + 1;
  }
  page += page_template.substr(at + kBefore.size() + kData.size());
  return page;
}

}  // namespace qob
