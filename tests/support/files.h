#pragma once

#include <filesystem>
#include <string>
#include <vector>

/// The names in a directory, sorted.
std::vector<std::string> filesIn(const std::filesystem::path& directory);

/// A directory of the test's own, removed with everything in it.
class TemporaryDirectory {
public:
    TemporaryDirectory();
    ~TemporaryDirectory();
    TemporaryDirectory(const TemporaryDirectory&) = delete;
    TemporaryDirectory& operator=(const TemporaryDirectory&) = delete;

    const std::filesystem::path& path() const { return directory; }
    std::filesystem::path operator/(const std::string& name) const { return directory / name; }
    std::vector<std::string> names() const { return filesIn(directory); }

private:
    std::filesystem::path directory;
};

/// All of a file, byte for byte. Throw std::runtime_error.
std::string readFile(const std::filesystem::path& file);
void writeFile(const std::filesystem::path& file, const std::string& content);
