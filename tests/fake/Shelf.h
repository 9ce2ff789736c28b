#pragma once

#include <cstdint>
#include <map>
#include <set>
#include <string>

namespace fake {

/// What the platform's services keep: interface registry, VLANs, profile and features.
struct Shelf {
    int managementPort = 1;
    std::map<int, std::string> portNames{{1, "mng0"}};

    /// Members of each VLAN of the database.
    std::map<std::uint32_t, std::set<int>> vlans{{1, {1}}};
    std::map<int, std::uint32_t> portVlans{{1, 1}};
    std::uint32_t persistedManagementVlan = 0;

    std::uint32_t defaultVlan = 1;
    bool isDefaultVlanNative = false;

    bool isInProfileMode = false;
    std::set<int> activeFeatures;
    std::string shelfId = "3";
};

}  // namespace fake
