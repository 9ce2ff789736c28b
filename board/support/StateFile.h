#pragma once

#include "board/support/LogChannel.h"
#include "board/support/wholeFile.h"

#include <nlohmann/json_fwd.hpp>

#include <cstdint>
#include <filesystem>
#include <functional>
#include <stdexcept>
#include <string>
#include <utility>

namespace support {

/// A document was written by a later release.
class NewerDocument : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

/// Of documents without a version.
enum class Unversioned { damaged, first };

/// A JSON document of at most this version, which is its member `version`. Throws NewerDocument for
/// a higher one; std::exception, saying what is wrong, for a text that is no such document.
nlohmann::json parseDocument(const std::string& text, std::uint64_t version,
                             Unversioned other = Unversioned::damaged);

/// A member that is a number from 0 on. Throws std::exception for anything else.
std::uint64_t numberIn(const nlohmann::json& object, const char* name, std::uint64_t highest);

/// How a state file keeps content of a type.
template <class Content>
struct StateFormat {
    const char* fileName;
    /// The log line about a damaged file, for fmt::format with its name, {file}, the {reason}, and
    /// where it is kept: {kept}, without directory {keptName}.
    const char* damageText;
    /// Throws NewerDocument, and std::exception with the reason for a damaged text.
    Content (*parse)(const std::string& text);
    std::string (*format)(const Content& content);
};

/// Hands the text of the file, if there is one, to `parse`. A file that this refuses is damaged: it
/// is set aside, and said. One of a later release stays as it is, since values from the factory in
/// its place could open up what was closed. Throws NewerDocument for that one, with what to do
/// about it, and std::system_error when the file can be neither read nor set aside.
void readState(const std::filesystem::path& file, const char* damageText,
               const std::function<void(const std::string& text)>& parse, const Log& log);

/// Content that is kept across restarts in a file of a state directory. Until it is opened it is
/// factory content, which a default-constructed one is, and kept in memory only.
template <class Content>
class StateFile {
public:
    explicit StateFile(const StateFormat<Content>& given) : format(&given) {}

    /// Takes the content from the file; from now on changes are stored there. With an empty name of
    /// the directory they are not. Throws as readState; nothing has changed then.
    void open(const std::filesystem::path& directory, const Log& log) {
        StateFile opened(*format);
        if (!directory.empty()) {
            opened.file = directory / format->fileName;
            readState(
                opened.file, format->damageText,
                [&](const std::string& text) { opened.current = format->parse(text); }, log);
        }
        *this = std::move(opened);
    }

    /// Empty: kept in memory only.
    const std::filesystem::path& path() const { return file; }
    const Content& content() const { return current; }

    /// Makes this the content: when it returns, it is on the disk. It is also written when nothing
    /// changes, which tells whether it could be. Throws std::system_error; the old content stays.
    void store(Content changed) {
        if (!file.empty()) {
            rewriteFile(file, format->format(changed));
        }
        current = std::move(changed);
    }

    /// Makes this the content in memory. The file holds it already, in other words.
    void adopt(Content same) { current = std::move(same); }

private:
    const StateFormat<Content>* format;
    std::filesystem::path file;
    Content current{};
};

}  // namespace support
