#include <gmock/gmock.h>

#include <csignal>
#include <cstdio>
#include <exception>

#include "tests/board/varo/network/namespaces.h"

int main(int argumentCount, char** arguments) {
    testing::InitGoogleMock(&argumentCount, arguments);
    std::signal(SIGPIPE, SIG_IGN);
    // Not in an environment of the test framework: its failure would count as skipped tests.
    if (!GTEST_FLAG_GET(list_tests)) {
        try {
            varotest::enterNamespaces();
        } catch (const std::exception& error) {
            std::fprintf(stderr, "These tests need root, for what they do not get: %s\n",
                         error.what());
            return 1;
        }
    }
    return RUN_ALL_TESTS();
}
