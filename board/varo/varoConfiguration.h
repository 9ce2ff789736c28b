#pragma once

#include "board/support/LogChannel.h"
#include "board/varo/hostAppliers.h"

#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

namespace varo {

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
