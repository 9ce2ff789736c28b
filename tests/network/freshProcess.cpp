#include "network/freshProcess.h"

#include "fake/Platform.h"

#include <unistd.h>

#include <cstdio>

void inFreshProcess(const std::function<std::string()>& body) {
    // The test framework starts the program anew with this test alone.
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    EXPECT_EXIT(
        {
            const std::string complaint = body();
            std::fputs(complaint.c_str(), stderr);
            ::_exit(complaint.empty() ? 0 : 1);
        },
        testing::ExitedWithCode(0), "");
    // Before it forks, the test framework writes out all streams.
    EXPECT_THAT(fake::Platform::current().journal.take(), testing::Each("fflush(all)"));
}
