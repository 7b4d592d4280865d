// Included by one translation unit an instruction set, which names the namespace and the function.

#include <string.h>

#include "lumo/radix/counting/byte_vec.h"
#include "lumo/radix/counting/count_digits.h"

namespace lumo::kernels {

namespace VELMORA_KERNEL_NAMESPACE {
namespace {

/// Bytes that are no digit come out negative or above 15, and count as none; so do 10 to 15 in decimal.
template <int Radix>
inline ByteVec values_of(ByteVec bytes) {
    if constexpr (Radix == 16) {
        bytes = ByteVec::lowered(bytes, 'a' - 1, 'a' - 10);
        bytes = ByteVec::lowered(bytes, '9', 127);
    }
    return ByteVec::lowered(bytes, 15, '0');
}

/// Counts the digits from First to End - 1 by comparing with each of them, in at most 255 vectors: a lane
/// holds no more.
template <int Radix, int First, int End>
void add_occurrences(uint64_t* counts, const char* digits, size_t vectors) {
    ByteVec sums[End - First];
    for (ByteVec& sum : sums) sum = ByteVec::zero();
    for (size_t i = 0; i < vectors; i++) {
        const ByteVec x = values_of<Radix>(ByteVec::load(digits + i * ByteVec::lanes));
#pragma GCC unroll 16
        for (int d = First; d < End; d++)
            sums[d - First] = ByteVec::count_equal(sums[d - First], x, static_cast<char>(d));
    }
    for (int d = First; d < End; d++) counts[d] += ByteVec::total(sums[d - First]);
}

template <int Radix>
void add_all(uint64_t* counts, const char* digits, size_t vectors) {
    constexpr size_t MOST_VECTORS = 255;
    constexpr int FIRST_PART = Radix <= ByteVec::counters ? Radix : Radix / 2;
    for (size_t i = 0; i < vectors; i += MOST_VECTORS) {
        const char* block = digits + i * ByteVec::lanes;
        const size_t length = vectors - i < MOST_VECTORS ? vectors - i : MOST_VECTORS;
        add_occurrences<Radix, 0, FIRST_PART>(counts, block, length);
        if constexpr (FIRST_PART < Radix) add_occurrences<Radix, FIRST_PART, Radix>(counts, block, length);
    }
}

}  // namespace
}  // namespace VELMORA_KERNEL_NAMESPACE

void VELMORA_KERNEL_FUNCTION(uint64_t* counts, const char* digits, size_t count, unsigned radix) {
    using namespace VELMORA_KERNEL_NAMESPACE;
    const auto add = radix == 10 ? add_all<10> : add_all<16>;
    const size_t whole = count - count % ByteVec::lanes;
    add(counts, digits, whole / ByteVec::lanes);
    if (whole == count) return;
    char rest[ByteVec::lanes];
    memset(rest, 0xff, sizeof(rest));
    memcpy(rest, digits + whole, count - whole);
    add(counts, rest, 1);
}

}  // namespace lumo::kernels
