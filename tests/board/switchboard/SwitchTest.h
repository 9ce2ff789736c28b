#pragma once

#include "board/framework/reporters.h"
#include "board/switchboard/switchCodes.h"
#include "board/switchboard/switchConfiguration.h"
#include "platform/vlan.h"
#include "support/LogLines.h"
#include "support/files.h"
#include "support/matchers.h"
#include "support/privateNamespaces.h"

#include <fmt/format.h>
#include <fmt/ranges.h>

#include <string>
#include <vector>

namespace switchtest {

inline constexpr zuHandle_t defaultDatabase{};
inline constexpr int mng = 1;
inline constexpr int uplink = 100;

/// The switch with a state directory of the test's own.
class SwitchTest : public testing::Test {
protected:
    SwitchTest() { restart(); }
    ~SwitchTest() override { switchboard::configure({}); }

    /// What a restart of the process does: the state is read anew.
    void restart() { switchboard::configure({directory.path(), log.receiver()}); }

    /// The whole state as front ends see it: "1: 1* 100", with a star at those whose PVID it is.
    static std::vector<std::string> vlans() {
        std::vector<std::string> lines;
        for (const auto& vlan : framework::vlanReporter().ask().vlans) {
            std::string line = fmt::format("{}:", vlan.id);
            for (const int port : vlan.members) {
                const bool isPvid = testing::Value(vlan.pvidPorts, Contains(port));
                line += fmt::format(" {}{}", port, isPvid ? "*" : "");
            }
            lines.push_back(line);
        }
        return lines;
    }

    static std::string defaultVlan() {
        return fmt::format("{} {}", defConnectGetDefVid(),
                           defConnectGetDefModeNative() == 0 ? "tagged" : "native");
    }

    static int create(std::uint32_t vlan) { return zuvlanCreate(defaultDatabase, vlan); }
    static int add(std::uint16_t vlan, int port) {
        return zuvlanAddMembership(defaultDatabase, vlan, port);
    }
    static int remove(std::uint32_t vlan, int port) {
        return zuvlanDelMembership(defaultDatabase, vlan, port);
    }
    static int setPvid(std::uint16_t vlan, int port) {
        return zuvlanSetPvid(defaultDatabase, vlan, port);
    }
    static int find(std::uint32_t vlan) {
        zuvlanInfo_t info{};
        return zuvlanGetVlanInfoId(defaultDatabase, vlan, &info);
    }

    TemporaryDirectory directory;
    const std::filesystem::path file = directory.path() / "switch.json";
    LogLines log;
};

}  // namespace switchtest
