#pragma once

#include "board/framework/ManagerLoop.h"
#include "board/host/EndRequest.h"
#include "board/host/Options.h"
#include "board/host/boardServices.h"

namespace host {

/// A run of the process, from its surroundings to its end.
class Host {
public:
    explicit Host(Options options);
    Host(const Host&) = delete;
    Host& operator=(const Host&) = delete;

    /// Checks the surroundings and loads the library; nothing runs yet. Throws StartFailure.
    void prepare();

    /// Starts entities and main loop. Throws StartFailure; what has been started runs on.
    void start();

    /// Waits until the process is asked to end.
    void wait() const;

    /// Stops the main loop and the entities, in bounded time: what does not end is left behind.
    void stop();

private:
    const Options options;
    const EndRequest endRequest;
    framework::ManagerLoop mainLoop;
    BoardServices services;
    void* library = nullptr;  ///< as dlopen returned it
};

}  // namespace host
