#pragma once

#pragma GCC visibility push(default)

/// The one object of a class in a process: created on the first call of instance(), whichever
/// thread makes it, and destroyed at process exit in the reverse order of creation.
///
/// instance() is deliberately not inline. A class that a host supplies says
/// `extern template class singleton<T>;` after its definition, so that every module of the process
/// uses the host's instantiation and no second object can come into being.
template <class T>
class singleton {
public:
    static T& instance();

    singleton(const singleton&) = delete;
    singleton& operator=(const singleton&) = delete;

protected:
    singleton() = default;
    ~singleton() = default;
};

template <class T>
T& singleton<T>::instance() {
    static T object;
    return object;
}

#pragma GCC visibility pop
