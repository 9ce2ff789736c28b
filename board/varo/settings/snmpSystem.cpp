#include "board/varo/settings/checks.h"
#include "board/varo/settings/groupsSnmp.h"
#include "board/varo/settings/singleRecord.h"
#include "varo/varoLib.h"

#include <string_view>

namespace varo {

namespace {

constexpr std::size_t textSize = sizeof(varoLib_s_snmpSystem::contact);

struct Text {
    const char* name;
    char (varoLib_s_snmpSystem::*member)[textSize];
};

/// In the order of the selectors, which count from 1.
constexpr Text texts[] = {
    {"contact", &varoLib_s_snmpSystem::contact},
    {"location", &varoLib_s_snmpSystem::location},
    {"name", &varoLib_s_snmpSystem::name},
};

void checkSystem(const varoLib_s_snmpSystem& system) {
    for (const Text& text : texts) {
        checkLine(text.name, textIn(text.name, system.*text.member), textSize - 1);
    }
}

}  // namespace

void applySnmpSystem(RecordStore& store, const Configuration& configuration) {
    apply(configuration.appliers.snmpSystem, "SNMP system",
          [&] { return store.session().read(snmpSystemGroup()); });
}

}  // namespace varo

int varoGetSnmpSystem(varoLib_s_snmpSystem* system) {
    return varo::readSingle(__func__, varo::snmpSystemGroup(), system);
}

int varoUpdateSnmpSystem(varoLib_s_snmpSystem* system) {
    return varo::updateSingle(__func__, varo::snmpSystemGroup(), system, varo::checkSystem,
                              varo::applySnmpSystem);
}

int varoDefSnmpSystem(varoLib_s_snmpSystem* system) {
    return varo::fillFactory(__func__, varo::snmpSystemGroup(), system);
}

int varoChangeSnmpSystem(const char* text, int selector) {
    return varo::answer(__func__, [&] {
        const std::string_view given = &varo::required(text);
        varo::checkRange("selector", selector, 1, std::size(varo::texts));
        const varo::Text& selected = varo::texts[selector - 1];
        varo::checkLine(selected.name, given, varo::textSize - 1);
        varo::changeSingle(
            varo::snmpSystemGroup(), varo::applySnmpSystem,
            [&](varoLib_s_snmpSystem& system) { varo::copyInto(system.*selected.member, given); });
    });
}
