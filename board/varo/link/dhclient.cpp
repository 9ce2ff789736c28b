// ISC's dhclient: how it is run for DHCPv6, and what it reports.

#include "board/process/ChildProcess.h"
#include "board/varo/link/dhcpEvent.h"
#include "board/varo/link/dhcpProgram.h"
#include "board/varo/link/reportText.h"

#include <fmt/format.h>

#include <algorithm>
#include <utility>

namespace varo {

namespace {

/// Holds the client's identifier (RFC 8415, section 11), which has to stay the same, and its lease.
constexpr const char* leaseFile = "dhcp6.leases";

process::Command arguments(const Configuration& configuration, const varoLib_s_dhcp6&) {
    // It runs its script with an environment of its own.
    return {"-6",
            "-d",
            "--no-pid",
            "-cf",
            "/dev/null",
            "-lf",
            (configuration.stateDirectory / leaseFile).string(),
            "-sf",
            configuration.dhcpScript.string(),
            "-e",
            fmt::format("{}={}", dhcpEventVariable, process::ChildProcess::childSocket),
            configuration.managementInterface};
}

constexpr const char* reported[] = {"new_ip6_address",         "new_max_life",
                                    "new_preferred_life",      "new_dhcp6_name_servers",
                                    "new_dhcp6_domain_search", "old_ip6_address"};

constexpr std::pair<std::string_view, Dhcp6Event> events[] = {
    {"BOUND6", Dhcp6Event::granted},  {"RENEW6", Dhcp6Event::granted},
    {"REBIND6", Dhcp6Event::granted}, {"EXPIRE6", Dhcp6Event::ended},
    {"RELEASE6", Dhcp6Event::ended},  {"STOP6", Dhcp6Event::ended},
    {"DEPREF6", Dhcp6Event::other},   {"FAIL6", Dhcp6Event::other},
    {"PREINIT6", Dhcp6Event::other},
};

Ipv6Address readAddress(std::string_view text) {
    const auto address = parsedIpv6(text);
    if (!address) {
        throw BadReport(fmt::format("the address {} is none", quoted(text)));
    }
    if (!isHostAddress(*address) || isLinkLocal(*address)) {
        throw BadReport(
            fmt::format("{} is not the address of a host beyond the link", ipv6Text(*address)));
    }
    return *address;
}

std::uint32_t readSeconds(std::string_view what, std::string_view text) {
    if (const auto seconds = parsedSeconds(text)) {
        return *seconds;
    }
    throw BadReport(fmt::format("the {} {} is none", what, quoted(text)));
}

void readServers(Lease6& lease, std::string_view texts, std::vector<std::string>& leftOut) {
    for (const std::string_view text : split(texts, ' ')) {
        const auto address = parsedIpv6(text);
        if (!address || !isHostAddress(*address)) {
            leftOut.push_back(fmt::format("name server {}", quoted(text)));
        } else if (lease.primaryServer.empty()) {
            lease.primaryServer = ipv6Text(*address);
        } else if (lease.secondaryServer.empty()) {
            lease.secondaryServer = ipv6Text(*address);
        }
    }
}

/// The first of the search list, of which a record holds one.
void readDomain(Lease6& lease, std::string_view texts, std::vector<std::string>& leftOut) {
    const auto names = split(texts, ' ');
    if (names.empty()) {
        return;
    }
    std::string_view name = names.front();
    if (name.ends_with('.')) {
        name.remove_suffix(1);
    }
    if (!name.empty() && isDomainWord(name)) {
        lease.domain = name;
    } else {
        leftOut.push_back(fmt::format("domain {}", quoted(names.front())));
    }
}

Lease6 readLease(const ReportParts& values, std::vector<std::string>& leftOut) {
    Lease6 lease;
    lease.address = readAddress(values["new_ip6_address"]);
    lease.valid = readSeconds("valid lifetime", values["new_max_life"]);
    if (lease.valid == 0) {
        throw BadReport(fmt::format("{} is granted for no time", ipv6Text(lease.address)));
    }
    lease.preferred =
        std::min(readSeconds("preferred lifetime", values["new_preferred_life"]), lease.valid);
    readServers(lease, values["new_dhcp6_name_servers"], leftOut);
    readDomain(lease, values["new_dhcp6_domain_search"], leftOut);
    return lease;
}

Dhcp6Report read(std::string_view message) {
    const ReportParts parts = readParts(message);
    Dhcp6Report report;
    report.event = eventAmong<Dhcp6Event>(events, parts);
    if (report.event == Dhcp6Event::other) {
        return report;
    }
    const auto before = parsedIpv6(parts["old_ip6_address"]);
    if (report.event == Dhcp6Event::granted) {
        report.lease = readLease(parts, report.leftOut);
        if (before && *before != report.lease.address) {
            report.ended = before;
        }
    } else {
        report.ended = before;
    }
    return report;
}

}  // namespace

constinit const DhcpProgram<varoLib_s_dhcp6, Dhcp6Report> dhclient{
    arguments, {.eventVariable = "reason", .values = reported, .beforeStart = "PREINIT6"}, read};

}  // namespace varo
