#include "lumo/foundation/errors/exceptions.h"
#include "lumo/numbers/words/block_carry.h"
#include "lumo/numbers/words/blocks.h"

namespace lumo {

namespace {

/// Adds a small signed carry to one word; returns the carry out of it.
template <typename wtype>
int add_carry(wtype& word, int carry) {
    if (carry > 0) return ++word == 0;
    return word-- == 0 ? -1 : 0;
}

/// Adds a signed word to one word; returns the carry out of it.
template <typename wtype>
int add_signed(wtype& word, typename WordTraits<wtype>::signed_word c) {
    const auto before = word;
    word = static_cast<wtype>(before + static_cast<wtype>(c));
    if (c >= 0) return word < before;
    return word > before ? -1 : 0;
}

/// The class of one word: its value if that is all zeros or all ones.
template <typename wtype>
std::uint8_t word_class(wtype word) {
    return word == 0 ? CLASS_ZEROS : word == static_cast<wtype>(~wtype(0)) ? CLASS_ONES : CLASS_MIXED;
}

/// Carry and class of a run of words, taken from the bottom up.
template <typename wtype>
struct Ripple {
    int carry;
    std::uint8_t kind;
    bool settled() const { return carry == 0 && kind == CLASS_MIXED; }

    Ripple(typename WordTraits<wtype>::signed_word c, wtype& first)
        : carry(add_signed(first, c)), kind(word_class(first)) {}
    void run(wtype* T, upL_t start, upL_t end) {
        for (upL_t i = start; i < end && !settled(); i++) {
            if (carry != 0) carry = add_carry(T[i], carry);
            if (word_class(T[i]) != kind) kind = CLASS_MIXED;
        }
    }
};

/// The rest of a classification in parallel: every block by itself, then the carries between them.
template <typename wtype>
void classify_blocks(Ripple<wtype>& state, wtype* T, upL_t L, const ParallelContext& ctx) {
    const BlockCut cut = cut_blocks(L, std::min(ctx.tds, BP_MAX_BLOCKS), BlockCarry::LEAST_WORDS,
                                    WordTraits<wtype>::align_words);
    BlockCarry table[BP_MAX_BLOCKS] = {};
    table[0].carry = static_cast<std::int8_t>(state.carry);
    state.carry = resolve_in_passes(table, cut, T, ctx);
    for (upL_t block = 0; block < cut.count; block++)
        if (table[block].kind != state.kind) state.kind = CLASS_MIXED;
}

template <typename wtype>
std::uint16_t ksr_carry_serial(typename WordTraits<wtype>::signed_word c, wtype* T, upL_t L) {
    Ripple<wtype> state(c, T[0]);
    state.run(T, 1, L);
    return static_cast<std::uint16_t>(static_cast<std::uint8_t>(state.carry) << 8 | state.kind);
}

}  // namespace

template <typename wtype>
std::uint16_t bp_ksr_carry(typename WordTraits<wtype>::signed_word c, wtype* T, upL_t L,
                           const ParallelContext& ctx) {
    if (L == 0) throw InvalidParametersException("", "bp_ksr_carry(): Length cannot be zero.");
    if (ctx.tds < 2 || L < BlockCarry::LEAST_WORDS) return ksr_carry_serial(c, T, L);
    constexpr upL_t first_look = 4;  // nearly every array is mixed and has settled by then
    Ripple<wtype> state(c, T[0]);
    state.run(T, 1, first_look);
    if (!state.settled()) classify_blocks(state, T + first_look, L - first_look, ctx);
    return static_cast<std::uint16_t>(static_cast<std::uint8_t>(state.carry) << 8 | state.kind);
}

template <typename wtype>
typename WordTraits<wtype>::signed_word bp_add_scalar(typename WordTraits<wtype>::signed_word c, wtype* T,
                                                      upL_t L, const ParallelContext& ctx) {
    if (c == 0 || L == 0) return c;
    const bool serial = ctx.tds < 2 || L < BlockCarry::LEAST_WORDS;
    const upL_t end = serial ? L : BlockCarry::LEAST_WORDS / 2;
    int carry = add_signed(T[0], c);
    for (upL_t i = 1; i < end && carry != 0; i++) carry = add_carry(T[i], carry);
    if (carry == 0 || serial) return carry;

    const BlockCut cut = cut_blocks(L - end, std::min(ctx.tds, BP_MAX_BLOCKS), BlockCarry::LEAST_WORDS,
                                    WordTraits<wtype>::align_words);
    BlockCarry table[BP_MAX_BLOCKS] = {};
    table[0].carry = static_cast<std::int8_t>(carry);
    return resolve_in_passes(table, cut, T + end, ctx);
}

template std::uint16_t bp_ksr_carry<std::uint32_t>(std::int32_t, std::uint32_t*, upL_t,
                                                   const ParallelContext&);
template std::uint16_t bp_ksr_carry<std::uint64_t>(std::int64_t, std::uint64_t*, upL_t,
                                                   const ParallelContext&);
template std::int32_t bp_add_scalar<std::uint32_t>(std::int32_t, std::uint32_t*, upL_t,
                                                   const ParallelContext&);
template std::int64_t bp_add_scalar<std::uint64_t>(std::int64_t, std::uint64_t*, upL_t,
                                                   const ParallelContext&);

}  // namespace lumo
