#pragma once

#include <filesystem>
#include <string>
#include <vector>

namespace test {

/// A directory of the test's own, removed with everything in it.
class TemporaryDirectory {
public:
    TemporaryDirectory();
    ~TemporaryDirectory();
    TemporaryDirectory(const TemporaryDirectory&) = delete;
    TemporaryDirectory& operator=(const TemporaryDirectory&) = delete;

    const std::filesystem::path& path() const { return directory; }

    /// The names in the directory, sorted.
    std::vector<std::string> names() const;

private:
    std::filesystem::path directory;
};

std::string readFile(const std::filesystem::path& file);
void writeFile(const std::filesystem::path& file, const std::string& content);

}  // namespace test
