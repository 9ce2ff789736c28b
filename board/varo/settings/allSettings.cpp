#include "board/varo/settings/allSettings.h"

#include "board/varo/store/schema.h"

#include <exception>

namespace varo {

const std::vector<const AnySetting*>& allSettings() {
    static const auto& all = *new std::vector<const AnySetting*>{
#define SETTING(type, name) &name(),
#include "board/varo/settings/allSettings.def"
#undef SETTING
    };
    return all;
}

const Schema& schema() {
    static const auto& made = []() -> const Schema& {
        auto& own = *new Schema{};
        for (const AnySetting* setting : allSettings()) {
            own.tables.push_back(setting->table);
        }
        return own;
    }();
    return made;
}

void applyAll(const Library::Change& change) {
    std::exception_ptr failure;
    for (const AnySetting* setting : allSettings()) {
        if (setting->withNext) {
            continue;
        }
        try {
            setting->apply(change);
        } catch (...) {
            if (failure) {
                guarded("varoLib", [&] { std::rethrow_exception(failure); });
            }
            failure = std::current_exception();
        }
    }
    if (failure) {
        std::rethrow_exception(failure);
    }
}

}  // namespace varo
