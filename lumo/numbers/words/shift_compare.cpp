#include "lumo/numbers/words/words.h"

namespace lumo {

template <typename wtype>
wtype bp_shift_left(wtype* T, const wtype* A, upL_t L, unsigned bits) {
    if (bits == 0) {
        if (T != A) bp_copy(T, A, L);
        return 0;
    }
    const unsigned down = WordTraits<wtype>::bits - bits;
    wtype below = 0;
    for (upL_t i = 0; i < L; i++) {
        const wtype word = A[i];
        T[i] = static_cast<wtype>(word << bits) | static_cast<wtype>(below >> down);
        below = word;
    }
    return static_cast<wtype>(below >> down);
}

template <typename wtype>
void bp_shift_right(wtype* T, const wtype* A, upL_t L, unsigned bits) {
    if (bits == 0) {
        if (T != A) bp_copy(T, A, L);
        return;
    }
    const unsigned up = WordTraits<wtype>::bits - bits;
    for (upL_t i = 0; i < L; i++) {
        const wtype above = i + 1 < L ? A[i + 1] : wtype(0);
        T[i] = static_cast<wtype>(A[i] >> bits) | static_cast<wtype>(above << up);
    }
}

template <typename wtype>
int bp_compare(const wtype* A, const wtype* B, upL_t L) {
    for (upL_t i = L; i-- > 0;)
        if (A[i] != B[i]) return A[i] < B[i] ? -1 : 1;
    return 0;
}

template std::uint32_t bp_shift_left(std::uint32_t*, const std::uint32_t*, upL_t, unsigned);
template std::uint64_t bp_shift_left(std::uint64_t*, const std::uint64_t*, upL_t, unsigned);
template void bp_shift_right(std::uint32_t*, const std::uint32_t*, upL_t, unsigned);
template void bp_shift_right(std::uint64_t*, const std::uint64_t*, upL_t, unsigned);
template int bp_compare(const std::uint32_t*, const std::uint32_t*, upL_t);
template int bp_compare(const std::uint64_t*, const std::uint64_t*, upL_t);

}  // namespace lumo
