// BusyBox's udhcpc: how it is run, and what it reports.

#include "board/support/addresses.h"
#include "board/varo/link/dhcpProgram.h"
#include "board/varo/link/reportText.h"
#include "board/varo/store/Column.h"
#include "board/varo/varoCodes.h"

#include <fmt/format.h>

#include <cstring>
#include <initializer_list>
#include <optional>
#include <utility>

namespace varo {

namespace {

/// The client starts over every 16 seconds while nobody answers: 3 requests in 6, then a rest.
constexpr std::initializer_list<const char*> rhythm{"-t", "3", "-T", "2", "-A", "10"};

/// Relay agent information (RFC 3046) with the circuit id, sub-option 1, as the client's argument.
std::string option82(const std::string& circuitId) {
    std::string argument = fmt::format("0x52:01{:02x}", circuitId.size());
    for (const char c : circuitId) {
        argument += fmt::format("{:02x}", static_cast<unsigned char>(c));
    }
    return argument;
}

process::Command arguments(const Configuration& configuration, const varoLib_s_dhcp& dhcp) {
    process::Command words{"-f", "-i", configuration.managementInterface, "-s",
                           configuration.dhcpScript.string()};
    words.insert(words.end(), rhythm.begin(), rhythm.end());
    // An empty class keeps the client from sending its own.
    words.insert(words.end(),
                 {"-V", dhcp.vendorClassEnabled != 0 ? configuration.dhcpVendorClass : ""});
    const std::string circuitId(dhcp.circuitId, strnlen(dhcp.circuitId, sizeof dhcp.circuitId));
    if (dhcp.option82Enabled != 0 && !circuitId.empty()) {
        words.insert(words.end(), {"-x", option82(circuitId)});
    }
    return words;
}

constexpr const char* reported[] = {"ip", "subnet", "router", "dns", "domain", "lease", "serverid"};

constexpr std::pair<std::string_view, DhcpEvent> events[] = {
    {"deconfig", DhcpEvent::deconfig},   {"bound", DhcpEvent::bound},
    {"renew", DhcpEvent::renew},         {"nak", DhcpEvent::nak},
    {"leasefail", DhcpEvent::leasefail},
};

std::optional<std::uint32_t> hostAddress(std::string_view text) {
    const auto address = parsedIpv4(text);
    return address && isHostAddress(*address) ? address : std::nullopt;
}

/// The mask of a lease that names none is that of the address's class (RFC 950).
std::uint32_t classMask(std::uint32_t address) {
    return prefixMask(address < 0x80000000 ? 8 : address < 0xc0000000 ? 16 : 24);
}

Ipv4Prefix readPrefix(const ReportParts& values) {
    const std::string_view text = values["ip"];
    const auto address = parsedIpv4(text);
    if (!address) {
        throw BadReport(fmt::format("the address {} is none", quoted(text)));
    }
    const std::string_view maskText = values["subnet"];
    const auto mask = maskText.empty() ? classMask(*address) : parsedIpv4(maskText);
    if (!mask) {
        throw BadReport(fmt::format("the mask {} is none", quoted(maskText)));
    }
    try {
        return checkedPrefix(*address, *mask);
    } catch (const Failure& failure) {
        throw BadReport(failure.what());
    }
}

/// The usable addresses of a list; the others are left out.
std::vector<std::uint32_t> readAddresses(const ReportParts& values, std::string_view name,
                                         std::vector<std::string>& leftOut) {
    std::vector<std::uint32_t> addresses;
    for (const std::string_view text : split(values[name], ' ')) {
        if (const auto address = hostAddress(text)) {
            addresses.push_back(*address);
        } else {
            leftOut.push_back(fmt::format("{} {}", name, quoted(text)));
        }
    }
    return addresses;
}

bool isInNetwork(std::uint32_t address, const Ipv4Prefix& prefix) {
    return ((address ^ prefix.address) & prefixMask(prefix.length)) == 0;
}

std::uint32_t readRouter(const ReportParts& values, const Ipv4Prefix& prefix,
                         std::vector<std::string>& leftOut) {
    for (const std::uint32_t router : readAddresses(values, "router", leftOut)) {
        if (isInNetwork(router, prefix) && router != prefix.address) {
            return router;
        }
        leftOut.push_back(fmt::format("router {}, which is no neighbour", ipv4Text(router)));
    }
    return 0;
}

std::string readDomain(const ReportParts& values, std::vector<std::string>& leftOut) {
    const std::string_view text = values["domain"];
    if (isDomainWord(text)) {
        return std::string(text);
    }
    leftOut.push_back(fmt::format("domain {}", quoted(text)));
    return {};
}

Lease readLease(const ReportParts& values, std::vector<std::string>& leftOut) {
    Lease lease;
    lease.prefix = readPrefix(values);
    lease.seconds = parsedSeconds(values["lease"]).value_or(0);
    if (lease.seconds == 0) {
        throw BadReport(fmt::format("the lease time {} is none", quoted(values["lease"])));
    }
    lease.router = readRouter(values, lease.prefix, leftOut);
    const auto servers = readAddresses(values, "dns", leftOut);
    if (!servers.empty()) {
        lease.primaryServer = servers[0];
    }
    if (servers.size() > 1) {
        lease.secondaryServer = servers[1];
    }
    lease.domain = readDomain(values, leftOut);
    lease.server = hostAddress(values["serverid"]).value_or(0);
    return lease;
}

DhcpReport read(std::string_view message) {
    const ReportParts parts = readParts(message);
    DhcpReport report;
    report.event = eventAmong<DhcpEvent>(events, parts);
    if (report.event != DhcpEvent::bound && report.event != DhcpEvent::renew) {
        return report;
    }
    report.lease = readLease(parts, report.leftOut);
    return report;
}

}  // namespace

constinit const DhcpProgram<varoLib_s_dhcp, DhcpReport> udhcpc{
    arguments, {.eventVariable = nullptr, .values = reported}, read};

}  // namespace varo
