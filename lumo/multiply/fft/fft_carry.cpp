#include "lumo/multiply/fft/fft_carry.h"

#include <cstring>

namespace lumo {

int add_carry(unsigned char* integer, upL_t size, upL_t offset, std::int64_t carry) {
    while (carry != 0 && offset + 8 <= size) {
        std::uint64_t word;
        std::memcpy(&word, integer + offset, 8);
        const std::uint64_t sum = word + std::uint64_t(carry);
        std::memcpy(integer + offset, &sum, 8);
        // Without a branch on the sign, which is as good as random.
        carry = std::int64_t(sum < word) + (carry >> 63);
        offset += 8;
    }
    for (; carry != 0 && offset < size; offset++) {
        const int sum = integer[offset] + int(carry);
        integer[offset] = static_cast<unsigned char>(sum);
        carry = sum >> 8;
    }
    return int(carry);
}

void wrap_negative(unsigned char* integer, upL_t size, std::int64_t top) {
    if (top == 0) return;
    const int out = add_carry(integer, size, 0, -top);
    if (out < 0) {
        // -1 at the top is +1 at the bottom. Only the residue -1 overflows here, and it is zero then.
        add_carry(integer, size, 0, 1);
    } else if (out > 0 && add_carry(integer, size, 0, -1) < 0) {
        add_carry(integer, size, 0, 1);
    }
}

}  // namespace lumo
