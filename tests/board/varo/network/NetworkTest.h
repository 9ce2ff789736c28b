#pragma once

#include "board/varo/varoConfiguration.h"
#include "tests/board/varo/VaroTest.h"
#include "tests/board/varo/network/namespaces.h"

#include <condition_variable>
#include <cstdint>
#include <functional>
#include <mutex>
#include <string>
#include <vector>

namespace varotest {

/// Collects log lines and lets a test wait for one.
class AwaitedLog {
public:
    varo::Log receiver();
    /// Waits until a line contains the text, up to half a minute.
    bool await(const std::string& text);
    /// Counts the lines that contain the text.
    int count(const std::string& text) const;
    std::string all() const;

private:
    mutable std::mutex mutex;
    std::condition_variable more;
    std::vector<std::string> lines;

    int countLocked(const std::string& text) const;
};

/// Waits until the condition holds, up to half a minute.
bool eventually(const std::function<bool()>& condition);

/// An address in host byte order.
std::uint32_t ipv4(const std::string& text);

/// A cable between mng0, the management interface of the library, and lan0 in the namespace "lan",
/// 192.0.2.1/24. The library is configured, without a DHCP client, and closed.
class ClosedNetworkTest : public ClosedVaroTest {
protected:
    ClosedNetworkTest();
    ~ClosedNetworkTest() override;

    static void layCable();
    static void cutCable();

    void open();
    void close() { varoLibDestroy(); }
    void configure() { varo::configure(configuration); }

    static int attach(const std::string& address, const std::string& mask,
                      const std::string& name = "mng0");
    static int detach(const std::string& address, const std::string& mask,
                      const std::string& name = "mng0");
    static int addRoute(const std::string& gateway);
    static int deleteRoute(const std::string& gateway);
    static int switchDhcp(bool on);
    static bool isDhcpOn();

    /// "192.0.2.7/24 192.0.2.8/24 dynamic", primary first; empty for none.
    static std::string addresses(const std::string& name = "mng0");
    /// Gateways of the default routes by way of mng0, joined by spaces.
    static std::string gateways();
    /// What varoGetRouteByDst answers: a gateway, or "result N".
    static std::string route();
    /// What is stored, "address|mask|gateway".
    std::string stored() const;

    AwaitedLog lines;  ///< of all levels
    varo::Configuration configuration;

private:
    /// Stores the level, so that nothing is missed that is logged when the library opens.
    void logEverything() const;
};

/// The same, open, with the DHCP client switched off.
class NetworkTest : public ClosedNetworkTest {
protected:
    void SetUp() override;
    void restart();
};

}  // namespace varotest
