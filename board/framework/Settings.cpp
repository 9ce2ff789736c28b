#include "board/framework/Settings.h"

#include <fmt/core.h>

#include <stdexcept>
#include <utility>

namespace framework {

void Settings::load(const std::filesystem::path& stateDirectory, const support::Log& log) {
    support::StateFile<StoredSettings> loaded(settingsFormat);
    loaded.open(stateDirectory, log);
    const std::lock_guard guard(mutex);
    stored = std::move(loaded);
}

SettingsValues Settings::values() const {
    const std::lock_guard guard(mutex);
    return stored.content().values;
}

bool Settings::hasFeature(const std::string& name) const {
    const std::lock_guard guard(mutex);
    const auto& features = stored.content().values.features;
    const auto found = features.find(name);
    return found != features.end() && found->second;
}

bool Settings::setShelfId(const std::string& id) {
    if (const std::string objection = objectionToShelfId(id); !objection.empty()) {
        throw std::invalid_argument("the shelf identity is not valid: " + objection);
    }
    return change([&](SettingsValues& values) { values.shelfId = id; });
}

bool Settings::setProfileMode(bool on) {
    return change([on](SettingsValues& values) { values.profileMode = on; });
}

bool Settings::setFeature(const std::string& name, bool on) {
    return change([&](SettingsValues& values) {
        const auto found = values.features.find(name);
        if (found == values.features.end()) {
            std::string known;
            for (const auto& feature : values.features) {
                known += (known.empty() ? "" : ", ") + feature.first;
            }
            throw std::invalid_argument("there is no feature \"" + name + "\", only " + known);
        }
        found->second = on;
    });
}

bool Settings::setOntManagementVlan(unsigned int vlanId) {
    if (!isVlan(vlanId)) {
        throw std::invalid_argument(
            fmt::format("{} is not in {} to {}", vlanId, firstVlan, lastVlan));
    }
    return change([vlanId](SettingsValues& values) { values.ontManagementVlan = vlanId; });
}

bool Settings::change(const std::function<void(SettingsValues&)>& edit) {
    const std::lock_guard guard(mutex);
    StoredSettings changed = stored.content();
    edit(changed.values);
    if (changed.values == stored.content().values) {
        return false;
    }
    stored.store(std::move(changed));
    return true;
}

}  // namespace framework
