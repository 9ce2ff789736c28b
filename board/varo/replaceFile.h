#pragma once

#include "board/support/replaceFile.h"

namespace varo {

/// Replaces a file of the machine, which a container engine may have mounted.
inline void replaceFile(const std::filesystem::path& file, std::string_view content) {
    board::replaceFile(file, content, board::Irreplaceable::writeInPlace);
}

}  // namespace varo
