// The viewer that the program carries, made from web/.
#pragma once

#include <string_view>

namespace qob {

// The page without data; "" in a program that was built without pages.
std::string_view page_template();

}  // namespace qob
