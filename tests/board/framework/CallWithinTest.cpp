#include "board/framework/callWithin.h"
#include "support/matchers.h"

#include <pthread.h>

#include <array>
#include <chrono>
#include <latch>
#include <memory>
#include <stdexcept>
#include <thread>

using framework::callWithin;
using std::chrono::milliseconds;
using std::chrono::seconds;

TEST(CallWithin, ReturnsTheResultOfAFunctionThatEnds) {
    EXPECT_EQ(callWithin(seconds(60), "test", [] { return 42; }), 42);
}

TEST(CallWithin, RunsTheFunctionOnANamedThreadOfItsOwn) {
    const auto caller = std::this_thread::get_id();
    std::thread::id callee;
    std::array<char, 16> name{};
    callWithin(seconds(60), "a name that is too long", [&] {
        callee = std::this_thread::get_id();
        return pthread_getname_np(pthread_self(), name.data(), name.size());
    });
    EXPECT_NE(callee, caller);
    EXPECT_STREQ(name.data(), "a name that is ");
}

TEST(CallWithin, ThrowsWhatTheFunctionThrows) {
    EXPECT_THROW(callWithin(seconds(60), "test", []() -> int { throw std::out_of_range("x"); }),
                 std::out_of_range);
}

TEST(CallWithin, GivesUpOnAFunctionThatDoesNotEnd) {
    std::latch release(1);
    std::latch left(1);
    const auto result = callWithin(milliseconds(20), "test", [&] {
        release.wait();
        left.count_down();
        return 1;
    });
    EXPECT_FALSE(result.has_value());
    release.count_down();
    left.wait();
}
