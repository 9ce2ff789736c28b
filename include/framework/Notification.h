#pragma once

#include <boost/function.hpp>

#include <algorithm>
#include <mutex>
#include <utility>
#include <vector>

namespace Notification {

/// An event with two ordered lists of handlers. Pre-handlers are asked before something changes and
/// answer yes or no; post-handlers are told after it changed. What a "no" means is the business of
/// whoever fires the event.
///
/// Handlers run on the firing thread, in the order of subscription, without any lock of the event
/// held: a handler may subscribe and unsubscribe, which takes effect from the next firing on. An
/// empty handler raises boost::bad_function_call ("call to empty boost::function").
template <class... Args>
class Event {
public:
    using PreHandler = boost::function<bool(Args...)>;
    using PostHandler = boost::function<void(Args...)>;

    Event() = default;
    Event(const Event&) = delete;
    Event& operator=(const Event&) = delete;

    void subscribePre(PreHandler handler) { add(preHandlers, std::move(handler)); }
    void subscribePost(PostHandler handler) { add(postHandlers, std::move(handler)); }

    /// Removes every handler that equals the given function object (boost::bind objects compare by
    /// target and bound values). Removing what was never subscribed does nothing.
    template <class Function>
    void unsubscribePre(const Function& function) {
        remove(preHandlers, function);
    }
    template <class Function>
    void unsubscribePost(const Function& function) {
        remove(postHandlers, function);
    }

    /// Asks the pre-handlers in turn and stops at the first that answers false.
    /// Returns whether all of them agreed.
    bool firePre(Args... args) const {
        const auto handlers = copyOf(preHandlers);
        return std::all_of(handlers.begin(), handlers.end(),
                           [&](const PreHandler& handler) { return handler(args...); });
    }

    /// Tells every post-handler in turn.
    void firePost(Args... args) const {
        for (const PostHandler& handler : copyOf(postHandlers)) {
            handler(args...);
        }
    }

private:
    template <class Handler>
    void add(std::vector<Handler>& handlers, Handler handler) {
        const std::lock_guard guard(mutex);
        handlers.push_back(std::move(handler));
    }

    template <class Handler, class Function>
    void remove(std::vector<Handler>& handlers, const Function& function) {
        const std::lock_guard guard(mutex);
        std::erase_if(handlers, [&](const Handler& handler) { return handler.contains(function); });
    }

    template <class Handler>
    std::vector<Handler> copyOf(const std::vector<Handler>& handlers) const {
        const std::lock_guard guard(mutex);
        return handlers;
    }

    mutable std::mutex mutex;
    std::vector<PreHandler> preHandlers;
    std::vector<PostHandler> postHandlers;
};

}  // namespace Notification
