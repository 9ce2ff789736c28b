#include "board/varo/settings/checks.h"
#include "board/varo/settings/groupsSnmp.h"
#include "board/varo/settings/singleRecord.h"
#include "varo/varoLib.h"

#include <algorithm>
#include <iterator>
#include <string_view>

namespace varo {

namespace {

constexpr std::string_view readOnly = "ro";
constexpr std::string_view readWrite = "rw";

// A community is known by its name. The lines below leave it out: it is as good as a password.

std::string_view checkedName(const char* name) {
    const std::string_view text = &required(name);
    checkWord("name", text, sizeof(SnmpCommunity::name) - 1);
    return text;
}

std::string_view accessText(int access) {
    checkRange("access", access, 1, 2);
    return access == 1 ? readOnly : readWrite;
}

bool isEmpty(const SnmpCommunity& community) { return community.name[0] == '\0'; }

SnmpCommunity* find(varoLib_s_snmpCommunity& all, std::string_view name) {
    const auto found = std::find_if(std::begin(all.communities), std::end(all.communities),
                                    [&](const SnmpCommunity& each) { return name == each.name; });
    return found == std::end(all.communities) ? nullptr : found;
}

SnmpCommunity& existing(varoLib_s_snmpCommunity& all, std::string_view name) {
    SnmpCommunity* const found = find(all, name);
    if (found == nullptr) {
        throw Failure(notThere, "there is no community of that name");
    }
    return *found;
}

void checkIsNew(varoLib_s_snmpCommunity& all, std::string_view name) {
    if (find(all, name) != nullptr) {
        throw Failure(alreadyThere, "there is a community of that name");
    }
}

void checkCommunities(const varoLib_s_snmpCommunity& all) {
    varoLib_s_snmpCommunity seen{};
    auto place = std::begin(seen.communities);
    for (const SnmpCommunity& community : all.communities) {
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

}  // namespace

void applySnmpCommunities(RecordStore& store, const Configuration& configuration) {
    apply(configuration.appliers.snmpCommunities, "SNMP community",
          [&] { return store.session().read(snmpCommunitiesGroup()); });
}

}  // namespace varo

int varoGetSnmpCommunity(varoLib_s_snmpCommunity* communities) {
    return varo::readSingle(__func__, varo::snmpCommunitiesGroup(), communities);
}

int varoUpdateSnmpCommunity(varoLib_s_snmpCommunity* communities) {
    return varo::updateSingle(__func__, varo::snmpCommunitiesGroup(), communities,
                              varo::checkCommunities, varo::applySnmpCommunities);
}

int varoDefSnmpCommunity(varoLib_s_snmpCommunity* communities) {
    return varo::fillFactory(__func__, varo::snmpCommunitiesGroup(), communities);
}

/// Takes the first empty entry; the others keep their places.
int varoAddSnmpCommunity(const char* name, int access) {
    return varo::answer(__func__, [&] {
        const std::string_view text = varo::checkedName(name);
        const std::string_view right = varo::accessText(access);
        varo::changeSingle(
            varo::snmpCommunitiesGroup(), varo::applySnmpCommunities,
            [&](varoLib_s_snmpCommunity& all) {
                varo::checkIsNew(all, text);
                const auto place = std::find_if(std::begin(all.communities),
                                                std::end(all.communities), varo::isEmpty);
                if (place == std::end(all.communities)) {
                    throw varo::Failure(varo::tableFull, fmt::format("there are {} communities "
                                                                     "already",
                                                                     std::size(all.communities)));
                }
                varo::copyInto(place->name, text);
                varo::copyInto(place->access, right);
            });
    });
}

/// The name tells which: whoever takes a community away need not know its access.
int varoDeleteSnmpCommunity(const char* name, int) {
    return varo::answer(__func__, [&] {
        const std::string_view text = varo::checkedName(name);
        varo::changeSingle(varo::snmpCommunitiesGroup(), varo::applySnmpCommunities,
                           [&](varoLib_s_snmpCommunity& all) { varo::existing(all, text) = {}; });
    });
}

int varoChangeSnmpCommunity(const char* name, int access) {
    return varo::answer(__func__, [&] {
        const std::string_view text = varo::checkedName(name);
        const std::string_view right = varo::accessText(access);
        varo::changeSingle(varo::snmpCommunitiesGroup(), varo::applySnmpCommunities,
                           [&](varoLib_s_snmpCommunity& all) {
                               varo::copyInto(varo::existing(all, text).access, right);
                           });
    });
}
