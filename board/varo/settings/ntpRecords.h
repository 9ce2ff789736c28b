#pragma once

#include "varo/sntpRecords.h"

namespace varo {

// The SNTP client has one configuration, in which servers are host texts. Records with IPv4
// addresses are a view of it: they show the servers whose text is an IPv4 address, one after the
// other as far as they fit, and leave the others out.

/// The record as it is stored: address types as the texts have them, entries without a server
/// cleared. Throws Failure (invalidValue) for a mode, a version or a priority out of range, and for
/// a server that is neither a host name nor the address of one host.
rpcSntpConfigHost checkedNtp(const rpcSntpConfigHost& config);

/// The configuration that has the servers of the IPv4 record, and no others.
rpcSntpConfigHost fromIpv4View(const rpcSntpConfig& config);

rpcSntpConfig ipv4View(const rpcSntpConfigHost& config);
/// The reference, too, is shown if its text is an IPv4 address, and is 0 otherwise.
rpcSntpInfo ipv4View(const rpcSntpInfoHost& info);

/// Status of a client that does not run.
rpcSntpInfoHost clientOff(const rpcSntpConfigHost& config);

}  // namespace varo
