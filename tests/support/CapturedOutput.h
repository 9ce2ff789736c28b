#pragma once

#include <string>

/// While alive, keeps what the process writes to its standard output.
class CapturedOutput {
public:
    CapturedOutput();
    ~CapturedOutput();
    CapturedOutput(const CapturedOutput&) = delete;
    CapturedOutput& operator=(const CapturedOutput&) = delete;

    /// What was written since the last call.
    std::string take();

private:
    int original;
    int file;
};
