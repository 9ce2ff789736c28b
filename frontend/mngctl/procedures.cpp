#include "mngctl/procedures.h"

#include "mngctl/commands/names.h"
#include "mngctl/outcome.h"
#include "mngctl/wire/recordFields.h"

#include <fmt/format.h>

#include <algorithm>

namespace mngctl {

namespace {

/// The type names of the table that are not types of their own in C++. They hide the generated
/// header's aliases where the table is expanded.
namespace names {

struct string;
#define UNIT(name) struct name;
#define BOOLEAN(name) struct name;
#include "network/rpc/records.def"

}  // namespace names

/// The value that a type name of the table stands for, and its fields. This is a record.
template <class Name>
struct Wire {
    using Value = Name;
    static void visit(FieldVisitor& visitor, std::string_view, Value& value) {
        fields(visitor, value);
    }
};

template <>
struct Wire<void> {
    struct Value {};
    static void visit(FieldVisitor&, std::string_view, Value&) {}
};

/// A value that is no record is one field.
template <class Type, void (FieldVisitor::*visitField)(std::string_view, Type&)>
struct Single {
    using Value = Type;
    static void visit(FieldVisitor& visitor, std::string_view name, Value& value) {
        (visitor.*visitField)(name, value);
    }
};

template <>
struct Wire<int> : Single<int, &FieldVisitor::number> {};
template <>
struct Wire<u_int> : Single<u_int, &FieldVisitor::number> {};
template <>
struct Wire<bool> : Single<bool_t, &FieldVisitor::flag> {};
#define BOOLEAN(name) \
    template <>       \
    struct Wire<names::name> : Wire<bool> {};
#include "network/rpc/records.def"
template <>
struct Wire<names::rpcNetworkIpAddress> : Single<::rpcNetworkIpAddress, &FieldVisitor::address> {};
template <class Enumeration>
    requires std::is_enum_v<Enumeration>
struct Wire<Enumeration> : Single<Enumeration, &FieldVisitor::choice<Enumeration>> {};
template <>
struct Wire<rpcNetworkResult> : Single<rpcNetworkResult, &FieldVisitor::status> {};

template <>
struct Wire<names::string> {
    using Value = char*;
    static void visit(FieldVisitor& visitor, std::string_view name, Value& value) {
        visitor.text(name, value, loneTextMaximum);
    }
};

constexpr std::string_view argumentName = "value";
constexpr std::string_view resultName = "result";

/// The fields of a value by the name that it has where it is no record.
template <class Type>
Visit fieldsOf(std::string_view name, typename Type::Value& value) {
    return [name, &value](FieldVisitor& visitor) { Type::visit(visitor, name, value); };
}

template <class Type>
Json describe(std::string_view name) {
    typename Type::Value value{};
    return describeJson(fieldsOf<Type>(name, value));
}

template <class Argument>
Json checkArgument(const Json& json) {
    Texts texts;
    typename Argument::Value value{};
    readJson(json, texts, fieldsOf<Argument>(argumentName, value));
    return writeJson(fieldsOf<Argument>(argumentName, value));
}

template <class Argument, class Result, auto stub>
Json call(Client& client, const Json& json) {
    Texts texts;
    typename Argument::Value argument{};
    readJson(json, texts, fieldsOf<Argument>(argumentName, argument));
    typename Result::Value result{};
    if constexpr (std::is_same_v<Argument, Wire<void>>) {
        client.call(networkProgram, stub, result);
    } else {
        client.call(networkProgram, stub, argument, result);
    }
    return writeJson(fieldsOf<Result>(resultName, result));
}

Json ping(Client& client, const Json& /*argument*/) {
    client.ping(networkProgram);
    return Json::object();
}

template <class Argument, class Result, auto stub>
constexpr Procedure entry(unsigned number, std::string_view name, std::string_view argumentType,
                          std::string_view resultType) {
    return {number,
            name,
            argumentType,
            resultType,
            [] { return describe<Argument>(argumentName); },
            [] { return describe<Result>(resultName); },
            checkArgument<Argument>,
            call<Argument, Result, stub>};
}

constexpr Procedure nullProcedure{NULLPROC,
                                  "null",
                                  "void",
                                  "void",
                                  [] { return Json::array(); },
                                  [] { return Json::array(); },
                                  checkArgument<Wire<void>>,
                                  ping};

namespace names {

#define PROCEDURE(number, name, argument, result) \
    entry<Wire<argument>, Wire<result>, rpc_network_##name##_1>(number, #name, #argument, #result),
constexpr Procedure table[] = {
    nullProcedure,
#include "network/rpc/procedures.def"
};
#undef PROCEDURE

}  // namespace names

bool isRecord(const Json& described) { return described.size() > 1; }

bool isFlat(const Json& described) {
    return std::ranges::none_of(described,
                                [](const Json& field) { return field.contains("fields"); });
}

Json parseObject(const Procedure& procedure, const std::string& text) {
    Json object = Json::parse(text, nullptr, false);
    if (!object.is_object()) {
        throw UsageError(fmt::format("{} takes {}: what is given is no valid JSON object",
                                     procedure.name, argumentUsage(procedure)));
    }
    return object;
}

}  // namespace

std::span<const Procedure> procedures() { return names::table; }

const Procedure& findProcedure(std::string_view name) {
    const auto found = std::ranges::find(procedures(), name, &Procedure::name);
    if (found != procedures().end()) {
        return *found;
    }
    std::vector<std::string_view> known;
    for (const Procedure& procedure : procedures()) {
        known.push_back(procedure.name);
    }
    throw UsageError(fmt::format("there is no procedure '{}'{}; 'mngctl rpc --list' shows all",
                                 printable(name), suggestion(name, known)));
}

Json argumentFromWords(const Procedure& procedure, std::span<const std::string> words) {
    const Json described = procedure.describeArgument();
    if (isRecord(described) && words.size() == 1 && words[0].starts_with('{')) {
        return parseObject(procedure, words[0]);
    }
    if (!isFlat(described) || words.size() != described.size()) {
        throw UsageError(fmt::format(
            "{} takes {}; {} given", procedure.name, argumentUsage(procedure),
            words.size() == 1 ? "1 argument was" : fmt::format("{} arguments were", words.size())));
    }
    Json object = Json::object();
    for (std::size_t i = 0; i < words.size(); ++i) {
        object[described[i]["name"].get<std::string>()] = words[i];
    }
    return object;
}

std::string argumentUsage(const Procedure& procedure) {
    const Json described = procedure.describeArgument();
    if (described.empty()) {
        return "no argument";
    }
    if (!isFlat(described)) {
        return fmt::format("one JSON object ({})", procedure.argumentType);
    }
    std::string usage;
    for (const Json& field : described) {
        const auto name = field["name"].get<std::string>();
        const auto type = field["type"].get<std::string>();
        usage += usage.empty() ? "" : " ";
        usage += isRecord(described) ? fmt::format("{}:{}", name, type) : type;
    }
    return isRecord(described) ? usage + ", or one JSON object" : usage;
}

int refusal(const Procedure& procedure, const Json& result) {
    for (const Json& field : procedure.describeResult()) {
        if (field["type"] != "status") {
            continue;
        }
        const int outcome = result[field["name"].get<std::string>()].get<int>();
        const bool answer = procedure.name.starts_with("is_") && outcome > 0;
        return answer ? 0 : outcome;
    }
    return 0;
}

}  // namespace mngctl
