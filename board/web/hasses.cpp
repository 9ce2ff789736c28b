// Stands in for the event server of a controller's web front end, so that the channel can be seen
// working: reads messages from a named pipe and pushes them to browsers as server-sent events over
// TLS. It owns the pipe and the two semaphores, and is ended by a signal.
//
//     hasses -p=PORT -murl=PATH [-ra] -fifo=PIPE -ssl -cert-file=PEM -privatekey-file=PEM
//
// It goes into the background once it is ready; its status then is 0. One runs at a time: another
// that is started beside it leaves the work to it, with status 0.

#include "board/web/EventLog.h"
#include "board/web/TlsServer.h"
#include "board/web/daemon.h"

#include <fcntl.h>
#include <semaphore.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <charconv>
#include <csignal>
#include <cstdio>
#include <map>
#include <stdexcept>
#include <string>
#include <system_error>
#include <thread>

namespace {

std::map<std::string, std::string> readOptions(int count, char** arguments) {
    std::map<std::string, std::string> options;
    for (int index = 1; index < count; ++index) {
        const std::string argument = arguments[index];
        const std::size_t equals = argument.find('=');
        options[argument.substr(0, equals)] =
            equals == std::string::npos ? "" : argument.substr(equals + 1);
    }
    for (const char* const needed : {"-p", "-murl", "-fifo", "-cert-file", "-privatekey-file"}) {
        if (!options.contains(needed)) {
            throw std::runtime_error(std::string("option ") + needed + " is missing");
        }
    }
    return options;
}

std::uint16_t portIn(const std::string& text) {
    std::uint16_t port = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), port);
    if (error != std::errc() || end != text.data() + text.size() || port == 0) {
        throw std::runtime_error("\"" + text + "\" is no port");
    }
    return port;
}

[[noreturn]] void fail(const std::string& what) {
    throw std::system_error(errno, std::generic_category(), what);
}

/// Opened for writing too, so that the last sender's leaving is no end of file.
int openPipe(const std::string& path) {
    if (mkfifo(path.c_str(), 0666) != 0 && errno != EEXIST) {
        fail("cannot make the pipe " + path);
    }
    const int pipe = open(path.c_str(), O_RDWR | O_CLOEXEC);
    if (pipe < 0) {
        fail("cannot open the pipe " + path);
    }
    return pipe;
}

sem_t* openSemaphore(const char* name) {
    sem_t* const semaphore = sem_open(name, O_CREAT, 0666, 0U);
    if (semaphore == SEM_FAILED) {
        fail(std::string("cannot open the semaphore ") + name);
    }
    return semaphore;
}

/// Messages end with a NUL. Each is counted by the semaphore of events.
void readMessages(int pipe, web::EventLog& log, sem_t* counter) {
    std::string message;
    char buffer[4096];
    for (;;) {
        const ssize_t count = read(pipe, buffer, sizeof buffer);
        for (ssize_t index = 0; index < count; ++index) {
            if (buffer[index] != '\0') {
                message += buffer[index];
            } else if (!message.empty()) {
                log.add(message);
                sem_post(counter);
                message.clear();
            }
        }
    }
}

/// The starter returns with status 0; what follows runs in the background.
void goIntoBackground() {
    const pid_t child = fork();
    if (child < 0) {
        fail("cannot start a process");
    }
    if (child > 0) {
        _exit(0);
    }
    setsid();
    const int nothing = open("/dev/null", O_RDWR);
    for (int standard = 0; standard <= 2; ++standard) {
        dup2(nothing, standard);
    }
    if (nothing > STDERR_FILENO) {
        close(nothing);
    }
}

void run(int count, char** arguments) {
    auto options = readOptions(count, arguments);
    std::signal(SIGPIPE, SIG_IGN);
    web::closeInheritedDescriptors();
    if (!web::isOnlyOne((options["-fifo"] + ".lock").c_str())) {
        _exit(0);
    }
    web::EventLog log;
    web::TlsServer server(portIn(options["-p"]),
                          {options["-cert-file"], options["-privatekey-file"]}, options["-murl"],
                          log);
    const int pipe = openPipe(options["-fifo"]);
    openSemaphore("hassesKpiSem");
    sem_t* const events = openSemaphore("hassesEventsSem");
    goIntoBackground();
    std::thread(readMessages, pipe, std::ref(log), events).detach();
    server.run();
}

}  // namespace

int main(int count, char** arguments) {
    try {
        run(count, arguments);
    } catch (const std::exception& error) {
        std::fprintf(stderr, "hasses: %s\n", error.what());
    }
    return 1;
}
