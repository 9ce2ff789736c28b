#include "board/framework/Settings.h"

#include "board/framework/replaceFile.h"

#include <fmt/chrono.h>
#include <fmt/format.h>

#include <cerrno>
#include <chrono>
#include <fstream>
#include <iterator>
#include <stdexcept>
#include <system_error>
#include <utility>

namespace board {

namespace {

namespace fs = std::filesystem;

constexpr const char* fileName = "framework.json";

[[noreturn]] void failReading(const fs::path& file) {
    throw std::system_error(errno, std::generic_category(), "cannot read " + file.string());
}

std::string contentOf(const fs::path& file) {
    errno = 0;
    std::ifstream stream(file, std::ios::binary);
    if (!stream) {
        failReading(file);
    }
    std::string content{std::istreambuf_iterator<char>(stream), std::istreambuf_iterator<char>()};
    if (stream.bad()) {
        failReading(file);
    }
    return content;
}

/// Renames a file to a name that overwrites nothing. Returns that name.
fs::path setAside(const fs::path& file) {
    const std::string base = fmt::format(
        "{}.damaged-{:%Y%m%dT%H%M%SZ}", file.string(),
        fmt::gmtime(std::chrono::system_clock::to_time_t(std::chrono::system_clock::now())));
    fs::path name = base;
    for (int number = 2; fs::exists(fs::symlink_status(name)); ++number) {
        name = fmt::format("{}.{}", base, number);
    }
    fs::rename(file, name);
    return name;
}

}  // namespace

void Settings::load(const fs::path& stateDirectory,
                    const std::function<void(const std::string&)>& report) {
    const fs::path path = stateDirectory / fileName;
    std::string text;
    SettingsValues read;
    if (fs::exists(path)) {
        text = contentOf(path);
        try {
            read = parseSettings(text);
        } catch (const std::exception& error) {
            const fs::path kept = setAside(path);
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
        replaceFile(file, text);
        document = std::move(text);
    }
    current = std::move(changed);
    return true;
}

}  // namespace board
