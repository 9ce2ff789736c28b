#pragma once

#include "Record.h"
#include "support/matchers.h"

/// Whether bytes of the wire are those of the record; if not, names the first field that differs.
testing::AssertionResult isEncodingOf(const Record& record, const Bytes& bytes);

/// Whether two records of a type have the same contents; bools are the same when both or neither
/// are zero.
testing::AssertionResult sameContents(const Record& expected, const Record& record);
