#include "network/fixedFiles.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/file.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>

namespace {

constexpr const char* outputFile = "/tmp/version.data.tmp";
constexpr const char* fileSystemFile = "/tmp/get_FS_version";

void write(const char* path, const std::string& text) {
    std::ofstream file(path, std::ios::binary);
    file << text;
    EXPECT_TRUE(file.flush()) << path;
}

}  // namespace

// The lock is on their directory, so that it leaves nothing behind; it ends with the process.
FixedFiles::FixedFiles() : directory(open("/tmp", O_RDONLY | O_DIRECTORY | O_CLOEXEC)) {
    if (directory < 0 || flock(directory, LOCK_EX) != 0) {
        ADD_FAILURE() << "/tmp cannot be locked";
    }
    remove();
}

FixedFiles::~FixedFiles() {
    remove();
    close(directory);
}

void FixedFiles::writeOutput(const std::string& text) const { write(outputFile, text); }

void FixedFiles::removeOutput() const { std::filesystem::remove(outputFile); }

void FixedFiles::writeFileSystemVersion(const std::string& text) const {
    write(fileSystemFile, text);
}

bool FixedFiles::areThere() const {
    return std::filesystem::exists(outputFile) || std::filesystem::exists(fileSystemFile);
}

void FixedFiles::remove() const {
    std::filesystem::remove(outputFile);
    std::filesystem::remove(fileSystemFile);
}
