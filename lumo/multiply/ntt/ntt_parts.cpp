#include "lumo/multiply/ntt/ntt_parts.h"

#include <algorithm>
#include <cstring>

namespace lumo {

namespace {

std::uint64_t sum_of_words(const unsigned char* bytes, upL_t count) {
    constexpr upL_t RUN = upL_t(1) << 20;  // words whose halves add up below 2^64
    unsigned __int128 sum = 0;
    std::uint64_t word;
    while (count >= 8) {
        const upL_t words = std::min(RUN, count / 8);
        // By halves, which no carry links, so that the compiler takes several words at a time.
        std::uint64_t low = 0, high = 0;
        for (upL_t i = 0; i < words; i++) {
            std::memcpy(&word, bytes + 8 * i, 8);
            low += word & 0xffffffff;
            high += word >> 32;
        }
        sum += (static_cast<unsigned __int128>(high) << 32) + low;
        bytes += 8 * words;
        count -= 8 * words;
    }
    word = 0;
    if (count != 0) std::memcpy(&word, bytes, count);
    sum += word;
    return add_around(static_cast<std::uint64_t>(sum), static_cast<std::uint64_t>(sum >> 64));
}

}  // namespace

std::uint64_t ntt_sum(const ParallelContext& ctx, const unsigned char* bytes, upL_t count) {
    constexpr upL_t CHUNK = upL_t(1) << 17, MOST_TASKS = 256;
    const upL_t tasks = std::max(upL_t(1), std::min({ctx.tds, count / CHUNK, MOST_TASKS}));
    std::uint64_t sums[MOST_TASKS];
    parallel_for(ctx.runner(), 0, tasks, [&](upL_t t) {
        const upL_t from = count / 8 * t / tasks * 8,
                    to = t + 1 == tasks ? count : count / 8 * (t + 1) / tasks * 8;
        sums[t] = sum_of_words(bytes + from, to - from);
    });
    for (upL_t t = 1; t < tasks; t++) sums[0] = add_around(sums[0], sums[t]);
    return sums[0];
}

}  // namespace lumo
