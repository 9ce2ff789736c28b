#pragma once

#include <string_view>

namespace varo {

/// Waits until the interface has a link-local IPv6 address that is no longer tentative (RFC 4862,
/// section 5.4), up to a few seconds. False when they have passed.
bool awaitLinkLocalAddress(std::string_view interface);

}  // namespace varo
