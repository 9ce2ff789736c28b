#pragma once

#include "fake/quoted.h"
#include "varo/records.h"

#include <cstdint>
#include <string>

namespace fake {

/// Dotted decimal of an address in host byte order.
std::string dotted(std::uint32_t address);

/// A record's content as a journal entry shows it.
std::string describe(const varoLib_s_internalConfig& config);
std::string describe(const varoLib_s_dns& dns);
std::string describe(const varoLib_s_dns6& dns);
std::string describe(const varoLib_s_interface& interface);

}  // namespace fake
