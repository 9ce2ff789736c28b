#include "board/bridge/AccessLists.h"

#include "board/bridge/aclChecks.h"
#include "board/bridge/bridgeCodes.h"
#include "board/framework/Framework.h"
#include "board/support/answer.h"

#include <fmt/format.h>

#include <algorithm>
#include <limits>

namespace bridge {

namespace {

using Key = std::pair<AccessLists::Owner, std::string>;

template <class Lists>
auto& listIn(Lists& lists, AccessLists::Owner owner, const std::string& name) {
    const auto found = lists.find(Key(owner, name));
    if (found == lists.end()) {
        throw Failure(unknownList, "there is no such list");
    }
    return found->second;
}

/// The one that was made first, null without lists.
template <class Lists>
const AccessList* keptList(const Lists& lists) {
    const AccessList* kept = nullptr;
    for (const auto& [key, list] : lists) {
        if (kept == nullptr || list.number() < kept->number()) {
            kept = &list;
        }
    }
    return kept;
}

/// What is to survive a restart. A rule without its condition is not complete yet, and the
/// catch-all is made by the product.
std::vector<SavedRule> rulesToSave(const AccessList& list) {
    std::vector<SavedRule> rules;
    for (const AccessRule& rule : list.rules()) {
        if (rule.condition && !list.isCatchAll(rule)) {
            rules.push_back({rule.condition->address, rule.condition->wildcard, rule.permit});
        }
    }
    return rules;
}

}  // namespace

AccessLists& AccessLists::instance() {
    // Never destroyed: containers with static storage outlive it otherwise.
    static AccessLists& lists = *new AccessLists;
    return lists;
}

void AccessLists::configure(Configuration given) {
    const std::lock_guard guard(mutex);
    store.open(given.stateDirectory, framework::writeLog);
    portName = std::move(given.portName);
    filter.reset();
    if (!given.filterTable.empty()) {
        filter.emplace(std::move(given.filterTable));
    }
}

void AccessLists::create(Owner owner, const std::string& name, int type) {
    checkListName(name);
    checkListType(type);
    change([&](Lists& changed) {
        if (!changed.try_emplace(Key(owner, name), lastListNumber + 1, name).second) {
            throw Failure(listExists, "there is a list of that name");
        }
        ++lastListNumber;
    });
}

void AccessLists::remove(Owner owner, const std::string& name) {
    change([&](Lists& changed) {
        listIn(changed, owner, name);
        changed.erase(Key(owner, name));
    });
}

unsigned int AccessLists::createRule(Owner owner, const std::string& name, bool permit,
                                     unsigned int sequenceNumber) {
    unsigned int id = 0;
    change([&](Lists& changed) {
        AccessList& list = listIn(changed, owner, name);
        if (lastRuleId == std::numeric_limits<unsigned int>::max()) {
            throw Failure(internalError, "all rule ids have been used");
        }
        if (&list == keptList(changed)) {
            // The caller does not give up when the condition cannot be stored later on.
            store.checkWritable();
        }
        id = ++lastRuleId;
        list.insert({id, permit, {}}, sequenceNumber);
    });
    return id;
}

void AccessLists::assign(Owner owner, const std::string& name, int portId, bool outgoing) {
    change([&](Lists& changed) {
        AccessList& list = listIn(changed, owner, name);
        checkDirection(outgoing);
        if (list.assignment) {
            throw Failure(listAssigned, fmt::format("it is assigned to port {} already",
                                                    list.assignment->portId));
        }
        const auto interface = portName ? portName(portId) : std::nullopt;
        if (!interface) {
            throw Failure(unknownPort, fmt::format("there is no port {}", portId));
        }
        for (const auto& [key, other] : changed) {
            if (other.assignment && other.assignment->portId == portId) {
                throw Failure(portTaken,
                              fmt::format("port {} has the list \"{}\"", portId, other.name()));
            }
        }
        list.assignment = Assignment{portId, *interface};
    });
}

ACLContainer_t::aclRule_t AccessLists::rule(Owner owner, const std::string& name,
                                            unsigned int ruleId) const {
    const std::lock_guard guard(mutex);
    const AccessList& list = listIn(lists, owner, name);
    const unsigned int sequenceNumber = list.sequenceNumberOf(ruleId);
    const AccessRule& found = list.rules()[sequenceNumber - 1];
    ACLContainer_t::aclRule_t rule{sequenceNumber, found.permit, {}};
    if (found.condition) {
        rule.conditions.push_back(*found.condition);
    }
    return rule;
}

void AccessLists::removeAllOf(Owner owner) {
    change([&](Lists& changed) {
        std::erase_if(changed, [&](const auto& entry) { return entry.first.first == owner; });
    });
}

void AccessLists::applyDefaults() {
    const std::lock_guard guard(mutex);
    store.clear();
    applyFilter({});
    lists.clear();
}

void AccessLists::replay(const AddRemoteAccessRule& add) {
    std::vector<SavedRule> rules;
    std::string file;
    {
        const std::lock_guard guard(mutex);
        rules = store.awaited();
        file = store.file().string();
    }
    if (!add && !rules.empty()) {
        framework::logLine(
            LogImpl::levelError,
            fmt::format("the library has no operation to add remote-access rules: {} "
                        "stored rules are not in force; they stay in {}",
                        rules.size(), file));
    }
    std::vector<WaitingRule> all;
    std::vector<WaitingRule> failed;
    for (const SavedRule& rule : rules) {
        const WaitingRule& stored =
            all.emplace_back(WaitingRule{static_cast<unsigned int>(all.size()) + 1, rule});
        if (!add || !replayOne(add, stored, file)) {
            failed.push_back(stored);
        }
    }
    const std::lock_guard guard(mutex);
    const AccessList* const kept = keptList(lists);
    try {
        if (kept != nullptr) {
            store.endReplay(rulesToSave(*kept), std::move(failed));
        } else {
            store.endReplay({}, std::move(all));
        }
    } catch (const Failure& failure) {
        framework::logLine(LogImpl::levelError, failure.what());
    }
}

/// Whether the rule is in the list tells more than the result: it may be there without being in
/// force, and must not come twice then.
bool AccessLists::replayOne(const AddRemoteAccessRule& add, const WaitingRule& stored,
                            const std::string& file) {
    const SavedRule& rule = stored.rule;
    const std::size_t before = keptRuleCount();
    const int result = add(rule.address, ~rule.wildcard, rule.permit ? 1 : 0, 0);
    const bool isInList = keptRuleCount() > before;
    if (result != 0 || !isInList) {
        framework::logLine(
            LogImpl::levelError,
            fmt::format("stored remote-access rule {} ({}) {} (result {}); it stays in {}",
                        stored.place, describe(rule),
                        isInList ? "is in the list, which could not be put into force"
                                 : "could not be put into force",
                        result, file));
    }
    return isInList;
}

std::vector<framework::RuleCounter> AccessLists::counters() const {
    const std::lock_guard guard(mutex);
    if (!filter) {
        throw Failure(unsupported, "nothing is filtered here, and nothing counted");
    }
    std::vector<framework::RuleCounter> result;
    std::optional<framework::RuleCounter> last;
    if (const AccessList* const kept = keptList(lists)) {
        const std::map<std::string, Count> counts = filter->counts();
        for (const AccessRule& rule : kept->rules()) {
            const auto found = counts.find(counterName(rule.id));
            const Count count = found == counts.end() ? Count() : found->second;
            const auto condition = rule.condition.value_or(zubridge_acl_condition{});
            const framework::RuleCounter counter{condition.address, ~condition.wildcard,
                                                 rule.permit, count.packets, count.bytes};
            if (kept->isCatchAll(rule)) {
                last = counter;
                last->netmask = 0;
            } else {
                result.push_back(counter);
            }
        }
    }
    if (last) {
        result.push_back(*last);
    }
    return result;
}

void AccessLists::changeList(Owner owner, const std::string& name,
                             const std::function<void(AccessList&)>& edit) {
    change([&](Lists& changed) { edit(listIn(changed, owner, name)); });
}

void AccessLists::change(const std::function<void(Lists&)>& edit) {
    const std::lock_guard guard(mutex);
    Lists changed = lists;
    edit(changed);
    const AccessList* const before = keptList(lists);
    const AccessList* const after = keptList(changed);
    const bool isSameList =
        before != nullptr && after != nullptr && before->number() == after->number();
    const auto old = isSameList ? rulesToSave(*before) : std::vector<SavedRule>();
    const bool isToBeSaved = isSameList && rulesToSave(*after) != old;
    if (isToBeSaved) {
        store.save(rulesToSave(*after));
    }
    try {
        applyFilter(changed);
    } catch (...) {
        if (isToBeSaved) {
            support::answer("a change that was not made stays stored", internalError,
                            framework::writeLog, [&] { store.save(old); });
        }
        throw;
    }
    if (before != nullptr && !isSameList) {
        store.release();
    }
    lists = std::move(changed);
}

void AccessLists::applyFilter(const Lists& changed) {
    if (!filter) {
        return;
    }
    std::vector<AccessList> all;
    for (const auto& [key, list] : changed) {
        all.push_back(list);
    }
    std::ranges::sort(all, {}, &AccessList::number);
    filter->apply(all);
}

std::size_t AccessLists::keptRuleCount() const {
    const std::lock_guard guard(mutex);
    const AccessList* const kept = keptList(lists);
    return kept == nullptr ? 0 : rulesToSave(*kept).size();
}

void configure(Configuration configuration) {
    AccessLists::instance().configure(std::move(configuration));
    framework::framework().ruleCounters = [] { return AccessLists::instance().counters(); };
}

void replayRemoteAccessRules(const AddRemoteAccessRule& add) {
    AccessLists::instance().replay(add);
}

}  // namespace bridge
