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
const std::set<std::string> queries = {"checkProfileMode", "defConnectGetDefModeNative",
                                       "defConnectGetDefVid", "isActive"};

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
std::size_t resultOf(const std::string& entry) { return entry.find(") -> "); }

/// The calls that worked. One that the board refused by itself does not count.
std::vector<Call> callsThatWorked(const Entries& journal) {
    std::vector<Call> calls;
    std::map<std::string, int> counts;
    for (std::size_t place = 0; place < journal.size(); ++place) {
        const std::string& entry = journal[place];
        std::string name = entry;
        if (!isLock(entry)) {
            const std::size_t result = resultOf(entry);
            name = entry.substr(0, entry.find('('));
            if (!isOrdinary(entry) || result == std::string::npos || queries.contains(name) ||
                (entry.substr(result) != ") -> 0" &&
                 !entry.substr(result).starts_with(") -> 0 "))) {
                continue;
            }
        }
        calls.push_back({name, place, counts[name]++});
    }
    return calls;
}

/// The entry of the same call when it fails.
std::string failed(const std::string& entry) {
    return isLock(entry) ? entry + " -> refused"
                         : entry.substr(0, resultOf(entry)) + ") -> " + std::to_string(failure);
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
