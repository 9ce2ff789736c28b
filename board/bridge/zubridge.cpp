#include "platform/zubridge.h"

#include "board/bridge/AccessLists.h"
#include "board/bridge/Failure.h"
#include "board/framework/Framework.h"
#include "framework/CliConfig.h"

#include <string>

namespace {

constexpr const char* bridgeInterface = "br0";
constexpr const char* containerKind = "acl";

// What the operations of an entity return.
constexpr int succeeded = 1;
constexpr int failed = 0;

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
    try {
        bridge::AccessLists::instance().applyDefaults();
        return succeeded;
    } catch (const bridge::Failure& failure) {
        framework::logLine(LogImpl::levelError,
                           std::string("the access lists cannot be removed: ") + failure.what());
        return failed;
    }
}

int zubridge::stop() { return succeeded; }

void zubridge::getDependencies(std::list<std::string>& names) { names.clear(); }

ACLContainer_t& zubridge::aclContainer() { return acls; }
