#include "board/ntp/NtpClient.h"

#include "board/ntp/chronyConfiguration.h"
#include "board/ntp/status.h"
#include "board/process/Command.h"
#include "board/support/wholeFile.h"

#include <chrono>
#include <utility>

namespace ntp {

namespace {

namespace fs = std::filesystem;

constexpr std::chrono::seconds longestChange{3};
constexpr std::chrono::milliseconds longestAnswer{1'000};

}  // namespace

NtpClient::NtpClient(Settings clientSettings, support::Log log)
    : settings(std::move(clientSettings)),
      daemon({.name = "the NTP client", .interface = settings.interface}, std::move(log)) {}

void NtpClient::apply(const rpcSntpConfigHost& config) {
    const Files files(settings.directory);
    std::vector<std::string> command;
    if (isWanted(config)) {
        const std::string text = configurationOf(config, files, settings.interface);
        fs::create_directories(settings.directory);
        fs::permissions(settings.directory, fs::perms::owner_all);
        support::replaceFile(files.configuration, text);
        command = settings.command;
        command.insert(command.end(), {"-d", "-f", files.configuration.string()});
    }
    daemon.want(command);
    // Whoever opens the library need not wait for the client.
    if (std::exchange(isStarted, true)) {
        daemon.await(longestChange);
    }
}

rpcSntpInfoHost NtpClient::status(const rpcSntpConfigHost& config) {
    if (!isWanted(config)) {
        return statusOfNone(config);
    }
    daemon.checkRuns();
    const Files files(settings.directory);
    const auto ask = [&](const char* names, const char* first, const char* second) {
        return process::outputOf(
            {"chronyc", "-h", files.socket.string(), "-c", names, "-m", first, second},
            longestAnswer);
    };
    const std::string names = ask("-N", "tracking", "sources -a");
    return statusOf(config, {names, ask("-n", "sources -a", "ntpdata")});
}

}  // namespace ntp
