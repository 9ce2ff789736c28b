#pragma once

#include "board/process/Command.h"
#include "board/varo/link/Lease.h"
#include "board/varo/varoConfiguration.h"
#include "varo/records.h"

#include <span>
#include <string>
#include <string_view>

namespace varo {

/// How a DHCP client tells the program that it runs at every event what has happened: by the values
/// of environment variables.
struct DhcpEventForm {
    /// The variable that names the event. Null: it is the program's only argument.
    const char* eventVariable;
    /// The variables that are passed on, with the event's name, to who runs the client.
    std::span<const char* const> values;
    /// The event before the client opens its socket on the link-local address, which is awaited
    /// then; nothing is passed on. Null: there is none.
    const char* beforeStart = nullptr;
};

/// What the board knows of a program that it can run as the DHCP client: its arguments, its events,
/// and what to make of their values. A file each; dhcpEvent.cpp lists them.
template <class Record, class Report>
struct DhcpProgram {
    /// What is appended to the command that the host names.
    process::Command (*arguments)(const Configuration& configuration, const Record& record);
    DhcpEventForm events;
    /// Reads what was passed on; see dhcpEvent.h for its form. What a server sends is not trusted:
    /// an address that no host can have spoils the report, bad values beside it are left out.
    /// Throws BadReport.
    Report (*read)(std::string_view message);
};

/// BusyBox's udhcpc.
extern const DhcpProgram<varoLib_s_dhcp, DhcpReport> udhcpc;
/// ISC's dhclient, with the names that dhclient-script(8) gets, for DHCPv6.
extern const DhcpProgram<varoLib_s_dhcp6, Dhcp6Report> dhclient;

/// The command that is to run; empty for none.
template <class Record, class Report>
process::Command commandOf(const DhcpProgram<Record, Report>& program,
                           const process::Command& named, const Configuration& configuration,
                           const Record& record) {
    if (record.dhcpEnabled == 0 || named.empty()) {
        return {};
    }
    process::Command command = named;
    const process::Command more = program.arguments(configuration, record);
    command.insert(command.end(), more.begin(), more.end());
    return command;
}

}  // namespace varo
