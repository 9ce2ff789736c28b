#include "board/framework/Framework.h"
#include "board/platform/terminalSessions.h"
#include "framework/CliConfig.h"
#include "framework/sysInfo.h"
#include "platform/features.h"

#include <string>

bool isActive(int feature) {
    return framework::framework().settings.hasFeature(std::to_string(feature));
}

int checkProfileMode() { return framework::framework().settings.values().profileMode ? 1 : 0; }

template class singleton<CliConfig>;

CliConfig::settings_t::settings_t() : maxSessions(platform::factoryTerminalSessions) {}

CliConfig::CliConfig() = default;
CliConfig::~CliConfig() = default;

bool CliConfig::isClearConfigInProgress() const {
    return framework::framework().clearConfigInProgress;
}

template class singleton<sysInfo>;

sysInfo::sysInfo() = default;
sysInfo::~sysInfo() = default;

void sysInfo::getShelfId(std::string& id) const {
    id = framework::framework().settings.values().shelfId;
}

sysInfo::ShelfIdEvent& sysInfo::shelfIdChanged() { return shelfIdEvent; }
