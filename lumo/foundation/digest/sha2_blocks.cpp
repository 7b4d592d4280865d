#include "lumo/foundation/digest/sha2_blocks.h"

#include <bit>
#include <cstring>

#include "lumo/foundation/digest/sha2_constants.h"
#include "lumo/foundation/hardware/cpu_features.h"

namespace lumo {

namespace {

/// Rotation and shift counts of the four mixing functions, and the number of rounds.
template <typename word>
struct Mix;

template <>
struct Mix<std::uint32_t> {
    static constexpr int ROUNDS = 64;
    static constexpr int BIG0[3] = {2, 13, 22}, BIG1[3] = {6, 11, 25};
    static constexpr int SMALL0[3] = {7, 18, 3}, SMALL1[3] = {17, 19, 10};
};

template <>
struct Mix<std::uint64_t> {
    static constexpr int ROUNDS = 80;
    static constexpr int BIG0[3] = {28, 34, 39}, BIG1[3] = {14, 18, 41};
    static constexpr int SMALL0[3] = {1, 8, 7}, SMALL1[3] = {19, 61, 6};
};

template <typename word>
word load_big_endian(const std::uint8_t* bytes) {
    word w;
    std::memcpy(&w, bytes, sizeof w);
    if constexpr (sizeof w == 4)
        return __builtin_bswap32(w);
    else
        return __builtin_bswap64(w);
}

template <typename word>
word big_sigma(word x, const int (&counts)[3]) {
    return std::rotr(x, counts[0]) ^ std::rotr(x, counts[1]) ^ std::rotr(x, counts[2]);
}

template <typename word>
word small_sigma(word x, const int (&counts)[3]) {
    return std::rotr(x, counts[0]) ^ std::rotr(x, counts[1]) ^ (x >> counts[2]);
}

template <typename word>
constexpr word round_constant(int t) {
    return static_cast<word>(Sha2Constants::CUBE_ROOTS[t] >> (64 - 8 * sizeof(word)));
}

template <typename word>
void compress(word* state, const std::uint8_t* block) {
    using M = Mix<word>;
    word w[M::ROUNDS];
    for (int t = 0; t < 16; t++) w[t] = load_big_endian<word>(block + t * sizeof(word));
    for (int t = 16; t < M::ROUNDS; t++)
        w[t] = small_sigma(w[t - 2], M::SMALL1) + w[t - 7] + small_sigma(w[t - 15], M::SMALL0) + w[t - 16];

    word a = state[0], b = state[1], c = state[2], d = state[3];
    word e = state[4], f = state[5], g = state[6], h = state[7];
    for (int t = 0; t < M::ROUNDS; t++) {
        const word choice = (e & f) ^ (~e & g);
        const word majority = (a & b) ^ (a & c) ^ (b & c);
        const word t1 = h + big_sigma(e, M::BIG1) + choice + round_constant<word>(t) + w[t];
        const word t2 = big_sigma(a, M::BIG0) + majority;
        h = g;
        g = f;
        f = e;
        e = d + t1;
        d = c;
        c = b;
        b = a;
        a = t1 + t2;
    }
    const word out[8] = {a, b, c, d, e, f, g, h};
    for (int i = 0; i < 8; i++) state[i] += out[i];
}

}  // namespace

template <typename word>
void sha2_blocks_portable(word* state, const std::uint8_t* data, std::size_t count) {
    for (; count > 0; count--, data += 16 * sizeof(word)) compress(state, data);
}

template void sha2_blocks_portable(std::uint32_t*, const std::uint8_t*, std::size_t);
template void sha2_blocks_portable(std::uint64_t*, const std::uint8_t*, std::size_t);

bool has_sha_instructions() {
    return cpu_features().sha && cpu_features().sse41;
}

}  // namespace lumo
