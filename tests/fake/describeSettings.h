#pragma once

#include "fake/describe.h"
#include "varo/sntpRecords.h"

#include <string>

namespace fake {

// Records of the management services and of the SNTP client, as a journal entry shows them. A list
// is shown up to its last entry that holds anything; entries before it that do not are shown as {}.

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

}  // namespace fake
