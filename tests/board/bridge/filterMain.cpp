#include <gmock/gmock.h>

#include <cstdio>
#include <system_error>

#include "Network.h"

/// For the leak check of the address sanitizer: libnftables loses the JSON documents (libjansson)
/// of some transactions, which only it uses here.
extern "C" const char* __lsan_default_suppressions();
extern "C" const char* __lsan_default_suppressions() { return "leak:libjansson\n"; }

int main(int argumentCount, char** arguments) {
    testing::InitGoogleMock(&argumentCount, arguments);
    // Not in an environment of the test framework: its failure would count as skipped tests.
    if (!GTEST_FLAG_GET(list_tests)) {
        try {
            test::makeNetwork();
        } catch (const std::system_error& error) {
            std::fprintf(stderr, "These tests need root, for what they do not get: %s\n",
                         error.what());
            return 1;
        }
    }
    return RUN_ALL_TESTS();
}
