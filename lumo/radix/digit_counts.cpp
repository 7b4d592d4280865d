#include "lumo/radix/digit_counts.h"

#include <numeric>

#include "lumo/foundation/console/console.h"
#include "lumo/foundation/errors/exceptions.h"
#include "lumo/foundation/hardware/cpu_features.h"
#include "lumo/multiply/kernels/kernel_select.h"
#include "lumo/radix/counting/count_digits.h"

namespace lumo {

namespace {

kernels::CountDigits& kernel() {
    const KernelSet set = active_kernels();
    if (set == KernelSet::avx512 && cpu_features().avx512bw) return kernels::count_digits_avx512;
    return set == KernelSet::portable ? kernels::count_digits_portable : kernels::count_digits_avx2;
}

}  // namespace

DigitCounts::DigitCounts(upL_t radix) : base(radix) {
    if (radix != 10 && radix != 16)
        throw InvalidParametersException("DigitCounts::DigitCounts()", "Invalid radix.");
}

upL_t DigitCounts::total() const {
    return std::accumulate(counts.begin(), counts.end(), upL_t(0));
}

void DigitCounts::add(const char* digits, upL_t count) {
    kernel()(counts.data(), digits, count, static_cast<unsigned>(base));
}

DigitCounts& DigitCounts::operator+=(const DigitCounts& other) {
    for (upL_t digit = 0; digit < base; digit++) counts[digit] += other.counts[digit];
    return *this;
}

std::string DigitCounts::to_string() const {
    std::string text;
    for (upL_t digit = 0; digit < base; digit++) {
        if (digit != 0) text += "  ";
        text += Console::format_commas(counts[digit]);
    }
    return text;
}

std::string DigitCounts::report_line() const {
    return (base == 10 ? "Dec Counts: " : "Hex Counts: ") + to_string();
}

}  // namespace lumo
