#include "board/ntp/chronyConfiguration.h"

#include <fmt/format.h>
#include <sys/un.h>

#include <algorithm>
#include <cstring>
#include <iterator>
#include <set>
#include <stdexcept>
#include <string_view>

namespace ntp {

namespace {

constexpr int clientIsOn = 1;

/// chronyc(1) makes a socket of its own beside the daemon's, whose name has its process id.
constexpr std::size_t socketNameReserve = 16;

std::string_view hostOf(const rpcSntpSrvHost& server) {
    return {server.host, strnlen(server.host, sizeof server.host)};
}

/// Names and addresses consist of these; anything else would be taken for something else.
void checkHost(std::string_view host) {
    const auto isUsable = [](char c) {
        return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') ||
               c == '.' || c == '-' || c == ':' || c == '_';
    };
    if (!std::all_of(host.begin(), host.end(), isUsable)) {
        throw std::runtime_error("a server is neither a host name nor an address");
    }
}

void checkPath(const std::filesystem::path& path) {
    const std::string text = path.string();
    if (text.find_first_of(" \t\n") != std::string::npos) {
        throw std::runtime_error(fmt::format("the path {} has a blank", text));
    }
}

void checkSocket(const std::filesystem::path& path) {
    constexpr std::size_t longest = sizeof(sockaddr_un::sun_path) - 1 - socketNameReserve;
    if (path.string().size() > longest) {
        throw std::runtime_error(
            fmt::format("the path {} is longer than {} characters, too long "
                        "for a socket",
                        path.string(), longest));
    }
}

std::string line(const rpcSntpSrvHost& server) {
    std::string result = fmt::format("server {} iburst", hostOf(server));
    if (server.ntpVersion != 0) {
        result += fmt::format(" version {}", server.ntpVersion);
    }
    if (server.priority == 1) {
        result += " prefer";
    }
    return result + "\n";
}

}  // namespace

bool isWanted(const rpcSntpConfigHost& config) {
    return config.mode == clientIsOn &&
           std::any_of(std::begin(config.servers), std::end(config.servers),
                       [](const rpcSntpSrvHost& server) { return server.host[0] != '\0'; });
}

std::string configurationOf(const rpcSntpConfigHost& config, const Files& files,
                            const std::string& interface) {
    for (const auto& path : {files.socket, files.drift, files.processId}) {
        checkPath(path);
    }
    checkSocket(files.socket);
    std::string text = "# Written by the board from its SNTP settings; changes are lost.\n";
    std::set<std::string_view> named;
    for (const rpcSntpSrvHost& server : config.servers) {
        const std::string_view host = hostOf(server);
        checkHost(host);
        if (!host.empty() && named.insert(host).second) {
            text += line(server);
        }
    }
    // The clock is stepped at the beginning only; later it is led.
    text += "makestep 1 3\n";
    // It serves no time, and tells its state to who may open its socket.
    text += "port 0\ncmdport 0\n";
    text += fmt::format("bindcmdaddress {}\ndriftfile {}\npidfile {}\n", files.socket.string(),
                        files.drift.string(), files.processId.string());
    if (!interface.empty()) {
        text += fmt::format("bindacqdevice {}\n", interface);
    }
    return text;
}

}  // namespace ntp
