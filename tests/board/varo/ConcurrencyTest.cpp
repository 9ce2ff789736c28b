#include "tests/board/varo/VaroTest.h"

#include <atomic>
#include <barrier>
#include <thread>
#include <vector>

namespace {

using namespace varotest;

constexpr std::uint32_t rounds = 60;

/// Every field of a record follows from its value, so that a mixture of two is seen.
varoLib_s_dns dnsOf(std::uint32_t value) {
    return varotest::dnsOf("d" + std::to_string(value), value, value + 1);
}

varoLib_s_dns6 dns6Of(std::uint32_t value) {
    const std::string text = std::to_string(value);
    return varotest::dns6Of("d" + text, "2001:db8::" + text, "2001:db8::1:" + text);
}

std::uint32_t valueOf(const char* domain) {
    return static_cast<std::uint32_t>(std::strtoul(domain + 1, nullptr, 10));
}

template <class Record>
bool same(const Record& left, const Record& right) {
    return std::memcmp(&left, &right, sizeof left) == 0;
}

/// Runs all bodies at the same time, each in a thread.
void together(const std::vector<std::function<void()>>& bodies) {
    std::barrier start(static_cast<std::ptrdiff_t>(bodies.size()));
    std::vector<std::thread> threads;
    for (const auto& body : bodies) {
        threads.emplace_back([&start, &body] {
            start.arrive_and_wait();
            body();
        });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
}

class Concurrency : public ClosedVaroTest {
protected:
    Concurrency() {
        resolverFile = directory.path() / "resolv.conf";
        configure();
    }
};

TEST_F(Concurrency, KeepsRecordsWholeWhileThreadsWriteSourcesAndGroups) {
    ASSERT_EQ(varoLibInit(), varo::success);
    for (const int source : {1, 2}) {
        ASSERT_EQ(store(source, dnsOf(1)), varo::success);
        ASSERT_EQ(store(source, dns6Of(1)), varo::success);
    }
    std::atomic<int> failures{0};
    const auto check = [&](bool holds) { failures += holds ? 0 : 1; };
    const auto writeDns = [&](int source) {
        for (std::uint32_t value = 1; value <= rounds; ++value) {
            check(store(source, dnsOf(value)) == varo::success);
        }
    };
    const auto writeDns6 = [&] {
        for (std::uint32_t value = 1; value <= rounds; ++value) {
            check(store(2, dns6Of(value)) == varo::success);
        }
    };
    const auto writeConfig = [&] {
        for (std::uint32_t value = 1; value <= rounds; ++value) {
            varoLib_s_internalConfig record{};
            check(varoUpdateInternalConfig(&record, static_cast<std::int16_t>(3 + value % 5)) ==
                  varo::success);
        }
    };
    const auto readAll = [&] {
        for (std::uint32_t i = 0; i < 20 * rounds; ++i) {
            for (const int wanted : {0, 1, 2}) {
                varoLib_s_dns dns{};
                varoLib_s_dns6 dns6{};
                varoLib_s_internalConfig config{};
                int source = wanted;
                check(varoGetDnsWS(&source, &dns) == varo::success);
                check(same(dns, dnsOf(valueOf(dns.domain))));
                source = wanted;
                check(varoGetDns6(&source, &dns6) == varo::success);
                check(same(dns6, dns6Of(valueOf(dns6.domain))));
                check(varoGetInternalConfig(&config) == varo::success);
                check(config.severity >= 3 && config.severity <= 7);
            }
        }
    };
    together(
        {[&] { writeDns(1); }, [&] { writeDns(2); }, writeDns6, writeConfig, readAll, readAll});
    EXPECT_EQ(failures, 0);
    EXPECT_EQ(readFile(resolverFile),
              "# Written by the configuration library; changes made here are lost.\n"
              "search d60\nnameserver 0.0.0.60\nnameserver 2001:db8::60\nnameserver 0.0.0.61\n"
              "nameserver 2001:db8::1:60\n");
}

TEST_F(Concurrency, PutsTheRecordIntoForceThatWasStoredLast) {
    ASSERT_EQ(varoLibInit(), varo::success);
    const auto writer = [](std::uint32_t first) {
        return [first] {
            for (std::uint32_t value = first; value < first + 20; ++value) {
                store(2, dnsOf(value));
            }
        };
    };
    for (std::uint32_t round = 0; round < 3; ++round) {
        together({writer(1000), writer(2000), writer(3000)});
        EXPECT_THAT(readFile(resolverFile), HasSubstr("search " + std::string(storedDns().domain)));
    }
}

TEST_F(Concurrency, AnswersEveryCallOrSaysThatItIsClosed) {
    ASSERT_EQ(varoLibInit(), varo::success);
    std::atomic<bool> done{false};
    std::atomic<int> failures{0};
    std::atomic<int> answered{0};
    const auto check = [&](int result) {
        if (result == varo::success) {
            ++answered;
        } else if (result != varo::notOpen) {
            ++failures;
        }
    };
    const auto call = [&] {
        std::uint32_t value = 0;
        do {
            auto record = dnsOf(++value);
            check(varoUpdateDnsWS(1, &record));
            int source = 0;
            check(varoGetDnsWS(&source, &record));
        } while (!done || answered == 0);
    };
    const auto closeAndOpen = [&] {
        for (int i = 0; i < 20; ++i) {
            varoLibDestroy();
            if (varoLibInit() != varo::success) {
                ++failures;
            }
        }
        done = true;
    };
    together({call, call, closeAndOpen});
    EXPECT_EQ(failures, 0);
    EXPECT_GT(answered, 0);
}

TEST_F(Concurrency, OpensOnceWhenManyThreadsAreFirst) {
    // Without the directory, init fails and leaves the opening to the first call that succeeds.
    std::filesystem::remove(state);
    ASSERT_EQ(varoLibInit(), varo::storageFailed);
    std::filesystem::create_directory(state);
    std::atomic<int> failures{0};
    const auto write = [&](int source) {
        return [&failures, source] {
            if (store(source, dnsOf(static_cast<std::uint32_t>(source))) != varo::success) {
                ++failures;
            }
        };
    };
    const auto read = [&] {
        varoLib_s_internalConfig record{};
        if (varoGetInternalConfig(&record) != varo::success || record.severity != 3) {
            ++failures;
        }
    };
    together({write(1), write(2), read, read, read, read});
    EXPECT_EQ(failures, 0);
    EXPECT_EQ(sql(file, "SELECT source, domain FROM dns"), "1|d1\n2|d2");
}

}  // namespace
