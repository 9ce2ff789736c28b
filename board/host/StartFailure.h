#pragma once

#include <stdexcept>

namespace host {

/// Why the process could not start: a sentence for the user, with what to do about it.
class StartFailure : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

}  // namespace host
