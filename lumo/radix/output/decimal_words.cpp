#include "lumo/radix/output/decimal_words.h"

#include <algorithm>

#include "lumo/numbers/words/hash61.h"
#include "lumo/numbers/words/words.h"

namespace lumo {

std::uint64_t DecimalWords::unit() const {
    std::uint64_t weight = 1;
    for (upL_t i = digits; i % DIGITS_PER_WORD != 0; i++) weight *= 10;
    return weight;
}

std::uint64_t DecimalWords::hash(std::uint64_t seed, const ParallelContext& ctx) const {
    const upL_t full = full_words();
    std::uint64_t h =
        bp_hash_radix<std::uint64_t>(seed, Hash61::canonical(BASE), words + count - full, full, ctx);
    const upL_t rest = digits % DIGITS_PER_WORD;
    if (rest != 0) h = Hash61::add(Hash61::mul(h, Hash61::pow(10, rest)), words[last_word()] / unit());
    return Hash61::canonical(h);
}

bool DecimalWords::may_round(bool up) const {
    const std::uint64_t nine = BASE - 1;
    const upL_t last = last_word();
    const std::uint64_t guard = up ? nine : 0;
    if (words[last] % unit() != guard % unit()) return false;
    return last < 2 || std::all_of(words + 1, words + last, [=](std::uint64_t w) { return w == guard; });
}

void DecimalWords::round(bool up) {
    const std::uint64_t nine = BASE - 1;
    const upL_t last = last_word();
    const std::uint64_t weight = unit();
    const std::uint64_t kept = words[last] - words[last] % weight;
    std::fill(words, words + last, up ? 0 : nine);
    upL_t i = last + 1;
    if (up) {
        words[last] = kept == BASE - weight ? 0 : kept + weight;
        if (words[last] != 0) return;
        while (i < count && words[i] == nine) words[i++] = 0;
        if (i < count) words[i]++;
    } else {
        words[last] = kept == 0 ? nine : kept - 1;
        if (kept != 0) return;
        while (i < count && words[i] == 0) words[i++] = nine;
        if (i < count) words[i]--;
    }
}

}  // namespace lumo
