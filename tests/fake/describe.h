#pragma once

#include "fake/quoted.h"
#include "platform/acl.h"
#include "varo/records.h"
#include "varo/sntpRecords.h"

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
std::string describe(const varoLib_s_dhcp& dhcp);
std::string describe(const varoLib_s_dhcp6& dhcp);
std::string describe(const varoLib_s_route& route);
std::string describe(const varoLib_s_ipv6& ipv6);
std::string describe(const zubridge_acl_condition& condition);

// A list is shown up to its last entry that holds anything; entries before it that do not are shown
// as {}.
std::string describe(const varoLib_s_telnetSrv& server);
std::string describe(const varoLib_s_sshSrv& server);
std::string describe(const varoLib_s_ftpSrv& server);
std::string describe(const varoLib_s_acs& acs);
std::string describe(const varoLib_s_subag& agent);
std::string describe(const varoLib_s_snmpCommunity& communities);
std::string describe(const varoLib_s_snmpSystem& system);
std::string describe(const rpcSntpConfig& config);
std::string describe(const rpcSntpConfigHost& config);
/// The state and the first server only; a caller compares the rest by itself.
std::string describe(const rpcSntpInfo& info);
std::string describe(const rpcSntpInfoHost& info);
std::string describe(const varoLib_s_sntpTimeZone& zone);

/// An address to be attached or detached, host byte order.
std::string describeRequest(const varoLib_s_interface& interface);

}  // namespace fake
