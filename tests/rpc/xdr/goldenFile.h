#pragma once

#include "Record.h"

#include <filesystem>
#include <string>

/// Golden files: text, one 4-byte unit a line in hexadecimal, with a factor where equal units of
/// one character array follow each other, and what the unit carries. Lines that begin with # are
/// comments.
///
///     c0a80102        ipAddress
///     0000004d        name[0] 'M'
///     00000000 x97    name[3..99]

/// The file of a type.
std::filesystem::path goldenFile(const WireType& type);

/// The file's text for bytes that a filter made of the record: the bytes are the filter's, what
/// they mean is told from the record.
std::string goldenText(const Record& record, const Bytes& bytes);

/// The bytes that a file's text tells of. Throws std::runtime_error when it cannot be read.
Bytes goldenBytes(const std::string& text);
