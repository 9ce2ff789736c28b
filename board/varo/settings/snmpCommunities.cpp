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

using Communities = varoLib_s_snmpCommunity;
using Community = std::remove_extent_t<decltype(Communities::communities)>;

constexpr std::string_view readOnly = "ro";
constexpr std::string_view readWrite = "rw";

// A community is known by its name. The lines below leave it out: it is as good as a password.

std::string_view checkedName(const char* name) {
    const std::string_view text = &required(name);
    checkWord("name", text, sizeof(Community::name) - 1);
    return text;
}

std::string_view accessText(int access) {
    checkRange("access", access, 1, 2);
    return access == 1 ? readOnly : readWrite;
}

auto isNamed(std::string_view name) {
    return [=](const Community& each) { return name == each.name; };
}

Community& existing(Communities& all, std::string_view name) {
    return requiredEntry(all.communities, isNamed(name), notThere,
                         "there is no community of that name");
}

void checkIsNew(Communities& all, std::string_view name) {
    if (findEntry(all.communities, isNamed(name)) != nullptr) {
        throw Failure(alreadyThere, "there is a community of that name");
    }
}

void check(const Communities& all) {
    Communities seen{};
    auto place = std::begin(seen.communities);
    for (const Community& community : all.communities) {
        const std::string_view name = textIn("name", community.name);
        const std::string_view access = textIn("access", community.access);
        if (name.empty() && access.empty()) {
            continue;
        }
        checkedName(community.name);
        if (access != readOnly && access != readWrite) {
            throw Failure(invalidValue, "access: it is neither \"ro\" nor \"rw\"");
        }
        checkIsNew(seen, name);
        copyInto(place++->name, name);
    }
}

void add(Communities& all, std::string_view name, std::string_view access) {
    checkIsNew(all, name);
    Community& place =
        requiredEntry(all.communities, isNamed(""), tableFull,
                      fmt::format("there are {} communities already", std::size(all.communities)));
    copyInto(place.name, name);
    copyInto(place.access, access);
}

}  // namespace

const Setting<varoLib_s_snmpCommunity>& snmpCommunitiesSetting() {
    static const auto& setting = *new Setting<Communities>({
        .group = {"snmp_communities",
                  Rows::single,
                  {},
                  {
                      entries("community", &Communities::communities,
                              {
                                  column("name", &Community::name),
                                  column("access", &Community::access),
                              }),
                  }},
        .check = check,
        .apply = toHost("SNMP community", &Appliers::snmpCommunities),
    });
    return setting;
}

}  // namespace varo

int varoGetSnmpCommunity(varoLib_s_snmpCommunity* communities) {
    return varo::snmpCommunitiesSetting().read(__func__, communities);
}

int varoUpdateSnmpCommunity(varoLib_s_snmpCommunity* communities) {
    return varo::snmpCommunitiesSetting().update(__func__, communities);
}

int varoDefSnmpCommunity(varoLib_s_snmpCommunity* communities) {
    return varo::snmpCommunitiesSetting().fillFactory(__func__, communities);
}

/// Takes the first empty entry; the others keep their places.
int varoAddSnmpCommunity(const char* name, int access) {
    return varo::answer(__func__, [&] {
        const std::string_view text = varo::checkedName(name);
        const std::string_view right = varo::accessText(access);
        varo::snmpCommunitiesSetting().change(
            [&](varoLib_s_snmpCommunity& all) { varo::add(all, text, right); });
    });
}

/// The name tells which: whoever takes a community away need not know its access.
int varoDeleteSnmpCommunity(const char* name, int) {
    return varo::answer(__func__, [&] {
        const std::string_view text = varo::checkedName(name);
        varo::snmpCommunitiesSetting().change(
            [&](varoLib_s_snmpCommunity& all) { varo::existing(all, text) = {}; });
    });
}

int varoChangeSnmpCommunity(const char* name, int access) {
    return varo::answer(__func__, [&] {
        const std::string_view text = varo::checkedName(name);
        const std::string_view right = varo::accessText(access);
        varo::snmpCommunitiesSetting().change([&](varoLib_s_snmpCommunity& all) {
            varo::copyInto(varo::existing(all, text).access, right);
        });
    });
}
