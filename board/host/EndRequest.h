#pragma once

namespace host {

/// The wish that the process ends, raised by SIGINT, SIGTERM or the control program.
///
/// Signals are taken by handlers, not blocked and not ignored: commands that the process runs would
/// inherit a blocked or ignored signal, and could not be ended by it. One object for the process.
class EndRequest {
public:
    /// Installs the handlers; SIGPIPE is survived as well. Throws std::system_error.
    EndRequest();
    EndRequest(const EndRequest&) = delete;
    EndRequest& operator=(const EndRequest&) = delete;

    /// From any thread.
    void raise() const;

    /// Waits until it has been raised; returns at once from then on.
    void wait() const;
};

}  // namespace host
