#pragma once

#include "exported/Telling.h"
#include "fake/quoted.h"
#include "network/Network.h"
#include "network/rpc/wireRecords.h"

#include <fmt/core.h>

#include <concepts>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

/// What the faked exported functions do, and what was seen of their latest call. Each writes its
/// arguments and its status into the platform's journal; the status is the platform's scripted
/// failure, or 0. What they fill, they fill whatever the status.
struct ExportedFunctions {
    bool fill = true;  ///< or leave the outputs alone
    /// How many outputs are filled: fewer than all when a function fails on its way.
    std::size_t fillLimit = std::numeric_limits<std::size_t>::max();
    Telling telling{1};

    /// Where the outputs of the latest call are.
    std::vector<const void*> outputs{};
    /// What stood in the outputs that have a value already when the function is called.
    std::vector<std::uint32_t> valuesBefore{};
};

/// The functions' behaviour, which is the process's.
ExportedFunctions& exportedFunctions();

/// An output text: where it goes and what its buffer holds, the terminator included.
struct OutputText {
    char* place;
    std::size_t size;
};

/// An argument, as the journal shows it.
template <std::integral Number>
std::string shown(Number number) {
    return fmt::format("{}", number);
}
template <class Enumeration>
    requires std::is_enum_v<Enumeration>
std::string shown(Enumeration value) {
    return fmt::format("{}", static_cast<int>(value));
}
inline std::string shown(const char* text) { return text == nullptr ? "null" : fake::quoted(text); }
std::string shown(const rpcSntpConfig* config);
std::string shown(const rpcSntpConfigHost* config);

/// A call of a faked exported function.
class ExportedCall {
public:
    template <class... Arguments>
    explicit ExportedCall(std::string functionName, const Arguments&... arguments)
        : name(std::move(functionName)) {
        (addArgument(shown(arguments)), ...);
        exportedFunctions().outputs.clear();
        exportedFunctions().valuesBefore.clear();
    }

    /// Fills outputs, in their order. A record counts as its fields.
    template <class... Outputs>
    ExportedCall& fill(Outputs... places) {
        (fillOne(places), ...);
        return *this;
    }

    /// Writes the call down and returns its status.
    int end();

private:
    void addArgument(const std::string& argument);

    template <class Output>
    void fillOne(Output* place) {
        note(place);
        if constexpr (std::is_scalar_v<Output>) {
            exportedFunctions().valuesBefore.push_back(static_cast<std::uint32_t>(*place));
        } else {
            noteValues(*place);
        }
        if (fills()) {
            put(*place);
        }
    }
    void fillOne(OutputText text);

    /// Whether the output noted last is to be filled.
    static bool fills() {
        const ExportedFunctions& functions = exportedFunctions();
        return functions.fill && functions.outputs.size() <= functions.fillLimit;
    }

    static void note(const void* place) { exportedFunctions().outputs.push_back(place); }

    static void noteValues(const auto&) {}
    static void noteValues(const Network::ArpInfo& info);
    static void noteValues(const Network::HttpInfo& info);
    static void noteValues(const Network::RemoteAccessRule& rule);

    void put(std::uint32_t& number) { number = telling.number(++filled); }
    void put(int& number) { number = static_cast<int>(telling.number(++filled)); }
    void put(bool& flag) { flag = telling.flag(++filled); }
    void put(unsigned char& octet) { octet = telling.octet(++filled); }
    void putText(char* place, std::size_t size);
    void putFlag(bool_t& flag) { flag = telling.flag(++filled) ? TRUE : FALSE; }
    template <class Enumeration>
        requires std::is_enum_v<Enumeration>
    void put(Enumeration& value) {
        value = static_cast<Enumeration>(telling.number(++filled));
    }
    template <std::size_t size>
    void put(char (&text)[size]) {
        putText(text, size);
    }
    template <class Element, std::size_t count>
    void put(Element (&elements)[count]) {
        for (Element& element : elements) {
            put(element);
        }
    }
    void putAll(auto&... fields) { (put(fields), ...); }

    void put(Network::ArpInfo& r);
    void put(Network::HttpInfo& r);
    void put(Network::RemoteAccessRule& r);
#define RECORD(type, memorySize, wireSize, ...) void put(type& record);
#define ARGUMENT(type, memorySize, wireSize, ...)
#include "network/rpc/records.def"

    std::string name;
    std::string argumentList;
    Telling telling = exportedFunctions().telling;
    unsigned int filled = 0;
};

/// Defines a faked function: its name, its parameters and, as arguments to be shown, their names.
#define FAKE(function, parameters, ...) \
    int function parameters { return ExportedCall(#function __VA_OPT__(, ) __VA_ARGS__).end(); }
/// One that shows nothing and fills these outputs.
#define FILLING_FAKE(function, parameters, ...) \
    int function parameters { return ExportedCall(#function).fill(__VA_ARGS__).end(); }
