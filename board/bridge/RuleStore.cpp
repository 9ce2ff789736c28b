#include "board/bridge/RuleStore.h"

#include "board/bridge/Failure.h"
#include "board/support/readFile.h"
#include "board/support/replaceFile.h"
#include "board/support/setAside.h"

#include <exception>
#include <utility>

namespace bridge {

namespace {

namespace fs = std::filesystem;

constexpr const char* fileName = "remote-access.json";

}  // namespace

void RuleStore::open(const fs::path& stateDirectory,
                     const std::function<void(const std::string&)>& report) {
    const fs::path opened = stateDirectory.empty() ? fs::path() : stateDirectory / fileName;
    SavedRules read;
    if (!opened.empty() && fs::exists(opened)) {
        const std::string text = support::readFile(opened);
        try {
            read = parseRules(text);
        } catch (const std::exception& error) {
            const fs::path kept = support::setAside(opened);
            report(opened.string() + " is damaged and was renamed to " + kept.filename().string() +
                   "; the remote-access list starts without rules: " + error.what());
            read = {};
        }
    }
    path = opened;
    stored = std::move(read);
    toReplay = stored.all();
}

void RuleStore::endReplay(std::vector<SavedRule> inForce, std::vector<WaitingRule> waiting) {
    toReplay.clear();
    SavedRules changed{std::move(inForce), std::move(waiting)};
    if (changed.all() == stored.all()) {
        // The file holds the same rules; which of them wait is found out anew at each start.
        stored = std::move(changed);
        return;
    }
    write(std::move(changed));
}

void RuleStore::save(std::vector<SavedRule> inForce) {
    if (toReplay.empty()) {
        write({std::move(inForce), stored.waiting});
    }
}

void RuleStore::checkWritable() {
    if (toReplay.empty()) {
        write(stored);
    }
}

void RuleStore::release() {
    const std::vector<SavedRule> rules = stored.all();
    stored = {};
    for (const SavedRule& rule : rules) {
        stored.waiting.push_back({static_cast<unsigned int>(stored.waiting.size()) + 1, rule});
    }
}

void RuleStore::clear() {
    write({});
    toReplay.clear();
}

void RuleStore::write(SavedRules rules) {
    if (!path.empty()) {
        try {
            // Also unchanged rules: a new rule is written once it has its condition, and a store
            // that cannot take it must be known before.
            support::rewriteFile(path, formatRules(rules));
        } catch (const std::exception& error) {
            throw Failure(storageFailed,
                          std::string("the rules cannot be stored: ") + error.what());
        }
    }
    stored = std::move(rules);
}

}  // namespace bridge
