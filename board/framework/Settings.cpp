#include "board/framework/Settings.h"

#include "board/support/readFile.h"
#include "board/support/replaceFile.h"
#include "board/support/setAside.h"

#include <fmt/core.h>

#include <stdexcept>
#include <utility>

namespace framework {

namespace {

namespace fs = std::filesystem;

constexpr const char* fileName = "framework.json";

}  // namespace

void Settings::load(const fs::path& stateDirectory,
                    const std::function<void(const std::string&)>& report) {
    const fs::path path = stateDirectory / fileName;
    std::string text;
    SettingsValues read;
    if (fs::exists(path)) {
        text = support::readFile(path);
        try {
            read = parseSettings(text);
        } catch (const std::exception& error) {
            const fs::path kept = support::setAside(path);
            report(path.string() + " is damaged and was renamed to " + kept.filename().string() +
                   "; factory settings are used: " + error.what());
            read = {};
            text.clear();
        }
    }
    const std::lock_guard guard(mutex);
    file = path;
    document = std::move(text);
    current = std::move(read);
}

SettingsValues Settings::values() const {
    const std::lock_guard guard(mutex);
    return current;
}

bool Settings::hasFeature(const std::string& name) const {
    const std::lock_guard guard(mutex);
    const auto found = current.features.find(name);
    return found != current.features.end() && found->second;
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
    SettingsValues changed = current;
    edit(changed);
    if (changed == current) {
        return false;
    }
    if (!file.empty()) {
        std::string text = formatSettings(document, changed);
        support::replaceFile(file, text);
        document = std::move(text);
    }
    current = std::move(changed);
    return true;
}

}  // namespace framework
