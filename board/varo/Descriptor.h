#pragma once

#include <unistd.h>

namespace varo {

/// A file descriptor that closes itself. Negative: there is none.
class Descriptor {
public:
    explicit Descriptor(int opened) : number(opened) {}
    ~Descriptor() {
        if (number >= 0)
            ::close(number);
    }
    Descriptor(const Descriptor&) = delete;
    Descriptor& operator=(const Descriptor&) = delete;

    int get() const { return number; }
    explicit operator bool() const { return number >= 0; }

private:
    int number;
};

}  // namespace varo
