#include "framework/CliConfig.h"

#include "board/framework/Framework.h"

namespace {

constexpr unsigned int factoryMaxSessions = 5;

}  // namespace

template class singleton<CliConfig>;

CliConfig::settings_t::settings_t() : maxSessions(factoryMaxSessions) {}

CliConfig::CliConfig() = default;
CliConfig::~CliConfig() = default;

bool CliConfig::isClearConfigInProgress() const { return board::framework().clearConfigInProgress; }
