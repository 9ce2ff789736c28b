// The calls are whole: every exported function has a procedure that calls it.

#include "calls/ProcedureCall.h"
#include "load/symbolLists.h"

#include <set>

namespace {

TEST(ProcedureCalls, ReachEveryExportedFunction) {
    std::set<std::string> reached;
    for (const ProcedureCall& call : procedureCalls()) {
        if (call.filling != Filling::none) {
            reached.insert(call.function());
        }
    }
    EXPECT_THAT(reached, ElementsAreArray(exportedFunctionNames()));
}

}  // namespace
