#include "platform/zubridge.h"

#include "board/bridge/AccessLists.h"
#include "board/bridge/bridgeCodes.h"
#include "board/framework/Framework.h"
#include "board/support/answer.h"
#include "framework/CliConfig.h"

namespace {

constexpr const char* bridgeInterface = "br0";
constexpr const char* containerKind = "acl";

// What the operations of an entity return.
constexpr int succeeded = 1;
constexpr int failed = 0;

// What its settings return instead of 0.
constexpr int refused = 1;

}  // namespace

template class singleton<zubridge>;

zubridge::zubridge() : BLEntity("bridge"), acls(bridgeInterface, containerKind) {}
zubridge::~zubridge() = default;

void zubridge::applyConfiguration(boost::shared_ptr<Storage::Setting>) {}

void zubridge::saveConfiguration(boost::shared_ptr<Storage::Setting>) const {}

int zubridge::start() { return succeeded; }

/// Access lists are the settings of the entities that have made them, which go on working with
/// them. While the configuration is being cleared, though, these forget their lists and begin anew:
/// there is none then, and none comes back with a restart.
int zubridge::applyDefaultSettings() {
    if (!singleton<CliConfig>::instance().isClearConfigInProgress()) {
        return succeeded;
    }
    const int result = support::answer("the access lists cannot be removed", bridge::internalError,
                                       framework::writeLog,
                                       [] { bridge::AccessLists::instance().applyDefaults(); });
    return result == bridge::success ? succeeded : failed;
}

int zubridge::stop() { return succeeded; }

void zubridge::getDependencies(std::list<std::string>& names) { names.clear(); }

ACLContainer_t& zubridge::aclContainer() { return acls; }

int zubridge::gponOntMngVlanSet(unsigned int vlanId) {
    return support::answer(
        "the VLAN of the ONT's management is not changed", refused, framework::writeLog,
        [vlanId] { framework::framework().settings.setOntManagementVlan(vlanId); });
}

int zubridge::gponOntMngVlanGet(unsigned int* vlanId) {
    if (vlanId == nullptr) {
        return refused;
    }
    *vlanId = framework::framework().settings.values().ontManagementVlan;
    return 0;
}
