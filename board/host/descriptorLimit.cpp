#include "board/host/descriptorLimit.h"

#include "board/host/StartFailure.h"

#include <sys/resource.h>
#include <sys/select.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <string>

namespace host {

void limitDescriptors() {
    rlimit limit{};
    if (getrlimit(RLIMIT_NOFILE, &limit) == 0) {
        limit.rlim_cur = std::min<rlim_t>(FD_SETSIZE, limit.rlim_max);
        if (setrlimit(RLIMIT_NOFILE, &limit) == 0) {
            return;
        }
    }
    throw StartFailure(std::string("cannot limit the number of descriptors: ") +
                       std::strerror(errno) + ".");
}

}  // namespace host
