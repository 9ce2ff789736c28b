#pragma once

#include "support/Process.h"
#include "tests/board/varo/network/NetworkTest.h"

#include <sys/types.h>

#include <memory>
#include <string>
#include <vector>

namespace varotest {

/// The library with BusyBox's DHCP client on mng0, closed.
class DhcpTest : public ClosedNetworkTest {
protected:
    DhcpTest();

    /// A server on the far end of the cable: leases of 192.0.2.50, with router, name servers and
    /// domain.
    void startServer(const std::vector<std::string>& more = {});
    void stopServer() { server.reset(); }

    /// Runs this shell script as the client from now on; "$REPORT" EVENT in it reports.
    void useClient(const std::string& script);

    /// Processes that this one has started and that run the client.
    static std::vector<pid_t> clients();

    /// The resolver values in force: "SOURCE PRIMARY SECONDARY DOMAIN".
    static std::string resolver();

    /// Runs a server on the far end of the cable until it says that it is ready.
    void startDnsmasq(const std::vector<std::string>& more, const std::string& ready);

    std::unique_ptr<Process> server;
};

}  // namespace varotest
