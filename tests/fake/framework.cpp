// The framework, as far as the product imports it.

#include "fake/Platform.h"
#include "fake/quoted.h"
#include "framework/BLEntity.h"
#include "framework/BLLManager.h"
#include "framework/Interfaces.h"
#include "framework/Log.h"

#include <fmt/core.h>

using fake::FakeLock;
using fake::Platform;
using fake::quoted;

namespace {

void note(const std::string& entry) { Platform::current().journal.write(entry); }

bool acquire(FakeLock::Mode mode, const char* name) {
    Platform& platform = Platform::current();
    const bool obtained = platform.script.failureOf(name) == 0 && platform.lock.acquire(mode);
    note(fmt::format("{}{}", name, obtained ? "" : " -> refused"));
    return obtained;
}

void release(FakeLock::Mode mode, const char* name) {
    Platform::current().lock.release(mode);
    note(fmt::format("~{}", name));
}

}  // namespace

BLEntity::BLEntity(const std::string& name) : entityName(name) {
    note(fmt::format("BLEntity({})", quoted(name)));
}

BLEntity::~BLEntity() { note(fmt::format("~BLEntity({})", quoted(entityName))); }

const std::string& BLEntity::getName() const { return entityName; }

BLLManager::BLLManager() { note("BLLManager()"); }
BLLManager::~BLLManager() { note("~BLLManager()"); }

void BLLManager::registerEntity(BLEntity& entity) {
    note(fmt::format("registerEntity({})", quoted(entity.getName())));
}

void BLLManager::registerThread(const std::string& name) {
    fake::Journal::nameThread(name);
    note(fmt::format("registerThread({})", quoted(name)));
    Platform::current().onRegisterThread();
}

BLLManager::ExternalMessageEvent& BLLManager::externalMessage() {
    note("externalMessage()");
    return externalMessageEvent;
}

BLLManager::sharedLock_t::sharedLock_t()
    : obtained(acquire(FakeLock::Mode::shared, "sharedLock")) {}

BLLManager::sharedLock_t::~sharedLock_t() {
    if (obtained) {
        release(FakeLock::Mode::shared, "sharedLock");
    }
}

BLLManager::exclusiveLock_t::exclusiveLock_t()
    : obtained(acquire(FakeLock::Mode::exclusive, "exclusiveLock")) {}

BLLManager::exclusiveLock_t::~exclusiveLock_t() {
    if (obtained) {
        release(FakeLock::Mode::exclusive, "exclusiveLock");
    }
}

Log::Log() = default;
Log::~Log() = default;

Log& Log::setMsgLevel(LogImpl::logLevel_t level) {
    note(fmt::format("Log({}): ", static_cast<int>(level)));
    Platform::current().logParts.clear();
    return *this;
}

Log& Log::operator<<(const std::string& text) {
    Platform::current().logParts.emplace_back("<<");
    return write(text);
}

bool Log::hasSink() const { return true; }

/// A message is one entry, from the setting of its level on.
void Log::writeImpl(const std::string& text) {
    Platform& platform = Platform::current();
    platform.logParts.push_back(text);
    const std::string shown = quoted(text);
    platform.journal.extend("Log(", shown.substr(1, shown.size() - 2));
}

Interfaces::Interfaces() : BLEntity("interfaces") {}
Interfaces::~Interfaces() = default;
void Interfaces::applyConfiguration(boost::shared_ptr<Storage::Setting>) {}
void Interfaces::saveConfiguration(boost::shared_ptr<Storage::Setting>) const {}
int Interfaces::start() { return 1; }
int Interfaces::applyDefaultSettings() { return 1; }
int Interfaces::stop() { return 1; }
void Interfaces::getDependencies(std::list<std::string>& names) { names.clear(); }

template class singleton<BLLManager>;
template class singleton<Interfaces>;
template class singleton<Log>;
