#pragma once

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <functional>
#include <string>

/// Runs the body in a process in which nothing ran before it but the fixture of this very test; for
/// what happens once in the life of a process. The body returns what is wrong, or nothing.
void inFreshProcess(const std::function<std::string()>& body);

/// What is wrong with a value that does not match; empty when it does.
template <class Value, class Matcher>
std::string mismatch(const Value& value, const Matcher& matcher) {
    testing::StringMatchResultListener listener;
    if (testing::ExplainMatchResult(matcher, value, &listener)) {
        return "";
    }
    return testing::PrintToString(value) + " " + listener.str() + "\n";
}
