#include "mngctlRun.h"

#include "mngctl/application.h"

#include <fcntl.h>
#include <fmt/format.h>
#include <poll.h>
#include <sched.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <sstream>
#include <stdexcept>

namespace mngctl::test {

namespace {

[[noreturn]] void fail(const std::string& what) {
    throw std::runtime_error(what + ": " + std::strerror(errno));
}

/// Whether the descriptor can be read, its end included, within 20 s or the time that is given.
bool readable(int descriptor, int milliseconds = 20'000) {
    pollfd wait{descriptor, POLLIN, 0};
    int ready = 0;
    do {
        ready = ::poll(&wait, 1, milliseconds);
    } while (ready < 0 && errno == EINTR);
    return ready > 0;
}

std::string readAll(int descriptor) {
    std::string text;
    char buffer[4096];
    for (;;) {
        if (!readable(descriptor)) {
            throw std::runtime_error("a process does not end");
        }
        const ssize_t got = ::read(descriptor, buffer, sizeof buffer);
        if (got <= 0) {
            return text;
        }
        text.append(buffer, static_cast<std::size_t>(got));
    }
}

constexpr const char* blanks = " \n";

/// Where the piece of JSON ends that begins there: a text, a number or word, or a mark.
std::size_t endOfToken(const std::string& json, std::size_t begin) {
    if (json[begin] != '"') {
        const std::size_t end = json.find_first_of("{}[]:,\" \n", begin);
        return end == begin ? begin + 1 : end;
    }
    std::size_t at = begin + 1;
    while (json.at(at) != '"') {
        at += json[at] == '\\' ? 2 : 1;
    }
    return at + 1;
}

void enter(pid_t process, const char* kind) {
    const std::string path = "/proc/" + std::to_string(process) + "/ns/" + kind;
    const int descriptor = ::open(path.c_str(), O_RDONLY | O_CLOEXEC);
    if (descriptor < 0 || ::setns(descriptor, 0) != 0) {
        ::_exit(126);
    }
    ::close(descriptor);
}

/// Whoever runs the tests may have come in over SSH, which commands take notice of.
class NoWayIn : public testing::Environment {
    void SetUp() override { ::unsetenv("SSH_CONNECTION"); }
};
const testing::Environment* const noWayIn = testing::AddGlobalTestEnvironment(new NoWayIn);

/// Forks, prepares the child and has it run the program that the command names.
template <class Prepare>
pid_t start(std::vector<std::string> command, const Prepare& prepare) {
    const auto list = pointers(command);
    const pid_t child = ::fork();
    if (child < 0) {
        fail("fork");
    }
    if (child == 0) {
        prepare();
        ::execv(list[0], list.data());
        ::_exit(127);
    }
    return child;
}

}  // namespace

std::vector<char*> pointers(std::vector<std::string>& words) {
    std::vector<char*> list;
    list.reserve(words.size() + 1);
    for (std::string& word : words) {
        list.push_back(word.data());
    }
    list.push_back(nullptr);
    return list;
}

std::vector<std::string> documentedNouns() {
    std::ifstream document(MNGCTL_DOCUMENT);
    std::string line;
    while (std::getline(document, line) && !line.starts_with("|---")) {
    }
    std::vector<std::string> nouns;
    while (std::getline(document, line) && line.starts_with('|')) {
        std::istringstream noun(line.substr(1, line.find('|', 1)));
        for (std::string text; std::getline(noun, text, '`') && std::getline(noun, text, '`');) {
            nouns.push_back(text);
        }
    }
    return nouns;
}

std::vector<std::string> words(const std::string& line) {
    std::istringstream stream(line);
    return {std::istream_iterator<std::string>(stream), {}};
}

bool operator==(const Outcome& left, const Outcome& right) {
    return left.exit == right.exit && left.out == right.out && left.err == right.err;
}

std::ostream& operator<<(std::ostream& stream, const Outcome& outcome) {
    return stream << "exit " << static_cast<int>(outcome.exit) << "\n--- out\n"
                  << outcome.out << "--- err\n"
                  << outcome.err << "---";
}

std::string refusalOf(const std::function<void()>& action) {
    try {
        action();
        return "";
    } catch (const UsageError& error) {
        return error.what();
    }
}

std::string sampleOf(const std::string& type, unsigned place) {
    if (type == "on|off") {
        return place % 2 == 0 ? "on" : "off";
    }
    if (type == "integer") {
        return fmt::format("-{}", place + 1);
    }
    if (type == "unsigned") {
        return std::to_string(place + 1);
    }
    if (type == "IPv4") {
        return fmt::format("192.0.2.{}", place + 1);
    }
    if (type == "MAC") {
        return fmt::format("02:00:5e:10:00:{:02x}", place + 1);
    }
    if (type == "text") {
        return fmt::format("some text {}", place);
    }
    return type.substr(0, type.find('|'));
}

std::string laidOut(const std::string& json) {
    std::string text;
    std::size_t depth = 0;
    const auto beginLine = [&] { text.append(1, '\n').append(2 * depth, ' '); };
    for (std::size_t at = json.find_first_not_of(blanks); at != std::string::npos;
         at = json.find_first_not_of(blanks, at)) {
        const char mark = json[at];
        const std::size_t end = endOfToken(json, at);
        if (mark == '}' || mark == ']') {
            --depth;
            if (text.back() != '{' && text.back() != '[') {
                beginLine();
            }
        } else if (!text.empty() && std::strchr("{[,", text.back()) != nullptr) {
            beginLine();
        }
        text.append(json, at, end - at);
        if (mark == '{' || mark == '[') {
            ++depth;
        } else if (mark == ':') {
            text += ' ';
        } else if (depth == 0) {
            text += '\n';
        }
        at = end;
    }
    return text;
}

Outcome done(const std::string& out) { return {Exit::Done, out, ""}; }

Outcome failed(Exit exit, const std::string& sentence) {
    return {exit, "", "mngctl: " + sentence + "\n"};
}

Outcome refusedWith(const std::string& sentence) { return failed(Exit::Refused, sentence); }

Outcome wrongUsage(const std::string& sentence) { return failed(Exit::Usage, sentence); }

Outcome noAnswer(const std::string& sentence) { return failed(Exit::NoAnswer, sentence); }

Outcome run(const std::vector<std::string>& command, const std::string& input, bool terminal) {
    std::istringstream in(input);
    std::ostringstream out;
    std::ostringstream err;
    Outcome outcome;
    outcome.exit = runApplication(command, {in, out, err, terminal});
    outcome.out = out.str();
    outcome.err = err.str();
    return outcome;
}

std::string nameOfProtocol(const testing::TestParamInfo<Protocol>& protocol) {
    return protocol.param == Protocol::Tcp ? "Tcp" : "Udp";
}

Variable::Variable(std::string name, const std::string& value) : variable(std::move(name)) {
    ::setenv(variable.c_str(), value.c_str(), 1);
}

Variable::~Variable() { ::unsetenv(variable.c_str()); }

CannedBoard::CannedBoard(const std::vector<std::string>& options) {
    int pipe[2];
    if (::pipe2(pipe, O_CLOEXEC) != 0) {
        fail("pipe");
    }
    std::vector<std::string> command{CANNED_BOARD};
    command.insert(command.end(), options.begin(), options.end());
    child = start(command, [&] { ::dup2(pipe[1], STDOUT_FILENO); });
    ::close(pipe[1]);
    output = pipe[0];
    std::istringstream ports(readLine());
    ports >> tcpPort >> udpPort;
}

CannedBoard::~CannedBoard() {
    end();
    ::close(output);
}

void CannedBoard::end() {
    if (child < 0) {
        return;
    }
    ::kill(child, SIGKILL);
    ::waitpid(child, nullptr, 0);
    child = -1;
}

std::string CannedBoard::readLine() {
    for (;;) {
        const std::size_t end = buffered.find('\n');
        if (end != std::string::npos) {
            std::string line = buffered.substr(0, end);
            buffered.erase(0, end + 1);
            return line;
        }
        char buffer[65536];
        const ssize_t got = readable(output) ? ::read(output, buffer, sizeof buffer) : 0;
        if (got <= 0) {
            throw std::runtime_error("the canned board does not start");
        }
        buffered.append(buffer, static_cast<std::size_t>(got));
    }
}

std::vector<std::string> CannedBoard::requests() {
    // A request is told before it is answered, so all that were answered can be read by now.
    std::vector<std::string> lines;
    while (buffered.find('\n') != std::string::npos || readable(output, 0)) {
        lines.push_back(readLine());
    }
    return lines;
}

std::string CannedBoard::port(Protocol protocol) const {
    return protocol == Protocol::Tcp ? tcpPort : udpPort;
}

std::vector<std::string> CannedBoard::to(const std::vector<std::string>& command,
                                         Protocol protocol) const {
    std::vector<std::string> all{protocol == Protocol::Tcp ? "--tcp" : "--udp",
                                 "--port",
                                 port(protocol),
                                 "--control-port",
                                 port(protocol),
                                 "--timeout",
                                 "10"};
    all.insert(all.end(), command.begin(), command.end());
    return all;
}

Outcome CannedBoard::run(const std::string& line, Protocol protocol) const {
    return test::run(to(words(line), protocol));
}

Outcome CannedBoard::run(const std::vector<std::string>& command, Protocol protocol) const {
    return test::run(to(command, protocol));
}

Outcome CannedBoard::runInside(const std::string& line) const {
    int out[2];
    int err[2];
    if (::pipe2(out, O_CLOEXEC) != 0 || ::pipe2(err, O_CLOEXEC) != 0) {
        fail("pipe");
    }
    std::vector<std::string> command = words(line);
    command.insert(command.begin(), MNGCTL);
    const pid_t process = start(command, [&] {
        if (::geteuid() != 0) {
            enter(child, "user");
        }
        enter(child, "net");
        ::dup2(out[1], STDOUT_FILENO);
        ::dup2(err[1], STDERR_FILENO);
    });
    ::close(out[1]);
    ::close(err[1]);
    Outcome outcome;
    outcome.out = readAll(out[0]);
    outcome.err = readAll(err[0]);
    ::close(out[0]);
    ::close(err[0]);
    int status = 0;
    ::waitpid(process, &status, 0);
    if (!WIFEXITED(status)) {
        throw std::runtime_error("mngctl was ended by a signal");
    }
    outcome.exit = static_cast<Exit>(WEXITSTATUS(status));
    return outcome;
}

}  // namespace mngctl::test
