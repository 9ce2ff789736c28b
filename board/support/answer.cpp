#include "board/support/answer.h"

#include <fmt/format.h>

#include <exception>

namespace support {

int report(std::string_view call, int internalError, const Log& log) noexcept {
    try {
        try {
            throw;
        } catch (const Failure& failure) {
            log(failure.level(), fmt::format("{}: {}", call, failure.what()));
            return failure.code();
        } catch (const std::exception& error) {
            log(LOG_ERR, fmt::format("{}: {}", call, error.what()));
        } catch (...) {
            log(LOG_ERR, std::string(call));
        }
    } catch (...) {
        // The line is lost, the answer is not.
    }
    return internalError;
}

}  // namespace support
