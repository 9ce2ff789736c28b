#pragma once

#include "support/Process.h"

#include <sys/types.h>

namespace test {

/// The port mapper itself. The constructors throw std::runtime_error when it does not answer.
class RealMapper {
public:
    RealMapper();

private:
    Process process;
};

/// Answers, but knows nothing and takes nothing.
class PowerlessMapper {
public:
    PowerlessMapper();
    ~PowerlessMapper();
    PowerlessMapper(const PowerlessMapper&) = delete;
    PowerlessMapper& operator=(const PowerlessMapper&) = delete;

private:
    const pid_t process;
};

/// Stands on the port mapper's port and answers nothing.
class SilentMapper {
public:
    SilentMapper();
    ~SilentMapper();
    SilentMapper(const SilentMapper&) = delete;
    SilentMapper& operator=(const SilentMapper&) = delete;

private:
    const int descriptor;
};

}  // namespace test
