#pragma once

#include "board/varo/store/Sqlite.h"
#include "board/varo/store/schema.h"
#include "board/varo/varoCodes.h"
#include "board/varo/varoConfiguration.h"

#include <filesystem>

namespace varo {

/// Opens the file of a record store, ready for reading and durable writing.
///
/// A file that is not there is created, one of an older version is upgraded in one transaction, and
/// a damaged one is set aside with a log line and replaced by a new one. A file of a newer version
/// is left as it is, and nothing works until an operator decides: factory values in its place could
/// open up what was closed. The same holds for a database that is no record store.
///
/// Throws Failure: newerFile, storageBusy, storageFailed.
sqlite::Database openStoreFile(const std::filesystem::path& file, const Schema& schema,
                               const Log& log);

/// What an error of SQLite means to the caller; `doing` says what could not be done.
Failure failureOf(const sqlite::Error& error, const std::string& doing);

}  // namespace varo
