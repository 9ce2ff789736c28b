#pragma once

namespace varo {

// The far end of the DHCP clients' reports: the program that they run at every event. The
// process that runs the client lets its own program be that one, so that there is no script to be
// installed or to be replaced under it.
//
// A report is one message on a sequenced-packet socket (unix(7)), which the client inherits: the
// event's name, then "name=value" for each value that is known, all terminated by a zero byte.

/// Environment variable with the number of that socket.
inline constexpr const char* dhcpEventVariable = "VARO_DHCP_EVENTS";

/// True when this process was run by one of the DHCP clients that the board knows, for one event.
/// To be asked first in main().
bool isDhcpEvent(int argumentCount, const char* const* arguments);

/// Reports the event; returns the exit status of the process. Before a DHCPv6 client begins it
/// waits a few seconds until the interface has a link-local address, which the client needs. Only
/// for a process that was run for an event.
int passDhcpEvent(const char* const* arguments);

}  // namespace varo
