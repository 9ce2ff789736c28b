#include "board/support/wholeFile.h"

#include "board/support/Descriptor.h"

#include <fcntl.h>
#include <fmt/chrono.h>
#include <fmt/format.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <chrono>
#include <system_error>

namespace support {

namespace {

namespace fs = std::filesystem;

constexpr mode_t fileMode = S_IRUSR | S_IWUSR | S_IRGRP | S_IROTH;

[[noreturn]] void fail(const char* doing, const fs::path& file) {
    throw std::system_error(errno, std::generic_category(),
                            std::string("cannot ") + doing + " " + file.string());
}

}  // namespace

std::string readFile(const std::filesystem::path& file) {
    const Descriptor opened(::open(file.c_str(), O_RDONLY | O_CLOEXEC));
    if (!opened) {
        fail("read", file);
    }
    std::string content;
    std::array<char, 65536> buffer;
    for (;;) {
        const ssize_t count = ::read(opened.get(), buffer.data(), buffer.size());
        if (count > 0) {
            content.append(buffer.data(), static_cast<std::size_t>(count));
        } else if (count == 0) {
            return content;
        } else if (errno != EINTR) {
            fail("read", file);
        }
    }
}

namespace {

bool holds(const fs::path& file, std::string_view content) {
    try {
        return readFile(file) == content;
    } catch (const std::system_error&) {
        return false;
    }
}

/// Writes from the start of the file and cuts off what was there beyond.
void write(const Descriptor& descriptor, std::string_view content, const fs::path& file) {
    std::size_t done = 0;
    while (done < content.size()) {
        const ssize_t count = ::pwrite(descriptor.get(), content.data() + done,
                                       content.size() - done, static_cast<off_t>(done));
        if (count >= 0) {
            done += static_cast<std::size_t>(count);
        } else if (errno != EINTR) {
            fail("write", file);
        }
    }
    if (::ftruncate(descriptor.get(), static_cast<off_t>(content.size())) != 0) {
        fail("write", file);
    }
    if (::fsync(descriptor.get()) != 0) {
        fail("synchronise", file);
    }
}

void writeInPlace(const fs::path& file, std::string_view content) {
    const Descriptor descriptor(::open(file.c_str(), O_WRONLY | O_CLOEXEC));
    if (!descriptor) {
        fail("write", file);
    }
    write(descriptor, content, file);
}

/// Makes the renaming durable. Where the file system cannot do it, or the directory may not be
/// read, the renaming stands without.
void synchroniseDirectory(const fs::path& directory) {
    const Descriptor opened(::open(directory.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    if (opened ? ::fsync(opened.get()) != 0 && errno != EINVAL && errno != ENOTSUP
               : errno != EACCES) {
        fail("synchronise", directory);
    }
}

/// Removes the new file again unless it has taken the place of the old one.
class NewFile {
public:
    explicit NewFile(fs::path path) : name(std::move(path)) {}
    ~NewFile() {
        if (!placed) {
            ::unlink(name.c_str());
        }
    }
    NewFile(const NewFile&) = delete;
    NewFile& operator=(const NewFile&) = delete;

    /// False when something is mounted on the file.
    bool takePlaceOf(const fs::path& file, Irreplaceable otherwise) {
        if (::rename(name.c_str(), file.c_str()) != 0) {
            if (errno == EBUSY && otherwise == Irreplaceable::writeInPlace) {
                return false;
            }
            fail("replace", file);
        }
        placed = true;
        return true;
    }

private:
    fs::path name;
    bool placed = false;
};

/// The file that a path leads to, through symbolic links.
fs::path targetOf(const fs::path& named) {
    std::error_code error;
    const fs::path target = fs::canonical(named, error);
    return error ? fs::absolute(named) : target;
}

void rewrite(const fs::path& file, std::string_view content, Irreplaceable otherwise) {
    // Always the same name, so that an interrupted call leaves one file at most, for the next to
    // use.
    const fs::path newName = file.string() + ".new";
    const Descriptor descriptor(
        ::open(newName.c_str(), O_WRONLY | O_CREAT | O_NOFOLLOW | O_CLOEXEC, fileMode));
    if (!descriptor) {
        if (otherwise == Irreplaceable::fail || (errno != EROFS && errno != EACCES)) {
            fail("create", newName);
        }
        writeInPlace(file, content);
        return;
    }
    NewFile newFile(newName);
    if (::fchmod(descriptor.get(), fileMode) != 0) {
        fail("set the mode of", newName);
    }
    write(descriptor, content, newName);
    if (!newFile.takePlaceOf(file, otherwise)) {
        writeInPlace(file, content);
        return;
    }
    synchroniseDirectory(file.parent_path());
}

}  // namespace

void replaceFile(const fs::path& file, std::string_view content, Irreplaceable otherwise) {
    const fs::path target = targetOf(file);
    if (!holds(target, content)) {
        rewrite(target, content, otherwise);
    }
}

void rewriteFile(const fs::path& file, std::string_view content) {
    rewrite(targetOf(file), content, Irreplaceable::fail);
}

namespace {

/// The file itself comes first: should the process end in between, the next opening finds the log
/// without its file, which is a damage that it sees.
constexpr std::array<const char*, 4> suffixes{"", "-wal", "-journal", "-shm"};

fs::path withSuffix(const fs::path& file, const char* suffix) { return file.string() + suffix; }

/// A name that overwrites nothing.
fs::path freeName(const fs::path& file) {
    const std::string base = fmt::format(
        "{}.damaged-{:%Y%m%dT%H%M%SZ}", file.string(),
        fmt::gmtime(std::chrono::system_clock::to_time_t(std::chrono::system_clock::now())));
    const auto taken = [](const fs::path& name) {
        return std::any_of(suffixes.begin(), suffixes.end(), [&](const char* suffix) {
            return fs::exists(fs::symlink_status(withSuffix(name, suffix)));
        });
    };
    fs::path name = base;
    for (int number = 2; taken(name); ++number) {
        name = fmt::format("{}.{}", base, number);
    }
    return name;
}

}  // namespace

fs::path setAside(const fs::path& file) {
    fs::path name = freeName(file);
    for (const char* suffix : suffixes) {
        std::error_code error;
        fs::rename(withSuffix(file, suffix), withSuffix(name, suffix), error);
        if (error && error != std::errc::no_such_file_or_directory) {
            throw std::system_error(error, "cannot rename " + withSuffix(file, suffix).string());
        }
    }
    // Not every file system lets a directory be synchronised; the renaming stands without it.
    if (const Descriptor directory(::open(file.parent_path().c_str(), O_RDONLY | O_CLOEXEC));
        directory) {
        ::fsync(directory.get());
    }
    return name;
}

}  // namespace support
