#pragma once

#include <sys/types.h>

#include <string>
#include <utility>
#include <vector>

namespace mngctl::test {

/// mngctl on a terminal of its own, a person's keyboard and eyes at the other end.
class Terminal {
public:
    /// Starts it with these words, and with these variables in its environment.
    Terminal(const std::vector<std::string>& words,
             const std::vector<std::pair<std::string, std::string>>& variables);
    ~Terminal();
    Terminal(const Terminal&) = delete;
    Terminal& operator=(const Terminal&) = delete;

    /// Types keys as they come from a keyboard: "\r" is Enter, "\t" Tab, "\x04" Ctrl-D.
    void type(const std::string& keys);
    /// Types keys and waits for what they bring.
    void type(const std::string& keys, const std::string& text);
    /// Types a line and Enter, and waits for what it brings and for the prompt after it.
    void enter(const std::string& line, const std::string& text);
    /// Types what ends mngctl; answers the exit code.
    int leave(const std::string& keys = "exit\r");

    /// Waits until the text appears after what was waited for last, and answers everything up to
    /// its end. Throws if it does not appear within 20 s.
    std::string waitFor(const std::string& text);

    /// Waits until mngctl has ended; answers its exit code, or the negated signal that ended it.
    /// Throws if it stays silent for 20 s without ending.
    int exitCode();

private:
    enum class Read { More, End, Nothing };
    Read readMore();

    pid_t child = -1;
    int master = -1;
    std::string seen;
};

}  // namespace mngctl::test
