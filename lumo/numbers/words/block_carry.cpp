#include "lumo/numbers/words/block_carry.h"

namespace lumo {

template <typename wtype>
int resolve_in_passes(BlockCarry* table, const BlockCut& cut, wtype* T, const ParallelContext& ctx) {
    parallel_for(*ctx.parallelizer, 0, cut.count, [&](upL_t block) {
        const std::uint16_t result =
            bp_ksr_carry<wtype>(table[block].carry, T + cut.start(block), cut.size(block));
        table[block] = {static_cast<std::uint8_t>(result), static_cast<std::int8_t>(result >> 8)};
    });
    // +1 passes only through a block of all ones, -1 only through one of zeros.
    int carry = 0;
    for (upL_t block = 0; block < cut.count; block++) {
        BlockCarry& record = table[block];
        const int out = record.carry;
        record.carry = static_cast<std::int8_t>(carry);
        carry = ((carry + record.kind) >> 8) + out;
    }
    parallel_for(*ctx.parallelizer, 0, cut.count, [&](upL_t block) {
        BlockCarry& record = table[block];
        wtype* words = T + cut.start(block);
        const upL_t size = cut.size(block);
        if (record.carry == 0) return;
        if (record.kind == CLASS_ONES && record.carry > 0) {
            std::fill(words, words + size, wtype(0));
            record.kind = CLASS_ZEROS;
        } else if (record.kind == CLASS_ZEROS && record.carry < 0) {
            std::fill(words, words + size, static_cast<wtype>(~wtype(0)));
            record.kind = CLASS_ONES;
        } else {
            record.kind = static_cast<std::uint8_t>(bp_ksr_carry<wtype>(record.carry, words, size));
        }
    });
    return carry;
}

template <typename wtype>
int resolve_block_carries(BlockCarry* table, upL_t count, upL_t stride, wtype* T, upL_t L,
                          const ParallelContext& ctx) {
    int carry_out = 0;
    for (; count > 0 && stride * (count - 1) >= L; count--) carry_out += table[count - 1].carry;
    if (count == 0) return carry_out;
    const BlockCut cut{L, stride, count};
    if (L >= BlockCarry::LEAST_WORDS) return carry_out + resolve_in_passes(table, cut, T, ctx);

    int carry = 0;
    for (upL_t block = 0; block < count; block++) {
        carry += table[block].carry;
        carry = static_cast<int>(bp_add_scalar<wtype>(carry, T + cut.start(block), cut.size(block)));
    }
    return carry_out + carry;
}

template <typename wtype>
int join_blocks(BlockCarry* table, const BlockCut& cut, wtype* T, const ParallelContext& ctx) {
    const int carry_out = table[cut.count - 1].carry;
    bool survived = false;
    for (upL_t block = 1; block < cut.count; block++) {
        BlockCarry& record = table[block - 1];
        record.carry = static_cast<std::int8_t>(
            bp_add_scalar<wtype>(record.carry, T + cut.start(block), std::min(CARRY_REACH, cut.size(block))));
        survived |= record.carry != 0;
    }
    if (!survived) return carry_out;
    return carry_out + resolve_survivors(table, cut, T, ctx);
}

template <typename wtype>
int resolve_survivors(BlockCarry* table, const BlockCut& cut, wtype* T, const ParallelContext& ctx) {
    const upL_t start = std::min(cut.chunk + CARRY_REACH, cut.length);
    return resolve_block_carries(table, cut.count - 1, cut.chunk, T + start, cut.length - start, ctx);
}

template int resolve_in_passes(BlockCarry*, const BlockCut&, std::uint32_t*, const ParallelContext&);
template int resolve_in_passes(BlockCarry*, const BlockCut&, std::uint64_t*, const ParallelContext&);
template int resolve_block_carries(BlockCarry*, upL_t, upL_t, std::uint32_t*, upL_t, const ParallelContext&);
template int resolve_block_carries(BlockCarry*, upL_t, upL_t, std::uint64_t*, upL_t, const ParallelContext&);
template int resolve_survivors(BlockCarry*, const BlockCut&, std::uint32_t*, const ParallelContext&);
template int resolve_survivors(BlockCarry*, const BlockCut&, std::uint64_t*, const ParallelContext&);
template int join_blocks(BlockCarry*, const BlockCut&, std::uint32_t*, const ParallelContext&);
template int join_blocks(BlockCarry*, const BlockCut&, std::uint64_t*, const ParallelContext&);

}  // namespace lumo
