#include "board/framework/replaceFile.h"

#include "board/framework/FileDescriptor.h"

#include <fcntl.h>

#include <cerrno>
#include <cstdio>
#include <string_view>
#include <system_error>

namespace board {

namespace {

constexpr mode_t readableByAll = 0644;

[[noreturn]] void fail(const std::string& what, const std::filesystem::path& file) {
    throw std::system_error(errno, std::generic_category(), what + " " + file.string());
}

void writeAll(const std::filesystem::path& file, std::string_view content) {
    const FileDescriptor opened(
        ::open(file.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, readableByAll));
    if (!opened) {
        fail("cannot create", file);
    }
    while (!content.empty()) {
        const ssize_t written = ::write(opened.get(), content.data(), content.size());
        if (written >= 0) {
            content.remove_prefix(static_cast<std::size_t>(written));
        } else if (errno != EINTR) {
            fail("cannot write", file);
        }
    }
    if (::fsync(opened.get()) != 0) {
        fail("cannot synchronise", file);
    }
}

/// Makes the renaming durable. Not every file system can; the renaming stands without it.
void synchroniseDirectory(const std::filesystem::path& directory) {
    const FileDescriptor opened(::open(directory.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    if (opened) {
        ::fsync(opened.get());
    }
}

}  // namespace

void replaceFile(const std::filesystem::path& file, const std::string& content) {
    std::filesystem::path temporary = file;
    temporary += ".new";
    try {
        writeAll(temporary, content);
        std::filesystem::rename(temporary, file);
    } catch (...) {
        std::error_code ignored;
        std::filesystem::remove(temporary, ignored);
        throw;
    }
    synchroniseDirectory(file.has_parent_path() ? file.parent_path() : ".");
}

}  // namespace board
