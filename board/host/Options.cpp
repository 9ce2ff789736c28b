#include "board/host/Options.h"

#include "board/host/exitStatus.h"

#include <CLI/CLI.hpp>

#include <string>

namespace host {

namespace {

constexpr double longestTimeout = 3600;

constexpr const char* description =
    "The business-logic process of the shelf controller: loads an entity library, starts its\n"
    "entities and serves their remote procedures until it is told to end.";

constexpr const char* footer =
    "The process ends on SIGTERM, on SIGINT, or when a client of the control program asks for it.\n"
    "A second signal ends it at once. It needs the port mapper (rpcbind).\n"
    "\n"
    "Exit status: 0 after an orderly end, 1 if it could not start, 2 for wrong usage, 128 and the\n"
    "signal's number if a second signal ended it.\n"
    "\n"
    "Example: bllhost --library /usr/lib/networkble/libnetworkble.so --state /var/lib/networkble";

/// An option that takes seconds, with fractions.
class Seconds {
public:
    Seconds(CLI::App& app, const std::string& name, const std::string& help,
            std::chrono::milliseconds initial)
        : value(std::chrono::duration<double>(initial).count()) {
        app.add_option(name, value, help)
            ->type_name("SECONDS")
            ->check(CLI::Range(0.0, longestTimeout))
            ->capture_default_str();
    }
    Seconds(const Seconds&) = delete;
    Seconds& operator=(const Seconds&) = delete;

    std::chrono::milliseconds get() const {
        return std::chrono::round<std::chrono::milliseconds>(std::chrono::duration<double>(value));
    }

private:
    double value;
};

}  // namespace

std::variant<Options, int> readOptions(int argumentCount, const char* const* arguments) {
    Options options;
    CLI::App app(description, "bllhost");
    app.footer(footer);
    app.add_option("--library", options.library, "Shared library whose entities are run")
        ->type_name("PATH")
        ->required();
    app.add_option("--state", options.stateDirectory,
                   "Existing directory that keeps configuration across restarts")
        ->type_name("DIR")
        ->required();
    app.add_option("--resolv-conf", options.resolverFile,
                   "File in the form of resolv.conf(5) to write the resolver settings to")
        ->type_name("PATH");
    addPlatformOptions(app, options.platform);
    const Seconds stopTimeout(app, "--stop-timeout",
                              "Time for an orderly end; entities that need longer are left behind",
                              options.stopTimeout);
    const Seconds lockTimeout(app, "--lock-timeout",
                              "How long an operation waits for the configuration lock",
                              options.lockTimeout);
    int logLevel = options.logLevel;
    app.add_option("--log-level", logLevel,
                   "Least severe messages to log: 0 error, 1 warning, 2 info, 3 debug")
        ->type_name("N")
        ->check(CLI::Range(static_cast<int>(LogImpl::levelError),
                           static_cast<int>(LogImpl::levelDebug)))
        ->capture_default_str();

    try {
        app.parse(argumentCount, arguments);
    } catch (const CLI::ParseError& error) {
        return app.exit(error) == 0 ? orderlyEnd : wrongUsage;
    }
    options.library = std::filesystem::absolute(options.library);
    options.stateDirectory = std::filesystem::absolute(options.stateDirectory);
    if (!options.resolverFile.empty()) {
        options.resolverFile = std::filesystem::absolute(options.resolverFile);
    }
    options.stopTimeout = stopTimeout.get();
    options.lockTimeout = lockTimeout.get();
    options.logLevel = static_cast<LogImpl::logLevel_t>(logLevel);
    return options;
}

}  // namespace host
