#pragma once

#include "board/support/StateFile.h"

#include <map>
#include <string>

namespace framework {

/// The framework's settings. A default-constructed record holds the factory values.
struct SettingsValues {
    std::string shelfId;
    bool profileMode = false;
    /// By name, or by number in decimal digits. Every feature that the product knows is listed.
    std::map<std::string, bool> features{{"httpserver", true}, {"5", false}, {"12", false}};
    /// VLAN that carries the management of the ONTs.
    unsigned int ontManagementVlan = 1;

    bool operator==(const SettingsValues&) const = default;
};

/// Why a text may not be a shelf identity, empty if it may: at most 255 bytes of UTF-8 without
/// control characters.
std::string objectionToShelfId(const std::string& id);

/// The ids that a VLAN can have (IEEE 802.1Q).
inline constexpr unsigned int firstVlan = 1;
inline constexpr unsigned int lastVlan = 4094;

inline bool isVlan(unsigned int id) { return id >= firstVlan && id <= lastVlan; }

/// What is kept of the settings in `framework.json`: a JSON document, indented. What it leaves out
/// has its factory value; members that are not known here stay.
struct StoredSettings {
    SettingsValues values;
    std::string document{};  ///< that they were read from, for the other members; empty for none
};

extern const support::StateFormat<StoredSettings> settingsFormat;

}  // namespace framework
