#include "board/host/Host.h"

#include "board/bridge/bridgeConfiguration.h"
#include "board/framework/Framework.h"
#include "board/framework/boardIdentity.h"
#include "board/framework/callWithin.h"
#include "board/framework/reporters.h"
#include "board/host/Options.h"
#include "board/host/PortMapper.h"
#include "board/host/surroundings.h"
#include "board/switchboard/switchConfiguration.h"
#include "board/varo/varoConfiguration.h"
#include "control.h"
#include "framework/BLLManager.h"
#include "framework/Interfaces.h"
#include "platform/interfaces.h"
#include "platform/zubridge.h"
#include "varo/varoLib.h"

#include <dlfcn.h>
#include <net/if.h>
#include <netinet/in.h>
#include <syslog.h>

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstring>
#include <exception>
#include <filesystem>
#include <optional>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

namespace host {

namespace {

using std::chrono::milliseconds;
using std::chrono::steady_clock;

/// What each step may take of the time to stop, at least.
constexpr milliseconds smallestShare{100};

milliseconds until(steady_clock::time_point deadline) {
    return std::max(smallestShare,
                    std::chrono::duration_cast<milliseconds>(deadline - steady_clock::now()));
}

void report(const std::string& message) { framework::logLine(LogImpl::levelError, message); }

void configureFramework(const Options& options) {
    framework::Framework& framework = framework::framework();
    framework.log.setThreshold(options.logLevel);
    framework.configurationLock.setWaitLimit(options.lockTimeout);
    try {
        framework.settings.load(options.stateDirectory, framework::writeLog);
    } catch (const std::exception& error) {
        throw StartFailure(std::string("the framework's settings cannot be read: ") + error.what() +
                           ".");
    }
}

/// What the DHCP client is told to send; the vendor class is that which it was configured with.
framework::DhcpIdentity readIdentity(const std::string& vendorClass) {
    varoLib_s_dhcp dhcp{};
    if (const int result = varoGetDhcp(&dhcp); result != 0) {
        throw std::runtime_error("the DHCP settings cannot be read: result " +
                                 std::to_string(result));
    }
    return {dhcp.vendorClassEnabled != 0, vendorClass, dhcp.option82Enabled != 0,
            std::string(dhcp.circuitId, strnlen(dhcp.circuitId, sizeof dhcp.circuitId))};
}

/// The name of the management interface serves the registry and the configuration library alike.
void configureBoard(const Options& options, BoardServices& services) {
    framework::nameManagementPort(options.managementInterface);
    varo::configure({
        .stateDirectory = options.stateDirectory,
        .resolverFile = options.resolverFile,
        .log = {},
        .managementInterface = options.managementInterface,
        .dhcpClient = words(options.dhcpClient),
        .dhcp6Client = words(options.dhcp6Client),
        // This very program reports the client's events; see main().
        .dhcpScript = std::filesystem::read_symlink("/proc/self/exe"),
        .dhcpVendorClass = options.dhcpVendorClass,
        .acsPidFile = options.acsPidFile,
        .boardPosition = options.boardPosition,
        .appliers =
            services.supply(options.services, options.stateDirectory, options.managementInterface),
    });
    framework::dhcpIdentityReporter().set(
        [vendorClass = options.dhcpVendorClass] { return readIdentity(vendorClass); });
}

std::optional<std::string> nameOfPort(int portId) {
    std::array<char, IF_NAMESIZE> name{};
    if (interfaceLinuxnameGet(portId, static_cast<int>(name.size()), name.data()) != 0) {
        return std::nullopt;
    }
    return name.data();
}

void configureBridge(const Options& options) {
    try {
        bridge::configure({options.stateDirectory, options.filterTable, nameOfPort});
    } catch (const std::exception& error) {
        throw StartFailure(std::string("the remote-access rules cannot be read: ") + error.what() +
                           ".");
    }
}

/// The network entity starts with an empty remote-access list and leaves it to its host to put back
/// what was there before.
void replayRules(void* library) {
    using Add = int(unsigned int, unsigned int, int, unsigned int);
    if (void* const symbol = dlsym(library, "networkAddRARule"); symbol != nullptr) {
        bridge::replayRemoteAccessRules(reinterpret_cast<Add*>(symbol));
    } else {
        bridge::replayRemoteAccessRules({});
    }
}

void closeConfigurationLibrary(milliseconds limit) {
    const auto result = framework::callWithin(limit, "varo close", [] {
        varoLibDestroy();
        return 0;
    });
    if (!result) {
        report("the configuration library has not closed within " + std::to_string(limit.count()) +
               " ms");
    }
}

}  // namespace

Host::Host(Options given) : options(std::move(given)), mainLoop([this] { endRequest.raise(); }) {}

void Host::prepare() {
    limitDescriptors();
    checkStateDirectory(options.stateDirectory);
    PortMapper().checkAnswers();
    openlog("bllhost", LOG_PID | LOG_PERROR, LOG_DAEMON);
    configureFramework(options);
    configureBoard(options, services);
    configureBridge(options);
    switchboard::configure({options.stateDirectory});
    // A switch whose state cannot be used has logged why; the rest of the board works without.
    switchboard::returnManagementPort();
    configurePlatform(options.platform);

    BLLManager& manager = BLLManager::instance();
    manager.registerEntity(Interfaces::instance());
    manager.registerEntity(zubridge::instance());
    const framework::EntityRegistry& entities = framework::framework().entities;
    const std::size_t ownEntities = entities.status().size();
    library = loadLibrary(options.library);
    if (entities.status().size() == ownEntities) {
        throw StartFailure("the library " + options.library.string() +
                           " registers no entity; name an entity library with --library.");
    }
}

void Host::start() {
    framework::framework().entities.startAll();
    // Before the main loop, so that no request comes in between.
    replayRules(library);
    if (!mainLoop.start()) {
        throw StartFailure("the thread of the main loop cannot be created.");
    }
    const PortMapper portMapper;
    for (const int protocol : {IPPROTO_UDP, IPPROTO_TCP}) {
        if (!portMapper.knows(BLL_CONTROL_PROGRAM, BLL_CONTROL_VERSION, protocol)) {
            throw StartFailure(
                "the control program cannot be registered with the port mapper; "
                "the lines above tell why.");
        }
    }
}

void Host::wait() const { endRequest.wait(); }

void Host::stop() {
    const auto deadline = steady_clock::now() + options.stopTimeout;
    // The loop ends first, so that no request reaches an entity that is stopping. It takes a
    // second, and longer while it serves a request.
    const bool hasLoopEnded = mainLoop.stop(options.stopTimeout / 2);
    framework::framework().entities.stopAll(until(deadline));
    if (!hasLoopEnded && !mainLoop.stop(smallestShare)) {
        report("the main loop has not ended and is left to itself: a request may be being served");
    }
    try {
        closeConfigurationLibrary(until(deadline));
    } catch (const std::exception& error) {
        report(std::string("the configuration library was not closed: ") + error.what());
    }
    services.end();
}

}  // namespace host
