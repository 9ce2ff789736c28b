#pragma once

#include <cstddef>
#include <cstring>
#include <string>
#include <string_view>

namespace fake {

/// The text in double quotes, with line ends and unprintable bytes escaped as in C.
std::string quoted(std::string_view text);

/// The same of a text field, which need not be terminated.
template <std::size_t size>
std::string quotedField(const char (&field)[size]) {
    return quoted({field, strnlen(field, size)});
}

}  // namespace fake
