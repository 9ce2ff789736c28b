#pragma once

#include "board/varo/Library.h"
#include "board/varo/link/Lease.h"
#include "board/varo/link/Netlink.h"
#include "board/varo/link/ipv6Prefix.h"

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

// What is made true on the kernel about the management interface's IPv6 addresses and gateway.
//
// Of its addresses, one is set by hand, and those that a DHCPv6 server has granted are known by
// their form. The others - link-local, made of advertised prefixes, added by somebody else - are
// not touched.

/// Adds the address for good; one that is there already stays so. Throws Failure with the kernel's
/// reason.
void putAddressByHand(Netlink& netlink, const std::string& name, int index,
                      const Ipv6Prefix& prefix);
/// One that is not there is removed with success. Throws Failure.
void removeAddress(Netlink& netlink, const std::string& name, int index, const Ipv6Prefix& prefix);

/// With the lifetimes of the lease, and without a network: only routers tell which addresses are
/// neighbours (RFC 5942). Throws Failure.
void putLeasedAddress(Netlink& netlink, const std::string& name, int index, const Lease6& lease);
void removeLeasedAddresses(Netlink& netlink, const std::string& name, int index);

/// Makes the gateway the one that is set by hand, which has to be in a network of the interface
/// unless it is a neighbour. Throws Failure with the kernel's reason.
void putRoute(Netlink& netlink, const std::string& name, int index, const Ipv6Address& gateway,
              bool isNeighbour);
/// One that is not there is removed with success. Throws Failure.
void removeRoute(Netlink& netlink, const std::string& name, int index, const Ipv6Address& gateway);

/// Puts stored settings into force. The gateway was a neighbour when it was set, and is taken for
/// one: the network that it is in may be known later only. Throws Failure.
void applySettings(Netlink& netlink, const std::string& name, int index,
                   const Ipv6Settings& settings);

}  // namespace varo
