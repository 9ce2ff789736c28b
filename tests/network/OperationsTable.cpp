// The table of operations is whole: what the library offers has a row, and what it asks for is
// reached by one.

#include "load/symbolLists.h"
#include "network/operations.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <regex>
#include <set>
#include <sstream>

namespace {

using Names = std::set<std::string>;

TEST(OperationsTable, HasARowForEveryExportedFunction) {
    Names inTable;
    for (const Operation& operation : exportedOperations()) {
        EXPECT_TRUE(inTable.insert(operation.call.name).second) << operation.name();
    }
    EXPECT_THAT(inTable, testing::ElementsAreArray(exportedFunctionNames()));
}

/// What no operation calls: the life of the library and of the entity, the threads, the component
/// lists, a failure's consequences, and what the compiler makes of a class.
const Names reachedElsewhere = {"ACLContainer",
                                "BLEntity",
                                "aclContainer",
                                "getName",
                                "hasSink",
                                "instance",
                                "operator<<",
                                "registerEntity",
                                "registerThread",
                                "setMsgLevel",
                                "sysConfigGetSwVersion",
                                "typeinfo for BLEntity",
                                "varoGetMyBoardPos",
                                "varoLibDestroy",
                                "varoLibInit",
                                "writeImpl",
                                "zuOMTable"};

/// A function's name without its scope, for a symbol or a word of a good run.
std::string bareName(const std::string& symbol) {
    const std::string name = symbol.substr(0, symbol.find_first_of("([=?"));
    return std::regex_replace(name.substr(name.rfind(':') + 1), std::regex("^~|_t$"), "");
}

TEST(OperationsTable, ReachesEveryImportedCall) {
    Names reached = reachedElsewhere;
    for (const Operation& operation : operations()) {
        std::istringstream words(operation.goodRun);
        for (std::string word; words >> word;) {
            EXPECT_FALSE(reachedElsewhere.contains(bareName(word))) << word;
            reached.insert(bareName(word));
        }
    }
    for (const std::string& symbol : listedSymbols("imports.txt")) {
        EXPECT_TRUE(reached.contains(bareName(symbol))) << symbol;
    }
}

}  // namespace
