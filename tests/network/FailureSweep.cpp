// Every imported call of every operation fails in turn, once and for good, each time on a board of
// its own: the operation returns what its row says, has done the same as ever before the failure,
// and holds no lock afterwards.

#include "network/EntityTest.h"
#include "network/journals.h"
#include "network/operations.h"

#include <algorithm>
#include <iterator>
#include <map>
#include <ostream>
#include <set>
#include <thread>

// What a failing test prints of its row.
void PrintTo(const Operation& operation, std::ostream* out);
void PrintTo(const Operation& operation, std::ostream* out) { *out << operation.name; }

namespace {

constexpr int failure = 42;

/// Answers that are values and no status.
const std::set<std::string> queries = {"checkProfileMode",        "defConnectGetDefModeNative",
                                       "defConnectGetDefVid",     "isActive",
                                       "isClearConfigInProgress", "isFeatureSupported"};

/// Calls that answer 1 when all is well.
const std::set<std::string> checks = {"checkIpHostname", "checkIpv4Addr", "checkIpv6Addr"};

/// A call that answers with what it found; only the failure is nothing that it can find.
constexpr const char* classification = "getIpAddrType";

/// Calls that report a failure by -1 and errno, and may return any number otherwise.
const std::set<std::string> errnoCalls = {"close",        "ioctl",        "sem_close",
                                          "sem_open",     "sem_getvalue", "sem_trywait",
                                          "settimeofday", "socket",       "stat"};

/// A call of a journal that can be made to fail.
struct Call {
    std::string name;
    std::size_t place;  ///< in the journal
    int earlier;        ///< calls of the same name before it
};

bool isLock(const std::string& entry) { return entry == "sharedLock" || entry == "exclusiveLock"; }

bool isOrdinary(const std::string& entry) {
    return !entry.starts_with("syslog") && !entry.starts_with("Log");
}

/// What an entry says behind the call's arguments.
std::size_t placeOfResult(const std::string& entry) { return entry.find(") -> "); }

std::string functionOf(const std::string& entry) { return entry.substr(0, entry.find('(')); }

/// What a call fails under: its function's name, and the kind of request where there are several.
std::string nameOf(const std::string& entry) {
    const std::string function = functionOf(entry);
    if (function != "ioctl") {
        return function;
    }
    const std::size_t request = entry.find(", ") + 2;
    return function + " " + entry.substr(request, entry.find(", ", request) - request);
}

bool hasWorked(const std::string& entry) {
    const std::string function = functionOf(entry);
    const std::string result = entry.substr(placeOfResult(entry));
    if (errnoCalls.contains(function)) {
        return result != ") -> not there" && !result.starts_with(") -> errno ");
    }
    if (checks.contains(function)) {
        return result == ") -> 1";
    }
    return function == classification || result == ") -> 0" || result.starts_with(") -> 0 ");
}

/// Whether a call takes its place in the script even if the board refuses it by itself.
bool isAlwaysCounted(const std::string& function) {
    return errnoCalls.contains(function) || checks.contains(function) || function == "system";
}

/// The calls that worked. One that the board refused by itself does not count.
std::vector<Call> callsThatWorked(const Entries& journal) {
    std::vector<Call> calls;
    std::map<std::string, int> counts;
    for (std::size_t place = 0; place < journal.size(); ++place) {
        const std::string& entry = journal[place];
        std::string name = entry;
        if (!isLock(entry)) {
            const std::string function = functionOf(entry);
            if (!isOrdinary(entry) || placeOfResult(entry) == std::string::npos ||
                queries.contains(function)) {
                continue;
            }
            name = nameOf(entry);
            if (!hasWorked(entry)) {
                counts[name] += isAlwaysCounted(function) ? 1 : 0;
                continue;
            }
        }
        calls.push_back({name, place, counts[name]++});
    }
    return calls;
}

/// The entry of the same call when it fails.
std::string failed(const std::string& entry) {
    if (isLock(entry)) {
        return entry + " -> refused";
    }
    const std::string function = functionOf(entry);
    const std::string call = entry.substr(0, placeOfResult(entry));
    if (checks.contains(function)) {
        return call + ") -> 0";
    }
    return call + (errnoCalls.contains(function) ? ") -> errno " : ") -> ") +
           std::to_string(failure);
}

class FailureSweep : public EntityTest, public testing::WithParamInterface<Operation> {
protected:
    struct Outcome {
        int result;
        Entries journal;
    };

    /// Runs the operation on a board of its own, on which one call may fail.
    Outcome run(const Call* failing, int times) {
        fake::Platform board;
        remakeEntity();
        logEverything();
        GetParam().prepare(board);
        board.journal.takeAll();
        if (failing != nullptr) {
            board.fail(failing->name, failure, times, failing->earlier);
        }
        const int result = GetParam().call(entity());
        const Outcome outcome{result, board.journal.take()};
        EXPECT_TRUE(isFree(board.lock));
        entity().stop();
        return outcome;
    }

    /// Whether another thread could have the lock to itself.
    static bool isFree(fake::FakeLock& lock) {
        bool obtained = false;
        std::thread other([&] {
            obtained = lock.acquire(fake::FakeLock::Mode::exclusive);
            if (obtained) {
                lock.release(fake::FakeLock::Mode::exclusive);
            }
        });
        other.join();
        return obtained;
    }
};

TEST_P(FailureSweep, EveryFailureHasItsResultAndChangesNothingBeforeIt) {
    const Outcome clean = run(nullptr, 0);
    EXPECT_EQ(clean.result, GetParam().success);
    const std::vector<Call> calls = callsThatWorked(clean.journal);
    std::vector<std::string> names;
    std::ranges::transform(calls, std::back_inserter(names), &Call::name);
    std::vector<std::string> listed;
    std::ranges::transform(GetParam().calls, std::back_inserter(listed), &ImportedCall::name);
    ASSERT_THAT(names, testing::ElementsAreArray(listed));

    for (std::size_t number = 0; number < calls.size(); ++number) {
        const Call& failing = calls[number];
        const ImportedCall& expected = GetParam().calls[number];
        for (const int times : {1, fake::Script::forever}) {
            SCOPED_TRACE(failing.name + ", call " + std::to_string(failing.earlier + 1) +
                         (times == 1 ? ", fails once" : ", fails for good"));
            const Outcome outcome = run(&failing, times);
            EXPECT_EQ(outcome.result, times == 1 ? expected.resultOnce : expected.resultForGood);
            Entries before(clean.journal.begin(),
                           clean.journal.begin() + static_cast<std::ptrdiff_t>(failing.place));
            before.push_back(failed(clean.journal[failing.place]));
            ASSERT_GE(outcome.journal.size(), before.size());
            EXPECT_THAT(
                Entries(outcome.journal.begin(),
                        outcome.journal.begin() + static_cast<std::ptrdiff_t>(before.size())),
                testing::ElementsAreArray(before));
        }
    }
}

INSTANTIATE_TEST_SUITE_P(Operations, FailureSweep, testing::ValuesIn(operations()),
                         [](const auto& operation) { return operation.param.name; });

}  // namespace
