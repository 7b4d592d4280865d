#include "lumo/multiply/ntt/vt3/vt3_carry.h"

#include <algorithm>
#include <array>
#include <cstring>

namespace lumo {

namespace {

constexpr std::size_t WORDS = kernels::VT3_CARRY_WORDS;
constexpr std::uint64_t HEAD_BYTES = 8 * WORDS;
using Carry = std::array<std::uint64_t, WORDS>;

/// x += y; returns the carry out.
bool add(Carry& x, const std::uint64_t* y) {
    bool carry = false;
    for (std::size_t i = 0; i < WORDS; i++) {
        const std::uint64_t sum = x[i] + y[i];
        const bool one = sum < y[i];
        x[i] = sum + carry;
        carry = one || x[i] < sum;
    }
    return carry;
}

void increment(Carry& x) {
    for (std::size_t i = 0; i < WORDS && ++x[i] == 0; i++) {
    }
}

/// Adds one to the number in [from, to), in units of 4 bytes.
void ripple(unsigned char* from, unsigned char* to) {
    for (; from < to; from += 4) {
        std::uint32_t word;
        std::memcpy(&word, from, 4);
        word++;
        std::memcpy(from, &word, 4);
        if (word != 0) return;
    }
}

class Chain {
 public:
    Chain(const Vt3Segments& all, unsigned char* window, std::uint64_t window_begin, std::uint64_t window_end)
        : segments(all), bytes(window), begin(window_begin), end(window_end) {}

    /// Runs a carry through all segments; returns what leaves the last one.
    template <bool WRITE>
    Carry run(Carry carry) const {
        for (std::size_t r = 0; r < segments.rows; r++)
            for (std::size_t t = 0; t < segments.pieces; t++) {
                Carry head = carry;
                const bool overflow = add(head, segments.head[t][r]);
                if constexpr (WRITE) write(r, t, head, overflow);
                std::copy_n(segments.carry[t][r], WORDS, carry.begin());
                if (overflow && segments.ones[t][r]) increment(carry);
            }
        return carry;
    }

 private:
    void write(std::size_t r, std::size_t t, const Carry& head, bool overflow) const {
        const std::uint64_t row = r * segments.start[segments.pieces];
        const std::uint64_t from = row + segments.start[t], to = row + segments.start[t + 1];
        put(head, from);
        if (!overflow) return;
        const std::uint64_t rest = from + HEAD_BYTES, last = std::min(to, end);
        if (rest >= begin) {
            if (rest < last) ripple(bytes + (rest - begin), bytes + (last - begin));
        } else if (begin < last && segments.below_ones) {
            ripple(bytes, bytes + (last - begin));
        }
    }
    void put(const Carry& head, std::uint64_t from) const {
        const std::uint64_t low = std::max(from, begin), high = std::min(from + HEAD_BYTES, end);
        if (low < high)
            std::memcpy(bytes + (low - begin),
                        reinterpret_cast<const unsigned char*>(head.data()) + (low - from), high - low);
    }

    const Vt3Segments& segments;
    unsigned char* bytes;
    std::uint64_t begin, end;
};

}  // namespace

void add_vt3_carries(const Vt3Segments& segments, unsigned char* bytes, std::uint64_t begin,
                     std::uint64_t end) {
    const Chain chain(segments, bytes, begin, end);
    const Carry none{};
    Carry wrapped = chain.run<false>(none);
    if (wrapped != none) {
        // What wraps round may make the whole overflow once more, but then leaves low words behind.
        const Carry again = chain.run<false>(wrapped);
        if (again != wrapped) increment(wrapped);
    }
    chain.run<true>(wrapped);
}

}  // namespace lumo
