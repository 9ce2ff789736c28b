#pragma once

#include <sys/types.h>

#include <string>
#include <utility>
#include <vector>

/// A program that the test runs, with its standard output and error read by the test. It is killed
/// with the object, and with the test's process.
class Process {
public:
    using Environment = std::vector<std::pair<std::string, std::string>>;

    /// The program is looked up in PATH.
    explicit Process(std::vector<std::string> commandLine, const Environment& environment = {});
    ~Process();
    Process(const Process&) = delete;
    Process& operator=(const Process&) = delete;

    /// Reads until the text has been printed. False when the program, or a minute, has ended first.
    bool awaitOutput(const std::string& text);

    /// Reads until the program has ended. Returns its exit status, or minus the number of the
    /// signal that ended it. Throws after a minute.
    int awaitEnd();

    void signal(int number) const;

    pid_t id() const { return process; }

    /// All that has been read.
    const std::string& output() const { return text; }

private:
    /// Waits for output or end, and takes what is there. False after a minute without either.
    bool readMore();
    bool hasEnded() const;

    pid_t process = -1;
    int handle = -1;  ///< pidfd
    int pipe = -1;
    bool isReaped = false;
    std::string text;
};
