#include "framework/CliConfig.h"

#include "board/framework/Framework.h"
#include "board/platform/terminalSessions.h"

template class singleton<CliConfig>;

CliConfig::settings_t::settings_t() : maxSessions(platform::factoryTerminalSessions) {}

CliConfig::CliConfig() = default;
CliConfig::~CliConfig() = default;

bool CliConfig::isClearConfigInProgress() const {
    return framework::framework().clearConfigInProgress;
}
