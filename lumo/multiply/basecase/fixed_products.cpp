#include "lumo/multiply/basecase/fixed_products.h"

#include <array>
#include <utility>

#include "lumo/multiply/basecase/accumulator.h"

namespace lumo::Basecase {

namespace {

template <int N, typename wtype>
void mul_fixed(wtype* T, const wtype* A, const wtype* B) {
    ChainSum sum;
#pragma GCC unroll 32
    for (int k = 0; k < 2 * N - 1; k++) {
#pragma GCC unroll 32
        for (int i = k < N ? 0 : k - N + 1; i <= k && i < N; i++)
            sum.add_product(digit(A, i), digit(B, k - i));
        set_digit(T, k, sum.shift());
    }
    set_digit(T, 2 * N - 1, sum.low);
}

template <int N, typename wtype>
void sqr_fixed(wtype* T, const wtype* A) {
    ChainSum sum;
#pragma GCC unroll 32
    for (int k = 0; k < 2 * N - 1; k++) {
        ChainSum cross;
#pragma GCC unroll 32
        for (int i = k < N ? 0 : k - N + 1; 2 * i < k; i++) cross.add_product(digit(A, i), digit(A, k - i));
        sum.add_twice(cross);
        if (k % 2 == 0) sum.add_product(digit(A, k / 2), digit(A, k / 2));
        set_digit(T, k, sum.shift());
    }
    set_digit(T, 2 * N - 1, sum.low);
}

template <typename wtype, int... N>
constexpr std::array<FixedMul<wtype>, sizeof...(N)> mul_table(std::integer_sequence<int, N...>) {
    return {mul_fixed<N + 1, wtype>...};
}
template <typename wtype, int... N>
constexpr std::array<FixedSqr<wtype>, sizeof...(N)> sqr_table(std::integer_sequence<int, N...>) {
    return {sqr_fixed<N + 1, wtype>...};
}

using Lengths = std::make_integer_sequence<int, static_cast<int>(MAX_FIXED_DIGITS)>;

}  // namespace

template <typename wtype>
FixedMul<wtype> fixed_mul(upL_t digits) {
    static constexpr auto table = mul_table<wtype>(Lengths());
    return table[digits - 1];
}

template <typename wtype>
FixedSqr<wtype> fixed_sqr(upL_t digits) {
    static constexpr auto table = sqr_table<wtype>(Lengths());
    return table[digits - 1];
}

template FixedMul<std::uint32_t> fixed_mul(upL_t);
template FixedMul<std::uint64_t> fixed_mul(upL_t);
template FixedSqr<std::uint32_t> fixed_sqr(upL_t);
template FixedSqr<std::uint64_t> fixed_sqr(upL_t);

}  // namespace lumo::Basecase
