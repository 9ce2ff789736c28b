#pragma once

#include <filesystem>
#include <string>

namespace CLI {
class App;
}

namespace host {

/// What the platform's services say of the board.
struct PlatformOptions {
    std::filesystem::path softwareVersionFile;  ///< empty: the version is not known
    std::string systemMac;                      ///< empty: that of the management port
};

void addPlatformOptions(CLI::App& app, PlatformOptions& options);

/// Hands the options to the services.
void configurePlatform(const PlatformOptions& options);

}  // namespace host
