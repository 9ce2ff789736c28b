#include "mngctl/prompt/lineEditor.h"

#include "mngctl/prompt/completion.h"

#include <poll.h>
#include <sys/ioctl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <cwchar>
#include <stdexcept>
#include <string_view>

namespace mngctl {

namespace {

constexpr int historyLines = 1000;

volatile std::sig_atomic_t interrupted = 0;

extern "C" void noteInterrupt(int /*signal*/) { interrupted = 1; }

/// While it lives, Ctrl-C is held back, to be let in only while keys are waited for: there it
/// cannot slip in between a look at the flag and the wait.
class InterruptNote {
public:
    InterruptNote() {
        interrupted = 0;
        struct sigaction note{};
        note.sa_handler = noteInterrupt;
        ::sigaction(SIGINT, &note, &actionBefore);
        sigset_t interrupt;
        ::sigemptyset(&interrupt);
        ::sigaddset(&interrupt, SIGINT);
        ::pthread_sigmask(SIG_BLOCK, &interrupt, &maskBefore);
    }
    ~InterruptNote() {
        ::pthread_sigmask(SIG_SETMASK, &maskBefore, nullptr);
        ::sigaction(SIGINT, &actionBefore, nullptr);
    }
    InterruptNote(const InterruptNote&) = delete;
    InterruptNote& operator=(const InterruptNote&) = delete;

private:
    struct sigaction actionBefore{};
    sigset_t maskBefore{};
};

/// Waits for a byte from the keyboard and reads it. Answers 1, 0 at the end, or -1 with errno.
int readByte(char& byte) {
    sigset_t mask;
    ::pthread_sigmask(SIG_SETMASK, nullptr, &mask);
    ::sigdelset(&mask, SIGINT);
    for (;;) {
        pollfd wait{STDIN_FILENO, POLLIN, 0};
        if (::ppoll(&wait, 1, nullptr, &mask) > 0) {
            return static_cast<int>(::read(STDIN_FILENO, &byte, 1));
        }
        if (errno != EINTR || interrupted != 0) {
            return -1;
        }
    }
}

/// Reads a character for the line editor, in the encoding of the locale.
int readCharacter(EditLine* /*line*/, wchar_t* character) {
    std::mbstate_t state{};
    for (;;) {
        char byte = 0;
        const int got = readByte(byte);
        if (got != 1) {
            return got;
        }
        const std::size_t length = std::mbrtowc(character, &byte, 1, &state);
        constexpr auto incomplete = static_cast<std::size_t>(-2);
        if (length <= 1) {
            return 1;
        }
        if (length != incomplete) {
            state = {};  // no character begins like this: it is dropped
        }
    }
}

std::size_t terminalWidth() {
    winsize size{};
    return ::ioctl(STDOUT_FILENO, TIOCGWINSZ, &size) == 0 && size.ws_col > 0 ? size.ws_col : 80;
}

}  // namespace

LineEditor::LineEditor(std::string prompt, std::filesystem::path historyPath)
    : promptText(std::move(prompt)),
      file(std::move(historyPath)),
      past(history_init()),
      editor(el_init("mngctl", stdin, stdout, stderr)) {
    if (!past || !editor) {
        throw std::runtime_error("the line editor cannot be set up on this terminal");
    }
    HistEvent event{};
    history(past.get(), &event, H_SETSIZE, historyLines);
    history(past.get(), &event, H_SETUNIQUE, 1);
    if (!file.empty()) {
        history(past.get(), &event, H_LOAD, file.c_str());
    }
    el_set(editor.get(), EL_CLIENTDATA, this);
    el_set(editor.get(), EL_PROMPT, &LineEditor::promptOf);
    el_set(editor.get(), EL_EDITOR, "emacs");
    el_set(editor.get(), EL_HIST, history, past.get());
    // The wide form keeps the texts; the other would copy them and lose the copies.
    el_wset(editor.get(), EL_ADDFN, L"mngctl-complete", L"Complete a command",
            &LineEditor::complete);
    el_set(editor.get(), EL_BIND, "^I", "mngctl-complete", nullptr);
    el_set(editor.get(), EL_GETCFN, readCharacter);
    // Search in the history, as in a shell.
    el_set(editor.get(), EL_BIND, "^R", "em-inc-search-prev", nullptr);
    el_source(editor.get(), nullptr);
}

char* LineEditor::promptOf(EditLine* line) {
    LineEditor* self = nullptr;
    el_get(line, EL_CLIENTDATA, &self);
    return self->promptText.data();
}

unsigned char LineEditor::complete(EditLine* line, int /*key*/) {
    try {
        const LineInfo* const info = el_line(line);
        const Completion completion = completeLine(
            std::string_view(info->buffer, static_cast<std::size_t>(info->cursor - info->buffer)));
        if (completion.candidates.empty()) {
            return CC_REFRESH_BEEP;
        }
        if (!completion.insert.empty()) {
            return el_insertstr(line, completion.insert.c_str()) == 0 ? CC_REFRESH : CC_ERROR;
        }
        std::printf("\n%s", inColumns(completion.candidates, terminalWidth()).c_str());
        std::fflush(stdout);
        return CC_REDISPLAY;
    } catch (const std::exception&) {
        return CC_ERROR;
    }
}

std::optional<std::string> LineEditor::read() {
    const InterruptNote note;
    // Before the prompt shows: Ctrl-D would have another meaning to a terminal not yet set up.
    el_set(editor.get(), EL_PREP_TERM, 1);
    int length = 0;
    const char* const line = el_gets(editor.get(), &length);
    if (line == nullptr || length <= 0) {
        if (interrupted == 0) {
            return std::nullopt;
        }
        std::puts("^C");
        return "";
    }
    std::string_view text(line, static_cast<std::size_t>(length));
    while (text.ends_with('\n') || text.ends_with('\r')) {
        text.remove_suffix(1);
    }
    return std::string(text);
}

void LineEditor::remember(const std::string& line) {
    HistEvent event{};
    history(past.get(), &event, H_ENTER, line.c_str());
    if (!file.empty()) {
        history(past.get(), &event, H_SAVE, file.c_str());
    }
}

std::filesystem::path historyFile() {
    const auto variable = [](const char* name) {
        const char* const value = std::getenv(name);
        return std::filesystem::path(value == nullptr ? "" : value);
    };
    std::filesystem::path state = variable("XDG_STATE_HOME");
    // A relative path is to be ignored (XDG base directories).
    if (!state.is_absolute()) {
        if (!variable("HOME").is_absolute()) {
            return {};
        }
        state = variable("HOME") / ".local" / "state";
    }
    const std::filesystem::path directory = state / "mngctl";
    std::error_code error;
    if (std::filesystem::create_directories(directory, error)) {
        std::filesystem::permissions(directory, std::filesystem::perms::owner_all, error);
    }
    return error ? std::filesystem::path() : directory / "history";
}

}  // namespace mngctl
