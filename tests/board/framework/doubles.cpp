#include "doubles.h"

#include "board/framework/Framework.h"
#include "board/framework/stderrLog.h"

namespace test {

void Journal::add(const std::string& line) {
    const std::lock_guard guard(mutex);
    entries.push_back(line);
}

std::vector<std::string> Journal::lines() const {
    const std::lock_guard guard(mutex);
    return entries;
}

void Journal::clear() {
    const std::lock_guard guard(mutex);
    entries.clear();
}

ScriptedEntity::ScriptedEntity(const std::string& name, std::list<std::string> dependencies,
                               Journal& journal)
    : BLEntity(name), needs(std::move(dependencies)), log(journal) {}

int ScriptedEntity::start() {
    log.add("start " + getName());
    return onStart();
}

int ScriptedEntity::applyDefaultSettings() {
    log.add("defaults " + getName());
    return onDefaults();
}

int ScriptedEntity::stop() {
    log.add("stop " + getName());
    return onStop();
}

void ScriptedEntity::getDependencies(std::list<std::string>& names) {
    onDependencies();
    names = needs;
}

CapturedLog::CapturedLog(LogImpl::logLevel_t leastSevere) {
    support::LogChannel& log = framework::framework().log;
    log.setThreshold(leastSevere);
    log.setReceiver([this](int level, const std::string& message) {
        const std::lock_guard guard(mutex);
        received.emplace_back(static_cast<LogImpl::logLevel_t>(level), message);
    });
}

CapturedLog::~CapturedLog() {
    framework::framework().log.setReceiver(framework::writeToStandardError);
    framework::framework().log.setThreshold(LogImpl::levelInfo);
}

std::vector<CapturedLog::Entry> CapturedLog::entries() const {
    const std::lock_guard guard(mutex);
    return received;
}

}  // namespace test
