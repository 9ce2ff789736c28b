#pragma once

#include <array>
#include <string>

namespace switchboard {

/// The Ethernet address of a network interface of this machine. Throws Failure (noHardwareAddress).
std::array<unsigned char, 6> hardwareAddress(const std::string& interface);

}  // namespace switchboard
