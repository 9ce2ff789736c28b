#include "board/bridge/Configuration.h"
#include "board/framework/Framework.h"
#include "board/switchboard/Configuration.h"
#include "board/varo/Configuration.h"
#include "contract/Environment.h"
#include "varo/varoLib.h"

#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <optional>
#include <stdexcept>
#include <string>

namespace {

std::filesystem::path stateDirectory;

std::filesystem::path makeDirectory() {
    std::string path = (std::filesystem::temp_directory_path() / "contract-XXXXXX").string();
    if (mkdtemp(path.data()) == nullptr) {
        throw std::runtime_error("cannot make " + path);
    }
    return path;
}

}  // namespace

Environment::Environment() {
    static bool isFirst = true;
    stateDirectory = makeDirectory();
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
    std::filesystem::remove_all(stateDirectory);
}

Environment::Interface Environment::interface() { return {"lo", 0x7f000001, 0xff000000}; }
