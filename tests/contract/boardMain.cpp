// The board works on the machine's kernel: its contract is tested in a network namespace with an
// interface of its own.

#include "support/privateNamespaces.h"

#include <gmock/gmock.h>

#include <cstdio>
#include <cstdlib>
#include <exception>

int main(int argumentCount, char** arguments) {
    testing::InitGoogleMock(&argumentCount, arguments);
    // Not in an environment of the test framework: its failure would count as skipped tests.
    if (!GTEST_FLAG_GET(list_tests)) {
        try {
            enterPrivateNamespaces(CLONE_NEWNET);
        } catch (const std::exception& error) {
            std::fprintf(stderr, "a network namespace is needed: %s\n", error.what());
            return 1;
        }
        if (std::system("ip link set lo up && ip link add mng0 type veth peer name lan0 && "
                        "ip link set lan0 up && ip link set mng0 up") != 0) {
            return 1;
        }
    }
    return RUN_ALL_TESTS();
}
