#include "board/support/replaceFile.h"

#include "board/support/Descriptor.h"
#include "board/support/readFile.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <system_error>

namespace support {

namespace {

namespace fs = std::filesystem;

constexpr mode_t fileMode = S_IRUSR | S_IWUSR | S_IRGRP | S_IROTH;

[[noreturn]] void fail(const char* doing, const fs::path& file) {
    throw std::system_error(errno, std::generic_category(),
                            std::string("cannot ") + doing + " " + file.string());
}

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

}  // namespace support
