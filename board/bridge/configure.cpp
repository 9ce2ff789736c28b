#include "board/bridge/AccessLists.h"
#include "board/bridge/Configuration.h"
#include "board/framework/Framework.h"

#include <utility>

namespace bridge {

void configure(Configuration configuration) {
    AccessLists::instance().configure(std::move(configuration));
    framework::framework().ruleCounters = [] { return AccessLists::instance().counters(); };
}

void replayRemoteAccessRules(const AddRemoteAccessRule& add) {
    AccessLists::instance().replay(add);
}

}  // namespace bridge
