#pragma once

#include <filesystem>
#include <functional>
#include <string>

namespace daemontest {

/// Waits until the condition holds, up to half a minute.
bool eventually(const std::function<bool()>& condition);

std::string contentOf(const std::filesystem::path& file);
/// An executable script of the shell.
void writeScript(const std::filesystem::path& file, const std::string& body);
/// The number of lines of a file that may not be there yet.
long linesOf(const std::filesystem::path& file);

}  // namespace daemontest
