#include "board/varo/link/dhcpEvent.h"
#include "support/isolatedTests.h"
#include "tests/board/varo/network/namespaces.h"

int main(int argumentCount, char** arguments) {
    // The DHCP clients of the tests report by way of this program.
    if (varo::isDhcpEvent(argumentCount, arguments)) {
        return varo::passDhcpEvent(arguments);
    }
    return runIsolatedTests(argumentCount, arguments, varotest::enterNamespaces);
}
