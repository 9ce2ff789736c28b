#pragma once

#include "board/varo/settings/allSettings.h"
#include "board/varo/store/RecordStore.h"
#include "board/varo/varoCodes.h"
#include "tests/board/varo/VaroTest.h"

#include <functional>

namespace varotest {

/// The file of a store, past the library's calls.
class StoreTest : public testing::Test {
protected:
    varo::RecordStore open(const varo::Schema& schema = varo::schema()) {
        return {file, schema, log.receiver()};
    }

    TemporaryDirectory directory;
    const std::filesystem::path file = directory.path() / "varo.db";
    LogLines log;
};

/// How the body fails. If it does not, the test does.
inline varo::Failure failureOf(const std::function<void()>& body) {
    try {
        body();
    } catch (const varo::Failure& failure) {
        return failure;
    }
    ADD_FAILURE() << "nothing failed";
    return {varo::success, "nothing"};
}

}  // namespace varotest
