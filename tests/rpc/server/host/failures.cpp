// Calls that hardly ever fail, failing on demand; replaced when the test is linked (ld --wrap).

#include "fake/Platform.h"

#include <boost/thread/thread.hpp>

#include <ctime>

using fake::Platform;

extern "C" {

bool __real__ZN5boost6thread21start_thread_noexceptEv(boost::thread* thread);
std::tm* __real_gmtime_r(const std::time_t* time, std::tm* parts);

/// boost::thread::start_thread_noexcept(), with which every thread of boost's begins.
bool __wrap__ZN5boost6thread21start_thread_noexceptEv(boost::thread* thread) {
    return Platform::current().script.failureOf("boost::thread") == 0 &&
           __real__ZN5boost6thread21start_thread_noexceptEv(thread);
}

std::tm* __wrap_gmtime_r(const std::time_t* time, std::tm* parts) {
    return Platform::current().script.failureOf("gmtime_r") == 0 ? __real_gmtime_r(time, parts)
                                                                 : nullptr;
}
}
