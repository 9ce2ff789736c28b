#pragma once

#include <cstdio>
#include <functional>
#include <map>
#include <set>
#include <string>

namespace fake {

/// What a command prints, and the status that waiting for it returns.
struct CommandOutput {
    std::string text;
    int status = 0;
};

/// The programs and files of the board that are reached by command lines and absolute paths. No
/// command is run.
struct Programs {
    /// By command line: what system(3) does besides being written down.
    std::map<std::string, std::function<void()>> actions;
    /// By command line: what popen(3) reads.
    std::map<std::string, CommandOutput> outputs;
    /// Those of the board's files that exist.
    std::set<std::string> files;

    /// Command lines of the streams that are open.
    std::map<std::FILE*, std::string> streams;
};

}  // namespace fake
