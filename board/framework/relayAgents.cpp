#include "framework/relayAgents.h"

#include "board/framework/Framework.h"
#include "board/framework/boardIdentity.h"

#include <mutex>

template class singleton<dhcpra>;
template class singleton<pppoeia>;

namespace framework {

namespace {

/// The texts of one agent. They are told by any thread.
class Agent {
public:
    explicit Agent(const char* agentName) : called(agentName) {}

    SystemTexts texts() const {
        const std::lock_guard guard(mutex);
        return known;
    }

    void set(std::string SystemTexts::* text, const char* textName, const std::string& value) {
        {
            const std::lock_guard guard(mutex);
            known.*text = value;
        }
        logLine(LogImpl::levelDebug,
                std::string(called) + ": the system's " + textName + " is \"" + value + "\"");
    }

private:
    const char* const called;
    mutable std::mutex mutex;
    SystemTexts known;
};

// Never destroyed, so that the agents can be told while the process ends.

Agent& dhcpRelay() {
    static Agent& agent = *new Agent("DHCP relay agent");
    return agent;
}

Agent& pppoeAgent() {
    static Agent& agent = *new Agent("PPPoE intermediate agent");
    return agent;
}

}  // namespace

SystemTexts dhcpRelaySystemTexts() { return dhcpRelay().texts(); }
SystemTexts pppoeAgentSystemTexts() { return pppoeAgent().texts(); }

}  // namespace framework

using framework::SystemTexts;

dhcpra::dhcpra() = default;
dhcpra::~dhcpra() = default;

void dhcpra::setSystemContact(const std::string& text) {
    framework::dhcpRelay().set(&SystemTexts::contact, "contact", text);
}

void dhcpra::setSystemLocation(const std::string& text) {
    framework::dhcpRelay().set(&SystemTexts::location, "location", text);
}

void dhcpra::setSystemName(const std::string& text) {
    framework::dhcpRelay().set(&SystemTexts::name, "name", text);
}

pppoeia::pppoeia() = default;
pppoeia::~pppoeia() = default;

void pppoeia::setSystemContact(const std::string& text) {
    framework::pppoeAgent().set(&SystemTexts::contact, "contact", text);
}

void pppoeia::setSystemLocation(const std::string& text) {
    framework::pppoeAgent().set(&SystemTexts::location, "location", text);
}

void pppoeia::setSystemName(const std::string& text) {
    framework::pppoeAgent().set(&SystemTexts::name, "name", text);
}
