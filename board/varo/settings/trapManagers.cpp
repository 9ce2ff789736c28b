#include "board/varo/settings/checks.h"
#include "board/varo/settings/groupsSnmp.h"
#include "board/varo/settings/singleRecord.h"
#include "varo/varoLib.h"

#include <algorithm>
#include <iterator>
#include <string_view>

namespace varo {

namespace {

/// A manager is known by its address and community together: one host may listen for two.
struct Key {
    std::string_view community;
    std::uint32_t address;
};

Key checkedKey(const char* community, std::uint32_t address) {
    const std::string_view text = &required(community);
    checkWord("community", text, sizeof(TrapManager::community) - 1);
    if (address == 0) {
        throw Failure(invalidValue, "address: 0.0.0.0 is none of a manager");
    }
    return {text, address};
}

bool isEmpty(const TrapManager& manager) { return manager.ipAddress == 0; }

TrapManager* find(varoLib_s_subag& agent, const Key& key) {
    const auto found = std::find_if(
        std::begin(agent.managers), std::end(agent.managers), [&](const TrapManager& each) {
            return each.ipAddress == key.address && key.community == each.community;
        });
    return found == std::end(agent.managers) ? nullptr : found;
}

// The lines below leave the community out: it is as good as a password.

TrapManager& existing(varoLib_s_subag& agent, const Key& key) {
    TrapManager* const found = find(agent, key);
    if (found == nullptr) {
        throw Failure(notThere, fmt::format("there is no trap manager {} with that community",
                                            ipv4Text(key.address)));
    }
    return *found;
}

void checkIsNew(varoLib_s_subag& agent, const Key& key) {
    if (find(agent, key) != nullptr) {
        throw Failure(alreadyThere, fmt::format("there is a trap manager {} with that community",
                                                ipv4Text(key.address)));
    }
}

void set(TrapManager& manager, const Key& key) {
    manager.ipAddress = key.address;
    copyInto(manager.community, key.community);
}

void checkManagers(const varoLib_s_subag& agent) {
    checkPort(agent.port);
    varoLib_s_subag seen{};
    auto place = std::begin(seen.managers);
    for (const TrapManager& manager : agent.managers) {
        const std::string_view community = textIn("community", manager.community);
        if (isEmpty(manager) && community.empty()) {
            continue;
        }
        const Key key = checkedKey(manager.community, manager.ipAddress);
        checkIsNew(seen, key);
        set(*place++, key);
    }
}

}  // namespace

void applyTrapManagers(RecordStore& store, const Configuration& configuration) {
    apply(configuration.appliers.trapManagers, "trap manager",
          [&] { return store.session().read(trapManagersGroup()); });
}

}  // namespace varo

int varoGetSubag(varoLib_s_subag* agent) {
    return varo::readSingle(__func__, varo::trapManagersGroup(), agent);
}

int varoUpdateSubag(varoLib_s_subag* agent) {
    return varo::updateSingle(__func__, varo::trapManagersGroup(), agent, varo::checkManagers,
                              varo::applyTrapManagers);
}

int varoDefSubag(varoLib_s_subag* agent) {
    return varo::fillFactory(__func__, varo::trapManagersGroup(), agent);
}

/// Takes the first empty entry; the others keep their places.
int varoAddSubag(const char* community, unsigned int ipAddress) {
    return varo::answer(__func__, [&] {
        const varo::Key key = varo::checkedKey(community, ipAddress);
        varo::changeSingle(
            varo::trapManagersGroup(), varo::applyTrapManagers, [&](varoLib_s_subag& agent) {
                varo::checkIsNew(agent, key);
                const auto place = std::find_if(std::begin(agent.managers),
                                                std::end(agent.managers), varo::isEmpty);
                if (place == std::end(agent.managers)) {
                    throw varo::Failure(varo::tableFull,
                                        fmt::format("there are {} trap managers already",
                                                    std::size(agent.managers)));
                }
                varo::set(*place, key);
            });
    });
}

/// Empties the entry; the others keep their places.
int varoDeleteSubag(const char* community, unsigned int ipAddress) {
    return varo::answer(__func__, [&] {
        const varo::Key key = varo::checkedKey(community, ipAddress);
        varo::changeSingle(varo::trapManagersGroup(), varo::applyTrapManagers,
                           [&](varoLib_s_subag& agent) { varo::existing(agent, key) = {}; });
    });
}

/// A change into what the manager is already does nothing.
int varoChangeSubag(const char* oldCommunity, unsigned int oldAddress, const char* newCommunity,
                    unsigned int newAddress) {
    return varo::answer(__func__, [&] {
        const varo::Key from = varo::checkedKey(oldCommunity, oldAddress);
        const varo::Key to = varo::checkedKey(newCommunity, newAddress);
        varo::changeSingle(varo::trapManagersGroup(), varo::applyTrapManagers,
                           [&](varoLib_s_subag& agent) {
                               auto& manager = varo::existing(agent, from);
                               manager = {};
                               varo::checkIsNew(agent, to);
                               varo::set(manager, to);
                           });
    });
}

int varoChangePortSubag(unsigned int port) {
    return varo::answer(__func__, [&] {
        varo::checkPort(port);
        varo::changeSingle(
            varo::trapManagersGroup(), varo::applyTrapManagers,
            [&](varoLib_s_subag& agent) { agent.port = static_cast<std::int32_t>(port); });
    });
}
