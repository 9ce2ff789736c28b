#pragma once

#include <iterator>
#include <sstream>
#include <string>
#include <vector>

namespace host {

/// The words of a command line, split at blanks.
inline std::vector<std::string> words(const std::string& command) {
    std::istringstream stream(command);
    return {std::istream_iterator<std::string>(stream), {}};
}

}  // namespace host
