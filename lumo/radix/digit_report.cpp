#include "lumo/radix/digit_report.h"

namespace lumo {

std::string RadixReport::sha256_line() const {
    return (counts.radix() == 10 ? "SHA256-dec(1 - " : "SHA256-hex(1 - ") + std::to_string(digits) +
           "): " + sha256;
}

std::vector<std::string> DigitReport::lines() const {
    std::vector<std::string> text;
    if (dec.digits != 0) text.push_back(dec.counts.report_line());
    if (hex.digits != 0) text.push_back(hex.counts.report_line());
    if (dec.digits != 0) text.push_back(hashes().dec_line());
    if (hex.digits != 0) text.push_back(hashes().hex_line());
    if (dec.digits != 0) text.push_back(dec.sha256_line());
    if (hex.digits != 0) text.push_back(hex.sha256_line());
    return text;
}

}  // namespace lumo
