// The finished page: the viewer with the data in it, one file that needs nothing else.
#pragma once

#include <string>
#include <string_view>

namespace qob {

// The viewer's page with `json` where its template says that the data are to be. No text of the
// data can end the element that it stands in: each "<" is written as the escape that JSON has for
// it.
// "" if the template has no place for data.
std::string page_of(std::string_view page_template, std::string_view json);

}  // namespace qob
