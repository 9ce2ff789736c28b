#include "board/bridge/RuleStore.h"

#include "board/bridge/bridgeCodes.h"

#include <exception>
#include <string>
#include <utility>

namespace bridge {

void RuleStore::open(const std::filesystem::path& stateDirectory, const support::Log& log) {
    stored.open(stateDirectory, log);
    toReplay = stored.content().all();
}

void RuleStore::endReplay(std::vector<SavedRule> inForce, std::vector<WaitingRule> waiting) {
    toReplay.clear();
    SavedRules changed{std::move(inForce), std::move(waiting)};
    if (changed.all() == stored.content().all()) {
        // Which of the rules wait is found out anew at each start.
        stored.adopt(std::move(changed));
    } else {
        write(std::move(changed));
    }
}

void RuleStore::save(std::vector<SavedRule> inForce) {
    if (toReplay.empty()) {
        write({std::move(inForce), stored.content().waiting});
    }
}

void RuleStore::checkWritable() {
    if (toReplay.empty()) {
        write(stored.content());
    }
}

void RuleStore::release() {
    SavedRules released;
    for (const SavedRule& rule : stored.content().all()) {
        const auto place = static_cast<unsigned int>(released.waiting.size()) + 1;
        released.waiting.push_back({place, rule});
    }
    stored.adopt(std::move(released));
}

void RuleStore::clear() {
    write({});
    toReplay.clear();
}

void RuleStore::write(SavedRules changed) {
    try {
        stored.store(std::move(changed));
    } catch (const std::exception& error) {
        throw Failure(storageFailed, std::string("the rules cannot be stored: ") + error.what());
    }
}

}  // namespace bridge
