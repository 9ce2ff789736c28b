#pragma once

#include "fake/Platform.h"
#include "fake/describe.h"

#include <optional>
#include <string>

namespace fake {

// Calls on a group of settings that is one record. A call without a record is refused, whatever the
// script says.

inline constexpr int refused = 1;

/// Writes down a call that is refused for its arguments.
inline int refuse(const std::string& function, const std::string& arguments) {
    Platform::current().journal.write(function + "(" + arguments + ") -> refused");
    return refused;
}

/// A read that fails may leave something else behind.
template <class Record>
int readWhole(const char* function, const Record& state, Record* record,
              const std::optional<Record>& leftByFailure = std::nullopt) {
    if (record == nullptr) {
        return refuse(function, "null");
    }
    const int status = Platform::current().call(function, "", [&] {
        *record = state;
        return describe(*record);
    });
    if (status != 0 && leftByFailure) {
        *record = *leftByFailure;
    }
    return status;
}

template <class Record>
int updateWhole(const char* function, Record& state, const Record* record) {
    if (record == nullptr) {
        return refuse(function, "null");
    }
    return Platform::current().call(function, describe(*record), [&] { state = *record; });
}

}  // namespace fake

/// Defines the three calls on a group: its name, the type of its record, where it is kept and what
/// the factory values are.
#define WHOLE_RECORD(group, Record, kept, made)                                                    \
    int varoGet##group(Record* record) { return fake::readWhole("varoGet" #group, kept, record); } \
    int varoUpdate##group(Record* record) {                                                        \
        return fake::updateWhole("varoUpdate" #group, kept, record);                               \
    }                                                                                              \
    int varoDef##group(Record* record) { return fake::readWhole("varoDef" #group, made, record); }
