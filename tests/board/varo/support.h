#pragma once

#include "board/varo/Configuration.h"

#include <sys/types.h>

#include <filesystem>
#include <functional>
#include <mutex>
#include <string>
#include <vector>

namespace varotest {

/// Collects log lines, from any thread.
class LogLines {
public:
    varo::Log receiver();
    /// The lines so far as "level text".
    std::vector<std::string> lines() const;
    /// The same, and forgets them.
    std::vector<std::string> take();

private:
    mutable std::mutex mutex;
    std::vector<std::string> collected;
};

std::string readFile(const std::filesystem::path& file);
void writeFile(const std::filesystem::path& file, const std::string& content);
/// Names of the files in a directory, sorted.
std::vector<std::string> filesIn(const std::filesystem::path& directory);

/// Runs SQL on a file as a person at the sqlite3 shell would; returns the values of all result
/// rows, columns joined by "|" and rows by "\n". Throws std::runtime_error.
std::string sql(const std::filesystem::path& file, const std::string& statements);

/// Runs the body in a child process, which has namespaces of its own (flags of unshare(2), mounts
/// private); returns what the body returned. A body that throws gives "exception: ...".
std::string inOwnNamespaces(int flags, const std::function<std::string()>& body);

/// The status that waitpid(2) gives for the child.
int waitFor(pid_t child);

/// Mounts an empty file system that holds this many bytes. To be called in own mounts.
void mountTmpfs(const std::filesystem::path& directory, std::size_t bytes);
/// Puts a file where another one is, as container engines do. To be called in own mounts.
void bindMount(const std::filesystem::path& source, const std::filesystem::path& target);
void remountReadOnly(const std::filesystem::path& directory);

}  // namespace varotest
