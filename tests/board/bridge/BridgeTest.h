#pragma once

#include "../framework/doubles.h"
#include "board/bridge/bridgeCodes.h"
#include "board/bridge/bridgeConfiguration.h"
#include "platform/acl.h"
#include "support/files.h"
#include "support/matchers.h"

#include <optional>
#include <string>
#include <vector>

namespace test {

/// 192.0.2.1 as a number in host byte order.
constexpr unsigned int ip(unsigned int a, unsigned int b, unsigned int c, unsigned int d) {
    return a << 24 | b << 16 | c << 8 | d;
}

constexpr unsigned int oneHost = 0;
constexpr unsigned int slash24 = 0x000000ff;
constexpr unsigned int everybody = 0xffffffff;

zubridge_acl_condition from(unsigned int address, unsigned int wildcard);

/// A container of access lists in a bridge that has just been configured.
class BridgeTest : public testing::Test {
protected:
    /// Lists are kept in memory, and rules in a directory of the test's own.
    BridgeTest();
    ~BridgeTest() override;

    /// What a new process would begin with; the container and its lists are new, too.
    void restart();

    /// Returns the bridge entity to factory settings while the configuration is being cleared.
    static int clearConfiguration();

    /// The rules of a list, one word each: their ids in order.
    std::vector<unsigned int> idsOf(const std::string& name, std::vector<unsigned int> ids) const;

    ACLContainer_t& acls() { return *container; }
    const ACLContainer_t& acls() const { return *container; }

    std::string savedFile() const { return (state.path() / "remote-access.json").string(); }
    std::string saved() const { return readFile(savedFile()); }

    /// Messages that were logged since the last call.
    std::vector<std::string> newMessages();

    /// Lists have this name where one is enough.
    const std::string list = "RA_mng0";

    TemporaryDirectory state;
    bridge::Configuration configuration;

private:
    CapturedLog log;
    std::size_t messagesSeen = 0;
    std::optional<ACLContainer_t> container;
};

}  // namespace test
