#pragma once

#include "board/bridge/codes.h"

#include <stdexcept>
#include <string>

namespace bridge {

/// An operation that cannot be done: the code for the caller, the reason for the log.
class Failure : public std::runtime_error {
public:
    Failure(Code number, const std::string& reason) : std::runtime_error(reason), code(number) {}

    const Code code;
};

}  // namespace bridge
