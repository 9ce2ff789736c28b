#include "tests/board/varo/SyncedImage.h"

#include "support/files.h"

#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <cerrno>
#include <climits>
#include <mutex>
#include <string>

namespace varotest {

namespace {

namespace fs = std::filesystem;

std::mutex mutex;  ///< protects what follows
fs::path watchedDirectory;
fs::path imageDirectory;

/// Reads through the given descriptor: another one of the file, once closed, would end SQLite's
/// locks.
std::string contentOf(int descriptor, off_t size) {
    std::string content(static_cast<std::size_t>(size), '\0');
    std::size_t done = 0;
    while (done < content.size()) {
        const ssize_t count = ::pread(descriptor, content.data() + done, content.size() - done,
                                      static_cast<off_t>(done));
        if (count <= 0) {
            break;
        }
        done += static_cast<std::size_t>(count);
    }
    content.resize(done);
    return content;
}

/// A synchronised directory has forgotten its removed files for good.
void forgetRemovedFiles() {
    for (const std::string& name : filesIn(imageDirectory)) {
        if (!fs::exists(watchedDirectory / name)) {
            fs::remove(imageDirectory / name);
        }
    }
}

void keepContent(int descriptor) {
    const std::lock_guard lock(mutex);
    if (watchedDirectory.empty()) {
        return;
    }
    char name[PATH_MAX];
    const std::string link = "/proc/self/fd/" + std::to_string(descriptor);
    const ssize_t length = ::readlink(link.c_str(), name, sizeof name);
    struct stat status{};
    if (length < 0 || ::fstat(descriptor, &status) != 0) {
        return;
    }
    const fs::path file(std::string(name, static_cast<std::size_t>(length)));
    if (file == watchedDirectory) {
        forgetRemovedFiles();
    } else if (file.parent_path() == watchedDirectory) {
        writeFile(imageDirectory / file.filename(), contentOf(descriptor, status.st_size));
    }
}

int synchronise(long call, int descriptor) {
    const int result = static_cast<int>(::syscall(call, descriptor));
    const int error = errno;
    if (result == 0) {
        keepContent(descriptor);
    }
    errno = error;
    return result;
}

}  // namespace

SyncedImage::SyncedImage(const fs::path& watched, const fs::path& image) {
    const std::lock_guard lock(mutex);
    watchedDirectory = fs::canonical(watched);
    imageDirectory = image;
}

SyncedImage::~SyncedImage() {
    const std::lock_guard lock(mutex);
    watchedDirectory.clear();
}

}  // namespace varotest

// These go before the C library's own, in calls from SQLite as well.
extern "C" int fsync(int descriptor) { return varotest::synchronise(SYS_fsync, descriptor); }
extern "C" int fdatasync(int descriptor) {
    return varotest::synchronise(SYS_fdatasync, descriptor);
}
