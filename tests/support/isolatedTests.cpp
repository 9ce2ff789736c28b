#include "support/isolatedTests.h"

#include <gmock/gmock.h>

#include <cstdio>
#include <exception>

int runIsolatedTests(int argumentCount, char** arguments, void (*enter)()) {
    testing::InitGoogleMock(&argumentCount, arguments);
    // Not in an environment of the test framework: its failure would count as skipped tests.
    if (!GTEST_FLAG_GET(list_tests)) {
        try {
            enter();
        } catch (const std::exception& error) {
            std::fprintf(stderr, "These tests need root, for what they do not get: %s\n",
                         error.what());
            return 1;
        }
    }
    return RUN_ALL_TESTS();
}
