#include "board/varo/settings/allSettings.h"
#include "board/varo/store/RecordStore.h"
#include "tests/board/varo/SyncedImage.h"
#include "tests/board/varo/VaroTest.h"

#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdint>

namespace {

using namespace varotest;

class Durability : public ClosedVaroTest {
protected:
    Durability() {
        resolverFile = directory.path() / "resolv.conf";
        configure();
    }

    static int update(std::uint32_t value) {
        return store(2, dnsOf("d" + std::to_string(value), value));
    }
};

/// Writes rising values and acknowledges each through the pipe, until it is killed.
[[noreturn]] void writeUntilKilled(int acknowledgements, std::uint32_t first,
                                   int (*update)(std::uint32_t)) {
    if (varoLibInit() != varo::success) {
        ::_exit(1);
    }
    for (std::uint32_t value = first;; ++value) {
        if (update(value) != varo::success) {
            ::_exit(2);
        }
        if (::write(acknowledgements, &value, sizeof value) != sizeof value) {
            ::_exit(3);
        }
    }
}

TEST_F(Durability, WhatWasAcknowledgedSurvivesAKill) {
    std::uint32_t last = 0;
    for (const int count : {1, 30, 100}) {
        int ends[2];
        ASSERT_EQ(::pipe(ends), 0);
        const pid_t child = ::fork();
        ASSERT_GE(child, 0);
        if (child == 0) {
            ::close(ends[0]);
            writeUntilKilled(ends[1], last + 1, update);
        }
        ::close(ends[1]);
        std::uint32_t value = 0;
        for (int i = 0; i < count; ++i) {
            ASSERT_EQ(::read(ends[0], &value, sizeof value), ssize_t{sizeof value});
            last = value;
        }
        ::kill(child, SIGKILL);
        while (::read(ends[0], &value, sizeof value) == sizeof value) {
            last = value;
        }
        ::close(ends[0]);
        const int status = waitFor(child);
        ASSERT_TRUE(WIFSIGNALED(status)) << status;

        // No reader of the resolver file has ever seen a part of one.
        EXPECT_THAT(readFile(resolverFile), MatchesRegex("#[^\n]*\n"
                                                         "search d[0-9]+\n"
                                                         "nameserver [0-9.]+\n"));
        ASSERT_EQ(varoLibInit(), varo::success);
        const varoLib_s_dns record = storedDns();
        EXPECT_THAT(record.ip_pri, AllOf(testing::Ge(last), testing::Le(last + 1)));
        EXPECT_EQ(record.domain, "d" + std::to_string(record.ip_pri));
        EXPECT_THAT(readFile(resolverFile), HasSubstr("search " + std::string(record.domain)));
        last = record.ip_pri;
        varoLibDestroy();
        EXPECT_THAT(log.lines(), IsEmpty());
    }
}

TEST_F(Durability, WhatWasAcknowledgedSurvivesALossOfPower) {
    const auto image = directory.path() / "image";
    std::filesystem::create_directory(image);
    const SyncedImage synced(state, image);
    for (std::uint32_t value = 1; value <= 30; ++value) {
        // Every tenth value, the write-ahead log starts anew.
        if (value % 10 == 1) {
            varoLibDestroy();
            ASSERT_EQ(varoLibInit(), varo::success);
        }
        ASSERT_EQ(update(value), varo::success);

        const TemporaryDirectory afterwards;
        std::filesystem::copy(image, afterwards.path());
        LogLines lines;
        varo::RecordStore copy(afterwards.path() / "varo.db", varo::schema(), lines.receiver());
        EXPECT_EQ(copy.session().read(varo::dnsSetting().group(), 2).ip_pri, value);
        EXPECT_THAT(lines.lines(), IsEmpty());
    }
}

}  // namespace
