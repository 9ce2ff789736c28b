#pragma once

#include "board/framework/settingsDocument.h"

#include <filesystem>
#include <functional>
#include <mutex>
#include <string>

namespace framework {

/// The framework's settings, kept across restarts in the file `framework.json` of a state
/// directory. Until load() they have their factory values and are kept in memory only.
///
/// A change is in force when it is stored: when the file cannot be written, std::system_error is
/// thrown and the old value stays.
class Settings {
public:
    Settings() = default;
    Settings(const Settings&) = delete;
    Settings& operator=(const Settings&) = delete;

    /// Takes the values from the directory's file; from now on changes are stored there. Of files
    /// that are damaged or newer, and of what is thrown, see support::StateFile.
    void load(const std::filesystem::path& stateDirectory, const support::Log& log);

    SettingsValues values() const;

    /// False for a feature that does not exist.
    bool hasFeature(const std::string& name) const;

    /// Each returns whether the value was another one before.
    /// Throws std::invalid_argument for a text that may not be a shelf identity.
    bool setShelfId(const std::string& id);
    bool setProfileMode(bool on);
    /// Throws std::invalid_argument, naming the features that exist, for one that does not.
    bool setFeature(const std::string& name, bool on);
    /// Throws std::invalid_argument for a number that is no VLAN.
    bool setOntManagementVlan(unsigned int vlanId);

private:
    bool change(const std::function<void(SettingsValues&)>& edit);

    mutable std::mutex mutex;
    support::StateFile<StoredSettings> stored{settingsFormat};
};

}  // namespace framework
