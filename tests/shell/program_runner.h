/// Runs the program as its users do.
#pragma once

#include <string>
#include <vector>

namespace velmora {

struct Outcome {
    int exit_code = -1;  ///< 128 + signal when a signal ended it
    std::string text;    ///< stdout and stderr
};

struct Launch {
    std::vector<std::string> arguments;
    std::string input = {};        ///< typed in; then the input ends
    bool close_output = false;     ///< start with stdout closed
    bool broken_output = false;    ///< start with nobody reading stdout
    std::string folder = ".";      ///< current folder
    int interrupt_after_text = 0;  ///< signal to send once `wait_for` has been printed
    std::string wait_for = {};
    std::string program = VELMORA_BINARY;
};

/// The program is killed, and the test fails, when it does not end within a minute.
Outcome launch(const Launch& how);

}  // namespace velmora
