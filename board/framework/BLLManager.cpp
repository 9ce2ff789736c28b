#include "framework/BLLManager.h"

#include "board/framework/Framework.h"

template class singleton<BLLManager>;

BLLManager::BLLManager() = default;
BLLManager::~BLLManager() = default;

void BLLManager::registerEntity(BLEntity& entity) { framework::framework().entities.add(entity); }

void BLLManager::registerThread(const std::string& name) {
    framework::framework().threads.nameThisThread(name);
}

// The text is taken by value, as the entities of the process were built to hand it over.
// NOLINTNEXTLINE(performance-unnecessary-value-param)
bool BLLManager::isFeatureSupported(std::string feature) const {
    return framework::framework().settings.hasFeature(feature);
}

BLLManager::ExternalMessageEvent& BLLManager::externalMessage() { return externalMessageEvent; }

BLLManager::sharedLock_t::sharedLock_t()
    : obtained(framework::framework().configurationLock.lockShared()) {}

BLLManager::sharedLock_t::~sharedLock_t() {
    if (obtained) {
        framework::framework().configurationLock.unlockShared();
    }
}

BLLManager::exclusiveLock_t::exclusiveLock_t()
    : obtained(framework::framework().configurationLock.lockExclusive()) {}

BLLManager::exclusiveLock_t::~exclusiveLock_t() {
    if (obtained) {
        framework::framework().configurationLock.unlockExclusive();
    }
}
