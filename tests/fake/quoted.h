#pragma once

#include <string>
#include <string_view>

namespace fake {

/// The text in double quotes, with line ends and unprintable bytes escaped as in C.
std::string quoted(std::string_view text);

}  // namespace fake
