#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace mngctl {

/// What can follow a line that is being typed.
struct Completion {
    std::string insert;                   ///< to be inserted at the cursor
    std::vector<std::string> candidates;  ///< to be shown where there is nothing to insert
};

/// Completes the line up to the cursor from the tree of commands.
Completion completeLine(std::string_view line);

/// The names in columns that fit a terminal of this width.
std::string inColumns(const std::vector<std::string>& names, std::size_t width);

}  // namespace mngctl
