#pragma once

#include "board/varo/Library.h"
#include "board/varo/link/Netlink.h"

#include <syslog.h>

#include <cstdint>
#include <string>

namespace varo {

// What is made true on the kernel about the management interface's IPv4 address and gateway.

/// The interface. Throws Failure (noSuchInterface), which is logged at the given level.
Netlink::Link requiredLink(Netlink& netlink, const std::string& name, int level = LOG_ERR);

/// Index of the management interface; 0, which stands for any, where none is configured. Throws
/// Failure (noSuchInterface).
int managementIndex(Netlink& netlink, const Configuration& configuration);

/// Adds the address beside those that are there. Throws Failure with the kernel's reason.
void putAddress(Netlink& netlink, const std::string& name, int index, const Ipv4Prefix& prefix,
                std::uint32_t lifetime = Netlink::forever);
/// False when it was not there. Throws Failure with the kernel's reason.
bool removeAddress(Netlink& netlink, const std::string& name, int index, const Ipv4Prefix& prefix);

/// Leaves exactly this address on the interface, its primary one. Routes by way of the networks of
/// addresses that go may go with them. Throws Failure; the kernel's refusal of the new address
/// changes nothing.
void makeOnlyAddress(Netlink& netlink, const std::string& name, int index, const Ipv4Prefix& prefix,
                     std::uint32_t lifetime = Netlink::forever);

/// Leaves exactly this default route by way of the interface, or none with gateway 0.
void makeOnlyGateway(Netlink& netlink, int index, std::uint32_t gateway);

/// Throws Failure with the kernel's reason.
void addGateway(Netlink& netlink, int index, std::uint32_t gateway);
void removeGateway(Netlink& netlink, const Netlink::DefaultRoute& route);

/// Takes the interface up; a failure is logged only, as what comes next fails with it.
void bringUp(Netlink& netlink, const std::string& name, int index);

/// Primary address and default gateway of the interface as the kernel has them.
Ipv4Settings kernelSettings(Netlink& netlink, int index);

/// Puts stored settings into force on the interface. Nothing is stored: nothing is done.
void applySettings(Netlink& netlink, const std::string& name, int index,
                   const Ipv4Settings& settings);

}  // namespace varo
