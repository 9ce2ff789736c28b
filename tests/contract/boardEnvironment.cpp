#include "board/framework/Framework.h"
#include "board/varo/Configuration.h"
#include "contract/Environment.h"
#include "varo/varoLib.h"

#include <chrono>
#include <cstdlib>
#include <filesystem>
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
    varo::configure({stateDirectory, {}, [](int, const std::string&) {}});
    if (!isFirst) {
        // Once closed, the store answers again only after it was initialised.
        varoLibInit();
    }
    isFirst = false;
    board::framework().configurationLock.setWaitLimit(std::chrono::milliseconds(50));
}

Environment::~Environment() {
    varoLibDestroy();
    std::filesystem::remove_all(stateDirectory);
}

Environment::Interface Environment::interface() { return {"lo", 0x7f000001, 0xff000000}; }
