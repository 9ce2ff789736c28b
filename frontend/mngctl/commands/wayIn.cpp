#include "mngctl/commands/wayIn.h"

#include "mngctl/commands/consent.h"
#include "mngctl/outcome.h"

#include <fmt/format.h>

#include <cstdlib>
#include <sstream>

namespace mngctl {

namespace {

/// An IPv4 address, also in the form in which an IPv6 socket shows it (RFC 4291 section 2.5.5.2).
unsigned parseEnd(std::string_view text) {
    constexpr std::string_view mapped = "::ffff:";
    return parseIpv4(text.starts_with(mapped) ? text.substr(mapped.size()) : text);
}

}  // namespace

std::string_view sshConnection() {
    const char* const connection = std::getenv("SSH_CONNECTION");
    return connection == nullptr ? std::string_view() : connection;
}

std::optional<std::pair<std::string, std::string>> connectionEnds(std::string_view connection) {
    std::istringstream words{std::string(connection)};
    std::string client;
    std::string clientPort;
    std::string server;
    std::string serverPort;
    if (!(words >> client >> clientPort >> server >> serverPort)) {
        return std::nullopt;
    }
    return std::pair(client, server);
}

std::optional<WayIn> parseWayIn(std::string_view connection) {
    const auto ends = connectionEnds(connection);
    if (!ends) {
        return std::nullopt;
    }
    try {
        return WayIn{parseEnd(ends->first), parseEnd(ends->second)};
    } catch (const UsageError&) {
        return std::nullopt;
    }
}

std::optional<WayIn> wayIn() { return parseWayIn(sshConnection()); }

void askBeforeCuttingOff(Session& session, bool yes, const std::string& client,
                         const std::string& reason) {
    if (yes) {
        return;
    }
    const std::string warning =
        fmt::format("this can end your own connection from {}: {}", client, reason);
    obtainConsent(session, warning + "\nDo it all the same?",
                  warning + "; give --yes to do it all the same");
}

void askBeforeCuttingOff(Session& session, bool yes, const WayIn& way, const std::string& reason) {
    askBeforeCuttingOff(session, yes, formatIpv4(way.client), reason);
}

}  // namespace mngctl
