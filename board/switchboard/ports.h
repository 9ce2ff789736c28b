#pragma once

namespace switchboard {

/// The ports of the switch, by their ids.
inline constexpr int managementPort = 1;
/// The network interface of the shelf. Its PVID is the VLAN that is native on it; it carries the
/// others that it is in with their tags.
inline constexpr int uplinkPort = 100;

}  // namespace switchboard
