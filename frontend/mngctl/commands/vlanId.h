#pragma once

#include <string>

namespace mngctl {

/// A VLAN id, 1 to 4094 (IEEE 802.1Q). Throws UsageError.
unsigned parseVlanId(const std::string& text);

}  // namespace mngctl
