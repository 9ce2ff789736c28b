#pragma once

#include <stdexcept>
#include <string>

namespace mngctl {

/// How a command ends, which is also the exit code of the program.
enum class Exit : int {
    Done = 0,
    Refused = 1,   ///< the board answered, and the answer is no
    Usage = 2,     ///< the command line is wrong, or consent is missing; nothing was changed
    NoAnswer = 3,  ///< no answer, or none that can be read
};

/// A command that did not succeed. The text is a sentence for the user, without a final newline.
class Failure : public std::runtime_error {
public:
    Failure(Exit exitCode, const std::string& text) : std::runtime_error(text), code(exitCode) {}
    Exit exit() const { return code; }

private:
    Exit code;
};

struct Refused : Failure {
    explicit Refused(const std::string& text) : Failure(Exit::Refused, text) {}
};

struct UsageError : Failure {
    explicit UsageError(const std::string& text) : Failure(Exit::Usage, text) {}
};

struct NoAnswer : Failure {
    explicit NoAnswer(const std::string& text) : Failure(Exit::NoAnswer, text) {}
};

}  // namespace mngctl
