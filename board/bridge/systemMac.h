#pragma once

#include "board/support/addresses.h"

#include <optional>
#include <string_view>

namespace bridge {

using support::MacAddress;

/// The address in its usual form, two hexadecimal digits a byte with colons between; nothing when
/// the text has another one, or when it is not the address of a single station: a group, or zero.
std::optional<MacAddress> parseMac(std::string_view text);

/// Sets the system's MAC address. Without one, as at first, it is that of the management port.
void setSystemMac(std::optional<MacAddress> address);

}  // namespace bridge
