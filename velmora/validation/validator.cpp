#include "velmora/validation/validator.h"

#include <algorithm>
#include <optional>

#include "velmora/validation/checksums.h"

namespace velmora {

namespace {

constexpr const char* INVALID_FILE = "Validation Failed - Invalid File";
constexpr const char* INVALID_HASH = "Validation Failed: Invalid Hash";
constexpr const char* TAMPERED = "Validation Failed: File is either invalid or has been tampered with.";

/// The text behind a label at the start of a line, without blanks at its ends.
std::optional<std::string_view> value_of(std::string_view text, std::string_view label) {
    for (std::size_t at = text.find(label); at != std::string_view::npos; at = text.find(label, at + 1)) {
        if (at != 0 && text[at - 1] != '\n') continue;
        std::string_view value = text.substr(at + label.size());
        value = value.substr(0, value.find_first_of("\r\n"));
        value.remove_prefix(std::min(value.find_first_not_of(' '), value.size()));
        return value.substr(0, value.find_last_not_of(' ') + 1);
    }
    return std::nullopt;
}

/// Behind the last line that is the separator; 0 if there is none.
std::size_t end_of_body(std::string_view file) {
    const std::string line = std::string("\n") + SEPARATOR;
    for (std::size_t at = file.rfind(line); at != std::string_view::npos && at != 0;
         at = file.rfind(line, at - 1)) {
        const std::size_t end = at + line.size();
        if (end < file.size() && (file[end] == '\r' || file[end] == '\n')) return end;
    }
    return 0;
}

std::vector<std::string> key_figures(std::string_view body) {
    constexpr std::pair<const char*, const char*> FIGURES[] = {
        {"Computation Time:      ", "Total Computation Time:"},
        {"Start-to-End Time:     ", "Start-to-End Wall Time:"},
        {"Constant:              ", "Constant:"},
        {"Algorithm:             ", "Algorithm:"},
        {"Decimal Digits:        ", "Decimal Digits:"},
        {"Program:               ", "Program:"},
        {"Tuning:                ", "Tuning:"},
        {"Threading Mode:        ", "Threading Mode:"},
        {"Multi-core Efficiency: ", "Multi-core Efficiency:"},
        {"Start Date:            ", "Start Date:"},
        {"Spot Check:            ", "Spot Check:"},
        {"Timer Sanity Check:    ", "Timer Sanity Check:"},
    };
    std::vector<std::string> lines;
    for (const auto& [label, key] : FIGURES) {
        const auto value = value_of(body, key);
        if (value) lines.push_back(label + std::string(*value));
    }
    return lines;
}

ValidationOutcome failed(std::vector<std::string> messages) {
    return {false, std::move(messages), {}};
}

}  // namespace

ValidationOutcome validate_text(std::string_view file) {
    const auto version = value_of(file, "Validation Version:");
    if (!version) return failed({INVALID_FILE});
    if (*version == "1.0" || *version == "1.1")
        return failed({"Validation file versions 1.0 an 1.1 are no longer supported.",
                       "To validate this file, please use velmora v0.5.5."});
    const bool two_checksums = *version == "1.3";
    if (!two_checksums && *version != "1.2")
        return failed({"This validation file version is too new.", "Please use a newer version of velmora."});

    const std::size_t end = end_of_body(file);
    if (end == 0) return failed({INVALID_FILE});
    const std::string_view body = file.substr(0, end), rest = file.substr(end);
    const auto value = value_of(rest, two_checksums ? CHECKSUM0_LABEL : CHECKSUM_LABEL);
    const auto second = two_checksums ? value_of(rest, CHECKSUM1_LABEL) : std::nullopt;
    if (!value || (two_checksums && !second)) return failed({INVALID_FILE});
    for (const auto& checksum : {value, second}) {
        if (checksum && (checksum->size() != CHECKSUM_DIGITS || !bytes_of_hex(*checksum)))
            return failed({INVALID_HASH});
    }
    if (!confirms(*value, body)) return failed({TAMPERED});
    if (second && bytes_of_hex(*second) != bytes_of_hex(checksum1(body))) return failed({TAMPERED});
    return {true, {"Validation Passed!"}, key_figures(body)};
}

}  // namespace velmora
