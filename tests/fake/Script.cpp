#include "fake/Script.h"

namespace fake {

void Script::fail(const std::string& function, int result, int times, int skipped) {
    const std::lock_guard guard(mutex);
    failures[function] = {result, times, skipped};
}

int Script::failureOf(const std::string& function) {
    const std::lock_guard guard(mutex);
    const auto entry = failures.find(function);
    if (entry == failures.end()) {
        return 0;
    }
    if (entry->second.skipped > 0) {
        --entry->second.skipped;
        return 0;
    }
    const int result = entry->second.result;
    if (entry->second.times != forever && --entry->second.times == 0) {
        failures.erase(entry);
    }
    return result;
}

}  // namespace fake
