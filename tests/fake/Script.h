#pragma once

#include <map>
#include <mutex>
#include <string>

namespace fake {

/// Which calls fail, and with what result. A call that is not in the script works.
class Script {
public:
    static constexpr int forever = -1;

    /// The next `times` calls of the function fail with `result`, once `skipped` of them have
    /// worked.
    void fail(const std::string& function, int result, int times = forever, int skipped = 0);

    /// The scripted failure of a call about to be made, or 0. Counts the call.
    int failureOf(const std::string& function);

private:
    struct Failure {
        int result;
        int times;
        int skipped;
    };

    std::mutex mutex;
    std::map<std::string, Failure> failures;
};

}  // namespace fake
