#pragma once

#include "mngctl/wire/json.h"
#include "mngctl/wire/values.h"

#include <cstring>
#include <string>
#include <string_view>

namespace mngctl {

// What the board says, as text for people and as JSON.

inline std::string onOff(bool on) { return on ? "on" : "off"; }

/// The text in a field of a record, which may fill it.
template <std::size_t size>
std::string textOf(const char (&field)[size]) {
    return validUtf8({&field[0], ::strnlen(&field[0], size)});
}

/// The text, or null if there is none.
inline Json orNull(std::string text) { return text.empty() ? Json() : Json(std::move(text)); }

/// A text for the terminal.
inline std::string shown(const Json& text) { return printable(text.get_ref<const std::string&>()); }

/// The same, or "none" if there is none.
inline std::string orNone(const std::string& text) {
    return text.empty() ? "none" : printable(text);
}

/// Where the values of a resolver setting come from, as the board reports it.
std::string sourceName(int source);

// What the user says.

/// A number from 1 to `greatest`. Throws UsageError, which begins with what was `expected`.
unsigned parseUpTo(unsigned greatest, std::string_view expected, const std::string& text);

/// What is to be told of a name that the board keeps but shows in part only; empty for a shorter
/// one.
std::string tellCutName(std::string_view name);

}  // namespace mngctl
