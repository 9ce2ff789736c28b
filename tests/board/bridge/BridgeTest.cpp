#include "BridgeTest.h"

#include "board/framework/Framework.h"
#include "platform/zubridge.h"

#include <algorithm>

namespace test {

zubridge_acl_condition from(unsigned int address, unsigned int wildcard) {
    return {1, 20, 0, address, wildcard};
}

BridgeTest::BridgeTest() : log(LogImpl::levelInfo) {
    configuration.stateDirectory = state.path();
    configuration.portName = [](int port) -> std::optional<std::string> {
        if (port == 1) {
            return "mng0";
        }
        if (port == 2) {
            return "ont0";
        }
        return std::nullopt;
    };
    restart();
}

BridgeTest::~BridgeTest() {
    framework::framework().clearConfigInProgress = false;
    container.reset();
    bridge::configure({});
}

void BridgeTest::restart() {
    container.reset();
    bridge::configure(configuration);
    container.emplace("br0", "acl");
}

int BridgeTest::clearConfiguration() {
    framework::framework().clearConfigInProgress = true;
    return singleton<zubridge>::instance().applyDefaultSettings();
}

std::vector<unsigned int> BridgeTest::idsOf(const std::string& name,
                                            std::vector<unsigned int> ids) const {
    std::vector<unsigned int> inOrder(ids.size());
    for (const unsigned int id : ids) {
        ACLContainer_t::aclRule_t rule{};
        if (acls().getACLRule(name, id, rule) != 0 || rule.sequenceNumber > ids.size()) {
            ADD_FAILURE() << "rule " << id << " has no place among " << ids.size();
            return {};
        }
        inOrder[rule.sequenceNumber - 1] = id;
    }
    return inOrder;
}

std::vector<std::string> BridgeTest::newMessages() {
    const auto entries = log.entries();
    std::vector<std::string> messages;
    for (; messagesSeen < entries.size(); ++messagesSeen) {
        messages.push_back(entries[messagesSeen].second);
    }
    return messages;
}

}  // namespace test
