// What the product's neighbours in the process tell of it: the command line's configuration,
// features, the system software's version. As far as the product imports them.

#include "fake/Platform.h"
#include "fake/quoted.h"
#include "framework/BLLManager.h"
#include "framework/CliConfig.h"
#include "platform/sysConfig.h"

#include <fmt/core.h>

#include <cstring>

using fake::Platform;
using fake::quoted;

namespace {

bool answer(const std::string& question, bool yes) {
    Platform::current().journal.write(fmt::format("{} -> {}", question, yes ? 1 : 0));
    return yes;
}

}  // namespace

CliConfig::CliConfig() = default;
CliConfig::~CliConfig() = default;

CliConfig::settings_t::settings_t() : maxSessions(Platform::current().product.maxSessions) {
    Platform::current().journal.write("CliConfig::settings_t()");
}

bool CliConfig::isClearConfigInProgress() const {
    return answer("isClearConfigInProgress()", Platform::current().product.isClearConfigInProgress);
}

bool BLLManager::isFeatureSupported(std::string feature) const {
    return answer(fmt::format("isFeatureSupported({})", quoted(feature)),
                  Platform::current().product.supportedFeatures.contains(feature));
}

zuOMTable::zuOMTable() { Platform::current().journal.write("zuOMTable()"); }
zuOMTable::~zuOMTable() { Platform::current().journal.write("~zuOMTable()"); }

int sysConfigOMApi::sysConfigGetSwVersion(char* version) {
    Platform& platform = Platform::current();
    return platform.call("sysConfigGetSwVersion", "", [&] {
        const std::string& text = platform.product.systemVersion;
        std::memcpy(version, text.c_str(), text.size() + 1);
        return quoted(text);
    });
}

template class singleton<CliConfig>;
