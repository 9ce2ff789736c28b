#include "board/bridge/bridgeConfiguration.h"
#include "board/framework/Framework.h"
#include "board/switchboard/switchConfiguration.h"
#include "board/varo/varoConfiguration.h"
#include "contract/Environment.h"
#include "support/files.h"
#include "varo/varoLib.h"

#include <chrono>
#include <filesystem>
#include <optional>
#include <string>

namespace {

std::optional<TemporaryDirectory> state;

}  // namespace

Environment::Environment() {
    static bool isFirst = true;
    const std::filesystem::path stateDirectory = state.emplace().path();
    const auto dropLine = [](int, const std::string&) {};
    varo::configure({.stateDirectory = stateDirectory,
                     .resolverFile = {},
                     .log = dropLine,
                     .managementInterface = "mng0"});
    bridge::configure({.stateDirectory = {},
                       .filterTable = {},
                       .portName = [](int port) -> std::optional<std::string> {
                           if (port != 1) {
                               return std::nullopt;
                           }
                           return "mng0";
                       }});
    switchboard::configure({stateDirectory, dropLine});
    if (!isFirst) {
        // Once closed, the store answers again only after it was initialised.
        varoLibInit();
    }
    isFirst = false;
    framework::framework().configurationLock.setWaitLimit(std::chrono::milliseconds(50));
}

Environment::~Environment() {
    varoLibDestroy();
    state.reset();
}

Environment::Interface Environment::interface() { return {"lo", 0x7f000001, 0xff000000}; }
