#include "lumo/multiply/ntt/product_carry.h"

#include <algorithm>
#include <array>
#include <cstring>

namespace lumo {

namespace {

template <std::size_t WORDS>
using Carry = std::array<std::uint64_t, WORDS>;

/// x += y; returns the carry out.
template <std::size_t WORDS>
bool add(Carry<WORDS>& x, const std::uint64_t* y) {
    bool carry = false;
    for (std::size_t i = 0; i < WORDS; i++) {
        const std::uint64_t sum = x[i] + y[i];
        const bool one = sum < y[i];
        x[i] = sum + carry;
        carry = one || x[i] < sum;
    }
    return carry;
}

template <std::size_t WORDS>
void increment(Carry<WORDS>& x) {
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

template <std::size_t WORDS>
class Chain {
 public:
    Chain(const CarrySegments<WORDS>& all, unsigned char* window, std::uint64_t window_begin,
          std::uint64_t window_end)
        : segments(all), bytes(window), begin(window_begin), end(window_end) {}

    /// Runs a carry through all segments; returns what leaves the last one.
    template <bool WRITE>
    Carry<WORDS> run(Carry<WORDS> carry) const {
        for (std::size_t r = 0; r < segments.rows; r++)
            for (std::size_t t = 0; t < segments.pieces; t++) {
                Carry<WORDS> head = carry;
                const bool overflow = add(head, segments.head[t][r]);
                if constexpr (WRITE) write(r, t, head, overflow);
                std::copy_n(segments.carry[t][r], WORDS, carry.begin());
                if (overflow && segments.ones[t][r]) increment(carry);
            }
        return carry;
    }

 private:
    static constexpr std::uint64_t HEAD_BYTES = 8 * WORDS;

    void write(std::size_t r, std::size_t t, const Carry<WORDS>& head, bool overflow) const {
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
    void put(const Carry<WORDS>& head, std::uint64_t from) const {
        const std::uint64_t low = std::max(from, begin), high = std::min(from + HEAD_BYTES, end);
        if (low < high)
            std::memcpy(bytes + (low - begin),
                        reinterpret_cast<const unsigned char*>(head.data()) + (low - from), high - low);
    }

    const CarrySegments<WORDS>& segments;
    unsigned char* bytes;
    std::uint64_t begin, end;
};

}  // namespace

template <std::size_t WORDS>
void add_carries(const CarrySegments<WORDS>& segments, unsigned char* bytes, std::uint64_t begin,
                 std::uint64_t end) {
    const Chain<WORDS> chain(segments, bytes, begin, end);
    const Carry<WORDS> none{};
    Carry<WORDS> wrapped = chain.template run<false>(none);
    if (wrapped != none) {
        // What wraps round may make the whole overflow once more, but then leaves low words behind.
        const Carry<WORDS> again = chain.template run<false>(wrapped);
        if (again != wrapped) increment(wrapped);
    }
    chain.template run<true>(wrapped);
}

template void add_carries(const CarrySegments<4>&, unsigned char*, std::uint64_t, std::uint64_t);
template void add_carries(const CarrySegments<5>&, unsigned char*, std::uint64_t, std::uint64_t);

}  // namespace lumo
