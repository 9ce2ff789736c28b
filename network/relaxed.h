#pragma once

#include <atomic>

/// A plain value that threads share without ordering anything by it: relaxed atomic loads and
/// stores, in the size of the value itself.
template <class T>
class Relaxed {
public:
    constexpr Relaxed(T initial) noexcept : value(initial) {}
    Relaxed(const Relaxed&) = delete;
    Relaxed& operator=(const Relaxed&) = delete;

    operator T() const noexcept { return value.load(std::memory_order_relaxed); }
    T operator=(T other) noexcept {
        value.store(other, std::memory_order_relaxed);
        return other;
    }

private:
    static_assert(std::atomic<T>::is_always_lock_free && sizeof(std::atomic<T>) == sizeof(T));

    std::atomic<T> value;
};
