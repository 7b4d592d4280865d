/// The command line, read from left to right.
#pragma once

#include <stdexcept>
#include <string>
#include <vector>

namespace lumo::CommandLine {

/// The command line ended where something had to follow. No member of the program's family of exceptions.
class CommandLineException : public std::exception {
 public:
    explicit CommandLineException(const char* text) : message(text) {}
    const char* what() const noexcept override { return message; }

 private:
    const char* message;
};

}  // namespace lumo::CommandLine

namespace velmora {

/// The arguments and a cursor on the next one to consume. An argument is cut at its first colon into key and
/// value; further colons stay in the value. Element 0, the program's name, is never looked at.
///
/// The operations at the cursor throw CommandLineException "Expected more parameters." behind the end.
class ArgumentList {
 public:
    explicit ArgumentList(std::vector<std::string> arguments);

    bool at_end() const { return cursor >= raw.size(); }
    const std::string& current_key() const;
    const std::string& current_value() const;
    /// The argument whole, colons and all.
    const std::string& current_raw() const;
    void advance();

 private:
    struct Split {
        std::string key;
        std::string value;
    };
    void expect_more() const;

    std::vector<std::string> raw;
    std::vector<Split> split;
    std::size_t cursor = 1;
};

/// For a key that names nothing: ends the process with "Invalid Parameter: " and the key.
[[noreturn]] void reject_parameter(const std::string& key);

}  // namespace velmora
