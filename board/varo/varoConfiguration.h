#pragma once

#include "board/support/LogChannel.h"
#include "varo/records.h"
#include "varo/sntpRecords.h"

#include <cstdint>
#include <filesystem>
#include <functional>
#include <string>
#include <vector>

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

/// Receives the library's log lines. It must not call the library.
using Log = support::Log;

/// What the host process tells the library about its surroundings.
struct Configuration {
    /// Existing directory that keeps the record store, file name `varo.db`, across restarts.
    std::filesystem::path stateDirectory;
    /// File in the form of resolv.conf(5) that the resolver settings in force are written to.
    /// Empty: they are stored only.
    std::filesystem::path resolverFile;
    /// Empty: lines go to syslog(3).
    Log log;
    /// Linux name of the board's management interface. Its stored address and gateway, or the DHCP
    /// client, are put into force when the store is opened and when the interface appears. Empty:
    /// the library leaves the machine's interfaces alone until a call names one.
    std::string managementInterface{};
    /// Program and first arguments of the DHCP client, which understands those of BusyBox's udhcpc.
    /// Empty: none is run.
    std::vector<std::string> dhcpClient{};
    /// Program and first arguments of the DHCPv6 client, which understands those of ISC's dhclient.
    /// Empty: none is run.
    std::vector<std::string> dhcp6Client{};
    /// Program that these clients run at every event. It has to hand over to passDhcpEvent.
    std::filesystem::path dhcpScript{};
    /// Vendor class (RFC 2132, option 60) that the client sends when told to.
    std::string dhcpVendorClass{};
    /// File that holds the process id of the auto-configuration client. Empty: there is none.
    std::filesystem::path acsPidFile{};
    /// Position of the board in its shelf.
    std::uint32_t boardPosition = 1;
    /// What puts the settings of services into force.
    Appliers appliers{};
};

/// To be called before the first call of the library, which fails until then. Most is taken when
/// the store is opened: a later call counts from the next varoLibInit after a varoLibDestroy. The
/// log function, the position and the process id file count at once.
void configure(Configuration configuration);

}  // namespace varo
