#pragma once

namespace web {

/// Closes all but the standard descriptors. The board's process starts programs through the shell,
/// and what it has open, such as the connections of its callers, is not to outlive it in them.
void closeInheritedDescriptors();

/// Takes the lock file, and keeps it until the process and those that it forked have ended. False
/// if another process has it. Throws std::system_error where the file cannot be made.
bool isOnlyOne(const char* lockFile);

}  // namespace web
