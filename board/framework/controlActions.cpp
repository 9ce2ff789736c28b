#include "board/framework/controlActions.h"

#include "board/framework/Framework.h"
#include "framework/BLLManager.h"
#include "framework/sysInfo.h"

#include <sstream>
#include <stdexcept>

namespace framework::control {

namespace {

const std::string sender = "control";

}  // namespace

std::string externalMessage(const std::string& name, const std::string& value) {
    BLLManager::ExternalMessageEvent& event = BLLManager::instance().externalMessage();
    std::ostringstream reply;
    if (!event.firePre(name, value, &reply, sender)) {
        throw std::runtime_error(reply.view().empty() ? "the message was refused" : reply.str());
    }
    event.firePost(name, value, &reply, sender);
    return reply.str();
}

std::string setShelfId(const std::string& id) {
    if (framework().settings.setShelfId(id)) {
        sysInfo::instance().shelfIdChanged().firePost(id);
    }
    return {};
}

std::string setFeature(const std::string& name, bool on) {
    framework().settings.setFeature(name, on);
    return {};
}

std::string setProfileMode(bool on) {
    framework().settings.setProfileMode(on);
    return {};
}

std::string setClearConfig(bool inProgress) {
    framework().clearConfigInProgress = inProgress;
    return {};
}

std::string applyDefaults() {
    std::string reasons;
    for (const std::string& failure : framework().entities.applyDefaults()) {
        reasons += (reasons.empty() ? "" : "; ") + failure;
    }
    if (!reasons.empty()) {
        throw std::runtime_error("factory settings could not be applied to " + reasons);
    }
    return {};
}

std::vector<RuleCounter> ruleCounters() {
    if (!framework().ruleCounters) {
        throw std::runtime_error("nothing here keeps a remote-access list");
    }
    return framework().ruleCounters();
}

}  // namespace framework::control
