#include "network/Network.h"

#include "framework/BLLManager.h"
#include "framework/Interfaces.h"
#include "framework/Log.h"
#include "framework/sysInfo.h"
#include "network/rpc/networkProgram.h"
#include "network/webEvents.h"
#include "platform/zubridge.h"
#include "varo/varoLib.h"

#include <boost/bind/bind.hpp>
#include <netinet/in.h>
#include <unistd.h>

#include <cstdlib>
#include <cstring>

namespace {

constexpr const char* managementInterface = "mng0";

/// Seconds between the end of one look at the management interface and the next.
constexpr unsigned int pollPeriod = 5;

constexpr std::int16_t defaultSeverity = 3;

/// Severities are 16-bit values; a number beyond them wraps, and a text that is none reads as 0.
std::int16_t parseSeverity(const std::string& text) {
    return static_cast<std::int16_t>(std::strtol(text.c_str(), nullptr, 10));
}

// Subscribing and unsubscribing take the same function object.

auto shelfIdHandler(Network* network) {
    using namespace boost::placeholders;
    return boost::bind(&Network::onShelfIdVlanChange, network, _1);
}

/// The event's fourth argument, the sender, is not of interest here.
auto externalMessageHandler(Network* network) {
    using namespace boost::placeholders;
    return boost::bind(&Network::externalMessage, network, _1, _2, _3);
}

}  // namespace

Network::Network()
    : BLEntity("network"),
      rpcProxy(rpcNetworkStart, "Network_mng"),
      severity(defaultSeverity),
      acl("br0", "acl"),
      mngVlanId(0),
      boardPos(0),
      aclName{},
      ruleIds{},
      defaultRuleId(0),
      ruleIdx(0),
      aclInitialized(0),
      aclAssigned(0),
      webServerOn(false),
      lockErrorMsg("Network BLE: Lock cant be obtained.\n"),
      pollThread(0),
      pollStop(false),
      currentIpAddr(0) {
    networkBleInit();
}

Network::~Network() { varoLibDestroy(); }

void Network::networkBleInit() {
    mngVlanId = 1;
    getIpmiBoardPos(&boardPos);
    announceRestartCause();
    networkRAClear();
    varoLibInit();
    severity = defaultSeverity;
    varoLib_s_internalConfig config{};
    if (varoGetInternalConfig(&config) == 0) {
        severity = config.severity;
    }
}

// The persistent configuration lives in varoLib, not in the framework's settings.
void Network::applyConfiguration(boost::shared_ptr<Storage::Setting>) {}
void Network::saveConfiguration(boost::shared_ptr<Storage::Setting>) const {}

int Network::start() {
    const bool started = rpcProxy.start();
    if (!started) {
        return started;
    }
    reportIf(!initNetworkAcl(), "[networkBLE]: start: initNetworkAcl has failed!\n");
    singleton<sysInfo>::instance().shelfIdChanged().subscribePost(shelfIdHandler(this));
    singleton<BLLManager>::instance().externalMessage().subscribePost(externalMessageHandler(this));
    if (pthread_create(&pollThread, nullptr, PollThread, this) != 0) {
        pollThread = 0;  // the handle is undefined after a failure, and stop() must not join it
    }
    return started;
}

int Network::stop() {
    pollStop = false;
    if (pollThread != 0) {
        pthread_join(pollThread, nullptr);
        pollThread = 0;
    }
    rpcProxy.stop(false);
    // "start" is part of the message.
    reportIf(!destroyNetworkAcl(), "[networkBLE]: start: destroyNetworkAcl has failed!\n");
    singleton<sysInfo>::instance().shelfIdChanged().unsubscribePost(shelfIdHandler(this));
    singleton<BLLManager>::instance().externalMessage().unsubscribePost(
        externalMessageHandler(this));
    return 1;
}

void Network::getDependencies(std::list<std::string>& names) {
    names.clear();
    names.push_back(singleton<zubridge>::instance().getName());
    names.push_back(singleton<Interfaces>::instance().getName());
}

void Network::externalMessage(const std::string& name, const std::string& value,
                              std::ostringstream*) {
    if (name == "networkBle_severity") {
        severity = parseSeverity(value);
    } else if (name == "varoLib_severity") {
        varoLib_s_internalConfig config{};
        if (varoGetInternalConfig(&config) == 0) {
            // The library's own threshold follows the one of varoLib.
            const std::int16_t threshold = parseSeverity(value);
            severity = threshold;
            config.severity = threshold;
            varoUpdateInternalConfig(&config, threshold);
        }
    }
}

void* Network::PollThread(void* self) {
    static_cast<Network*>(self)->Poll();
    return nullptr;
}

int Network::Poll() {
    while (!pollStop) {
        pollOnce();
        sleep(pollPeriod);
    }
    return 0;
}

void Network::pollOnce() {
    varoLib_s_interface interface{};
    std::strncpy(interface.name, managementInterface, sizeof interface.name - 1);
    if (varoGetInterface(&interface) != 0) {
        return;
    }
    const std::uint32_t address = ntohl(interface.ipAddr);
    const std::uint32_t previous = currentIpAddr;
    if (address == previous) {
        return;
    }
    // Pre-handlers are offered the old address here, and their answers do not stop a change that
    // has happened already.
    mngAddrChanged.firePre(previous);
    currentIpAddr = address;
    mngAddrChanged.firePost(address);
}

int Network::reportRefusedLock() const {
    singleton<Log>::instance().setMsgLevel(LogImpl::levelWarning) << lockErrorMsg;
    return -1;
}
