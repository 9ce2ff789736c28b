#pragma once

#include "board/switchboard/VlanDatabase.h"

#include <stdexcept>
#include <string>

namespace switchboard {

/// The document was written by a later release.
class NewerDocument : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

/// The state of the switch as a JSON document, one line.
std::string formatState(const VlanState& state);

/// Reads one that formatState has written. Throws NewerDocument; std::exception, saying what is
/// wrong, for anything else.
VlanDatabase parseState(const std::string& text);

}  // namespace switchboard
