#pragma once

#include "board/varo/link/Netlink.h"
#include "board/varo/settings/allSettings.h"

#include <fmt/format.h>

#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace varo {

// What the switches of both families' DHCP clients share.

/// What an update is made with.
inline constexpr std::uint32_t clientUpdateSelector = 2;

/// Has the keeper run this client. One that is not there yet is made; then `begin` puts the
/// interface into operation. Throws Failure.
template <class Keeper, class Begin>
void keepWith(const Library::Change& change, std::shared_ptr<Keeper> Keepers::* which,
              const std::vector<std::string>& command, Begin begin) {
    std::shared_ptr<Keeper>& keeper = change.keepers().*which;
    if (keeper) {
        keeper->want(command);
        return;
    }
    // It watches before the interface is looked for, so that none can come unseen.
    auto made = std::make_shared<Keeper>(change.configuration());
    made->want(command);
    Netlink netlink;
    const auto link = netlink.link(change.configuration().managementInterface);
    made->start(netlink, link);
    keeper = std::move(made);
    begin(netlink, link);
}

/// The update of a switch: what `store` stores and puts into force, and then the end of the client
/// before. Returns the result of the call.
template <class Record, class Keeper, class Store>
int updateClient(const char* call, const Record* dhcp, std::shared_ptr<Keeper> Keepers::* which,
                 const char* doesNotEnd, Store store) {
    return answer(call, [&] {
        const Record& record = required(dhcp);
        if (record.updateSelector != clientUpdateSelector) {
            throw Failure(invalidValue,
                          fmt::format("there is no update {}", record.updateSelector));
        }
        std::shared_ptr<Keeper> keeper;
        std::uint64_t wish = 0;
        {
            const auto change = Library::instance().change();
            store(change, record);
            keeper = change.keepers().*which;
            if (keeper) {
                wish = keeper->wish();
            }
        }
        if (keeper && !keeper->awaitSettled(wish)) {
            throw Failure(applyFailed, doesNotEnd);
        }
    });
}

}  // namespace varo
