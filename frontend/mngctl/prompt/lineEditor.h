#pragma once

#include <histedit.h>

#include <filesystem>
#include <memory>
#include <optional>
#include <string>

namespace mngctl {

/// Reads lines from the terminal on standard input, with editing, history and completion. The
/// user's ~/.editrc is honoured. One at a time may exist.
class LineEditor {
public:
    /// `historyFile` may be empty; a history that cannot be read or written is done without.
    LineEditor(std::string prompt, std::filesystem::path historyFile);
    LineEditor(const LineEditor&) = delete;
    LineEditor& operator=(const LineEditor&) = delete;

    /// The next line, without its end; empty after Ctrl-C; nothing at the end of the input.
    std::optional<std::string> read();

    /// Adds a line to the history and to its file.
    void remember(const std::string& line);

private:
    struct End {
        void operator()(EditLine* line) const { el_end(line); }
        void operator()(History* lines) const { history_end(lines); }
    };

    static char* promptOf(EditLine* line);
    static unsigned char complete(EditLine* line, int key);

    std::string promptText;
    std::filesystem::path file;
    std::unique_ptr<History, End> past;
    std::unique_ptr<EditLine, End> editor;
};

/// $XDG_STATE_HOME/mngctl/history, or the same in ~/.local/state; its directory is made if it is
/// missing. Empty if there is no home or no way to make it.
std::filesystem::path historyFile();

}  // namespace mngctl
