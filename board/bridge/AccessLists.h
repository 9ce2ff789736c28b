#pragma once

#include "board/bridge/AccessList.h"
#include "board/bridge/FilterTable.h"
#include "board/bridge/RuleStore.h"
#include "board/bridge/bridgeConfiguration.h"
#include "board/framework/Framework.h"

#include <cstddef>
#include <functional>
#include <map>
#include <mutex>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace bridge {

/// The access lists of all containers of the process. An operation does its work on a copy of the
/// list, stores what must survive a restart, changes the kernel, and only then is the list another
/// one: a failure, thrown as Failure, leaves everything as it was.
///
/// Of the lists, the one that was made first is kept across restarts.
class AccessLists {
public:
    /// The owner is the container that a list belongs to.
    using Owner = const void*;

    static AccessLists& instance();

    void configure(Configuration given);

    void create(Owner owner, const std::string& name, int type);
    void remove(Owner owner, const std::string& name);
    unsigned int createRule(Owner owner, const std::string& name, bool permit,
                            unsigned int sequenceNumber);
    void changeList(Owner owner, const std::string& name,
                    const std::function<void(AccessList&)>& edit);
    void assign(Owner owner, const std::string& name, int portId, bool outgoing);
    ACLContainer_t::aclRule_t rule(Owner owner, const std::string& name, unsigned int ruleId) const;

    /// The owner ends: its lists go. What the rules of the kept list were stays stored.
    void removeAllOf(Owner owner);

    /// No lists, and no stored rules.
    void applyDefaults();

    void replay(const AddRemoteAccessRule& add);

    /// The rules of the kept list in the order in which they are asked, the catch-all last. Throws
    /// Failure when there are no counters.
    std::vector<framework::RuleCounter> counters() const;

private:
    using Lists = std::map<std::pair<Owner, std::string>, AccessList>;

    AccessLists() = default;
    ~AccessLists() = default;

    void change(const std::function<void(Lists&)>& edit);
    void applyFilter(const Lists& changed);
    bool replayOne(const AddRemoteAccessRule& add, const WaitingRule& stored,
                   const std::string& file);
    std::size_t keptRuleCount() const;

    mutable std::mutex mutex;
    std::function<std::optional<std::string>(int portId)> portName;
    std::optional<FilterTable> filter;  ///< none: lists are kept in memory only
    RuleStore store;
    Lists lists;
    unsigned int lastListNumber = 0;
    unsigned int lastRuleId = 0;
};

}  // namespace bridge
