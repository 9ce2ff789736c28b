#include "board/varo/settings/allSettings.h"
#include "board/varo/settings/entries.h"
#include "board/varo/settings/valueChecks.h"
#include "varo/varoLib.h"

#include <fmt/format.h>

#include <iterator>
#include <string_view>
#include <type_traits>

namespace varo {

namespace {

using Agent = varoLib_s_subag;
using Manager = std::remove_extent_t<decltype(Agent::managers)>;

constexpr std::int32_t factoryPort = 162;  // of the IANA registry, snmptrap

/// A manager is known by its address and community together: one host may listen for two.
struct Key {
    std::string_view community;
    std::uint32_t address;

    bool operator()(const Manager& manager) const {
        return manager.ipAddress == address && community == manager.community;
    }
};

Key checkedKey(const char* community, std::uint32_t address) {
    const std::string_view text = &required(community);
    checkWord("community", text, sizeof(Manager::community) - 1);
    if (address == 0) {
        throw Failure(invalidValue, "address: 0.0.0.0 is none of a manager");
    }
    return {text, address};
}

bool isEmpty(const Manager& manager) { return manager.ipAddress == 0; }

// The lines below leave the community out: it is as good as a password.

Manager& existing(Agent& agent, const Key& key) {
    return requiredEntry(
        agent.managers, key, notThere,
        fmt::format("there is no trap manager {} with that community", ipv4Text(key.address)));
}

void checkIsNew(Agent& agent, const Key& key) {
    if (findEntry(agent.managers, key) != nullptr) {
        throw Failure(alreadyThere, fmt::format("there is a trap manager {} with that community",
                                                ipv4Text(key.address)));
    }
}

void set(Manager& manager, const Key& key) {
    manager.ipAddress = key.address;
    copyInto(manager.community, key.community);
}

void check(const Agent& agent) {
    checkPort(agent.port);
    Agent seen{};
    auto place = std::begin(seen.managers);
    for (const Manager& manager : agent.managers) {
        const std::string_view community = textIn("community", manager.community);
        if (isEmpty(manager) && community.empty()) {
            continue;
        }
        const Key key = checkedKey(manager.community, manager.ipAddress);
        checkIsNew(seen, key);
        set(*place++, key);
    }
}

void add(Agent& agent, const Key& key) {
    checkIsNew(agent, key);
    set(requiredEntry(agent.managers, isEmpty, tableFull,
                      fmt::format("there are {} trap managers already", std::size(agent.managers))),
        key);
}

}  // namespace

const Setting<varoLib_s_subag>& trapManagersSetting() {
    static const auto& setting = *new Setting<Agent>({
        .group = {"trap_managers",
                  Rows::single,
                  {.port = factoryPort, .managers = {}},
                  {
                      column("port", &Agent::port),
                      entries("manager", &Agent::managers,
                              {
                                  ipv4Column("address", &Manager::ipAddress),
                                  column("community", &Manager::community),
                              }),
                  }},
        .check = check,
        .apply = toHost("trap manager", &Appliers::trapManagers),
    });
    return setting;
}

}  // namespace varo

int varoGetSubag(varoLib_s_subag* agent) {
    return varo::trapManagersSetting().read(__func__, agent);
}

int varoUpdateSubag(varoLib_s_subag* agent) {
    return varo::trapManagersSetting().update(__func__, agent);
}

int varoDefSubag(varoLib_s_subag* agent) {
    return varo::trapManagersSetting().fillFactory(__func__, agent);
}

/// Takes the first empty entry; the others keep their places.
int varoAddSubag(const char* community, unsigned int ipAddress) {
    return varo::answer(__func__, [&] {
        const varo::Key key = varo::checkedKey(community, ipAddress);
        varo::trapManagersSetting().change([&](varoLib_s_subag& agent) { varo::add(agent, key); });
    });
}

/// Empties the entry; the others keep their places.
int varoDeleteSubag(const char* community, unsigned int ipAddress) {
    return varo::answer(__func__, [&] {
        const varo::Key key = varo::checkedKey(community, ipAddress);
        varo::trapManagersSetting().change(
            [&](varoLib_s_subag& agent) { varo::existing(agent, key) = {}; });
    });
}

/// A change into what the manager is already does nothing.
int varoChangeSubag(const char* oldCommunity, unsigned int oldAddress, const char* newCommunity,
                    unsigned int newAddress) {
    return varo::answer(__func__, [&] {
        const varo::Key from = varo::checkedKey(oldCommunity, oldAddress);
        const varo::Key to = varo::checkedKey(newCommunity, newAddress);
        varo::trapManagersSetting().change([&](varoLib_s_subag& agent) {
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
        varo::trapManagersSetting().change(
            [&](varoLib_s_subag& agent) { agent.port = static_cast<std::int32_t>(port); });
    });
}
