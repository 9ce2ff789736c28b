// Every imported call of every operation fails in turn, once and for good, each time on a board of
// its own: the operation returns what its row says, has done the same as ever before the failure,
// and holds no lock afterwards.

#include "network/EntityTest.h"
#include "network/operations.h"

#include <algorithm>
#include <iterator>
#include <map>
#include <optional>
#include <set>
#include <sstream>
#include <thread>

namespace {

using testing::ElementsAreArray;

constexpr int failure = 42;

/// Calls that answer 1 when all is well.
const std::set<std::string> checks = {"checkIpHostname", "checkIpv4Addr", "checkIpv6Addr"};

/// Calls that report a failure by -1 and errno, and may return any number otherwise.
const std::set<std::string> errnoCalls = {"close",        "ioctl",        "sem_close",
                                          "sem_open",     "sem_getvalue", "sem_trywait",
                                          "settimeofday", "socket",       "stat"};

/// A word of a good run.
struct Step {
    explicit Step(const std::string& word) : name(word.substr(0, word.find_first_of("=?"))) {
        canFail = word != "~" && !word.ends_with('?');
        if (const std::size_t place = word.find('='); place != std::string::npos) {
            const std::string results = word.substr(place + 1);
            once = std::stoi(results);
            forGood = std::stoi(results.substr(results.find('/') + 1));
        }
    }

    std::string name;
    bool canFail;
    /// What the operation returns; without them -1, and it ends there.
    std::optional<int> once{};
    std::optional<int> forGood{};
};

std::vector<Step> stepsOf(const std::string& run) {
    std::vector<Step> steps;
    std::istringstream words(run);
    for (std::string word; words >> word;) {
        steps.emplace_back(word);
    }
    return steps;
}

bool isLock(const std::string& entry) { return entry == "sharedLock" || entry == "exclusiveLock"; }

bool isLog(const std::string& entry) {
    return entry.starts_with("syslog(") || entry.starts_with("Log(");
}

/// What may still happen once an operation has failed.
bool isAftermath(const std::string& entry) {
    return isLog(entry) || entry.starts_with("~") || entry.starts_with("close(");
}

std::string functionOf(const std::string& entry) { return entry.substr(0, entry.find('(')); }

/// The word for an entry of the journal.
std::string nameOf(const std::string& entry) {
    if (entry.starts_with("~")) {
        return "~";
    }
    const std::string function = functionOf(entry);
    if (function != "ioctl") {
        return function;
    }
    const std::size_t request = entry.find(", ") + 2;
    return entry.substr(request, entry.find(", ", request) - request);
}

/// What a call fails under.
std::string scriptName(const Step& step) {
    return (step.name.starts_with("SIOC") ? "ioctl " : "") + step.name;
}

/// Whether a call that the board refuses by itself takes its place in the script nevertheless.
bool isAlwaysCounted(const std::string& function) {
    return errnoCalls.contains(function) || checks.contains(function) || function == "system";
}

/// The entry of the same call when it fails.
std::string failed(const std::string& entry) {
    if (isLock(entry)) {
        return entry + " -> refused";
    }
    const std::string function = functionOf(entry);
    const std::string call = entry.substr(0, entry.find(") -> "));
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

    /// Runs the operation on a board of its own, with one call failing after so many that worked.
    Outcome run(const Step* failing = nullptr, int earlier = 0, int times = 0) {
        fake::Platform board;
        remakeEntity();
        logEverything();
        buffers = {};
        if (GetParam().prepare) {
            GetParam().prepare(board);
        }
        board.journal.takeAll();
        if (failing != nullptr) {
            board.fail(scriptName(*failing), failure, times, earlier);
        }
        const int result = GetParam().call.make();
        const Outcome outcome{result, board.journal.take()};
        EXPECT_TRUE(isFree(board.lock));
        entity().stop();
        return outcome;
    }

    /// One failure, at that place of the good run's journal.
    void fail(const Entries& good, std::size_t place, const Step& step, int earlier, int times) {
        SCOPED_TRACE(step.name + ", call " + std::to_string(earlier + 1) +
                     (times == 1 ? ", fails once" : ", fails for good"));
        const auto [result, journal] = run(&step, earlier, times);
        EXPECT_EQ(result, (times == 1 ? step.once : step.forGood).value_or(-1));
        Entries expected(good.begin(), good.begin() + static_cast<std::ptrdiff_t>(place));
        expected.push_back(failed(good[place]));
        ASSERT_GE(journal.size(), expected.size());
        const auto next = journal.begin() + static_cast<std::ptrdiff_t>(expected.size());
        EXPECT_THAT(Entries(journal.begin(), next), ElementsAreArray(expected));
        if (!step.once) {
            EXPECT_THAT(Entries(next, journal.end()), testing::Each(testing::Truly(isAftermath)));
        }
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
    const auto [result, journal] = run();
    EXPECT_EQ(result, GetParam().success);
    const std::vector<Step> steps = stepsOf(GetParam().goodRun);
    Entries listed;
    std::ranges::transform(steps, std::back_inserter(listed), &Step::name);
    Entries made;
    for (const std::string& entry : journal) {
        if (!isLog(entry)) {
            made.push_back(nameOf(entry));
        }
    }
    ASSERT_THAT(made, ElementsAreArray(listed));

    std::map<std::string, int> counts;
    auto step = steps.begin();
    for (std::size_t place = 0; place < journal.size(); ++place) {
        if (isLog(journal[place])) {
            continue;
        }
        if (step->canFail) {
            fail(journal, place, *step, counts[step->name], 1);
            fail(journal, place, *step, counts[step->name], fake::Script::forever);
        }
        counts[step->name] += step->canFail || isAlwaysCounted(functionOf(journal[place])) ? 1 : 0;
        ++step;
    }
}

INSTANTIATE_TEST_SUITE_P(Operations, FailureSweep, testing::ValuesIn(operations()),
                         [](const auto& operation) { return operation.param.name(); });

}  // namespace
