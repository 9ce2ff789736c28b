#pragma once

#include <map>
#include <mutex>
#include <string>
#include <vector>

namespace fake {

/// What happened, in order, across everything that the product reaches: imported calls with
/// arguments and results, system-log lines, framework-log entries, libc calls. The entries of each
/// thread are kept by themselves, since nothing orders those of different threads.
class Journal {
public:
    void write(std::string entry);

    /// Adds to the calling thread's latest entry, if that begins so; what follows something else is
    /// an entry of its own, behind "..." in place of its beginning.
    void extend(const std::string& beginning, const std::string& addition);

    /// The entries of the threads without a name, since the last call, which are thereby accounted
    /// for.
    std::vector<std::string> take() { return takeOf(""); }
    /// The same of the threads with a name.
    std::vector<std::string> takeOf(const std::string& threadName);
    /// The same of all threads, each entry of a named one behind the name.
    std::vector<std::string> takeAll();

    /// Gives the calling thread a name.
    static void nameThread(const std::string& name);

private:
    std::mutex mutex;
    std::map<std::string, std::vector<std::string>> entriesByThread;
};

}  // namespace fake
