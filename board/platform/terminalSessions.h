#pragma once

namespace platform {

/// Limit on concurrent terminal sessions: what the factory sets, and what can be set at most.
inline constexpr unsigned int factoryTerminalSessions = 5;
inline constexpr unsigned int mostTerminalSessions = 64;

}  // namespace platform
