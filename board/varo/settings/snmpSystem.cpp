#include "board/varo/settings/allSettings.h"
#include "board/varo/settings/valueChecks.h"
#include "varo/varoLib.h"

#include <iterator>
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

void check(const varoLib_s_snmpSystem& system) {
    for (const Text& text : texts) {
        checkLine(text.name, textIn(text.name, system.*text.member), textSize - 1);
    }
}

}  // namespace

const Setting<varoLib_s_snmpSystem>& snmpSystemSetting() {
    using Record = varoLib_s_snmpSystem;
    static const auto& setting = *new Setting<Record>({
        .group = {"snmp_system",
                  Rows::single,
                  {},
                  {
                      column("contact", &Record::contact),
                      column("location", &Record::location),
                      column("name", &Record::name),
                  }},
        .check = check,
        .apply = toHost("SNMP system", &Appliers::snmpSystem),
    });
    return setting;
}

}  // namespace varo

int varoGetSnmpSystem(varoLib_s_snmpSystem* system) {
    return varo::snmpSystemSetting().read(__func__, system);
}

int varoUpdateSnmpSystem(varoLib_s_snmpSystem* system) {
    return varo::snmpSystemSetting().update(__func__, system);
}

int varoDefSnmpSystem(varoLib_s_snmpSystem* system) {
    return varo::snmpSystemSetting().fillFactory(__func__, system);
}

int varoChangeSnmpSystem(const char* text, int selector) {
    return varo::answer(__func__, [&] {
        const std::string_view given = &varo::required(text);
        varo::checkRange("selector", selector, 1, std::size(varo::texts));
        const varo::Text& selected = varo::texts[selector - 1];
        varo::checkLine(selected.name, given, varo::textSize - 1);
        varo::snmpSystemSetting().change(
            [&](varoLib_s_snmpSystem& system) { varo::copyInto(system.*selected.member, given); });
    });
}
