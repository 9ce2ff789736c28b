#pragma once

#include "board/varo/varoCodes.h"
#include "board/varo/varoConfiguration.h"
#include "support/LogLines.h"
#include "support/files.h"
#include "support/matchers.h"
#include "support/privateNamespaces.h"
#include "support/setText.h"
#include "tests/board/varo/storage.h"
#include "varo/varoLib.h"

#include <cstring>
#include <filesystem>

namespace varotest {

/// The library, configured with a state directory of the test's own, and closed.
class ClosedVaroTest : public testing::Test {
protected:
    ClosedVaroTest() {
        varoLibDestroy();
        std::filesystem::create_directory(state);
        configure();
    }
    ~ClosedVaroTest() override {
        varoLibDestroy();
        varo::configure({});
    }

    void configure() { varo::configure({state, resolverFile, log.receiver()}); }

    TemporaryDirectory directory;
    const std::filesystem::path state = directory.path() / "state";
    const std::filesystem::path file = state / "varo.db";
    std::filesystem::path resolverFile;  ///< empty: none
    LogLines log;
};

/// The same, open.
class VaroTest : public ClosedVaroTest {
protected:
    void SetUp() override { ASSERT_EQ(varoLibInit(), varo::success); }

    /// Closes the library and opens it again, as a restart of the process does.
    int restart() {
        varoLibDestroy();
        return varoLibInit();
    }
};

/// Resolver records.
inline varoLib_s_dns dnsOf(const std::string& domain, std::uint32_t primary = 0,
                           std::uint32_t secondary = 0) {
    varoLib_s_dns record{};
    setText(record.domain, domain);
    record.ip_pri = primary;
    record.ip_sec = secondary;
    return record;
}
inline varoLib_s_dns6 dns6Of(const std::string& domain, const std::string& primary = {},
                             const std::string& secondary = {}) {
    varoLib_s_dns6 record{};
    setText(record.domain, domain);
    setText(record.ipv6_pri, primary);
    setText(record.ipv6_sec, secondary);
    return record;
}

/// Stores a resolver record for a source.
inline int store(int source, varoLib_s_dns record) { return varoUpdateDnsWS(source, &record); }
inline int store(int source, varoLib_s_dns6 record) { return varoUpdateDns6(source, &record); }

/// What a call fills into a record, whatever that held before.
template <class Record, class Fill>
Record filledBy(Fill fill) {
    Record record;
    std::memset(&record, 0x55, sizeof record);
    EXPECT_EQ(fill(record), varo::success);
    return record;
}
template <class Record>
Record readBy(int (*call)(Record*)) {
    return filledBy<Record>([&](Record& record) { return call(&record); });
}
template <class Record>
Record readBy(int (*call)(int*, Record*), int& source) {
    return filledBy<Record>([&](Record& record) { return call(&source, &record); });
}
template <class Record>
Record readBy(int (*call)(int, Record*), int source) {
    return filledBy<Record>([&](Record& record) { return call(source, &record); });
}
inline varoLib_s_dns storedDns(int source = 2) { return readBy(varoGetDnsWS, source); }

}  // namespace varotest
