#include "fake/Journal.h"

#include <utility>

namespace fake {

namespace {

std::string& threadName() {
    static thread_local std::string name;
    return name;
}

}  // namespace

void Journal::nameThread(const std::string& name) { threadName() = name; }

void Journal::write(std::string entry) {
    const std::lock_guard guard(mutex);
    entriesByThread[threadName()].push_back(std::move(entry));
}

void Journal::extend(const std::string& beginning, const std::string& addition) {
    const std::lock_guard guard(mutex);
    std::vector<std::string>& entries = entriesByThread[threadName()];
    if (entries.empty() || !entries.back().starts_with(beginning)) {
        entries.push_back("...");
    }
    entries.back() += addition;
}

std::vector<std::string> Journal::takeOf(const std::string& name) {
    const std::lock_guard guard(mutex);
    return std::exchange(entriesByThread[name], {});
}

std::vector<std::string> Journal::takeAll() {
    const std::lock_guard guard(mutex);
    std::vector<std::string> all;
    for (auto& [name, entries] : std::exchange(entriesByThread, {})) {
        for (std::string& entry : entries) {
            all.push_back(name.empty() ? std::move(entry) : "[" + name + "] " + entry);
        }
    }
    return all;
}

}  // namespace fake
