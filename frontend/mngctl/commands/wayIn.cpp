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

std::optional<WayIn> parseWayIn(std::string_view connection) {
    std::istringstream words{std::string(connection)};
    std::string client;
    std::string clientPort;
    std::string server;
    std::string serverPort;
    if (!(words >> client >> clientPort >> server >> serverPort))
        return std::nullopt;
    try {
        return WayIn{parseEnd(client), parseEnd(server)};
    } catch (const UsageError&) {
        return std::nullopt;
    }
}

std::optional<WayIn> wayIn() {
    const char* const connection = std::getenv("SSH_CONNECTION");
    return connection == nullptr ? std::nullopt : parseWayIn(connection);
}

void askBeforeCuttingOff(Session& session, bool yes, const WayIn& way, const std::string& reason) {
    if (yes)
        return;
    const std::string warning =
        fmt::format("this can end your own connection from {}: {}", formatIpv4(way.client), reason);
    obtainConsent(session, warning + "\nDo it all the same?",
                  warning + "; give --yes to do it all the same");
}

}  // namespace mngctl
