#pragma once

#include "mngctl/wire/values.h"

#include <network.h>
#include <rpc/rpc.h>

#include <cstddef>
#include <cstring>
#include <limits>

namespace mngctl {

/// The names of an enumeration's values; specialised where the records are listed.
template <class Enum>
std::span<const Choice> choicesOf();

/// Walks over the fields of a record in wire order. Each record has one list of its fields, a
/// function `fields(FieldVisitor&, Record&)`; parsing, JSON and descriptions are visitors.
class FieldVisitor {
public:
    static constexpr std::size_t unlimited = std::numeric_limits<std::size_t>::max();

    FieldVisitor() = default;
    FieldVisitor(const FieldVisitor&) = delete;
    FieldVisitor& operator=(const FieldVisitor&) = delete;
    virtual ~FieldVisitor() = default;

    virtual void flag(std::string_view name, bool_t& value) = 0;
    virtual void number(std::string_view name, int& value) = 0;
    virtual void number(std::string_view name, unsigned& value) = 0;
    /// An IPv4 address in host byte order.
    virtual void address(std::string_view name, unsigned& value) = 0;
    virtual void mac(std::string_view name, std::span<unsigned char, 6> octets) = 0;
    /// A text in a fixed array: terminated, or filling the array.
    virtual void fixedText(std::string_view name, std::span<char> characters) = 0;
    /// A text of its own. `maximum` is in bytes, without the terminator.
    virtual void text(std::string_view name, char*& value, std::size_t maximum = unlimited) = 0;

    /// The outcome of an operation: a number, whose value is the operation's business.
    void status(std::string_view name, rpcNetworkResult& value) {
        asInt(value, [&](int& number_) { statusNumber(name, number_); });
    }

    /// A value of an enumeration. The board may send numbers that the enumeration does not have.
    template <class Enum>
    void choice(std::string_view name, Enum& value) {
        asInt(value, [&](int& number_) { namedNumber(name, number_, choicesOf<Enum>()); });
    }

    template <class Record>
    void record(std::string_view name, Record& value) {
        openRecord(name);
        fields(*this, value);
        close();
    }

    template <class Record, std::size_t Count>
    void list(std::string_view name, Record (&items)[Count]) {
        list(name, std::span<Record>(items));
    }

    template <class Record>
    void list(std::string_view name, std::span<Record> items) {
        openList(name, items.size());
        for (std::size_t i = 0; i < items.size(); ++i) {
            openItem(i);
            fields(*this, items[i]);
            close();
        }
        close();
    }

protected:
    virtual void namedNumber(std::string_view name, int& value,
                             std::span<const Choice> choices) = 0;
    virtual void statusNumber(std::string_view name, int& value) { number(name, value); }
    virtual void openRecord(std::string_view name) = 0;
    virtual void openList(std::string_view name, std::size_t count) = 0;
    virtual void openItem(std::size_t index) = 0;
    virtual void close() = 0;

private:
    /// Enumerations travel as ints of any value, which must not be loaded as the enumeration.
    template <class Enum, class Visit>
    static void asInt(Enum& value, const Visit& visit) {
        static_assert(sizeof(Enum) == sizeof(int));
        int number_ = 0;
        std::memcpy(&number_, &value, sizeof number_);
        visit(number_);
        std::memcpy(&value, &number_, sizeof number_);
    }
};

}  // namespace mngctl
