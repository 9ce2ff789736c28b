#pragma once

#include "mngctl/outcome.h"
#include "mngctl/settings.h"
#include "support/files.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/types.h>

#include <functional>
#include <initializer_list>
#include <string>
#include <vector>

namespace mngctl::test {

/// Words of a command line, split at blanks.
std::vector<std::string> words(const std::string& line);

/// The words as execv(3) takes them.
std::vector<char*> pointers(std::vector<std::string>& words);

/// The first words of all commands, as the table of docs/mngctl.md has them: those of the prompt
/// alone, exit and quit, come last.
std::vector<std::string> documentedNouns();

/// How a run of mngctl ended and what it wrote.
struct Outcome {
    Exit exit = Exit::Done;
    std::string out;
    std::string err;
};

bool operator==(const Outcome& left, const Outcome& right);
std::ostream& operator<<(std::ostream& stream, const Outcome& outcome);

/// A success that wrote this and no more.
Outcome done(const std::string& out);
/// A failure that wrote nothing to its output and this sentence to its errors.
Outcome failed(Exit exit, const std::string& sentence);
Outcome refusedWith(const std::string& sentence);
Outcome wrongUsage(const std::string& sentence);
Outcome noAnswer(const std::string& sentence);

/// JSON as mngctl writes it, however the blanks lie between the values that are given: two blanks
/// before a member for each level, and a line end behind each document.
std::string laidOut(const std::string& json);

/// The sentence of the UsageError that the action ends in; empty if it ends in none.
std::string refusalOf(const std::function<void()>& action);

/// A text that is right for a field of a procedure's argument, by its place among them and by the
/// type that the description names.
std::string sampleOf(const std::string& type, unsigned place);

/// Runs mngctl in this process.
Outcome run(const std::vector<std::string>& words, const std::string& input = "",
            bool terminal = false);

/// For suites that run over either protocol.
inline const auto bothProtocols = testing::Values(Protocol::Tcp, Protocol::Udp);
std::string nameOfProtocol(const testing::TestParamInfo<Protocol>& protocol);

/// Sets a variable of the environment for as long as it lives.
class Variable {
public:
    Variable(std::string name, const std::string& value);
    ~Variable();
    Variable(const Variable&) = delete;
    Variable& operator=(const Variable&) = delete;

private:
    std::string variable;
};

/// A process of the canned board. It ends with this object.
class CannedBoard {
public:
    explicit CannedBoard(const std::vector<std::string>& options = {});
    ~CannedBoard();
    CannedBoard(const CannedBoard&) = delete;
    CannedBoard& operator=(const CannedBoard&) = delete;

    std::string port(Protocol protocol = Protocol::Tcp) const;

    /// The options that lead to this board, and the words after them.
    std::vector<std::string> to(const std::vector<std::string>& command,
                                Protocol protocol = Protocol::Tcp) const;

    /// Runs mngctl against this board.
    Outcome run(const std::string& line, Protocol protocol = Protocol::Tcp) const;
    Outcome run(const std::vector<std::string>& command, Protocol protocol = Protocol::Tcp) const;

    /// Runs the built mngctl in the network of this board.
    Outcome runInside(const std::string& line) const;

    /// The requests since the last look, which have all been answered.
    std::vector<std::string> requests();

    /// Ends the process now.
    void end();

private:
    std::string readLine();

    pid_t child = -1;
    int output = -1;
    std::string buffered;
    std::string tcpPort;
    std::string udpPort;
};

}  // namespace mngctl::test
