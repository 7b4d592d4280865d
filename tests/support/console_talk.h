/// Plays the user of the console.
#pragma once

#include <gtest/gtest.h>

#include <cstdio>
#include <string>

namespace lumo {

/// Runs f with `answers` typed in; returns all that it printed.
template <typename F>
std::string talk(std::string answers, F&& f) {
    FILE* const keyboard = stdin;
    answers += '\n';  // a stream of no bytes cannot be opened
    stdin = fmemopen(answers.data(), answers.size(), "r");
    testing::internal::CaptureStdout();
    try {
        f();
    } catch (...) {
        testing::internal::GetCapturedStdout();
        fclose(stdin);
        stdin = keyboard;
        throw;
    }
    std::string printed = testing::internal::GetCapturedStdout();
    fclose(stdin);
    stdin = keyboard;
    return printed;
}

/// What f printed.
template <typename F>
std::string printed_by(F&& f) {
    return talk("", std::forward<F>(f));
}

}  // namespace lumo
