#include "board/web/daemon.h"

#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

#include <cerrno>
#include <string>
#include <system_error>

namespace web {

void closeInheritedDescriptors() { close_range(STDERR_FILENO + 1, ~0U, 0); }

bool isOnlyOne(const char* lockFile) {
    const int file = open(lockFile, O_RDWR | O_CREAT | O_CLOEXEC, 0644);
    if (file < 0) {
        throw std::system_error(errno, std::generic_category(),
                                std::string("cannot make the lock file ") + lockFile);
    }
    if (flock(file, LOCK_EX | LOCK_NB) == 0) {
        return true;
    }
    close(file);
    return false;
}

}  // namespace web
