#pragma once

#include "BridgeTest.h"
#include "FilterNetwork.h"
#include "RemoteAccess.h"
#include "support/privateNamespaces.h"

#include <string>
#include <vector>

namespace test {

/// The network entity's calls, on lists that filter.
class FilterFixture : public BridgeTest {
protected:
    FilterFixture();
    void TearDown() override;

    /// What the framework is told of the rules: "permit 192.0.2.0 255.255.255.0 3 packets" ...
    static std::vector<std::string> counters();

    /// The rules of the list's chain as nft(8) prints them, with handles.
    static std::vector<std::string> chain();
    static std::string ruleset() { return shell("nft -a list ruleset"); }

    static constexpr unsigned int hostMask = 0xffffffff;
    static constexpr unsigned int mask24 = 0xffffff00;
    static constexpr unsigned int office = ip(198, 51, 100, 7);
    static constexpr unsigned int lan = ip(192, 0, 2, 0);

    RemoteAccess product{acls()};
    Probe probe;
};

}  // namespace test
