#include "mngctl/commands/consent.h"

#include "mngctl/commands/networks.h"
#include "mngctl/outcome.h"

#include <fmt/format.h>

#include <cstdlib>
#include <sstream>

namespace mngctl {

namespace {

/// An IPv4 address, also in the form in which an IPv6 socket shows it (RFC 4291 section 2.5.5.2).
unsigned parseEnd(const std::string& text) {
    constexpr std::string_view mapped = "::ffff:";
    return parseIpv4(text.starts_with(mapped) ? text.substr(mapped.size()) : text);
}

/// A link-local end stands with the zone of the board's interface.
std::string parseEnd6(const std::string& text) {
    return parseIpv6Host(text.substr(0, text.find('%')));
}

/// Reads "client port server port".
template <class Address>
std::optional<Way<Address>> parseWay(std::string_view connection,
                                     Address (*parse)(const std::string& text)) {
    std::istringstream words{std::string(connection)};
    std::string client;
    std::string server;
    std::string port;
    if (!(words >> client >> port >> server >> port)) {
        return std::nullopt;
    }
    try {
        return Way<Address>{parse(client), parse(server)};
    } catch (const UsageError&) {
        return std::nullopt;
    }
}

std::string_view sshConnection() {
    const char* const connection = std::getenv("SSH_CONNECTION");
    return connection == nullptr ? std::string_view() : connection;
}

}  // namespace

std::optional<WayIn> parseWayIn(std::string_view connection) {
    return parseWay(connection, parseEnd);
}

std::optional<WayIn6> parseWayIn6(std::string_view connection) {
    return parseWay(connection, parseEnd6);
}

std::optional<WayIn> wayIn() { return parseWayIn(sshConnection()); }

std::optional<WayIn6> wayIn6() { return parseWayIn6(sshConnection()); }

void obtainConsent(Session& session, const std::string& question,
                   const std::string& withoutTerminal) {
    if (session.settings.yes) {
        return;
    }
    Streams& streams = session.streams;
    if (!streams.terminal) {
        throw UsageError(withoutTerminal);
    }
    streams.out << question << " [y/N] " << std::flush;
    std::string answer;
    std::getline(streams.in, answer);
    // The end of the input is no answer, and not the end of the prompt.
    streams.in.clear();
    if (answer != "y" && answer != "Y" && answer != "yes") {
        throw UsageError("nothing was changed");
    }
}

void askBeforeCuttingOff(Session& session, const std::string& client, const std::string& reason) {
    const std::string warning =
        fmt::format("this can end your own connection from {}: {}", client, reason);
    obtainConsent(session, warning + "\nDo it all the same?",
                  warning + "; give --yes to do it all the same");
}

void askBeforeCuttingOff(Session& session, const WayIn& way, const std::string& reason) {
    askBeforeCuttingOff(session, formatIpv4(way.client), reason);
}

}  // namespace mngctl
