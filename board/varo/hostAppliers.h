#pragma once

#include "varo/records.h"
#include "varo/sntpRecords.h"

#include <functional>

namespace varo {

/// What puts the settings of services into force that the library itself only keeps: it knows no
/// service, and includes none. The host, which knows both, supplies a function for each setting
/// that the machine has a service for (board/host/boardServices); an empty one: the values are
/// stored only. The setting's own file names the function that its records go to.
///
/// They are called with every valid record that was stored, and with the stored or factory one
/// when the store is opened: one at a time, in the order of the changes. An exception, whose text
/// is the reason, makes the call fail with applyFailed; the values stay stored. They must not call
/// the library.
struct Appliers {
    std::function<void(const varoLib_s_telnetSrv&)> telnet{};
    std::function<void(const varoLib_s_sshSrv&)> ssh{};
    std::function<void(const varoLib_s_ftpSrv&)> ftp{};
    std::function<void(const varoLib_s_subag&)> trapManagers{};
    std::function<void(const varoLib_s_snmpCommunity&)> snmpCommunities{};
    std::function<void(const varoLib_s_snmpSystem&)> snmpSystem{};
    /// The whole record, also after a change of the name alone. Daylight-saving time is observed
    /// when its offset is not 0 and both dates are set.
    std::function<void(const varoLib_s_sntpTimeZone&)> timeZone{};
    /// The configuration of the source in force.
    std::function<void(const rpcSntpConfigHost&)> ntp{};
    /// The record of the source in force.
    std::function<void(const varoLib_s_acs&)> acs{};

    /// Status of the SNTP client, which runs with this configuration, its servers at the places
    /// that they have there. Unlike the others it is called from any threads at the same time. An
    /// exception makes the call fail with systemFailed.
    std::function<rpcSntpInfoHost(const rpcSntpConfigHost& inForce)> ntpStatistics{};
};

}  // namespace varo
