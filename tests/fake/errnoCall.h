#pragma once

#include <functional>
#include <string>

namespace fake {

/// What a call does: its result, or -1 and an errno; and what stands behind it in the journal.
struct Outcome {
    int result = 0;
    int error = 0;
    std::string detail;

    static Outcome failure(int error) { return {-1, error, {}}; }
};

/// Writes down a call that reports a failure by -1 and errno, and returns what it returns: the
/// scripted errno, under the function's name or the name with the kind of call ("msgctl IPC_SET"),
/// or else what `work` makes of it.
int errnoCall(const std::string& function, const std::string& arguments,
              const std::function<Outcome()>& work, const std::string& kind = "");

}  // namespace fake
