#pragma once

#include "board/varo/link/Lease6.h"
#include "board/varo/link/Netlink.h"
#include "board/varo/link/ipv6Prefix.h"

#include <string>

namespace varo {

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
